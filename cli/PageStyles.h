// The style sheet of a document's picture, written into the head before the
// body: the boxes and tag labels of elements, one class per character format
// the document's text runs carry and one per legend rule, the panel that shows
// a clicked element's attributes, the switch that tints backgrounds instead of
// colouring text, and the chunks a browser may skip while they are off screen.
// Everything here is CSS: the page runs no script.
#pragma once

#include "cli/HtmlRendering.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace voka::cli {

struct CharFormatHash {
    std::size_t operator()(const headless::CharFormat& f) const;
};

// Each distinct format of the document's text runs, with the start tag of a
// run in it: `<span class=fN>`, or "" for a format that shows nothing (its
// text is written plain). Found by one pass over the runs, not the elements,
// so the style sheet can precede a body written as it goes.
struct FormatClasses {
    std::unordered_map<headless::CharFormat, std::string, CharFormatHash> openings;
    std::vector<headless::CharFormat> order;  // class fN is order[N]
};
FormatClasses formatClasses(const headless::Document& doc);

// Whether the page gets the tint switch: some format or rule has a colour.
bool hasColors(const headless::Document& doc, const FormatClasses& formats, const Rendering& rendering);

// `<style>...</style>` for the page.
void appendStyleSheet(std::string& out, const headless::Document& doc, const FormatClasses& formats,
                      const Rendering& rendering);

// A colour from a document goes into a style only as #RGB or #RRGGBB hex:
// anything else could carry markup or CSS of its own. "" when it is neither.
std::string cssColor(std::string_view rgb);

// The legend's switch between coloured text and tinted backgrounds with dark
// text (pure green or yellow text on white is hard to read): the checkbox,
// which must come before the legend and the flows as their sibling, and its
// label, in the legend.
void appendTintCheckbox(std::string& out);
void appendTintSwitch(std::string& out);

// Consecutive block elements whose text adds up to about this many bytes are
// wrapped in one chunk that the browser lays out only while it is on screen.
inline constexpr std::uint32_t kChunkBytes = 8192;
// What an element counts for in a chunk besides its text, so that elements
// without text fill chunks too.
inline constexpr std::uint32_t kChunkElementBytes = 64;
// The start tag of a chunk of about `bytes` of text, which it is estimated to
// be as tall as while it has not been laid out.
void appendChunkStart(std::string& out, std::uint32_t bytes);

}  // namespace voka::cli
