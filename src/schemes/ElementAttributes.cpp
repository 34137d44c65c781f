#include "schemes/ElementAttributes.h"

#include <algorithm>

namespace voka {

namespace {

bool needsSplit(const std::vector<std::string>& values) {
    return std::any_of(values.begin(), values.end(), [](const std::string& value) {
        return value.empty() || value.find(' ') != std::string::npos;
    });
}

void appendWords(const std::string& value, std::vector<std::string>& words) {
    std::size_t at = 0;
    while (at < value.size()) {
        std::size_t begin = value.find_first_not_of(' ', at);
        if (begin == std::string::npos) return;
        std::size_t end = value.find(' ', begin);
        if (end == std::string::npos) end = value.size();
        words.emplace_back(value, begin, end - begin);
        at = end;
    }
}

}  // namespace

void applyDefaultsByPosition(Attributes& attributes, const AttributeDefinitions& definitions) {
    std::size_t count = std::min(attributes.size(), definitions.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (attributes[i].values.empty() && !definitions[i].defaults.empty()) {
            attributes[i].values = definitions[i].defaults;
        }
    }
}

void splitValuesAtBlanks(Attributes& attributes) {
    for (Attribute& attribute : attributes) {
        // Most values are single words: leave those lists alone.
        if (!needsSplit(attribute.values)) continue;
        std::vector<std::string> words;
        for (const std::string& value : attribute.values) appendWords(value, words);
        attribute.values = std::move(words);
    }
}

Attributes GetElementAttributes(Host& host, PluginState& state, Handle doc, Handle element,
                                int includeEDDDefaults, int spaceDelimited) {
    Attributes attributes = host.attributes(doc, element);
    if (includeEDDDefaults) {
        applyDefaultsByPosition(attributes, host.attributeDefinitions(doc, host.elementDefinition(doc, element)));
    }
    if (spaceDelimited) splitValuesAtBlanks(attributes);
    return attributes;
}

}  // namespace voka
