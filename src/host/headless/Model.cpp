#include "host/headless/Model.h"

#include <algorithm>

namespace voka::headless {

ValueLists::ValueLists() {
    lists_.emplace_back();
    visible_.push_back(0);
}

std::uint32_t ValueLists::add(std::vector<std::string> values) {
    const auto id = static_cast<std::uint32_t>(lists_.size());
    const bool hasEmpty = std::find(values.begin(), values.end(), std::string()) != values.end();
    lists_.push_back(std::move(values));
    visible_.push_back(id);
    if (hasEmpty) {
        std::vector<std::string> shown = lists_.back();
        std::erase(shown, std::string());
        visible_[id] = intern(shown);
    }
    return id;
}

std::uint32_t ValueLists::intern(const std::vector<std::string>& values) {
    if (values.empty()) return 0;
    if (values.size() == 1) return internSingle(values.front());
    auto found = byList_.find(values);
    if (found != byList_.end()) return found->second;
    const std::uint32_t id = add(values);
    byList_.emplace(values, id);
    return id;
}

std::uint32_t ValueLists::internSingle(std::string_view value) {
    auto found = bySingle_.find(value);
    if (found != bySingle_.end()) return found->second;
    std::string key(value);
    const std::uint32_t id = add({key});
    bySingle_.emplace(std::move(key), id);
    return id;
}

const std::vector<StandardColor>& standardColors() {
    static const std::vector<StandardColor> colors = {
        {"Black", "#000000"}, {"White", "#FFFFFF"}, {"Red", "#FF0000"},     {"Green", "#00FF00"},
        {"Blue", "#0000FF"},  {"Cyan", "#00FFFF"},  {"Magenta", "#FF00FF"}, {"Yellow", "#FFFF00"},
    };
    return colors;
}

Index Document::definitionFor(const std::string& tag, int type) {
    auto found = definitionByTag.find(tag);
    if (found != definitionByTag.end()) return found->second;
    const auto index = static_cast<Index>(definitions.size());
    ElementDefinition definition;
    definition.tag = tag;
    definition.type = type;
    definitions.push_back(std::move(definition));
    definitionByTag.emplace(tag, index);
    return index;
}

std::uint32_t Document::attributePosition(Index definition, const std::string& name) {
    ElementDefinition& def = definitions[definition];
    auto found = def.attributeIndex.find(name);
    if (found != def.attributeIndex.end()) return found->second;
    const auto position = static_cast<std::uint32_t>(def.attributes.size());
    AttributeDefinition attribute;
    attribute.name = name;
    def.attributes.push_back(std::move(attribute));
    def.attributeIndex.emplace(name, position);
    return position;
}

Index Document::appendElement(Index definition, Index parent, std::uint16_t flow) {
    const auto index = static_cast<Index>(elements.size());
    Element element;
    element.definition = definition;
    element.parent = parent;
    element.flow = flow;
    element.handleId = index + 1;
    element.unique = index + 1;
    if (parent != kNil) {
        Element& p = elements[parent];
        element.previousSibling = p.lastChild;
        element.begin = element.end = p.end;
    }
    elements.push_back(element);
    if (parent != kNil) {
        Element& p = elements[parent];
        if (p.lastChild != kNil) elements[p.lastChild].nextSibling = index;
        else p.firstChild = index;
        p.lastChild = index;
    } else if (flow < flows.size() && flows[flow].root == kNil) {
        flows[flow].root = index;
    }
    return index;
}

void Document::setAttributeValues(Index element, std::uint32_t position, std::uint32_t values) {
    Element& e = elements[element];
    const std::uint32_t begin = e.attributesBegin;
    const std::uint32_t end = begin + e.attributesCount;
    for (std::uint32_t i = begin; i < end; ++i) {
        if (attributeSlots[i].position != position) continue;
        if (values != 0) {
            attributeSlots[i].values = values;
            return;
        }
        // Unset: close the gap inside the element's own block.
        std::copy(attributeSlots.begin() + i + 1, attributeSlots.begin() + end, attributeSlots.begin() + i);
        --e.attributesCount;
        return;
    }
    if (values == 0) return;
    if (end != attributeSlots.size() || e.attributesCount == 0) {
        // Move the block to the end, where it can grow.
        const auto moved = static_cast<std::uint32_t>(attributeSlots.size());
        for (std::uint32_t i = begin; i < end; ++i) attributeSlots.push_back(attributeSlots[i]);
        e.attributesBegin = moved;
    }
    attributeSlots.push_back(AttributeSlot{position, values});
    ++e.attributesCount;
}

std::uint32_t Document::attributeValues(Index element, std::uint32_t position) const {
    const Element& e = elements[element];
    for (std::uint32_t i = 0; i < e.attributesCount; ++i) {
        const AttributeSlot& slot = attributeSlots[e.attributesBegin + i];
        if (slot.position == position) return slot.values;
    }
    return 0;
}

std::uint32_t Document::internConditionSet(const ConditionSet& set) {
    if (conditionSets.empty()) conditionSets.emplace_back();
    if (set.empty()) return 0;
    ConditionSet sorted = set;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    if (conditionSetIndex.size() + 1 != conditionSets.size()) {
        conditionSetIndex.clear();
        for (std::uint32_t i = 1; i < conditionSets.size(); ++i) conditionSetIndex.emplace(conditionSets[i], i);
    }
    auto found = conditionSetIndex.find(sorted);
    if (found != conditionSetIndex.end()) return found->second;
    const auto id = static_cast<std::uint32_t>(conditionSets.size());
    conditionSets.push_back(sorted);
    conditionSetIndex.emplace(std::move(sorted), id);
    return id;
}

namespace {

template <class Items, class Name>
Index findByName(const Items& items, std::string_view name, Name nameOf) {
    for (std::size_t i = 0; i < items.size(); ++i)
        if (nameOf(items[i]) == name) return static_cast<Index>(i);
    return kNil;
}

}  // namespace

// The catalogues below hold a handful of entries each; a scan is the index.
Index Document::colorByName(std::string_view name) const {
    return findByName(colors, name, [](const Color& c) -> const std::string& { return c.name; });
}

Index Document::conditionByName(std::string_view name) const {
    return findByName(conditions, name, [](const ConditionFormat& c) -> const std::string& { return c.name; });
}

Index Document::markerTypeByName(std::string_view name) const {
    return findByName(markerTypes, name, [](const std::string& t) -> const std::string& { return t; });
}

void Document::ensureStandardCatalogue() {
    for (const StandardColor& color : standardColors())
        if (colorByName(color.name) == kNil) colors.push_back(Color{color.name, color.rgb});
    if (markerTypeByName("Hypertext") == kNil) markerTypes.push_back("Hypertext");
    if (conditionSets.empty()) conditionSets.emplace_back();
}

namespace {

bool markerBefore(const Marker& a, const Marker& b) {
    return a.flow != b.flow ? a.flow < b.flow : a.offset < b.offset;
}

}  // namespace

void Document::addMarker(Marker marker) {
    if (!markers.empty() && markerBefore(marker, markers.back())) markersInOrder = false;
    markers.push_back(std::move(marker));
}

void Document::rebuildIndexes() {
    markersInOrder = std::is_sorted(markers.begin(), markers.end(), markerBefore);
    definitionByTag.clear();
    for (std::size_t i = 0; i < definitions.size(); ++i) {
        ElementDefinition& def = definitions[i];
        definitionByTag.emplace(def.tag, static_cast<Index>(i));
        def.attributeIndex.clear();
        for (std::size_t a = 0; a < def.attributes.size(); ++a)
            def.attributeIndex.emplace(def.attributes[a].name, static_cast<std::uint32_t>(a));
    }
    if (conditionSets.empty()) conditionSets.emplace_back();
    conditionSetIndex.clear();
    for (std::uint32_t i = 1; i < conditionSets.size(); ++i) conditionSetIndex.emplace(conditionSets[i], i);
}

bool Document::hasPendingCuts() const {
    for (const Flow& flow : flows)
        if (!flow.pendingCuts.empty()) return true;
    return false;
}

namespace {

// Maps offsets of a flow's text before its pending cuts to offsets after
// them. Cuts are merged and sorted; an offset inside a cut lands where the
// cut was.
class CutMap {
public:
    explicit CutMap(std::vector<std::pair<std::uint32_t, std::uint32_t>> cuts) {
        std::sort(cuts.begin(), cuts.end());
        for (const auto& cut : cuts) {
            if (cut.first >= cut.second) continue;
            if (!cuts_.empty() && cut.first <= cuts_.back().second) {
                cuts_.back().second = std::max(cuts_.back().second, cut.second);
                continue;
            }
            cuts_.push_back(cut);
        }
        removedBefore_.reserve(cuts_.size() + 1);
        std::uint32_t total = 0;
        removedBefore_.push_back(0);
        for (const auto& cut : cuts_) {
            total += cut.second - cut.first;
            removedBefore_.push_back(total);
        }
    }

    std::uint32_t operator()(std::uint32_t offset) const {
        // The last cut that begins before the offset.
        auto it = std::lower_bound(cuts_.begin(), cuts_.end(), offset,
                                   [](const auto& cut, std::uint32_t value) { return cut.first < value; });
        if (it == cuts_.begin()) return offset;
        const std::size_t i = static_cast<std::size_t>(it - cuts_.begin()) - 1;
        if (offset < cuts_[i].second) return cuts_[i].first - removedBefore_[i];
        return offset - removedBefore_[i + 1];
    }

    bool removes(std::uint32_t offset) const {
        auto it = std::upper_bound(cuts_.begin(), cuts_.end(), offset,
                                   [](std::uint32_t value, const auto& cut) { return value < cut.first; });
        if (it == cuts_.begin()) return false;
        return offset < std::prev(it)->second;
    }

    const std::vector<std::pair<std::uint32_t, std::uint32_t>>& cuts() const { return cuts_; }

private:
    std::vector<std::pair<std::uint32_t, std::uint32_t>> cuts_;
    std::vector<std::uint32_t> removedBefore_;
};

}  // namespace

void Document::applyCuts() {
    for (std::size_t f = 0; f < flows.size(); ++f) {
        Flow& flow = flows[f];
        if (flow.pendingCuts.empty()) continue;
        const CutMap map(std::move(flow.pendingCuts));
        flow.pendingCuts.clear();

        std::string kept;
        kept.reserve(flow.text.size());
        std::uint32_t at = 0;
        for (const auto& cut : map.cuts()) {
            kept.append(flow.text, at, cut.first - at);
            at = cut.second;
        }
        kept.append(flow.text, std::min<std::size_t>(at, flow.text.size()));
        flow.text = std::move(kept);

        for (Element& e : elements) {
            if (!e.alive || e.flow != f) continue;
            e.begin = map(e.begin);
            e.end = map(e.end);
        }
        flow.formats.remapKeys(map);
        flow.conditions.remapKeys(map);
        for (Marker& marker : markers) {
            if (!marker.alive || marker.flow != f) continue;
            if (map.removes(marker.offset)) marker.alive = false;
            else marker.offset = map(marker.offset);
        }
        for (XRef& xref : xrefs) {
            if (!xref.alive || xref.flow != f) continue;
            if (map.removes(xref.offset)) xref.alive = false;
            else xref.offset = map(xref.offset);
        }
    }
}

}  // namespace voka::headless
