// An HTML picture of a document as the host holds it: each element's text in
// its colour and character styles (overline, strikethrough, single, double and
// numeric underline, change bar), hidden conditional text left out, and a
// legend of the scheme's rules: a colouring scheme's, or a filter scheme's.
// An element's attributes show when the pointer rests on it and, in a panel at
// the side, when it is clicked; a switch in the legend tints backgrounds
// instead of colouring text. All of it is HTML and CSS: the page runs no script.
#pragma once

#include "host/headless/Model.h"

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
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

// A filter rule as the legend shows it: the attribute and the values kept.
struct FilterLegendRule {
    std::string attribute;
    std::string values;  // "novice, expert" or "<no value>, <any value>"
};

struct Rendering {
    std::string title;
    std::string legendCaption;  // "Coloring scheme", "Filter scheme"; "" for no legend
    std::string schemeName;
    std::vector<LegendRule> legend;
    std::vector<FilterLegendRule> filterLegend;
    // Elements a report links to, by their unique number: each gets the
    // anchor "el-N", is highlighted when the link is followed, and shows the note.
    std::unordered_map<std::uint32_t, std::string> notes;
    // Elements that hold no text (a map's topicref, an empty image), by their
    // unique number: the position in `legend` of the rule that matches each.
    // No text run can carry its look, so the element's tag label shows it.
    std::unordered_map<std::uint32_t, std::size_t> tagRules;
};

// Takes the page a piece at a time; false when the piece could not be written.
using PageSink = std::function<bool(std::string_view)>;

// Writes the page as it goes, so a million-element document is never held
// as one string. Everything from the document is escaped and colours are
// used only as hex values; the page carries a policy that runs no script and
// loads nothing. False when writing failed.
bool renderHtml(const headless::Document& doc, const Rendering& rendering, const PageSink& sink);
bool renderHtml(const headless::Document& doc, const Rendering& rendering, std::ostream& out);

// The mark in every page's head by which voka knows a page it may replace.
extern const char* const kGeneratorMark;
// The start of every page voka writes, up to and with its escaped title: the
// character set, a Content-Security-Policy that runs no script and loads
// nothing, and the generator mark. The caller closes the head.
void appendPageHead(std::string& out, std::string_view title);
// Text or an attribute value as HTML: & < > " ' escaped.
void appendHtmlEscaped(std::string& out, std::string_view text);
// A relative path for an href, every byte but letters, digits, - . _ ~ and / percent-encoded.
std::string urlEncodedPath(std::string_view path);

// The label the scheme editor shows for a style number.
const char* styleLabel(int style);

}  // namespace voka::cli
