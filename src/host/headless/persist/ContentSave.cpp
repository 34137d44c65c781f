#include "host/headless/persist/ContentSave.h"

#include "host/headless/persist/ContentExtras.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace voka::headless {

namespace {

using MarkupList = std::vector<const ContentMarkup*>;

// Where each kept comment or instruction goes back: at the start of its
// parent, after a given child, or (when that child is gone) at the end of
// its parent; those after the root element go last.
struct MarkupPlaces {
    std::unordered_map<Index, MarkupList> atStart;
    std::unordered_map<Index, MarkupList> afterChild;
    std::unordered_map<Index, MarkupList> atEnd;
    MarkupList afterRoot;
};

bool alive(const Document& doc, Index element) {
    return element < doc.elements.size() && doc.elements[element].alive;
}

MarkupPlaces placeMarkup(const Document& doc) {
    MarkupPlaces places;
    for (const ContentMarkup& m : doc.contentMarkup) {
        if (m.parent == kNil) {
            places.afterRoot.push_back(&m);
            continue;
        }
        if (!alive(doc, m.parent)) continue;
        if (m.after == kNil) places.atStart[m.parent].push_back(&m);
        else if (alive(doc, m.after) && doc.elements[m.after].parent == m.parent) places.afterChild[m.after].push_back(&m);
        else places.atEnd[m.parent].push_back(&m);
    }
    return places;
}

const MarkupList* find(const std::unordered_map<Index, MarkupList>& map, Index key) {
    auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

Index nextAlive(const Document& doc, Index element) {
    while (element != kNil && !alive(doc, element)) element = doc.elements[element].nextSibling;
    return element;
}

class ContentWriter {
public:
    ContentWriter(XmlOut& out, const Document& doc, const Flow& flow)
        : out_(out), doc_(doc), text_(flow.text), places_(placeMarkup(doc)) {}

    void writeTree(Index root) {
        openElement(root);
        while (!stack_.empty()) {
            Frame& frame = stack_.back();
            if (frame.child != kNil) {
                const Index child = frame.child;
                const Element& c = doc_.elements[child];
                frame.child = nextAlive(doc_, c.nextSibling);
                writeGap(frame, c.begin);
                frame.previous = child;
                openElement(child);
                continue;
            }
            const Index element = frame.element;
            const Element& e = doc_.elements[element];
            writeGap(frame, e.end);
            if (const MarkupList* orphans = find(places_.atEnd, element))
                for (const ContentMarkup* m : *orphans) out_.raw(m->markup);
            out_.raw("</");
            out_.raw(tagOf(e));
            out_.raw(">");
            const std::uint32_t end = std::max(frame.position, e.end);
            stack_.pop_back();
            if (!stack_.empty()) stack_.back().position = std::max(stack_.back().position, end);
        }
    }

    void writeEpilog() {
        for (const ContentMarkup* m : places_.afterRoot) {
            out_.raw("\n");
            out_.raw(m->markup);
        }
        out_.raw("\n");
    }

    const std::vector<NumberedElement>& numbered() const { return numbered_; }

private:
    struct Frame {
        Index element;
        Index child;     // the next child to write
        Index previous;  // the last child written, kNil before the first
        std::uint32_t position;  // text written up to here
    };

    std::string_view tagOf(const Element& e) const {
        return e.definition < doc_.definitions.size() ? std::string_view(doc_.definitions[e.definition].tag)
                                                      : std::string_view("element");
    }

    void writeText(std::uint32_t begin, std::uint32_t end) {
        end = std::min<std::uint32_t>(end, static_cast<std::uint32_t>(text_.size()));
        if (begin < end) out_.text(std::string_view(text_).substr(begin, end - begin));
    }

    // The text from the frame's position up to `end`, with the markup that
    // stood in that stretch at its offsets.
    void writeGap(Frame& frame, std::uint32_t end) {
        const std::uint32_t start = frame.position;
        end = std::max(start, end);
        const MarkupList* markup = frame.previous == kNil ? find(places_.atStart, frame.element)
                                                           : find(places_.afterChild, frame.previous);
        std::uint32_t position = start;
        if (markup) {
            for (const ContentMarkup* m : *markup) {
                const std::uint32_t at = std::clamp<std::uint64_t>(std::uint64_t(start) + m->offset, position, end);
                writeText(position, at);
                out_.raw(m->markup);
                position = at;
            }
        }
        writeText(position, end);
        frame.position = end;
    }

    void openElement(Index index) {
        const Element& e = doc_.elements[index];
        const std::uint32_t number = nextNumber_++;
        if (e.titlePosition != 0 || e.beginAdjust != 0 || doc_.rowConditions.count(index) != 0)
            numbered_.push_back(NumberedElement{number, index});
        out_.raw("<");
        out_.raw(tagOf(e));
        writeAttributes(e);
        const Index firstChild = nextAlive(doc_, e.firstChild);
        const bool empty = firstChild == kNil && e.begin >= e.end && !find(places_.atStart, index) &&
                           !find(places_.atEnd, index);
        if (empty) {
            out_.raw("/>");
            if (!stack_.empty()) stack_.back().position = std::max(stack_.back().position, e.end);
            return;
        }
        out_.raw(">");
        stack_.push_back(Frame{index, firstChild, kNil, e.begin});
    }

    // Only attributes with values are written; a value of several strings
    // is joined by single blanks, or by the vocabulary's own separator.
    void writeAttributes(const Element& e) {
        if (e.definition >= doc_.definitions.size()) return;
        const ElementDefinition& def = doc_.definitions[e.definition];
        for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
            const AttributeSlot& slot = doc_.attributeSlots[e.attributesBegin + i];
            if (slot.position >= def.attributes.size() || slot.values >= doc_.values.size()) continue;
            const auto& values = doc_.values.get(slot.values);
            if (values.empty()) continue;
            const std::string& name = def.attributes[slot.position].name;
            char separator = ' ';
            if (!doc_.valueSeparators.empty())
                if (const auto found = doc_.valueSeparators.find(name); found != doc_.valueSeparators.end())
                    separator = found->second != '\0' ? found->second : ' ';
            joined_.clear();
            for (std::size_t v = 0; v < values.size(); ++v) {
                if (v) joined_ += separator;
                joined_ += values[v];
            }
            out_.attribute(name, std::string_view(joined_));
        }
    }

    XmlOut& out_;
    const Document& doc_;
    const std::string& text_;
    MarkupPlaces places_;
    std::vector<Frame> stack_;
    std::vector<NumberedElement> numbered_;
    std::uint32_t nextNumber_ = 0;
    std::string joined_;
};

}  // namespace

bool writeContentForm(XmlOut& out, const Document& doc, std::string& problem) {
    const Index flowIndex = mainFlowOf(doc);
    if (flowIndex == kNil || !alive(doc, doc.flows[flowIndex].root)) {
        problem = "the document has no root element";
        return false;
    }
    const Flow& flow = doc.flows[flowIndex];
    out.raw(doc.contentProlog.empty() ? std::string_view("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n")
                                      : std::string_view(doc.contentProlog));
    ContentWriter writer(out, doc, flow);
    writer.writeTree(flow.root);
    writer.writeEpilog();
    writeContentExtras(out, doc, writer.numbered());
    return true;
}

}  // namespace voka::headless
