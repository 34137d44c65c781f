// Reading and writing one attribute of one element of a settings document,
// with the missing-value sentinel and the library's last-error code.
#include "settings/SettingsDocument.h"

#include "frame/Strings.h"

namespace voka {

namespace {

int lastIndexOf(const Attributes& attributes, const std::string& name) {
    for (int i = static_cast<int>(attributes.size()) - 1; i >= 0; --i) {
        if (attributes[i].name == name) return i;
    }
    return -1;
}

int firstIndexOf(const Attributes& attributes, const std::string& name) {
    for (int i = 0; i < static_cast<int>(attributes.size()); ++i) {
        if (attributes[i].name == name) return i;
    }
    return -1;
}

// The element's attributes, or an error code (200, 201, 213) when there are none to use.
int fetchAttributes(Host& host, Handle doc, Handle element, Attributes& attributes) {
    if (doc == kNoObject) return 200;
    if (element == kNoObject) return 201;
    attributes = host.attributes(doc, element);
    return attributes.empty() ? 213 : 0;
}

// Writes `values` into the attribute into the first or the last attribute of the name.
bool writeValues(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
                 const std::vector<std::string>& values, bool lastOfName) {
    Attributes attributes;
    if (int error = fetchAttributes(host, doc, element, attributes)) {
        state.settingsError = error;
        return false;
    }
    const int index = lastOfName ? lastIndexOf(attributes, name) : firstIndexOf(attributes, name);
    if (index < 0) {
        // A setting can only be written where the document declares it.
        state.settingsError = 212;
        return false;
    }
    attributes[index].values = values;
    return host.setAttributes(doc, element, attributes);
}

}  // namespace

int attributeIndex(Host& host, Handle doc, Handle element, const std::string& name) {
    if (doc == kNoObject || element == kNoObject) return -1;
    return lastIndexOf(host.attributes(doc, element), name);
}

int readString(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
               std::string& value) {
    value = kMissingValue;
    state.settingsError = 0;
    Attributes attributes;
    if (int error = fetchAttributes(host, doc, element, attributes)) {
        state.settingsError = error;
        return -1;
    }
    const int index = lastIndexOf(attributes, name);
    if (index < 0) {
        state.settingsError = 212;
        return -1;
    }
    const std::vector<std::string>& values = attributes[index].values;
    if (!values.empty() && !values.front().empty()) value = values.front();
    return index;
}

int readStringAt(Host& host, Handle doc, Handle element, int index, std::string& value) {
    value.clear();
    if (index < 0 || doc == kNoObject || element == kNoObject) return 0;
    const Attributes attributes = host.attributes(doc, element);
    if (index >= static_cast<int>(attributes.size())) return 0;
    if (!attributes[index].values.empty()) value = attributes[index].values.front();
    return 1;
}

int readNumber(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name) {
    state.settingsError = 0;
    Attributes attributes;
    const int index = fetchAttributes(host, doc, element, attributes) == 0 ? lastIndexOf(attributes, name) : -1;
    if (index < 0) {
        state.settingsError = 222;
        return 0;
    }
    const std::vector<std::string>& values = attributes[index].values;
    return values.empty() ? 0 : leadingInteger(values.front());
}

std::vector<std::string> readList(Host& host, Handle doc, Handle element, const std::string& name,
                                  bool useDefaults) {
    if (doc == kNoObject || element == kNoObject) return {};
    const Attributes attributes = host.attributes(doc, element);
    const int index = lastIndexOf(attributes, name);
    if (index < 0) return {};
    if (!attributes[index].values.empty() || !useDefaults) return attributes[index].values;
    for (const AttributeDefinition& definition :
         host.attributeDefinitions(doc, host.elementDefinition(doc, element))) {
        if (definition.name == name) return definition.defaults;
    }
    return {};
}

bool writeString(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
                 const std::string& value) {
    state.settingsError = 0;
    return writeValues(host, state, doc, element, name, {value}, false);
}

bool writeList(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
               const std::vector<std::string>& values) {
    state.settingsError = 0;
    return writeValues(host, state, doc, element, name, values, true);
}

int countChildren(Host& host, Handle doc, Handle element, const std::string& tag, bool countUntagged) {
    int count = 0;
    for (Handle child = host.firstChild(doc, element); child != kNoObject; child = host.nextSibling(doc, child)) {
        const std::string childTag = host.definitionTag(doc, host.elementDefinition(doc, child));
        if (!tag.empty()) {
            count += childTag == tag;
        } else {
            count += countUntagged || !childTag.empty();
        }
    }
    return count;
}

std::vector<std::string> listChildValues(Host& host, PluginState& state, Handle doc, Handle element,
                                         const std::string& name) {
    std::vector<std::string> values;
    for (Handle child = host.firstChild(doc, element); child != kNoObject; child = host.nextSibling(doc, child)) {
        if (host.definitionTag(doc, host.elementDefinition(doc, child)).empty()) continue;
        std::string value;
        readString(host, state, doc, child, name, value);
        values.push_back(value);
    }
    return values;
}

}  // namespace voka
