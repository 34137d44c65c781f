// How the bundled example book must look after colouring with two of its
// schemes, worked out by hand from the chapters and from the schemes as
// resources/example/README.md describes them. The tests hold both the saved
// documents and the browser's picture of them against these tables.
#pragma once

#include "TextLooks.h"

#include <string>
#include <vector>

namespace voka::test {

struct ExpectedLook {
    const char* chapter;  // the chapter's file name without ".xml"
    const char* text;     // a piece of its text that stands in it once, inside one element
    Look look;
    const char* why;
};

// "By audience": novice red; expert blue, underlined; admin green, overlined.
const std::vector<ExpectedLook>& byAudienceLooks();

// "Release status": deleted red, struck through (override); new green,
// double underline; changed blue, change bar; unchanged keeps the colour
// around it and gets a numeric underline.
const std::vector<ExpectedLook>& releaseStatusLooks();

// Where the saved chapter does not look as `looks` say for it, one line per
// piece of text; "" when every piece of that chapter looks right.
std::string savedLookMismatches(const headless::Document& chapter, const std::string& chapterName,
                                const std::vector<ExpectedLook>& looks);

}  // namespace voka::test
