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

using ConditionSpec = std::pair<std::string, std::vector<std::string>>;  // attribute name, values

struct RuleSpec {
    std::string color{};  // without the position prefix
    std::vector<ConditionSpec> conditions{};
    int style = 0, matchAll = 0, override = 0;
    // Stored as the rule's "Name" instead of the numbered colour; "" leaves the rule without one.
    std::optional<std::string> storedName{};
};

using SchemeOptionValues = std::vector<std::pair<std::string, std::string>>;  // e.g. {"IgnoreCaseSensitivity", "True"}

struct SchemeSpec {
    std::string name{};
    std::vector<RuleSpec> rules{};
    SchemeOptionValues options{};
};

// A filter scheme: its conditions go directly under "Scheme".
struct FilterSchemeSpec {
    std::string name{};
    std::vector<ConditionSpec> conditions{};
    SchemeOptionValues options{};
};

// A validation scheme: one child of "Scheme" per attribute, with its valid values.
struct ValidationSchemeSpec {
    std::string name{};
    std::vector<ConditionSpec> attributes{};
    SchemeOptionValues options{};
};

struct CategorySpec {
    std::string name{};
    std::vector<SchemeSpec> coloring{};
    std::vector<std::string> validation{};  // scheme names only
    bool hasColoringSchemes = true, hasFilterSchemes = true;
    std::vector<FilterSchemeSpec> filter{};
    std::vector<ValidationSchemeSpec> validationSchemes{};  // after the names-only ones
};

// Main settings documents are kept in the host's own form, as shipped, so
// that multi-valued "Values" survive a save and a reopen.
inline std::unique_ptr<headless::Document> mainSettingsDocument(const std::vector<CategorySpec>& categories,
                                                                    bool colorList = true) {
    using headless::AttrValue;
    headless::TreeBuilder b;
    auto defs = [](std::vector<const char*> names, int kind = kAttrString) {
        AttributeDefinitions out;
        for (const char* name : names) out.push_back({name, kind, 0, {}, {}});
        return out;
    };
    b.define(kTagSchemeCategory, kElementContainer, defs({kAttrName}));
    b.define(kTagScheme, kElementContainer, defs({kAttrName, kAttrIncludeEddDefaults, kAttrSpaceDelimited, kAttrIgnoreCase,
                                                  kAttrProcessAllFlows, kAttrComment}));
    b.define(kTagRule, kElementContainer, defs({kAttrName, kAttrStyle, kAttrMatchAll, kAttrOverride}));
    b.define(kTagAttribute, kElementContainer, {defs({kAttrName})[0], defs({kAttrValues}, kAttrStrings)[0]});
    b.define(kTagColorList, kElementContainer, defs({kAttrNames}, kAttrStrings));
    // One "Attribute" child per condition, and a scheme left open with its options and conditions.
    auto conditions = [&](const std::vector<ConditionSpec>& list) {
        for (const auto& [name, values] : list) b.leaf(kTagAttribute, {{kAttrName, name}, {kAttrValues, values}});
    };
    auto openScheme = [&](const std::string& name, const SchemeOptionValues& options, const std::vector<ConditionSpec>& list) {
        std::vector<AttrValue> attributes{{kAttrName, name}};
        for (const auto& [option, value] : options) attributes.emplace_back(option, value);
        b.open(kTagScheme, attributes);
        conditions(list);
    };
    b.open(kTagMainSettings).open(kTagSchemeCategories);
    for (const CategorySpec& category : categories) {
        b.open(kTagSchemeCategory, {{kAttrName, category.name}});
        if (category.hasFilterSchemes) {
            b.open("FilterSchemes");
            for (const FilterSchemeSpec& scheme : category.filter) {
                openScheme(scheme.name, scheme.options, scheme.conditions);
                b.close();
            }
            b.close();
        }
        if (category.hasColoringSchemes) {
            b.open("ColoringSchemes");
            for (const SchemeSpec& scheme : category.coloring) {
                openScheme(scheme.name, scheme.options, {});
                unsigned position = 0;
                for (const RuleSpec& rule : scheme.rules) {
                    std::vector<AttrValue> attributes{{kAttrStyle, std::to_string(rule.style)}, {kAttrMatchAll,
                        std::to_string(rule.matchAll)}, {kAttrOverride, std::to_string(rule.override)}};
                    std::string name = rule.storedName.value_or(ruleNameWithPosition(++position, rule.color));
                    if (!name.empty()) attributes.emplace_back(kAttrName, name);
                    b.open(kTagRule, attributes);
                    conditions(rule.conditions);
                    b.close();
                }
                b.close();
            }
            b.close();
        }
        b.open("ValidationSchemes");
        for (const std::string& name : category.validation) b.leaf(kTagScheme, {{kAttrName, name}});
        for (const ValidationSchemeSpec& scheme : category.validationSchemes) {
            openScheme(scheme.name, scheme.options, scheme.attributes);
            b.close();
        }
        b.close().close();
    }
    b.close();
    if (colorList) b.leaf(kTagColorList, {{kAttrNames, std::vector<std::string>{"Red", "Blue"}}});
    b.leaf(kTagAttributeList);
    auto doc = b.document();
    doc->contentForm = false;
    return doc;
}

// The first element in document order whose "id" is `id`, or 0.
inline Handle elementById(Host& host, Handle doc, const std::string& id, Handle from = kNoObject) {
    if (from == kNoObject) from = host.highestLevelElement(doc, host.mainFlow(doc));
    if (from == kNoObject) return kNoObject;
    for (const Attribute& attribute : host.attributes(doc, from))
        if (attribute.name == "id" && attribute.values == std::vector<std::string>{id}) return from;
    for (Handle c = host.firstChild(doc, from); c != kNoObject; c = host.nextSibling(doc, c))
        if (Handle found = elementById(host, doc, id, c); found != kNoObject) return found;
    return kNoObject;
}

// The values of `attribute` of the elements under the main flow's top element, in document order.
inline std::vector<std::string> idsInOrder(Host& host, Handle doc, const std::string& attribute = "id") {
    std::vector<std::string> ids;
    std::vector<Handle> work{host.highestLevelElement(doc, host.mainFlow(doc))};
    while (!work.empty()) {
        const Handle e = work.back();
        work.pop_back();
        if (e == kNoObject) continue;
        for (const Attribute& a : host.attributes(doc, e))
            if (a.name == attribute && !a.values.empty()) ids.push_back(a.values.front());
        std::vector<Handle> children;
        for (Handle c = host.firstChild(doc, e); c != kNoObject; c = host.nextSibling(doc, c)) children.push_back(c);
        work.insert(work.end(), children.rbegin(), children.rend());
    }
    return ids;
}

class World {
public:
    World() : folder(makeFolder()), user([](const std::string& what) { ADD_FAILURE() << what; }),
              host(headless::HostConfig{folder.string(), VOKA_SOURCE_DIR "/resources/dialogs", {}}, user) {}
    ~World() {
        EXPECT_EQ(user.unusedAnswers(), 0u) << "answers or dialog scripts the plug-in never asked for";
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

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

    void saveMainSettings(const std::vector<CategorySpec>& categories, const std::string& name, bool colorList = true) {
        // Whichever window was in front stays in front.
        const Handle activeDoc = host.activeDocument(), activeBook = host.activeBook();
        Handle built = host.adoptDocument(mainSettingsDocument(categories, colorList), hostPath(name));
        EXPECT_NE(host.simpleSave(built, hostPath(name), false), kNoObject);
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

    // Holds a main settings document with this one scheme and makes it active.
    void useScheme(std::vector<RuleSpec> rules, const std::string& name = "Print", SchemeOptionValues options = {}) {
        holdMainSettings({{"Manuals", {{name, std::move(rules), std::move(options)}}}});
        ASSERT_EQ(activate("Manuals", name), 1);
    }

    // Chapter ch (novice) "intro " > Para p1 (expert) "expert text", Para p2 (empty) "plain text".
    Handle chapter(const std::string& name = "chapter.xml", bool withOrange = false) {
        headless::TreeBuilder b;
        if (withOrange) b.color("Orange", "#FFA500");
        b.define("Para", kElementContainer, {{"id", kAttrString, 0, {}, {}}, {"audience", kAttrString, 0, {}, {}}});
        b.open("Chapter", {{"id", "ch"}, {"audience", "novice"}}).text("intro ");
        b.leaf("Para", {{"id", "p1"}, {"audience", "expert"}}, "expert text").leaf("Para", {{"id", "p2"}}, "plain text");
        return b.build(host, hostPath(name));
    }

    Handle book(const std::vector<std::string>& chapters, const std::string& name = "manual.book") {
        auto made = std::make_unique<headless::Book>();
        for (const std::string& chapter : chapters) made->components.push_back({hostPath(chapter), {}, 0, true});
        return host.adoptBook(std::move(made), hostPath(name));
    }

    // The name of the colour shown at the start of the element's text.
    std::string colorOf(Handle doc, const char* id) {
        TextLocation at{elementById(host, doc, id), 0};
        return host.objectName(doc, static_cast<Handle>(host.textProperty(doc, at, TextProperty::Color)));
    }

    // Colours (and optionally strikes through) an element's text by hand.
    void paint(Handle doc, const char* id, const char* color, int strikethrough = 0) {
        TextRange range = host.elementTextRange(doc, elementById(host, doc, id));
        host.setTextProperty(doc, range, TextProperty::Color, static_cast<int>(host.namedObject(doc, kColorObject, color)));
        if (strikethrough) host.setTextProperty(doc, range, TextProperty::Strikethrough, 1);
    }

    std::string hostPath(const std::string& name) const { return headless::toHostPath((folder / name).string()); }

    // Alerts and questions, in the order shown.
    std::vector<std::string> shown() const {
        std::vector<std::string> out;
        for (const headless::TranscriptEntry& entry : user.transcript())
            if (entry.kind == headless::Said::Alert || entry.kind == headless::Said::Question) out.push_back(entry.text);
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

inline const RuleSpec kRedForExperts{"Red", {{"audience", {"expert"}}}};

}  // namespace voka::testing
