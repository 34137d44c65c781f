#include "cli/HtmlRendering.h"

#include "cli/PageStyles.h"

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

class Renderer {
public:
    Renderer(const Document& doc, const Rendering& rendering, const FormatClasses& formats, std::string& out,
             const PageSink& sink)
        : doc_(doc), rendering_(rendering), formats_(formats), out_(out), sink_(sink) {}
    bool failed() const { return failed_; }

    void flow(const Flow& flow) {
        flow_ = &flow;
        runs_.emplace(flow.formats);
        conditions_.emplace(flow.conditions);
        lastFormat_ = nullptr;
        out_ += "<section class=\"flow\" data-flow=\"";
        appendEscaped(out_, flow.name);
        out_ += "\">\n";
        if (flow.root != kNil) element(flow.root);
        out_ += "</section>\n";
    }

private:
    static constexpr std::size_t kNoRule = static_cast<std::size_t>(-1);

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

    bool blank(std::uint32_t from, std::uint32_t to) const {
        for (std::uint32_t i = from; i < to && i < flow_->text.size(); ++i)
            if (!isBlank(flow_->text[i])) return false;
        return true;
    }

    // Mixed content (text beside child elements) is laid out inline.
    bool hasOwnText(const Element& e) const {
        std::uint32_t at = e.begin;
        for (Index c = e.firstChild; c != kNil; c = doc_.elements[c].nextSibling) {
            if (!blank(at, doc_.elements[c].begin)) return true;
            at = doc_.elements[c].end;
        }
        return !blank(at, e.end);
    }

    // Nothing to show a colour on: no text at all, or a leaf of blanks.
    bool holdsNoText(const Element& e) const {
        return e.begin >= e.end || (e.firstChild == kNil && blank(e.begin, e.end));
    }

    static std::uint32_t textBytes(const Element& e) { return e.end > e.begin ? e.end - e.begin : 0; }

    // Depth-first with a stack of its own: a document may nest as deep as the
    // loader allows, far deeper than the call stack would take.
    void element(Index root) {
        struct Open {
            Index index;
            Index nextChild;
            std::uint32_t at;         // text before nextChild starts here
            bool inlineLayout;        // this element is laid out inline
            bool childrenInline;      // and so are its children
            bool chunked;             // its block children go into chunks
            std::uint32_t chunkFill;  // what the open chunk holds; 0 when none is open
        };
        std::vector<Open> open;
        auto enter = [&](Index index, bool inlineLayout) {
            const Element& e = doc_.elements[index];
            startBox(e, inlineLayout);
            const bool childrenInline = hasOwnText(e);
            open.push_back(Open{index, e.firstChild, e.begin, inlineLayout, childrenInline,
                                !childrenInline && textBytes(e) > kChunkBytes, 0});
        };
        enter(root, false);
        while (!open.empty()) {
            Open& top = open.back();
            if (top.nextChild != kNil) {
                const Index child = top.nextChild;
                const Element& c = doc_.elements[child];
                text(top.at, c.begin);
                top.at = c.end;
                top.nextChild = c.nextSibling;
                if (leftOut(child)) continue;
                if (top.chunked) chunk(top.chunkFill, child);
                enter(child, top.childrenInline);
                continue;
            }
            text(top.at, doc_.elements[top.index].end);
            if (top.chunkFill != 0) out_ += "</div>\n";
            endBox(top.inlineLayout);
            open.pop_back();
            if (out_.size() > kFlushAt) flush();
        }
    }

    // The small block children of a large element go into chunks of about
    // kChunkBytes each, which the browser lays out only when they come on
    // screen; a large child stands between chunks and is chunked inside.
    void chunk(std::uint32_t& fill, Index child) {
        const std::uint32_t bytes = textBytes(doc_.elements[child]);
        const bool small = bytes <= kChunkBytes;
        if (fill != 0 && (!small || fill >= kChunkBytes)) {
            out_ += "</div>\n";
            fill = 0;
        }
        if (!small) return;
        if (fill == 0) appendChunkStart(out_, chunkBytes(child));
        fill += bytes + kChunkElementBytes;
    }

    // What the chunk starting at `first` will hold, by the same measure: each
    // sibling is looked at twice at most.
    std::uint32_t chunkBytes(Index first) const {
        std::uint32_t fill = 0;
        for (Index i = first; i != kNil && fill < kChunkBytes; i = doc_.elements[i].nextSibling) {
            const std::uint32_t bytes = textBytes(doc_.elements[i]);
            if (bytes > kChunkBytes) break;
            fill += bytes + kChunkElementBytes;
        }
        return fill;
    }

    void startBox(const Element& e, bool inlineLayout) {
        out_ += inlineLayout ? "<span" : "<div";
        const std::string* note = nullptr;
        if (!rendering_.notes.empty()) {
            if (const auto found = rendering_.notes.find(e.unique); found != rendering_.notes.end()) note = &found->second;
        }
        const bool empty = holdsNoText(e);
        std::size_t rule = kNoRule;
        if (empty && !rendering_.tagRules.empty()) {
            const auto found = rendering_.tagRules.find(e.unique);
            if (found != rendering_.tagRules.end() && found->second < rendering_.legend.size()) rule = found->second;
        }
        if (note || empty) classes(note != nullptr, empty, rule);
        // Elements a report links to get the anchor "el-N".
        if (note) {
            out_ += " id=\"el-";
            appendNumber(e.unique);
            out_ += '"';
        }
        const BoxTag& tag = boxTag(e.definition);
        out_ += tag.attributes;
        if (e.attributesCount > 0) attributes(e, tag.keepsLineBreaks);
        out_ += '>';
        if (note) {
            out_ += "<span class=\"note\">";
            appendEscaped(out_, *note);
            out_ += "</span>";
        }
    }

    // "finding" for an element a report links to; "e" for one without text,
    // whose tag label then shows, and "rN" for the rule whose look it takes.
    void classes(bool finding, bool empty, std::size_t rule) {
        const bool several = (finding && empty) || rule != kNoRule;
        out_ += several ? " class=\"" : " class=";
        if (finding) out_ += empty ? "finding " : "finding";
        if (empty) out_ += 'e';
        if (rule != kNoRule) {
            out_ += " r";
            appendNumber(rule);
        }
        if (several) out_ += '"';
    }

    void appendNumber(std::uint64_t number) {
        char digits[24];
        const auto written = std::to_chars(digits, digits + sizeof digits, number);
        out_.append(digits, written.ptr);
    }

    // The element's attributes, one a line, as the title the pointer shows;
    // focusable, so that a click shows them in the side panel as well. And
    // xml:space="preserve" keeps its line breaks, as the vocabulary asks.
    void attributes(const Element& e, bool keepsLineBreaks) {
        if (e.definition >= doc_.definitions.size()) return;
        const headless::ElementDefinition& def = doc_.definitions[e.definition];
        const std::size_t mark = out_.size();
        out_ += " tabindex=0 title=\"";
        bool preserve = false, first = true;
        for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
            const headless::AttributeSlot& slot = doc_.attributeSlots[e.attributesBegin + i];
            if (slot.position >= def.attributes.size() || slot.values >= doc_.values.size()) continue;
            const auto& values = doc_.values.get(slot.values);
            if (values.empty()) continue;
            if (!first) out_ += '\n';
            first = false;
            appendEscaped(out_, def.attributes[slot.position].name);
            out_ += '=';
            for (std::size_t v = 0; v < values.size(); ++v) {
                if (v) out_ += ' ';
                appendEscaped(out_, values[v]);
            }
            preserve = preserve || (def.attributes[slot.position].name == "xml:space" && values.front() == "preserve");
        }
        if (first) {  // every value empty: nothing to show
            out_.resize(mark);
            return;
        }
        out_ += '"';
        if (preserve && !keepsLineBreaks) out_ += " data-ws=pre";
    }

    // Listings and verse of DITA, DocBook and HTML, whose line breaks are content.
    static bool keepsLineBreaks(std::string_view tag) {
        const std::size_t colon = tag.find(':');
        if (colon != std::string_view::npos) tag.remove_prefix(colon + 1);
        static constexpr std::string_view kTags[] = {"pre", "codeblock", "screen", "msgblock", "lines",
                                                     "programlisting", "literallayout", "synopsis", "address"};
        return std::find(std::begin(kTags), std::end(kTags), tag) != std::end(kTags);
    }

    // A DTD that declares xml:space with the default "preserve" (DITA's listings do) keeps the line breaks too.
    static bool preservedByDtd(const headless::ElementDefinition& definition) {
        for (const AttributeDefinition& attribute : definition.attributes)
            if (attribute.name == "xml:space")
                return !attribute.defaults.empty() && attribute.defaults.front() == "preserve";
        return false;
    }

    // The part of a box's start tag that is the same for every element of a
    // definition: ` data-t=TAG`, which the tag label and the panel show.
    struct BoxTag {
        std::string attributes;
        bool keepsLineBreaks = false;
    };
    const BoxTag& boxTag(Index definition) {
        const std::size_t slot = definition < doc_.definitions.size() ? definition : doc_.definitions.size();
        if (slot >= boxTags_.size()) boxTags_.resize(slot + 1);
        BoxTag& tag = boxTags_[slot];
        if (tag.attributes.empty()) {
            std::string name;
            if (slot < doc_.definitions.size()) appendEscaped(name, doc_.definitions[slot].tag);
            tag.keepsLineBreaks = keepsLineBreaks(name) || (slot < doc_.definitions.size() && preservedByDtd(doc_.definitions[slot]));
            // An XML name needs no quotes, a byte per element less each side.
            const bool plain = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
                return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || c == '.' || c == ':';
            });
            tag.attributes = plain ? " data-t=" + name : " data-t=\"" + name + "\"";
            if (tag.keepsLineBreaks) tag.attributes += " data-ws=pre";
        }
        return tag;
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
            runs_->seek(begin);
            conditions_->seek(begin);
            const std::uint32_t stop = std::min(runs_->boundary(end), conditions_->boundary(end));
            std::string_view piece(flow_->text.data() + begin, stop - begin);
            if (!hidden() && !piece.empty()) span(runs_->value(), piece);
            begin = stop;
        }
    }

    // A run in its format's class; blanks show no format, so they go plain.
    void span(const CharFormat* format, std::string_view piece) {
        const std::string* opening = format && format->set != 0 ? openingOf(format) : nullptr;
        if (!opening || opening->empty() || std::all_of(piece.begin(), piece.end(), isBlank)) {
            appendEscaped(out_, piece);
            return;
        }
        out_ += *opening;
        appendEscaped(out_, piece);
        out_ += "</span>";
    }

    // Pieces of one run follow each other (a child element splits them), so
    // the last run's opening is kept.
    const std::string* openingOf(const CharFormat* format) {
        if (format != lastFormat_) {
            lastFormat_ = format;
            const auto found = formats_.openings.find(*format);
            lastOpening_ = found == formats_.openings.end() ? nullptr : &found->second;
        }
        return lastOpening_;
    }

    std::vector<BoxTag> boxTags_;  // by definition, the last for an element without one
    const Document& doc_;
    const Rendering& rendering_;
    const FormatClasses& formats_;
    std::string& out_;
    const PageSink& sink_;
    const Flow* flow_ = nullptr;
    std::optional<RunCursor<CharFormat>> runs_;
    std::optional<RunCursor<std::uint32_t>> conditions_;
    const CharFormat* lastFormat_ = nullptr;
    const std::string* lastOpening_ = nullptr;
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

// Each rule's colour name is written in the rule's look, so the legend shows
// what the picture does; the tint switch sits at its foot.
void legend(std::string& out, const Rendering& rendering, bool colors) {
    if (colors) appendTintCheckbox(out);
    if (rendering.legendCaption.empty() || !rendering.filterLegend.empty()) {
        if (!rendering.legendCaption.empty()) filterLegend(out, rendering);
        if (colors) {
            out += "<p>";
            appendTintSwitch(out);
            out += "</p>\n";
        }
        return;
    }
    legendCaption(out, rendering);
    out += "<tr><th>#</th><th>Colour</th><th>Style</th><th>Override</th><th>Match all</th>"
           "<th>Conditions</th></tr>\n";
    for (std::size_t i = 0; i < rendering.legend.size(); ++i) {
        const LegendRule& rule = rendering.legend[i];
        out += "<tr><td>" + std::to_string(i + 1) + "</td><td>";
        if (const std::string rgb = cssColor(rule.rgb); !rgb.empty())
            out += "<span class=\"swatch\" style=\"background:" + rgb + "\"></span> ";
        out += "<span class=r" + std::to_string(i) + ">";
        appendEscaped(out, rule.name);
        out += "</span>";
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
    if (colors) {
        out += "<tr><td colspan=6>";
        appendTintSwitch(out);
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
    const FormatClasses formats = formatClasses(doc);
    appendPageHead(out, rendering.title);
    appendStyleSheet(out, doc, formats, rendering);
    out += "</head><body>\n<h1>";
    appendEscaped(out, rendering.title);
    out += "</h1>\n";
    legend(out, rendering, hasColors(doc, formats, rendering));
    Renderer renderer(doc, rendering, formats, out, sink);
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
