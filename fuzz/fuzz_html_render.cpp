// The HTML rendering of any document that loads. The title, the scheme name
// and a legend rule are slices of the input, so that their escaping is
// fuzzed as well as the document's text and names.
#include "FuzzSupport.h"
#include "cli/HtmlRendering.h"
#include "host/headless/persist/Persist.h"

#include <algorithm>
#include <ostream>
#include <streambuf>

using namespace voka::headless;

namespace {

// Keeps none of the page, but checks as it goes that it is made of whole tags
// with quoted attribute values: a '<', '>' or '"' that slipped past escaping
// shows up as a tag opened twice, a bracket or quote in text, or a value left open.
class TagChecker final : public std::streambuf {
public:
    std::size_t count = 0;
    std::size_t firstBroken = 0;  // 1 + the offset of the first misplaced character
    bool broken() const { return firstBroken != 0 || inTag_ || inQuotes_; }

protected:
    int_type overflow(int_type c) override {
        if (!traits_type::eq_int_type(c, traits_type::eof())) take(traits_type::to_char_type(c));
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override {
        for (std::streamsize i = 0; i < n; ++i) take(s[i]);
        return n;
    }

private:
    void take(char c) {
        ++count;
        bool misplaced = false;
        if (inQuotes_) {
            if (c == '"') inQuotes_ = false;
            misplaced = c == '<' || c == '>';
        } else if (c == '<') {
            misplaced = inTag_;
            inTag_ = true;
        } else if (c == '>') {
            misplaced = !inTag_;
            inTag_ = false;
        } else if (c == '"') {
            misplaced = !inTag_;
            inQuotes_ = inTag_;
        }
        if (misplaced && firstBroken == 0) firstBroken = count;
    }

    bool inTag_ = false;
    bool inQuotes_ = false;
};

std::string slice(const std::uint8_t* data, std::size_t size, std::size_t from, std::size_t length) {
    if (from >= size) return "";
    return std::string(reinterpret_cast<const char*>(data) + from, std::min(length, size - from));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    LoadResult loaded = loadFile(voka::fuzz::writeScratch("input.xml", data, size));
    if (!loaded.document) return 0;
    voka::cli::Rendering rendering;
    rendering.title = slice(data, size, 0, 48);
    rendering.legendCaption = size % 3 == 0 ? "Filter scheme" : "Coloring scheme";
    rendering.schemeName = slice(data, size, size / 2, 32);
    if (size % 3 == 0) rendering.filterLegend.push_back({slice(data, size, size / 5, 16), slice(data, size, size / 6, 24)});
    voka::cli::LegendRule rule;
    rule.name = slice(data, size, size / 3, 16);
    rule.conditions = slice(data, size, size / 4, 40);
    rule.style = size > 0 ? data[size - 1] % 10 - 1 : 0;  // also numbers outside the styles' range
    rule.override = size % 2 == 0;
    rendering.legend.push_back(rule);
    TagChecker checker;
    std::ostream out(&checker);
    if (!voka::cli::renderHtml(*loaded.document, rendering, out) || checker.count == 0)
        voka::fuzz::fail("a loaded document does not render", std::to_string(checker.count) + " bytes written");
    if (checker.broken())
        voka::fuzz::fail("the page breaks out of its markup at byte", std::to_string(checker.firstBroken));
    return 0;
}
