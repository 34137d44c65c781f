// How a piece of text looks: its colour and the character styles colouring
// gives it (single, double or numeric underline, overline, strikethrough,
// change bar). The end-to-end tests read a look from three places and compare
// them: the scheme read by hand, the saved full-form document (its format
// runs), and the browser's computed style of the HTML rendering.
#pragma once

#include "host/headless/Model.h"

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace voka::test {

struct Look {
    std::string rgb = "#000000";  // uncoloured text is the page's black
    int underline = 0;            // 0 none, 1 single, 2 double, 3 numeric
    bool overline = false;
    bool strikethrough = false;
    bool changeBar = false;
    bool operator==(const Look&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Look& look);

// The look the document's format runs give the byte at `offset`.
Look lookAt(const headless::Document& doc, const headless::Flow& flow, std::uint32_t offset);

// The look the browser reports: computed color ("rgb(0, 0, 255)"),
// text-decoration-line ("underline overline"), text-decoration-style and
// border-left-width. Nothing when a value is not one the rendering can give.
std::optional<Look> lookShown(const std::string& color, const std::string& lines, const std::string& lineStyle,
                              const std::string& barWidth);

// A document as voka saved it, loaded the way the host loads it; null with
// the loader's message in `error` when it does not load.
std::unique_ptr<headless::Document> loadSaved(const std::string& path, std::string& error);

// Elements of every flow, highest-level first, in document order: the
// order in which the HTML rendering writes them.
std::vector<headless::Index> elementsInOrder(const headless::Document& doc);

// Where two documents with the same text look different, one line per
// place (at most `limit`); "" when they look alike everywhere.
std::string lookDifferences(const headless::Document& a, const headless::Document& b, int limit = 10);

}  // namespace voka::test
