#include "Cli.h"

#include "host/headless/persist/Persist.h"

#include <algorithm>
#include <cctype>

namespace voka::test {

using headless::CharFormat;
using headless::Document;
using headless::Flow;
using headless::kNil;

std::ostream& operator<<(std::ostream& out, const Look& look) {
    static const char* const kUnderlines[] = {"", " underline", " double-underline", " numeric-underline"};
    out << look.rgb;
    if (look.underline >= 0 && look.underline <= 3) out << kUnderlines[look.underline];
    else out << " underline=" << look.underline;
    return out << (look.overline ? " overline" : "") << (look.strikethrough ? " strikethrough" : "")
               << (look.changeBar ? " change-bar" : "");
}

Look lookAt(const Document& doc, const Flow& flow, std::uint32_t offset) {
    const CharFormat& format = flow.formats.at(offset);
    Look look;
    if ((format.set & CharFormat::kColor) && format.color < doc.colors.size()) {
        look.rgb = doc.colors[format.color].rgb;
        std::transform(look.rgb.begin(), look.rgb.end(), look.rgb.begin(), [](unsigned char c) { return std::toupper(c); });
    }
    if (format.set & CharFormat::kUnderlining) look.underline = format.underlining;
    look.overline = (format.set & CharFormat::kOverline) && format.overline;
    look.strikethrough = (format.set & CharFormat::kStrikethrough) && format.strikethrough;
    look.changeBar = (format.set & CharFormat::kChangeBar) && format.changeBar;
    return look;
}

std::unique_ptr<Document> loadSaved(const std::string& path, std::string& error) {
    headless::LoadResult loaded = headless::loadFile(path);
    if (!loaded.document) error = loaded.error.empty() ? path + " holds no document" : loaded.error;
    return std::move(loaded.document);
}

std::vector<headless::Index> elementsInOrder(const Document& doc) {
    std::vector<headless::Index> order;
    for (const Flow& flow : doc.flows)
        for (headless::Index e = flow.root; e != kNil;) {
            order.push_back(e);
            if (doc.elements[e].firstChild != kNil) {
                e = doc.elements[e].firstChild;
                continue;
            }
            while (e != kNil && doc.elements[e].nextSibling == kNil) e = doc.elements[e].parent;
            if (e != kNil) e = doc.elements[e].nextSibling;
        }
    return order;
}

std::string lookDifferences(const Document& a, const Document& b, int limit) {
    if (a.flows.size() != b.flows.size()) return "the documents have different numbers of flows\n";
    std::ostringstream differences;
    for (std::size_t f = 0; f < a.flows.size() && limit > 0; ++f) {
        const std::string& text = a.flows[f].text;
        if (text != b.flows[f].text) {
            differences << "flow " << f << ": the texts differ\n";
            --limit;
            continue;
        }
        bool inDifference = false;  // one line per stretch that differs, not per byte
        for (std::uint32_t at = 0; at < text.size() && limit > 0; ++at) {
            const Look left = lookAt(a, a.flows[f], at), right = lookAt(b, b.flows[f], at);
            if (left != right && !inDifference) {
                --limit;
                differences << "flow " << f << " at " << at << " (\"" << text.substr(at, 30) << "...\"): " << left
                            << " against " << right << "\n";
            }
            inDifference = left != right;
        }
    }
    return differences.str();
}

}  // namespace voka::test
