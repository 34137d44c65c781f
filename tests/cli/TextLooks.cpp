#include "TextLooks.h"

#include "host/headless/persist/Persist.h"

#include <cctype>
#include <cstdio>
#include <sstream>

namespace voka::test {

using headless::CharFormat;
using headless::Document;
using headless::Flow;
using headless::Index;
using headless::kNil;

namespace {

// The HTML rendering draws a numeric underline dotted.
struct UnderlineStyle {
    int underline;
    const char* css;
};
constexpr UnderlineStyle kUnderlineStyles[] = {{1, "solid"}, {2, "double"}, {3, "dotted"}};

std::string upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Look& look) {
    out << look.rgb;
    static const char* kUnderlineNames[] = {"", " underline", " double-underline", " numeric-underline"};
    if (look.underline >= 0 && look.underline <= 3) out << kUnderlineNames[look.underline];
    else out << " underline=" << look.underline;
    if (look.overline) out << " overline";
    if (look.strikethrough) out << " strikethrough";
    if (look.changeBar) out << " change-bar";
    return out;
}

Look lookAt(const Document& doc, const Flow& flow, std::uint32_t offset) {
    const CharFormat& format = flow.formats.at(offset);
    Look look;
    if ((format.set & CharFormat::kColor) && format.color < doc.colors.size()) look.rgb = upper(doc.colors[format.color].rgb);
    if (format.set & CharFormat::kUnderlining) look.underline = format.underlining;
    look.overline = (format.set & CharFormat::kOverline) && format.overline;
    look.strikethrough = (format.set & CharFormat::kStrikethrough) && format.strikethrough;
    look.changeBar = (format.set & CharFormat::kChangeBar) && format.changeBar;
    return look;
}

std::optional<Look> lookShown(const std::string& color, const std::string& lines, const std::string& lineStyle,
                              const std::string& barWidth) {
    Look look;
    int red = 0, green = 0, blue = 0;
    char close = 0;
    if (std::sscanf(color.c_str(), "rgb(%d, %d, %d%c", &red, &green, &blue, &close) != 4 || close != ')')
        return std::nullopt;
    char rgb[8];
    std::snprintf(rgb, sizeof rgb, "#%02X%02X%02X", red & 0xFF, green & 0xFF, blue & 0xFF);
    look.rgb = rgb;

    std::istringstream words(lines);
    for (std::string word; words >> word;) {
        if (word == "underline") look.underline = -1;  // its kind comes from the style below
        else if (word == "overline") look.overline = true;
        else if (word == "line-through") look.strikethrough = true;
        else if (word != "none") return std::nullopt;
    }
    if (look.underline == -1) {
        for (const UnderlineStyle& style : kUnderlineStyles)
            if (lineStyle == style.css) look.underline = style.underline;
        if (look.underline == -1) return std::nullopt;
    }
    look.changeBar = barWidth != "0px";
    return look;
}

std::vector<Index> elementsInOrder(const Document& doc) {
    std::vector<Index> order;
    order.reserve(doc.elements.size());
    for (const Flow& flow : doc.flows) {
        Index e = flow.root;
        while (e != kNil) {
            order.push_back(e);
            const headless::Element& element = doc.elements[e];
            if (element.firstChild != kNil) {
                e = element.firstChild;
                continue;
            }
            while (e != kNil && doc.elements[e].nextSibling == kNil) e = doc.elements[e].parent;
            if (e != kNil) e = doc.elements[e].nextSibling;
        }
    }
    return order;
}

std::unique_ptr<Document> loadSaved(const std::string& path, std::string& error) {
    headless::LoadResult loaded = headless::loadFile(path);
    if (!loaded.document) error = loaded.error.empty() ? path + " holds no document" : loaded.error;
    return std::move(loaded.document);
}

std::string lookDifferences(const Document& a, const Document& b, int limit) {
    if (a.flows.size() != b.flows.size()) return "the documents have different numbers of flows\n";
    std::ostringstream differences;
    for (std::size_t f = 0; f < a.flows.size() && limit > 0; ++f) {
        const Flow& first = a.flows[f];
        const Flow& second = b.flows[f];
        if (first.text != second.text) {
            differences << "flow " << f << ": the texts differ\n";
            --limit;
            continue;
        }
        // One line per stretch that differs, not per byte.
        bool inDifference = false;
        for (std::uint32_t at = 0; at < first.text.size() && limit > 0; ++at) {
            const Look left = lookAt(a, first, at);
            const Look right = lookAt(b, second, at);
            if (left == right) {
                inDifference = false;
                continue;
            }
            if (inDifference) continue;
            inDifference = true;
            --limit;
            differences << "flow " << f << " at " << at << " (\"" << first.text.substr(at, 30) << "...\"): " << left
                        << " against " << right << "\n";
        }
    }
    return differences.str();
}

}  // namespace voka::test
