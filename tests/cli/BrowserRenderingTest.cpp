// The HTML rendering as headless Chromium shows it: every piece of text in
// the colour and with the decorations the saved document gives it, and the
// example's chapters looking as their schemes say.
#include "Cli.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace voka::test {
namespace {

// Every piece of text the browser shows against the saved document: the
// element it sits in (by position and tag), where its text stands among that
// element's own text, and the look of every byte of it there.
std::string shownAgainstSaved(const PageProbe& page, const headless::Document& doc) {
    const std::vector<headless::Index> order = elementsInOrder(doc);
    std::vector<std::uint32_t> cursor(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) cursor[i] = doc.elements[order[i]].begin;
    std::ostringstream problems;
    int reported = 0;
    for (const ShownText& shown : page.texts) {
        if (shown.text.find_first_not_of(" \t\n\r\f\v") == std::string::npos) continue;  // blanks show no colour
        std::ostringstream what;
        const std::size_t position = static_cast<std::size_t>(shown.element);
        const headless::Element* element = shown.element >= 0 && position < order.size() ? &doc.elements[order[position]] : nullptr;
        const std::string tag = element ? doc.definitions[element->definition].tag : "";
        if (!element || tag != shown.tag) what << "the saved document has <" << tag << "> there";
        else {
            const headless::Flow& flow = doc.flows[element->flow];
            // The element's own text, not its children's: a hit inside a child is passed over.
            std::size_t at = flow.text.find(shown.text, cursor[position]);
            for (headless::Index child = element->firstChild; child != headless::kNil && at != std::string::npos;
                 child = doc.elements[child].nextSibling)
                if (doc.elements[child].begin <= at && at < doc.elements[child].end)
                    at = flow.text.find(shown.text, doc.elements[child].end);
            if (at == std::string::npos || at + shown.text.size() > element->end)
                what << "not found among the element's own text";
            else {
                cursor[position] = static_cast<std::uint32_t>(at + shown.text.size());
                for (std::size_t byte = at; byte < at + shown.text.size() && what.str().empty(); ++byte)
                    if (const Look saved = lookAt(doc, flow, static_cast<std::uint32_t>(byte)); saved != shown.look)
                        what << "shown as " << shown.look << ", saved as " << saved << " at byte " << byte;
            }
        }
        if (!what.str().empty() && ++reported <= 10)
            problems << "\"" << shown.text.substr(0, 40) << "\" in <" << shown.tag << ">: " << what.str() << "\n";
    }
    if (reported > 10) problems << "... and " << reported - 10 << " more\n";
    return problems.str();
}

TEST(BrowserShows, EveryChapterAsSavedAndAsTheSchemeSays) {
    if (access(kChromium, X_OK) != 0) GTEST_SKIP() << kChromium << " is not installed; CI installs it";
    struct Case {
        const char* scheme;
        const std::vector<ExpectedLook>& looks;
    };
    for (const Case& c : {Case{"By audience", kByAudienceLooks}, Case{"Release status", kReleaseStatusLooks}}) {
        SCOPED_TRACE(c.scheme);
        ScratchFolder scratch;
        const std::string home = scratch / "home", out = scratch / "out";
        ASSERT_EQ("", installHome(home));
        ProcessResult run = runVoka(home, {"color", "--scheme", c.scheme, "--out", out});
        ASSERT_EQ(0, run.exitCode) << run.err;
        std::vector<std::string> pages;
        for (const char* chapter : kChapters) pages.push_back(out + "/" + chapter + ".html");
        const std::vector<PageProbe> probes = probePages(pages, scratch.path);

        for (std::size_t i = 0; i < pages.size(); ++i) {
            SCOPED_TRACE(kChapters[i]);
            const PageProbe& page = probes[i];
            ASSERT_EQ("", page.error);
            std::string error;
            std::unique_ptr<headless::Document> saved = loadSaved(out + "/" + kChapters[i] + ".xml", error);
            ASSERT_TRUE(saved) << error;
            EXPECT_GT(page.texts.size(), elementsInOrder(*saved).size() / 2) << "the page shows the chapter's text";
            EXPECT_EQ("", shownAgainstSaved(page, *saved));
            auto shownLooks = [&](const std::string& text) {
                std::vector<Look> places;
                for (const ShownText& shown : page.texts)
                    if (shown.text.find(text) != std::string::npos) places.push_back(shown.look);
                return places;
            };
            EXPECT_EQ("", expectedMismatches(kChapters[i], c.looks, shownLooks));
        }
    }
}

}  // namespace
}  // namespace voka::test
