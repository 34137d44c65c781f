// The element search of settings documents: a pre-order walk from a root,
// bounded by the root's next sibling (or its parent), without recursion.
#include "settings/SettingsDocument.h"

#include "frame/Strings.h"

namespace voka {

namespace {

Handle rootElement(Host& host, Handle doc, const std::string& rootName) {
    if (rootName.empty() || equalsIgnoreCase(rootName, "Main")) {
        return host.highestLevelElement(doc, host.mainFlow(doc));
    }
    for (Handle flow = host.firstFlow(doc); flow != kNoObject; flow = host.nextFlow(doc, flow)) {
        if (host.flowName(doc, flow) == rootName) return host.highestLevelElement(doc, flow);
    }
    return kNoObject;
}

bool matches(Host& host, Handle doc, Handle element, const std::string& tag, const std::string& attribute,
             const std::string& value) {
    const bool anyTag = tag == kWildcard;
    const bool anyAttribute = attribute == kWildcard;
    if (!anyTag && host.definitionTag(doc, host.elementDefinition(doc, element)) != tag) return false;
    if (anyAttribute) return true;
    const Attributes attributes = host.attributes(doc, element);
    for (auto it = attributes.rbegin(); it != attributes.rend(); ++it) {
        if (it->name != attribute) continue;
        if (value == kWildcard) return true;
        const std::string first = it->values.empty() ? std::string() : it->values.front();
        return first == value;
    }
    return false;
}

}  // namespace

Handle findElement(Host& host, PluginState& state, Handle doc, Handle start, const std::string& tag,
                   const std::string& attribute, const std::string& value, const std::string& rootName) {
    if (doc == kNoObject) {
        state.settingsError = 200;
        return kNoObject;
    }
    const Handle root = start != kNoObject ? start : rootElement(host, doc, rootName);
    if (root == kNoObject) return kNoObject;
    Handle boundary = host.nextSibling(doc, root);
    if (boundary == kNoObject) boundary = host.parent(doc, root);

    Handle current = root;
    WalkDirection last = WalkDirection::Down;
    // Leaving the root sideways or upwards reaches the boundary, or nothing.
    while (current != kNoObject && current != boundary) {
        if (matches(host, doc, current, tag, attribute, value)) return current;
        Handle next = last != WalkDirection::Up ? host.firstChild(doc, current) : kNoObject;
        if (next != kNoObject) {
            last = WalkDirection::Down;
        } else if ((next = host.nextSibling(doc, current)) != kNoObject) {
            last = WalkDirection::Across;
        } else {
            next = host.parent(doc, current);
            last = WalkDirection::Up;
        }
        current = next;
    }
    return kNoObject;
}

}  // namespace voka
