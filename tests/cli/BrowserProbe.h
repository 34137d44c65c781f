// What a real browser shows of voka's HTML rendering. A copy of the page
// gets a small script that writes, for every piece of document text, the
// element it belongs to and its computed colour and decorations into the
// DOM; headless Chromium runs it and dumps the DOM, which is read back here.
#pragma once

#include "TextLooks.h"

#include <string>
#include <vector>

namespace voka::test {

extern const char* const kChromium;  // /usr/bin/chromium
bool chromiumAvailable();

struct ShownText {
    int element = -1;  // position of the rendered element among all of them (data-el order)
    std::string tag;   // its data-tag
    std::string text;  // the text node's data
    Look look;
};

struct PageProbe {
    std::vector<ShownText> texts;
    std::string error;  // why nothing could be read
};

// Runs one browser per page, at most two at once, each with a fresh profile
// under `scratch`. The results are in the order of `pages`.
std::vector<PageProbe> probePages(const std::vector<std::string>& pages, const std::string& scratch);

}  // namespace voka::test
