// What the end-to-end tests of voka share: running voka and the browser as
// child processes, scratch folders, the looks of text (colour and the
// character styles colouring gives) read from the saved documents and from
// the browser, and the looks of the example book worked out by hand.
#pragma once

#include "host/headless/Model.h"

#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace voka::test {

struct RunOptions {
    std::string workingDirectory;                                  // "" keeps the test's own
    std::string home;  // the child's HOME; "" keeps the test's own
    bool asNobody = false;  // so that permission bits mean something to a test run as root
    int timeoutSeconds = 120;
};

struct ProcessResult {
    int exitCode = -1;  // -1 when the child did not exit on its own
    std::string out, err, failure;  // failure: why the child could not be started or did not end
};

// Arguments as given (no shell), standard input from /dev/null, output
// captured whole, the child's process group killed at the time limit.
ProcessResult runProcess(const std::vector<std::string>& argv, const RunOptions& options = {});

// A fresh temporary folder, removed with everything in it when the object goes.
struct ScratchFolder {
    ScratchFolder();
    ~ScratchFolder();
    std::string operator/(const std::string& name) const { return path + "/" + name; }
    std::string path;
};

std::string sourceDirectory();
inline const char* const kChapters[] = {"01-overview", "02-install", "03-configure", "04-release-notes"};
std::string chapterSource(const std::string& chapter);  // in the example book

// voka --home HOME --quiet ARGS...: no status lines, whose timing varies.
ProcessResult runVoka(const std::string& home, const std::vector<std::string>& args, const RunOptions& options = {});
// Makes `home` a per-user folder voka has set up already. Empty, or what went wrong.
std::string installHome(const std::string& home);

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& content);
std::string fileListing(const std::string& folder);  // every file under it, relative and sorted, one a line
// Every file under `folder` with its content, for checking that nothing changed.
std::map<std::string, std::string> snapshot(const std::string& folder);

extern const char* const kWelcomeAlert;  // the first run in a new per-user folder
std::string pluginMessage(const std::string& text);

struct Look {
    std::string rgb = "#000000";  // uncoloured text is the page's black
    int underline = 0;            // 0 none, 1 single, 2 double, 3 numeric
    bool overline = false, strikethrough = false, changeBar = false;
    bool operator==(const Look&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Look& look);

// The look the document's format runs give the byte at `offset`.
Look lookAt(const headless::Document& doc, const headless::Flow& flow, std::uint32_t offset);
// A document as voka saved it, loaded the way the host loads it; null with the message in `error`.
std::unique_ptr<headless::Document> loadSaved(const std::string& path, std::string& error);
// Elements of every flow in document order: the order the HTML rendering writes them in.
std::vector<headless::Index> elementsInOrder(const headless::Document& doc);
// Where two documents with the same text look different, at most `limit` places; "" when nowhere.
std::string lookDifferences(const headless::Document& a, const headless::Document& b, int limit = 10);

struct ExpectedLook {
    const char *chapter, *text;  // the text stands once in the chapter, inside one element
    Look look;
    const char* why;
};
// "By audience": novice red; expert blue, underlined; admin green, overlined.
extern const std::vector<ExpectedLook> kByAudienceLooks;
// "Release status": deleted red, struck through; new green, double underline;
// changed blue, change bar; unchanged keeps its colour, numeric underline.
extern const std::vector<ExpectedLook> kReleaseStatusLooks;

// `looksOf(text)` gives the look of every place showing `text`; one line for
// each expected look of `chapter` that stands in other than one place or looks otherwise.
template <typename LooksOf>
std::string expectedMismatches(const std::string& chapter, const std::vector<ExpectedLook>& looks, LooksOf looksOf) {
    std::ostringstream problems;
    for (const ExpectedLook& expected : looks) {
        if (chapter != expected.chapter) continue;
        const std::vector<Look> places = looksOf(std::string(expected.text));
        if (places.size() != 1) problems << "\"" << expected.text << "\" stands in " << places.size() << " places\n";
        else if (places[0] != expected.look)
            problems << "\"" << expected.text << "\" (" << expected.why << ") looks " << places[0] << ", expected "
                     << expected.look << "\n";
    }
    return problems.str();
}
// What headless Chromium shows of a rendered page: for every piece of
// document text, its element (position among the rendered ones, tag) and look.
struct ShownText {
    int element = -1;
    std::string tag, text;
    Look look;
};
struct PageProbe {
    std::vector<ShownText> texts;
    std::string error;  // why nothing could be read
};
extern const char* const kChromium;
// One browser per page, two at once, each with a fresh profile under `scratch`; results in the order of `pages`.
std::vector<PageProbe> probePages(const std::vector<std::string>& pages, const std::string& scratch);

// The expected looks against a saved chapter.
std::string savedLookMismatches(const headless::Document& doc, const std::string& chapter,
                                const std::vector<ExpectedLook>& looks);

}  // namespace voka::test
