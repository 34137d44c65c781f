#include "cli/HtmlRendering.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace voka::cli {
namespace {

using headless::CharFormat;
using headless::Document;
using headless::Element;
using headless::Flow;
using headless::Index;
using headless::kNil;

void appendEscaped(std::string& out, std::string_view text) {
    for (char c : text) {
        switch (c) {
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '&': out += "&amp;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
}

template <class Value>
const Value* valueAt(const std::map<std::uint32_t, Value>& runs, std::uint32_t offset) {
    auto it = runs.upper_bound(offset);
    if (it == runs.begin()) return nullptr;
    return &std::prev(it)->second;
}

// The next offset after `offset` where a run of `runs` begins, or `limit`.
template <class Value>
std::uint32_t nextBoundary(const std::map<std::uint32_t, Value>& runs, std::uint32_t offset, std::uint32_t limit) {
    auto it = runs.upper_bound(offset);
    if (it == runs.end()) return limit;
    return std::min(it->first, limit);
}

class Renderer {
public:
    Renderer(const Document& doc, std::string& out, std::ostream& sink) : doc_(doc), out_(out), sink_(sink) {}

    void flow(const Flow& flow) {
        flow_ = &flow;
        out_ += "<section class=\"flow\" data-flow=\"";
        appendEscaped(out_, flow.name);
        out_ += "\">\n";
        if (flow.root != kNil) element(flow.root, false);
        out_ += "</section>\n";
    }

private:
    bool hidden(std::uint32_t offset) const {
        if (doc_.showAll) return false;
        const std::uint32_t* set = valueAt(flow_->conditions.runs(), offset);
        if (!set || *set == 0 || *set >= doc_.conditionSets.size()) return false;
        for (Index c : doc_.conditionSets[*set])
            if (c < doc_.conditions.size() && !doc_.conditions[c].shown) return true;
        return false;
    }

    // Mixed content (text beside child elements) is laid out inline.
    bool hasOwnText(const Element& e) const {
        std::uint32_t at = e.begin;
        auto scan = [&](std::uint32_t from, std::uint32_t to) {
            for (std::uint32_t i = from; i < to && i < flow_->text.size(); ++i)
                if (!std::isspace(static_cast<unsigned char>(flow_->text[i]))) return true;
            return false;
        };
        for (Index c = e.firstChild; c != kNil; c = doc_.elements[c].nextSibling) {
            if (scan(at, doc_.elements[c].begin)) return true;
            at = doc_.elements[c].end;
        }
        return scan(at, e.end);
    }

    void element(Index index, bool inlineLayout) {
        const Element& e = doc_.elements[index];
        const std::string& tag = e.definition < doc_.definitions.size() ? doc_.definitions[e.definition].tag : "";
        const char* box = inlineLayout ? "span" : "div";
        out_ += '<';
        out_ += box;
        out_ += " class=\"el\" data-el=\"";
        out_ += std::to_string(e.unique);
        out_ += "\" data-tag=\"";
        appendEscaped(out_, tag);
        out_ += "\">";
        if (!inlineLayout) {
            out_ += "<span class=\"tag\">";
            appendEscaped(out_, tag);
            out_ += "</span>";
        }
        bool childrenInline = hasOwnText(e);
        std::uint32_t at = e.begin;
        for (Index c = e.firstChild; c != kNil; c = doc_.elements[c].nextSibling) {
            text(at, doc_.elements[c].begin);
            element(c, childrenInline);
            at = doc_.elements[c].end;
        }
        text(at, e.end);
        out_ += "</";
        out_ += box;
        out_ += ">";
        if (!inlineLayout) out_ += '\n';
        if (out_.size() > kFlushAt) {
            sink_ << out_;
            out_.clear();
        }
    }

    static constexpr std::size_t kFlushAt = 1 << 20;

    void text(std::uint32_t begin, std::uint32_t end) {
        end = std::min<std::uint32_t>(end, static_cast<std::uint32_t>(flow_->text.size()));
        while (begin < end) {
            std::uint32_t stop = std::min(nextBoundary(flow_->formats.runs(), begin, end),
                                          nextBoundary(flow_->conditions.runs(), begin, end));
            std::string_view piece(flow_->text.data() + begin, stop - begin);
            if (!hidden(begin) && !piece.empty()) span(valueAt(flow_->formats.runs(), begin), piece);
            begin = stop;
        }
    }

    void span(const CharFormat* format, std::string_view piece) {
        bool allBlank = std::all_of(piece.begin(), piece.end(), [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
        if (!format || format->set == 0 || allBlank) {
            appendEscaped(out_, piece);
            return;
        }
        std::string style;
        std::string data;
        if ((format->set & CharFormat::kColor) && format->color < doc_.colors.size()) {
            style += "color:" + doc_.colors[format->color].rgb + ";";
            data += " data-color=\"" + doc_.colors[format->color].name + "\"";
        }
        std::string lines;
        std::string lineStyle;
        if ((format->set & CharFormat::kUnderlining) && format->underlining) {
            lines += " underline";
            static const char* kUnderlineStyles[] = {"", "solid", "double", "dotted"};
            lineStyle = kUnderlineStyles[std::min<int>(format->underlining, 3)];
            data += " data-underline=\"" + std::to_string(format->underlining) + "\"";
        }
        if ((format->set & CharFormat::kOverline) && format->overline) {
            lines += " overline";
            data += " data-overline=\"1\"";
        }
        if ((format->set & CharFormat::kStrikethrough) && format->strikethrough) {
            lines += " line-through";
            data += " data-strikethrough=\"1\"";
        }
        if (!lines.empty()) {
            style += "text-decoration-line:" + lines.substr(1) + ";";
            if (!lineStyle.empty()) style += "text-decoration-style:" + lineStyle + ";";
        }
        if ((format->set & CharFormat::kChangeBar) && format->changeBar) {
            style += "border-left:3px solid #c00000;padding-left:2px;";
            data += " data-change-bar=\"1\"";
        }
        out_ += "<span class=\"t\" style=\"" + style + "\"" + data + ">";
        appendEscaped(out_, piece);
        out_ += "</span>";
    }

    const Document& doc_;
    std::string& out_;
    std::ostream& sink_;
    const Flow* flow_ = nullptr;
};

void legend(std::string& out, const Rendering& rendering) {
    out += "<table class=\"legend\">\n<caption>Coloring scheme: ";
    appendEscaped(out, rendering.schemeName);
    out += "</caption>\n<tr><th>#</th><th>Colour</th><th>Style</th><th>Override</th><th>Match all</th>"
           "<th>Conditions</th></tr>\n";
    int position = 0;
    for (const LegendRule& rule : rendering.legend) {
        out += "<tr><td>" + std::to_string(++position) + "</td><td>";
        if (!rule.rgb.empty()) out += "<span class=\"swatch\" style=\"background:" + rule.rgb + "\"></span> ";
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

bool renderHtml(const Document& doc, const Rendering& rendering, std::ostream& sink) {
    std::string out;
    out.reserve(2 << 20);
    out += "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>";
    appendEscaped(out, rendering.title);
    out += "</title>\n<style>\n"
           "body{font-family:sans-serif;margin:2em;line-height:1.6}\n"
           ".el{margin-left:1.2em}\nspan.el{margin-left:0}\n"
           ".tag{font-size:70%;color:#888;margin-right:.4em;font-family:monospace}\n"
           ".legend{border-collapse:collapse;margin-bottom:2em}\n"
           ".legend td,.legend th{border:1px solid #ccc;padding:.2em .6em;text-align:left}\n"
           ".swatch{display:inline-block;width:1em;height:1em;border:1px solid #444;vertical-align:middle}\n"
           "</style></head><body>\n<h1>";
    appendEscaped(out, rendering.title);
    out += "</h1>\n";
    legend(out, rendering);
    Renderer renderer(doc, out, sink);
    for (const Flow& flow : doc.flows) renderer.flow(flow);
    out += "</body></html>\n";
    sink << out;
    sink.flush();
    return static_cast<bool>(sink);
}

}  // namespace voka::cli
