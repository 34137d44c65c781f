#include "cli/HtmlRendering.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <optional>
#include <unordered_map>

namespace voka::cli {
namespace {

using headless::CharFormat;
using headless::Document;
using headless::Element;
using headless::Flow;
using headless::Index;
using headless::kNil;

// The replacement of each byte HTML needs escaped; null for the others.
struct HtmlEscapes {
    const char* replacement[256] = {};
    constexpr HtmlEscapes() {
        replacement[static_cast<unsigned char>('<')] = "&lt;";
        replacement[static_cast<unsigned char>('>')] = "&gt;";
        replacement[static_cast<unsigned char>('&')] = "&amp;";
        replacement[static_cast<unsigned char>('"')] = "&quot;";
        replacement[static_cast<unsigned char>('\'')] = "&#39;";
    }
};
constexpr HtmlEscapes kHtmlEscapes;

// Copies the plain stretches between escapes whole: most text has none.
void appendEscaped(std::string& out, std::string_view text) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* replacement = kHtmlEscapes.replacement[static_cast<unsigned char>(text[i])];
        if (replacement == nullptr) continue;
        out.append(text.data() + start, i - start);
        out.append(replacement);
        start = i + 1;
    }
    out.append(text.data() + start, text.size() - start);
}

// The blanks of the C locale, without a call per character.
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// A colour from a document goes into a style only as #RGB or #RRGGBB hex:
// anything else could carry markup or CSS of its own.
std::string cssColor(std::string_view rgb) {
    const bool hex = (rgb.size() == 4 || rgb.size() == 7) && rgb[0] == '#' &&
                     std::all_of(rgb.begin() + 1, rgb.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); });
    return hex ? std::string(rgb) : std::string();
}

// Reads a run map at offsets that only grow, as the page is written: each
// step is O(1) amortised instead of a search.
template <class Value>
class RunCursor {
public:
    explicit RunCursor(const headless::RunMap<Value>& runs) : runs_(runs) {}
    void seek(std::uint32_t offset) {
        if (next_ > 0 && runs_.key(next_ - 1) > offset) next_ = runs_.upperBound(offset);
        while (next_ < runs_.size() && runs_.key(next_) <= offset) ++next_;
    }
    const Value* value() const { return next_ == 0 ? nullptr : &runs_.value(next_ - 1); }
    std::uint32_t boundary(std::uint32_t limit) const {
        return next_ == runs_.size() ? limit : std::min(runs_.key(next_), limit);
    }

private:
    const headless::RunMap<Value>& runs_;
    std::size_t next_ = 0;
};

struct FormatHash {
    std::size_t operator()(const CharFormat& f) const {
        const std::uint64_t styles = std::uint64_t{f.set} | std::uint64_t{f.underlining} << 8 |
                                     std::uint64_t{f.overline} << 16 | std::uint64_t{f.strikethrough} << 24 |
                                     std::uint64_t{f.changeBar} << 32;
        return std::hash<std::uint64_t>()(styles * 0x9E3779B97F4A7C15ull ^ f.color);
    }
};

class Renderer {
public:
    Renderer(const Document& doc, const Rendering& rendering, std::string& out, const PageSink& sink)
        : doc_(doc), notes_(rendering.notes), out_(out), sink_(sink) {}
    bool failed() const { return failed_; }

    void flow(const Flow& flow) {
        flow_ = &flow;
        formats_.emplace(flow.formats);
        conditions_.emplace(flow.conditions);
        out_ += "<section class=\"flow\" data-flow=\"";
        appendEscaped(out_, flow.name);
        out_ += "\">\n";
        if (flow.root != kNil) element(flow.root);
        out_ += "</section>\n";
    }

private:
    bool hidden() const {
        if (doc_.showAll) return false;
        const std::uint32_t* set = conditions_->value();
        if (!set || *set == 0 || *set >= doc_.conditionSets.size()) return false;
        return hiddenSet(doc_.conditionSets[*set]);
    }

    // An element whose whole text is hidden, or a table row under a hidden
    // condition, is left out with its box, as the host shows neither.
    bool leftOut(Index index) {
        if (doc_.showAll) return false;
        const Element& e = doc_.elements[index];
        if (!doc_.rowConditions.empty()) {
            const auto row = doc_.rowConditions.find(index);
            if (row != doc_.rowConditions.end() && hiddenSet(row->second)) return true;
        }
        if (e.begin >= e.end) return false;
        conditions_->seek(e.begin);
        return hidden() && conditions_->boundary(e.end) == e.end;
    }

    bool hiddenSet(const headless::ConditionSet& set) const {
        for (Index c : set)
            if (c < doc_.conditions.size() && !doc_.conditions[c].shown) return true;
        return false;
    }

    // Mixed content (text beside child elements) is laid out inline.
    bool hasOwnText(const Element& e) const {
        std::uint32_t at = e.begin;
        auto scan = [&](std::uint32_t from, std::uint32_t to) {
            for (std::uint32_t i = from; i < to && i < flow_->text.size(); ++i)
                if (!isBlank(flow_->text[i])) return true;
            return false;
        };
        for (Index c = e.firstChild; c != kNil; c = doc_.elements[c].nextSibling) {
            if (scan(at, doc_.elements[c].begin)) return true;
            at = doc_.elements[c].end;
        }
        return scan(at, e.end);
    }

    // Depth-first with a stack of its own: a document may nest as deep as the
    // loader allows, far deeper than the call stack would take.
    void element(Index root) {
        struct Open {
            Index index;
            Index nextChild;
            std::uint32_t at;     // text before nextChild starts here
            bool inlineLayout;    // this element is laid out inline
            bool childrenInline;  // and so are its children
        };
        std::vector<Open> open;
        auto enter = [&](Index index, bool inlineLayout) {
            const Element& e = doc_.elements[index];
            startBox(index, inlineLayout);
            open.push_back(Open{index, e.firstChild, e.begin, inlineLayout, hasOwnText(e)});
        };
        enter(root, false);
        while (!open.empty()) {
            Open& top = open.back();
            if (top.nextChild != kNil) {
                const Index child = top.nextChild;
                text(top.at, doc_.elements[child].begin);
                top.at = doc_.elements[child].end;
                top.nextChild = doc_.elements[child].nextSibling;
                if (!leftOut(child)) enter(child, top.childrenInline);
                continue;
            }
            text(top.at, doc_.elements[top.index].end);
            endBox(top.inlineLayout);
            open.pop_back();
            if (out_.size() > kFlushAt) flush();
        }
    }

    void startBox(Index index, bool inlineLayout) {
        const Element& e = doc_.elements[index];
        if (!notes_.empty()) {
            if (const auto note = notes_.find(e.unique); note != notes_.end()) return startNotedBox(e, inlineLayout, note->second);
        }
        out_ += inlineLayout ? "<span class=\"el\" data-el=\"" : "<div class=\"el\" data-el=\"";
        char digits[16];
        const auto written = std::to_chars(digits, digits + sizeof digits, e.unique);
        out_.append(digits, written.ptr);
        if (e.attributesCount > 0) attributesTitle(index);
        const BoxEnds& ends = boxEnds(e.definition);
        out_ += inlineLayout ? ends.inlineBox : ends.block;
    }

    // The element's attributes, shown when the pointer rests on it; and
    // xml:space="preserve" keeps its line breaks, as the vocabulary asks.
    void attributesTitle(Index index) {
        const Element& e = doc_.elements[index];
        if (e.definition >= doc_.definitions.size()) return;
        const headless::ElementDefinition& def = doc_.definitions[e.definition];
        out_ += "\" title=\"";
        bool preserve = false, first = true;
        for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
            const headless::AttributeSlot& slot = doc_.attributeSlots[e.attributesBegin + i];
            if (slot.position >= def.attributes.size() || slot.values >= doc_.values.size()) continue;
            const auto& values = doc_.values.get(slot.values);
            if (values.empty()) continue;
            if (!first) out_ += "; ";
            first = false;
            appendEscaped(out_, def.attributes[slot.position].name);
            out_ += '=';
            for (std::size_t v = 0; v < values.size(); ++v) {
                if (v) out_ += ' ';
                appendEscaped(out_, values[v]);
            }
            preserve = preserve || (def.attributes[slot.position].name == "xml:space" && values.front() == "preserve");
        }
        if (preserve) out_ += "\" style=\"white-space:pre-wrap";
    }

    void startNotedBox(const Element& e, bool inlineLayout, const std::string& note) {
        const std::string unique = std::to_string(e.unique);
        out_ += (inlineLayout ? "<span" : "<div") + std::string(" class=\"el finding\" id=\"el-") + unique +
                "\" data-el=\"" + unique;
        out_ += inlineLayout ? boxEnds(e.definition).inlineBox : boxEnds(e.definition).block;
        out_ += "<span class=\"note\">";
        appendEscaped(out_, note);
        out_ += "</span>";
    }

    // Listings and verse of DITA, DocBook and HTML, whose line breaks are content.
    static bool keepsLineBreaks(std::string_view tag) {
        const std::size_t colon = tag.find(':');
        if (colon != std::string_view::npos) tag.remove_prefix(colon + 1);
        static constexpr std::string_view kTags[] = {"pre", "codeblock", "screen", "msgblock", "lines",
                                                     "programlisting", "literallayout", "synopsis", "address"};
        return std::find(std::begin(kTags), std::end(kTags), tag) != std::end(kTags);
    }

    // The rest of a box's start tag, the same for every element of a definition.
    struct BoxEnds {
        std::string inlineBox;  // `" data-tag="TAG">`
        std::string block;      // the same and `<span class="tag">TAG</span>`
    };
    const BoxEnds& boxEnds(Index definition) {
        const std::size_t slot = definition < doc_.definitions.size() ? definition : doc_.definitions.size();
        if (slot >= boxEnds_.size()) boxEnds_.resize(slot + 1);
        BoxEnds& ends = boxEnds_[slot];
        if (ends.inlineBox.empty()) {
            std::string tag;
            if (slot < doc_.definitions.size()) appendEscaped(tag, doc_.definitions[slot].tag);
            ends.inlineBox = "\" data-tag=\"" + tag + (keepsLineBreaks(tag) ? "\" data-ws=\"pre\">" : "\">");
            ends.block = ends.inlineBox + "<span class=\"tag\">" + tag + "</span>";
        }
        return ends;
    }

    void endBox(bool inlineLayout) { out_ += inlineLayout ? "</span>" : "</div>\n"; }

    void flush() {
        if (!sink_(out_)) failed_ = true;
        out_.clear();
    }

    static constexpr std::size_t kFlushAt = 1 << 20;

    void text(std::uint32_t begin, std::uint32_t end) {
        end = std::min<std::uint32_t>(end, static_cast<std::uint32_t>(flow_->text.size()));
        while (begin < end) {
            formats_->seek(begin);
            conditions_->seek(begin);
            const std::uint32_t stop = std::min(formats_->boundary(end), conditions_->boundary(end));
            std::string_view piece(flow_->text.data() + begin, stop - begin);
            if (!hidden() && !piece.empty()) span(formats_->value(), piece);
            begin = stop;
        }
    }

    void span(const CharFormat* format, std::string_view piece) {
        const bool allBlank = std::all_of(piece.begin(), piece.end(), isBlank);
        if (!format || format->set == 0 || allBlank) {
            appendEscaped(out_, piece);
            return;
        }
        auto [opening, added] = openings_.try_emplace(*format);
        if (added) opening->second = spanOpening(*format);
        out_ += opening->second;
        appendEscaped(out_, piece);
        out_ += "</span>";
    }

    std::string spanOpening(const CharFormat& format) const {
        std::string style;
        std::string data;
        if ((format.set & CharFormat::kColor) && format.color < doc_.colors.size()) {
            if (const std::string rgb = cssColor(doc_.colors[format.color].rgb); !rgb.empty()) style += "color:" + rgb + ";";
            data += " data-color=\"";
            appendEscaped(data, doc_.colors[format.color].name);
            data += "\"";
        }
        std::string lines;
        std::string lineStyle;
        if ((format.set & CharFormat::kUnderlining) && format.underlining) {
            lines += " underline";
            static const char* kUnderlineStyles[] = {"", "solid", "double", "dotted"};
            lineStyle = kUnderlineStyles[std::min<int>(format.underlining, 3)];
            data += " data-underline=\"" + std::to_string(format.underlining) + "\"";
        }
        if ((format.set & CharFormat::kOverline) && format.overline) {
            lines += " overline";
            data += " data-overline=\"1\"";
        }
        if ((format.set & CharFormat::kStrikethrough) && format.strikethrough) {
            lines += " line-through";
            data += " data-strikethrough=\"1\"";
        }
        if (!lines.empty()) {
            style += "text-decoration-line:" + lines.substr(1) + ";";
            if (!lineStyle.empty()) style += "text-decoration-style:" + lineStyle + ";";
        }
        if ((format.set & CharFormat::kChangeBar) && format.changeBar) {
            style += "border-left:3px solid #c00000;padding-left:2px;";
            data += " data-change-bar=\"1\"";
        }
        return "<span class=\"t\" style=\"" + style + "\"" + data + ">";
    }

    std::vector<BoxEnds> boxEnds_;  // by definition, the last for an element without one
    const Document& doc_;
    const std::unordered_map<std::uint32_t, std::string>& notes_;
    std::string& out_;
    const PageSink& sink_;
    const Flow* flow_ = nullptr;
    std::optional<RunCursor<CharFormat>> formats_;
    std::optional<RunCursor<std::uint32_t>> conditions_;
    std::unordered_map<CharFormat, std::string, FormatHash> openings_;  // a span's start tag by its format
    bool failed_ = false;
};

void legendCaption(std::string& out, const Rendering& rendering) {
    out += "<table class=\"legend\">\n<caption>";
    appendEscaped(out, rendering.legendCaption);
    out += ": ";
    appendEscaped(out, rendering.schemeName);
    out += "</caption>\n";
}

// An element is kept when, for every rule, its attribute holds one of the values listed.
void filterLegend(std::string& out, const Rendering& rendering) {
    legendCaption(out, rendering);
    out += "<tr><th>#</th><th>Attribute</th><th>Values kept</th></tr>\n";
    int position = 0;
    for (const FilterLegendRule& rule : rendering.filterLegend) {
        out += "<tr><td>" + std::to_string(++position) + "</td><td>";
        appendEscaped(out, rule.attribute);
        out += "</td><td>";
        appendEscaped(out, rule.values);
        out += "</td></tr>\n";
    }
    out += "</table>\n";
}

void legend(std::string& out, const Rendering& rendering) {
    if (rendering.legendCaption.empty()) return;
    if (!rendering.filterLegend.empty()) return filterLegend(out, rendering);
    legendCaption(out, rendering);
    out += "<tr><th>#</th><th>Colour</th><th>Style</th><th>Override</th><th>Match all</th>"
           "<th>Conditions</th></tr>\n";
    int position = 0;
    for (const LegendRule& rule : rendering.legend) {
        out += "<tr><td>" + std::to_string(++position) + "</td><td>";
        if (const std::string rgb = cssColor(rule.rgb); !rgb.empty())
            out += "<span class=\"swatch\" style=\"background:" + rgb + "\"></span> ";
        appendEscaped(out, rule.name);
        if (rule.rgb.empty() && rule.name != "<refresh EDD>" && rule.name != "<skip>")
            out += " <em>(not in the document)</em>";
        out += "</td><td>";
        out += styleLabel(rule.style);
        out += "</td><td>";
        out += rule.override ? "yes" : "";
        out += "</td><td>";
        out += rule.matchAll ? "yes" : "";
        out += "</td><td>";
        appendEscaped(out, rule.conditions);
        out += "</td></tr>\n";
    }
    out += "</table>\n";
}

}  // namespace

const char* styleLabel(int style) {
    static const char* kLabels[] = {"None", "Overline", "Strikethrough", "Underline", "Double UL",
                                    "Change Bar", "Numeric UL", "Num UL & Ch Bar"};
    return style >= 0 && style <= 7 ? kLabels[style] : kLabels[0];
}

bool renderHtml(const Document& doc, const Rendering& rendering, const PageSink& sink) {
    std::string out;
    out.reserve(2 << 20);
    appendPageHead(out, rendering.title);
    out += "<style>\n"
           "body{font-family:sans-serif;margin:2em;line-height:1.6}\n"
           ".el{margin-left:1.2em}\nspan.el{margin-left:0}\n"
           ".tag{font-size:70%;color:#888;margin-right:.4em;font-family:monospace}\n"
           ".legend{border-collapse:collapse;margin-bottom:2em}\n"
           ".legend td,.legend th{border:1px solid #ccc;padding:.2em .6em;text-align:left}\n"
           ".swatch{display:inline-block;width:1em;height:1em;border:1px solid #444;vertical-align:middle}\n"
           "[data-ws=pre]{white-space:pre-wrap;font-family:monospace}\n"
           ".finding .note{font-size:80%;color:#a00;margin-right:.4em}\n"
           ".finding:target{outline:3px solid #c00;background:#fff3f3}\n"
           "</style></head><body>\n<h1>";
    appendEscaped(out, rendering.title);
    out += "</h1>\n";
    legend(out, rendering);
    Renderer renderer(doc, rendering, out, sink);
    for (const Flow& flow : doc.flows) renderer.flow(flow);
    out += "</body></html>\n";
    return sink(out) && !renderer.failed();
}

bool renderHtml(const Document& doc, const Rendering& rendering, std::ostream& out) {
    return renderHtml(doc, rendering, [&](std::string_view piece) { return static_cast<bool>(out.write(piece.data(), static_cast<std::streamsize>(piece.size()))); }) &&
           static_cast<bool>(out.flush());
}

const char* const kGeneratorMark = "<meta name=\"generator\" content=\"voka\">";

void appendPageHead(std::string& out, std::string_view title) {
    // No script runs and nothing loads, whatever a document managed to put in the page.
    out += "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
           "img-src 'none'; form-action 'none'\">\n";
    out += kGeneratorMark;
    out += "\n<title>";
    appendEscaped(out, title);
    out += "</title>\n";
}

void appendHtmlEscaped(std::string& out, std::string_view text) { appendEscaped(out, text); }

std::string urlEncodedPath(std::string_view path) {
    static const char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : path) {
        const bool plain = std::isalnum(c) || c == '-' || c == '.' || c == '_' || c == '~' || c == '/';
        if (plain) {
            out += static_cast<char>(c);
            continue;
        }
        out += '%';
        out += kHex[c >> 4];
        out += kHex[c & 15];
    }
    return out;
}

}  // namespace voka::cli
