// The HTML rendering as a browser shows it: every piece of text in the
// colour and with the decorations the saved document gives it, and the
// example's chapters looking as their schemes say.
#include "BrowserProbe.h"
#include "ExampleLooks.h"
#include "VokaRun.h"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>

namespace voka::test {
namespace {

bool blank(const std::string& text) {
    for (char c : text)
        if (!std::isspace(static_cast<unsigned char>(c))) return false;
    return true;
}

// Every piece of text the browser shows against the saved document: the
// element it sits in (by position and tag), where its text stands among that
// element's own text, and the look of every byte of it there.
std::string shownAgainstSaved(const PageProbe& page, const headless::Document& doc) {
    const std::vector<headless::Index> order = elementsInOrder(doc);
    std::vector<std::uint32_t> cursor(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) cursor[i] = doc.elements[order[i]].begin;
    std::ostringstream problems;
    int reported = 0;
    auto report = [&](const ShownText& shown, const std::string& what) {
        if (++reported <= 10) problems << "\"" << shown.text.substr(0, 40) << "\" in <" << shown.tag << ">: " << what << "\n";
    };
    for (const ShownText& shown : page.texts) {
        if (blank(shown.text)) continue;  // blanks carry no visible colour
        if (shown.element < 0 || static_cast<std::size_t>(shown.element) >= order.size()) {
            report(shown, "no such element in the saved document");
            continue;
        }
        const headless::Index index = order[static_cast<std::size_t>(shown.element)];
        const headless::Element& element = doc.elements[index];
        const std::string& tag = doc.definitions[element.definition].tag;
        if (tag != shown.tag) {
            report(shown, "the saved document has <" + tag + "> there");
            continue;
        }
        const headless::Flow& flow = doc.flows[element.flow];
        std::uint32_t& from = cursor[static_cast<std::size_t>(shown.element)];
        // The element's own text, not its children's: a hit inside a child is passed over.
        std::size_t at = flow.text.find(shown.text, from);
        for (headless::Index child = element.firstChild; child != headless::kNil && at != std::string::npos;
             child = doc.elements[child].nextSibling)
            if (doc.elements[child].begin <= at && at < doc.elements[child].end)
                at = flow.text.find(shown.text, doc.elements[child].end);
        if (at == std::string::npos || at + shown.text.size() > element.end) {
            report(shown, "not found among the element's own text");
            continue;
        }
        from = static_cast<std::uint32_t>(at + shown.text.size());
        for (std::size_t byte = at; byte < at + shown.text.size(); ++byte) {
            const Look saved = lookAt(doc, flow, static_cast<std::uint32_t>(byte));
            if (saved == shown.look) continue;
            std::ostringstream what;
            what << "shown as " << shown.look << ", saved as " << saved << " at byte " << byte;
            report(shown, what.str());
            break;
        }
    }
    if (reported > 10) problems << "... and " << reported - 10 << " more\n";
    return problems.str();
}

// The expected looks of one chapter against what the browser shows.
std::string shownAgainstExpected(const PageProbe& page, const std::string& chapter,
                                 const std::vector<ExpectedLook>& looks) {
    std::ostringstream problems;
    for (const ExpectedLook& expected : looks) {
        if (chapter != expected.chapter) continue;
        const ShownText* found = nullptr;
        int places = 0;
        for (const ShownText& shown : page.texts)
            if (shown.text.find(expected.text) != std::string::npos) {
                found = &shown;
                ++places;
            }
        if (places != 1) {
            problems << "\"" << expected.text << "\" is shown in " << places << " pieces of text\n";
            continue;
        }
        if (found->look != expected.look)
            problems << "\"" << expected.text << "\" (" << expected.why << ") is shown as " << found->look
                     << ", expected " << expected.look << "\n";
    }
    return problems.str();
}

struct BrowserCase {
    const char* name;
    const char* scheme;
    const std::vector<ExpectedLook>& (*looks)();
};

const BrowserCase kBrowserCases[] = {
    {"ByAudience", "By audience", byAudienceLooks},
    {"ReleaseStatus", "Release status", releaseStatusLooks},
};

// Test names in listings show the case, not its bytes.
void PrintTo(const BrowserCase& c, std::ostream* out) { *out << c.name; }

class BrowserShows : public testing::TestWithParam<BrowserCase> {};

TEST_P(BrowserShows, EveryChapterAsSavedAndAsTheSchemeSays) {
    if (!chromiumAvailable()) GTEST_SKIP() << kChromium << " is not installed; CI installs it";
    const BrowserCase& c = GetParam();
    ScratchFolder scratch;
    const std::string home = scratch / "home";
    ASSERT_EQ("", installHome(home));
    const std::string out = scratch / "out";
    ProcessResult run = runVoka(home, {"color", "--scheme", c.scheme, "--out", out});
    ASSERT_EQ(0, run.exitCode) << run.err;

    const std::vector<std::string> chapters{"01-overview", "02-install", "03-configure", "04-release-notes"};
    std::vector<std::string> pages;
    for (const std::string& chapter : chapters) pages.push_back(out + "/" + chapter + ".html");
    const std::vector<PageProbe> probes = probePages(pages, scratch.path());

    for (std::size_t i = 0; i < chapters.size(); ++i) {
        SCOPED_TRACE(chapters[i]);
        const PageProbe& page = probes[i];
        ASSERT_EQ("", page.error);
        std::string error;
        std::unique_ptr<headless::Document> saved = loadSaved(out + "/" + chapters[i] + ".voka.xml", error);
        ASSERT_TRUE(saved) << error;
        EXPECT_GT(page.texts.size(), elementsInOrder(*saved).size() / 2) << "the page shows the chapter's text";
        EXPECT_EQ("", shownAgainstSaved(page, *saved));
        EXPECT_EQ("", shownAgainstExpected(page, chapters[i], c.looks()));
    }
}

INSTANTIATE_TEST_SUITE_P(Voka, BrowserShows, testing::ValuesIn(kBrowserCases),
                         [](const testing::TestParamInfo<BrowserCase>& info) { return info.param.name; });

}  // namespace
}  // namespace voka::test
