// An HTML picture of a document as the host holds it: each element's text in
// its colour and character styles (overline, strikethrough, single, double and
// numeric underline, change bar), hidden conditional text left out, and a
// legend of the colouring scheme's rules.
#pragma once

#include "host/headless/Model.h"

#include <ostream>
#include <string>
#include <vector>

namespace voka::cli {

struct LegendRule {
    std::string name;       // the rule's colour name as the scheme gives it
    std::string rgb;        // "#RRGGBB", empty when the document lacks the colour
    int style = 0;
    bool override = false;
    bool matchAll = false;
    std::string conditions;  // "audience = novice, expert; platform = <any value>"
};

struct Rendering {
    std::string title;
    std::string schemeName;
    std::vector<LegendRule> legend;
};

// Writes the page to `out` as it goes, so a million-element document is never
// held as one string. False when writing failed.
bool renderHtml(const headless::Document& doc, const Rendering& rendering, std::ostream& out);

// The label the scheme editor shows for a style number.
const char* styleLabel(int style);

}  // namespace voka::cli
