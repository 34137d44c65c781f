#include "schemes/SchemeSchema.h"

#include "frame/Alerts.h"
#include "schemes/NameLists.h"
#include "settings/SettingsDocument.h"

#include <array>
#include <cstdio>

namespace voka {

namespace {

struct StyleEntry {
    int number;
    const char* label;
};

// Numeric order; the pop-up order is kept apart below.
constexpr std::array<StyleEntry, 8> kStyles = {{
    {0, "None"},
    {1, "Overline"},
    {2, "Strikethrough"},
    {3, "Underline"},
    {4, "Double UL"},
    {5, "Change Bar"},
    {6, "Numeric UL"},
    {7, "Num UL & Ch Bar"},
}};

constexpr std::array<int, 8> kPopupOrder = {0, 3, 1, 2, 4, 5, 6, 7};

}  // namespace

std::string schemeContainerTag(SchemeKind kind) {
    static constexpr std::array<const char*, 3> kWords = {"Filter", "Coloring", "Validation"};
    return std::string(kWords[static_cast<int>(kind)]) + "Schemes";
}

Handle findCategory(Host& host, PluginState& state, Handle doc, const std::string& category) {
    return findElement(host, state, doc, kNoObject, kTagSchemeCategory, kAttrName, category, "");
}

Handle findSchemeContainer(Host& host, PluginState& state, Handle doc, Handle category, SchemeKind kind) {
    if (category == kNoObject) return kNoObject;
    return findElement(host, state, doc, category, schemeContainerTag(kind), kWildcard, kWildcard, "");
}

Handle findScheme(Host& host, PluginState& state, Handle doc, const std::string& category, SchemeKind kind,
                  const std::string& scheme) {
    Handle container = findSchemeContainer(host, state, doc, findCategory(host, state, doc, category), kind);
    if (container == kNoObject) return kNoObject;
    return findElement(host, state, doc, container, kTagScheme, kAttrName, scheme, "");
}

bool categoryNames(Host& host, PluginState& state, Handle doc, std::vector<std::string>& names) {
    names.clear();
    Handle categories = findElement(host, state, doc, kNoObject, kTagSchemeCategories, kWildcard, kWildcard, "");
    if (categories == kNoObject) {
        showMessage(host, "A critical error occurred while reading your main settings file. Please contact Brindel.");
        return false;
    }
    names = listChildValues(host, state, doc, categories, kAttrName);
    return true;
}

std::vector<std::string> schemeNames(Host& host, PluginState& state, Handle doc, const std::string& category,
                                     SchemeKind kind) {
    Handle container = findSchemeContainer(host, state, doc, findCategory(host, state, doc, category), kind);
    if (container == kNoObject) return {};
    return listChildValues(host, state, doc, container, kAttrName);
}

int styleNumberForLabel(std::string_view label) {
    for (const StyleEntry& entry : kStyles) {
        if (label == entry.label) return entry.number;
    }
    return 0;
}

const char* styleLabel(int style) {
    if (style < 0 || style >= static_cast<int>(kStyles.size())) return kStyles[0].label;
    return kStyles[static_cast<std::size_t>(style)].label;
}

std::vector<std::string> stylePopupLabels() {
    std::vector<std::string> labels;
    for (int number : kPopupOrder) labels.emplace_back(kStyles[static_cast<std::size_t>(number)].label);
    return labels;
}

std::string ruleNameWithPosition(unsigned position, const std::string& colorName) {
    // Two blanks keep the prefix three characters wide for rules 1 to 9.
    const char* pattern = position < 10 ? "%u  %s" : "%u %s";
    int length = std::snprintf(nullptr, 0, pattern, position, colorName.c_str());
    std::string name(static_cast<std::size_t>(length), '\0');
    std::snprintf(name.data(), name.size() + 1, pattern, position, colorName.c_str());
    return name;
}

int renumberRules(Host& host, PluginState& state, Handle doc, Handle scheme) {
    unsigned position = 0;
    for (Handle child = host.firstChild(doc, scheme); child != kNoObject; child = host.nextSibling(doc, child)) {
        if (elementTag(host, doc, child) != kTagRule) continue;
        ++position;
        std::string name;
        readString(host, state, doc, child, kAttrName, name);
        dropFirstCharacters(name, 3);
        writeString(host, state, doc, child, kAttrName, ruleNameWithPosition(position, name));
    }
    return static_cast<int>(position);
}

std::string elementTag(Host& host, Handle doc, Handle element) {
    Handle definition = host.elementDefinition(doc, element);
    if (definition == kNoObject) return {};
    return host.definitionTag(doc, definition);
}

SchemeOptions readSchemeOptions(Host& host, PluginState& state, Handle doc, Handle scheme) {
    auto option = [&](const char* name) {
        std::string word;
        readString(host, state, doc, scheme, name, word);
        return optionIsOn(word);
    };
    SchemeOptions options;
    options.includeEddDefaults = option(kAttrIncludeEddDefaults);
    options.spaceDelimited = option(kAttrSpaceDelimited);
    options.ignoreCase = option(kAttrIgnoreCase);
    options.processAllFlows = option(kAttrProcessAllFlows);
    return options;
}

bool namesNoScheme(const std::string& name) { return name.empty() || isNoneName(name) || name == kMissingValue; }

}  // namespace voka
