// A headless host with a scripted user and a plug-in state, for the scheme,
// colouring and active-scheme-dialog tests, with builders of the two kinds of
// document they need: a main settings document holding categories and
// colouring schemes, and content documents whose elements are found by "id".
#pragma once

#include "frame/PluginState.h"
#include "host/headless/HeadlessHost.h"
#include "host/headless/HostPaths.h"
#include "host/headless/ScriptedAgent.h"
#include "host/headless/TreeBuilder.h"
#include "schemes/ColoringSchemeReader.h"
#include "schemes/SchemeSchema.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace voka::testing {

inline constexpr const char* kPrefix = "-- VOKA plugin message --\n\n";

struct ConditionSpec {
    std::string name;
    std::vector<std::string> values;
};

struct RuleSpec {
    std::string color;  // without the position prefix
    int style = 0;
    int matchAll = 0;
    int override = 0;
    std::vector<ConditionSpec> conditions;
    // Stored as the rule's "Name" instead of the numbered colour; "" leaves the rule without one.
    std::optional<std::string> storedName;
};

struct SchemeSpec {
    std::string name;
    std::vector<RuleSpec> rules;
    std::vector<std::pair<std::string, std::string>> options;  // e.g. {"IgnoreCaseSensitivity", "True"}
};

struct CategorySpec {
    std::string name;
    std::vector<SchemeSpec> coloring;
    std::vector<std::string> validation;  // scheme names only
    bool hasColoringSchemes = true;
};

// Main settings documents are kept in the host's own form, as shipped, so
// that multi-valued "Values" survive a save and a reopen.
inline std::unique_ptr<headless::Document> mainSettingsDocument(const std::vector<CategorySpec>& categories) {
    using headless::AttrValue;
    headless::TreeBuilder b;
    auto strings = [](const char* name) { return AttributeDefinition{name, kAttrStrings, 0, {}, {}}; };
    auto string = [](const char* name) { return AttributeDefinition{name, kAttrString, 0, {}, {}}; };
    b.define(kTagSchemeCategory, kElementContainer, {string(kAttrName)});
    b.define(kTagScheme, kElementContainer,
             {string(kAttrName), string(kAttrIncludeEddDefaults), string(kAttrSpaceDelimited),
              string(kAttrIgnoreCase), string(kAttrProcessAllFlows), string(kAttrComment)});
    b.define(kTagRule, kElementContainer,
             {string(kAttrName), string(kAttrStyle), string(kAttrMatchAll), string(kAttrOverride)});
    b.define(kTagAttribute, kElementContainer, {string(kAttrName), strings(kAttrValues)});
    b.define(kTagColorList, kElementContainer, {strings(kAttrNames)});
    b.open(kTagMainSettings).open(kTagSchemeCategories);
    for (const CategorySpec& category : categories) {
        b.open(kTagSchemeCategory, {{kAttrName, category.name}});
        b.leaf("FilterSchemes");
        if (category.hasColoringSchemes) {
            b.open("ColoringSchemes");
            for (const SchemeSpec& scheme : category.coloring) {
                std::vector<AttrValue> attributes{{kAttrName, scheme.name}};
                for (const auto& [name, value] : scheme.options) attributes.emplace_back(name, value);
                b.open(kTagScheme, attributes);
                unsigned position = 0;
                for (const RuleSpec& rule : scheme.rules) {
                    std::vector<AttrValue> attributes{{kAttrStyle, std::to_string(rule.style)},
                                                      {kAttrMatchAll, std::to_string(rule.matchAll)},
                                                      {kAttrOverride, std::to_string(rule.override)}};
                    std::string name = rule.storedName.value_or(ruleNameWithPosition(++position, rule.color));
                    if (!name.empty()) attributes.emplace_back(kAttrName, name);
                    b.open(kTagRule, attributes);
                    for (const ConditionSpec& condition : rule.conditions) {
                        b.leaf(kTagAttribute, {{kAttrName, condition.name}, {kAttrValues, condition.values}});
                    }
                    b.close();
                }
                b.close();
            }
            b.close();
        }
        b.open("ValidationSchemes");
        for (const std::string& name : category.validation) b.leaf(kTagScheme, {{kAttrName, name}});
        b.close();
        b.close();
    }
    b.close();
    b.leaf(kTagColorList, {{kAttrNames, std::vector<std::string>{"Red", "Blue"}}});
    b.leaf(kTagAttributeList);
    auto doc = b.document();
    doc->contentForm = false;
    return doc;
}

// The first element in document order whose "id" is `id`, or 0.
inline Handle elementById(Host& host, Handle doc, const std::string& id) {
    Handle root = host.highestLevelElement(doc, host.mainFlow(doc));
    std::vector<Handle> pending{root};
    while (!pending.empty()) {
        Handle element = pending.back();
        pending.pop_back();
        if (element == kNoObject) continue;
        for (const Attribute& attribute : host.attributes(doc, element)) {
            if (attribute.name == "id" && !attribute.values.empty() && attribute.values.front() == id) return element;
        }
        std::vector<Handle> children;
        for (Handle c = host.firstChild(doc, element); c != kNoObject; c = host.nextSibling(doc, c)) children.push_back(c);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return kNoObject;
}

// The name of the colour shown at `offset` bytes into the element's text.
inline std::string colorAt(Host& host, Handle doc, Handle element, int offset = 0) {
    int color = host.textProperty(doc, TextLocation{element, offset}, TextProperty::Color);
    return host.objectName(doc, static_cast<Handle>(color));
}

class World {
public:
    World()
        : folder(makeFolder()),
          user([](const std::string& what) { ADD_FAILURE() << what; }),
          host(headless::HostConfig{folder.string(), VOKA_SOURCE_DIR "/resources/dialogs"}, user) {}
    ~World() {
        EXPECT_EQ(user.unusedAnswers(), 0u) << "answers or dialog scripts the plug-in never asked for";
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // Saves a main settings document with these categories as `name` and
    // holds it open invisibly, as a command would; the active document stays.
    Handle holdMainSettings(const std::vector<CategorySpec>& categories, const std::string& name = "main.fm") {
        if (state.mainSettingsDoc != kNoObject) host.close(state.mainSettingsDoc, kCloseModified);
        state.mainSettingsDoc = kNoObject;
        saveMainSettings(categories, name);
        state.mainSettingsDoc = host.open(hostPath(name), OpenParams{false, false});
        EXPECT_NE(state.mainSettingsDoc, kNoObject);
        return state.mainSettingsDoc;
    }

    void saveMainSettings(const std::vector<CategorySpec>& categories, const std::string& name) {
        // Whichever window was in front stays in front.
        Handle activeDoc = host.activeDocument();
        Handle activeBook = host.activeBook();
        const std::string path = hostPath(name);
        Handle built = host.adoptDocument(mainSettingsDocument(categories), path);
        EXPECT_NE(host.simpleSave(built, path, false), kNoObject);
        host.close(built, kCloseModified);
        if (activeDoc != kNoObject) host.setActiveDocument(activeDoc);
        if (activeBook != kNoObject) host.setActiveBook(activeBook);
    }

    // Makes the scheme active and loads it, as the active scheme dialog does.
    int activate(const std::string& category, const std::string& scheme) {
        state.active.category = category;
        state.active.coloringScheme = scheme;
        return ReadColoringScheme(host, state, category, scheme, 0);
    }

    std::string hostPath(const std::string& name) const { return headless::toHostPath((folder / name).string()); }

    // Alerts and questions, in the order shown.
    std::vector<std::string> shown() const {
        std::vector<std::string> out;
        for (const headless::TranscriptEntry& entry : user.transcript()) {
            if (entry.kind == headless::Said::Alert || entry.kind == headless::Said::Question) out.push_back(entry.text);
        }
        return out;
    }

    std::filesystem::path folder;
    headless::ScriptedAgent user;
    headless::HeadlessHost host;
    PluginState state;

private:
    static std::filesystem::path makeFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "voka-schemes-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
        return pattern;
    }
};

inline std::string prefixed(const std::string& text) { return kPrefix + text; }

}  // namespace voka::testing
