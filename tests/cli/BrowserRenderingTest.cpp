// The HTML rendering as headless Chromium shows it: every piece of text in
// the colour and with the decorations the saved document gives it, the
// example's chapters looking as their schemes say, and what a reader does
// with the picture: listings, attributes on hover and on click, tags of
// elements without text, the tint switch.
#include "Cli.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace voka::test {

std::string runInPage(const std::string& page, const std::string& script, const std::string& folder, std::string& error);

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

// A topic long enough to be written in chunks the browser skips off screen,
// and a map whose topicrefs hold no text; coloured by the shipped "By
// audience": novice red, expert blue underlined, admin green overlined.
std::string pictureTopic() {
    std::string topic = "<?xml version=\"1.0\"?>\n<topic id=\"t\"><title>Picture</title><body>\n"
                        "<p audience=\"novice\" product=\"pro fleet\">For beginners.</p>\n"
                        "<codeblock audience=\"expert\">first line\nsecond line</codeblock>\n"
                        "<p>An icon <image href=\"icon.png\" audience=\"admin\"/> stands here.</p>\n";
    for (int i = 0; i < 300; ++i)
        topic += "<p audience=\"expert\">Paragraph " + std::to_string(i) + " makes the page long enough to be written in chunks.</p>\n";
    return topic + "<p audience=\"admin\">Last words.</p>\n</body></topic>\n";
}
// Topic references without text, in a document (a DITA map itself opens as a book of its topics).
constexpr const char* kPictureMap = "<?xml version=\"1.0\"?>\n<navigation><title>Map</title>"
                                    "<topicref href=\"topic.xml\" audience=\"novice\"/><topicref href=\"topic.xml\"/></navigation>\n";

// Helpers of the checks: the element holding a text, the computed look of an element or its pseudo-element.
constexpr const char* kPictureHelpers = R"(
  function holding(text) {
    var walker = document.createTreeWalker(document.querySelector('section.flow'), NodeFilter.SHOW_TEXT);
    for (var node = walker.nextNode(); node; node = walker.nextNode()) if (node.data.indexOf(text) >= 0) return node.parentElement;
    throw 'no text ' + text;
  }
  function look(element, pseudo) {
    var style = getComputedStyle(element, pseudo || null);
    return style.color + ' on ' + style.backgroundColor + ', ' + style.textDecorationLine;
  }
)";

TEST(BrowserShows, WhatAReaderLooksFor) {
    if (access(kChromium, X_OK) != 0) GTEST_SKIP() << kChromium << " is not installed; CI installs it";
    ScratchFolder scratch;
    const std::string home = scratch / "home", out = scratch / "out";
    ASSERT_EQ("", installHome(home));
    writeFile(scratch / "topic.xml", pictureTopic());
    writeFile(scratch / "map.xml", kPictureMap);
    for (const char* input : {"topic.xml", "map.xml"}) {
        ProcessResult run = runVoka(home, {"color", scratch / input, "--out", out});
        ASSERT_EQ(0, run.exitCode) << run.err;
    }
    struct Case {
        const char* page;
        const char* what;
        const char* script;  // a function body returning what the reader sees
        std::string expected;
    } cases[] = {
        {"topic", "a code block keeps its lines",
         "var code = document.querySelector('[data-t=codeblock]'), range = document.createRange(), tops = {};"
         "range.selectNodeContents(code);"
         "Array.prototype.forEach.call(range.getClientRects(), function (r) { tops[Math.round(r.top)] = 1; });"
         "return Object.keys(tops).length + ' lines: ' + code.textContent;",
         "2 lines: first line\nsecond line"},
        {"topic", "the pointer on a run names its element's attributes",
         "var run = holding('For beginners.'), r = run.getBoundingClientRect();"
         "return document.elementFromPoint(r.left + r.width / 2, r.top + r.height / 2).closest('[title]').title;",
         "audience=novice\nproduct=pro fleet"},
        {"topic", "a click shows the attributes in the panel at the side, also far down the page",
         "var box = holding('Last words.').closest('[data-t]'), before = getComputedStyle(box, '::after').content;"
         "box.focus();"
         "var panel = getComputedStyle(box, '::after');"
         "return before + ' | ' + (document.activeElement === box) + ' ' + panel.position + ' '"
         "  + getComputedStyle(box.closest('.k')).contentVisibility + ' ' + panel.content;",
         "none | true fixed visible \"<p>\\a audience=admin\""},
        {"topic", "an element without text shows its rule's look on its tag",
         "var image = document.querySelector('[data-t=image]');"
         "return getComputedStyle(image, '::before').content + ': ' + look(image, '::before');",
         "\"image\": rgb(0, 255, 0) on rgba(0, 0, 0, 0), overline"},
        {"map", "a topicref shows its rule's colour on its tag, one without a rule stays grey",
         "return Array.prototype.map.call(document.querySelectorAll('[data-t=topicref]'),"
         "  function (t) { return look(t, '::before'); }).join(' / ');",
         "rgb(255, 0, 0) on rgba(0, 0, 0, 0), none / rgb(136, 136, 136) on rgba(0, 0, 0, 0), none"},
        {"topic", "the legend's switch tints the background instead of colouring the text",
         "var run = holding('For beginners.'), before = look(run), tint = document.querySelector('label[for=tint]');"
         "tint.click();"
         "return (tint.closest('.legend') ? 'in the legend: ' : 'elsewhere: ') + before + ' | ' + look(run)"
         "  + ' | ' + look(document.querySelector('.legend .r0'));",
         "in the legend: rgb(255, 0, 0) on rgba(0, 0, 0, 0), none | rgb(17, 17, 17) on rgba(255, 0, 0, 0.25), none"
         " | rgb(17, 17, 17) on rgba(255, 0, 0, 0.25), none"},
    };
    for (const char* page : {"topic", "map"}) {
        SCOPED_TRACE(page);
        std::string script = kPictureHelpers;
        script += "var lines = [];\n";
        for (const Case& c : cases)
            if (std::string(c.page) == page)
                script += "try { lines.push((function () { " + std::string(c.script) + " })()); } catch (e) { lines.push('failed: ' + e); }\n";
        script += "return lines.join('\\u0001');";
        std::string error;
        const std::string shown = runInPage(out + "/" + page + ".html", script, scratch / (std::string("browser-") + page), error);
        ASSERT_EQ("", error);
        std::istringstream lines(shown);
        for (const Case& c : cases) {
            if (std::string(c.page) != page) continue;
            std::string line;
            std::getline(lines, line, '\x01');
            EXPECT_EQ(c.expected, line) << c.what;
        }
    }
}

}  // namespace
}  // namespace voka::test
