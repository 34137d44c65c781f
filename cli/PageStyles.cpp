#include "cli/PageStyles.h"

#include <algorithm>
#include <cctype>

namespace voka::cli {
namespace {

using headless::CharFormat;
using headless::Document;

// What a format or a rule shows: a colour and the character styles.
struct Look {
    std::string rgb;     // checked hex, "" for none
    int underline = 0;   // 0 none, 1 single, 2 double, 3 numeric
    bool overline = false, strikethrough = false, changeBar = false;
    bool shows() const { return !rgb.empty() || underline || overline || strikethrough || changeBar; }
};

Look formatLook(const Document& doc, const CharFormat& format) {
    Look look;
    if ((format.set & CharFormat::kColor) && format.color < doc.colors.size()) look.rgb = cssColor(doc.colors[format.color].rgb);
    if (format.set & CharFormat::kUnderlining) look.underline = std::min<int>(format.underlining, 3);
    look.overline = (format.set & CharFormat::kOverline) && format.overline;
    look.strikethrough = (format.set & CharFormat::kStrikethrough) && format.strikethrough;
    look.changeBar = (format.set & CharFormat::kChangeBar) && format.changeBar;
    return look;
}

// The character styles a rule's style number gives, as colouring applies them.
Look ruleLook(const LegendRule& rule) {
    struct Styles {
        int underline;
        bool overline, strikethrough, changeBar;
    };
    static constexpr Styles kStyles[] = {{0, false, false, false}, {0, true, false, false}, {0, false, true, false},
                                         {1, false, false, false}, {2, false, false, false}, {0, false, false, true},
                                         {3, false, false, false}, {3, false, false, true}};
    const Styles& s = kStyles[rule.style >= 0 && rule.style <= 7 ? rule.style : 0];
    return Look{cssColor(rule.rgb), s.underline, s.overline, s.strikethrough, s.changeBar};
}

// The declarations of a look; a numeric underline is drawn dotted.
void appendLook(std::string& out, const Look& look) {
    if (!look.rgb.empty()) out += "color:" + look.rgb + ";";
    if (look.underline || look.overline || look.strikethrough) {
        out += "text-decoration:";
        if (look.underline) out += "underline ";
        if (look.overline) out += "overline ";
        if (look.strikethrough) out += "line-through ";
        static const char* const kUnderlineStyles[] = {"solid", "solid", "double", "dotted"};
        out += kUnderlineStyles[look.underline];
        out += ';';
    }
    if (look.changeBar) out += "border-left:3px solid #c00000;padding-left:2px;";
}

// With the switch on, a coloured run keeps its styles but shows its colour as
// a light tint (a quarter of it over white) behind dark text.
void appendTint(std::string& out, const Look& look, const std::string& selectors) {
    if (look.rgb.empty()) return;
    out += selectors + "{color:#111;background:" + look.rgb + (look.rgb.size() == 4 ? "4" : "40") + "}\n";
}

constexpr const char* kFixedStyles =
    "body{font-family:sans-serif;margin:2em;line-height:1.6}\n"
    ":where(div[data-t]){margin-left:1.2em}\n"
    // The tag label of a block, and of any element without text, which shows its rule's look on it.
    ":where(div[data-t],.e)::before{content:attr(data-t);font:70% monospace;color:#888;margin-right:.4em}\n"
    ".e::before{padding:0 .3em;border:1px solid #ccc;border-radius:3px}\n"
    "[data-ws=pre]{white-space:pre-wrap;font-family:monospace}\n"
    ".legend{border-collapse:collapse;margin-bottom:2em}\n"
    ".legend td,.legend th{border:1px solid #ccc;padding:.2em .6em;text-align:left}\n"
    ".swatch{display:inline-block;width:1em;height:1em;border:1px solid #444;vertical-align:middle}\n"
    ".finding .note{font-size:80%;color:#a00;margin-right:.4em}\n"
    ".finding:target{outline:3px solid #c00;outline-offset:-3px;background:#fff3f3}\n"
    // A click focuses the element: its tag and attributes (the hover title) show in a panel at the side.
    "[tabindex]:focus{outline:2px solid #48c;outline-offset:1px}\n"
    "[tabindex]:focus::after{content:'\\3C' attr(data-t) '\\3E\\A' attr(title);position:fixed;top:1em;right:1em;"
    "z-index:1;max-width:30em;max-height:80vh;overflow:auto;white-space:pre-wrap;font:13px/1.5 monospace;"
    "color:#000;background:#fffff4;border:1px solid #999;padding:.5em .8em;box-shadow:0 2px 8px #0004}\n"
    // Off screen a chunk is not laid out; holding the focus it is, so that the
    // panel is placed against the window rather than inside the chunk.
    ".k{content-visibility:auto}\n"
    ".k:focus-within{content-visibility:visible}\n"
    // The switch's checkbox stands before the legend and the flows, so that plain sibling
    // selectors reach the runs (a :has() rule would cost seconds on a large page); its
    // label in the legend draws the box.
    "#tint{position:absolute;opacity:0}\n"
    "label[for=tint]{cursor:pointer}\n"
    "label[for=tint]::before{content:'';display:inline-block;width:.9em;height:.9em;border:1px solid #555;"
    "border-radius:2px;margin-right:.5em;vertical-align:-.1em;background:#fff}\n"
    "#tint:checked~* label[for=tint]::before{background:#48c;box-shadow:inset 0 0 0 2px #fff}\n"
    "#tint:focus-visible~* label[for=tint]{outline:2px solid #48c}\n";

// Chunks come in sizes 0 to 9, of up to 64 << size bytes of text, and are
// estimated at a line (about 26px) for 50 bytes, the last height they were
// laid out with taking over once they were.
constexpr int kChunkSizes = 10;

}  // namespace

std::size_t CharFormatHash::operator()(const CharFormat& f) const {
    const std::uint64_t styles = std::uint64_t{f.set} | std::uint64_t{f.underlining} << 8 |
                                 std::uint64_t{f.overline} << 16 | std::uint64_t{f.strikethrough} << 24 |
                                 std::uint64_t{f.changeBar} << 32;
    return std::hash<std::uint64_t>()(styles * 0x9E3779B97F4A7C15ull ^ f.color);
}

std::string cssColor(std::string_view rgb) {
    const bool hex = (rgb.size() == 4 || rgb.size() == 7) && rgb[0] == '#' &&
                     std::all_of(rgb.begin() + 1, rgb.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
    return hex ? std::string(rgb) : std::string();
}

FormatClasses formatClasses(const Document& doc) {
    FormatClasses classes;
    for (const headless::Flow& flow : doc.flows) {
        flow.formats.forEach([&](std::uint32_t, const CharFormat& format) {
            if (format.set == 0) return;
            auto [opening, added] = classes.openings.try_emplace(format);
            if (!added || !formatLook(doc, format).shows()) return;
            opening->second = "<span class=f" + std::to_string(classes.order.size()) + ">";
            classes.order.push_back(format);
        });
    }
    return classes;
}

bool hasColors(const Document& doc, const FormatClasses& formats, const Rendering& rendering) {
    for (const CharFormat& format : formats.order)
        if (!formatLook(doc, format).rgb.empty()) return true;
    for (const LegendRule& rule : rendering.legend)
        if (!cssColor(rule.rgb).empty()) return true;
    return false;
}

void appendStyleSheet(std::string& out, const Document& doc, const FormatClasses& formats, const Rendering& rendering) {
    out += "<style>\n";
    out += kFixedStyles;
    const std::string tinted = "#tint:checked~section ";
    for (std::size_t i = 0; i < formats.order.size(); ++i) {
        const Look look = formatLook(doc, formats.order[i]);
        const std::string name = ".f" + std::to_string(i);
        out += name + "{";
        appendLook(out, look);
        out += "}\n";
        appendTint(out, look, tinted + name);
    }
    for (int size = 0; size < kChunkSizes; ++size)
        out += ".k" + std::to_string(size) + "{contain-intrinsic-size:auto " + std::to_string(32 << size) + "px}\n";
    // A rule's look on the legend's sample and on the tag of an element without text.
    for (std::size_t i = 0; i < rendering.legend.size(); ++i) {
        const Look look = ruleLook(rendering.legend[i]);
        if (!look.shows()) continue;
        const std::string name = ".r" + std::to_string(i);
        out += name + "::before,.legend " + name + "{";
        appendLook(out, look);
        out += "}\n";
        appendTint(out, look, tinted + name + "::before,#tint:checked~.legend " + name);
    }
    out += "</style>";
}

void appendChunkStart(std::string& out, std::uint32_t bytes) {
    int size = 0;
    while (size < kChunkSizes - 1 && (std::uint32_t{64} << size) < bytes) ++size;
    out += "<div class=\"k k";
    out += static_cast<char>('0' + size);
    out += "\">";
}

void appendTintCheckbox(std::string& out) { out += "<input type=checkbox id=tint>\n"; }

void appendTintSwitch(std::string& out) {
    out += "<label for=tint>Tint the background instead of colouring the text</label>";
}

}  // namespace voka::cli
