#include "migration/SiblingMigration.h"

#include "frame/Alerts.h"
#include "schemes/SchemeSchema.h"
#include "settings/MainSettings.h"
#include "settings/SettingsDocument.h"

#include <algorithm>
#include <cctype>

namespace voka {

namespace {

constexpr const char* kSiblingName = "Quorvane";
constexpr const char* kMigratedComment = "Scheme migrated from Quorvane.";
// Rule names carry their position in their first three characters; the renumbering that follows writes it.
constexpr const char* kPositionPlaceholder = "Hi!";

constexpr const char* kAskToStart =
    "This function is designed to migrate scheme and attribute settings from a Quorvane(TM) master settings file "
    "into an VOKA main settings file. For this function to work properly, you must currently have a Quorvane "
    "master settings file open and active, and a valid VOKA main settings file specified in your preferences.\n\n"
    "The schemes migrated from the Quorvane settings will be placed in a \"Quorvane\" category in the VOKA main "
    "settings file specified in your preferences. You will be able to see it afterwards when you open the scheme "
    "editor.\n\nThis is generally a one-time task. Are you sure you want to continue?";
constexpr const char* kAskForAttributes =
    "While migrating data, would you like to include the master attribute list from Quorvane? If the list "
    "contains attributes that currently appear in your VOKA attribute library, any new values will be appended to "
    "the values you already have.";
constexpr const char* kLastChanceWithAttributes =
    "You have chosen to migrate schemes and the master attributes. This is your last chance to back out. Are you "
    "sure you want to continue?";
constexpr const char* kLastChanceWithoutAttributes =
    "You have chosen to migrate schemes, but not the master attributes. This is your last chance to back out. Are "
    "you sure you want to continue?";
constexpr const char* kNoActiveDocument =
    "You must have valid Quorvane master settings document open and in front before running this command. There "
    "is currently no document active.\n\n Please open a valid file and try again.";
constexpr const char* kNotSiblingSettings =
    "The active document does not appear to be a Quorvane master settings document. Please open a valid file and "
    "try again.";
constexpr const char* kNoMainSettings =
    "VOKA was unable to open a valid main settings file. Check the file specification in your preferences.\n\n"
    "This process will abort.";
constexpr const char* kBrokenMainSettings =
    "Something appears to be wrong with the VOKA main settings file specified in your preferences. It may be "
    "corrupt. Please check the file specification and contact Brindel for assistance.\n\nThis process will abort.";

bool equalsIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

std::string text(Host& host, PluginState& state, Handle doc, Handle element, const char* name) {
    std::string value;
    if (readString(host, state, doc, element, name, value) < 0) return "";
    return value;
}

// A new element of `tag` as the last child of `parent`, with its attributes; 0 when it cannot be made.
Handle appendElement(Host& host, Handle doc, Handle parent, const char* tag, const Attributes& attributes) {
    const Handle definition = host.namedObject(doc, kElementDefinitionObject, tag);
    if (definition == kNoObject) return kNoObject;
    const Handle element = host.newElement(doc, definition, ElementLocation{parent, kNoObject, 0});
    if (element == kNoObject) return kNoObject;
    host.setAttributes(doc, element, attributes);
    return element;
}

// Each attribute entry of a source scheme or rule, as an `Attribute` of the target element, in source order.
void copyAttributeEntries(Host& host, PluginState& state, Handle source, Handle from, Handle target, Handle to) {
    for (Handle entry = host.firstChild(source, from); entry != kNoObject; entry = host.nextSibling(source, entry)) {
        appendElement(host, target, to, kTagAttribute,
                      {{kAttrName, {text(host, state, source, entry, "AttributeName")}},
                       {kAttrValues, readList(host, source, entry, "AttributeValues", false)}});
    }
}

std::string ruleName(const std::string& color) {
    return kPositionPlaceholder + (equalsIgnoringCase(color, "--Uncolor--") ? std::string(kRefreshEddName) : color);
}

// One kind of scheme: the container under the new category, then each scheme of the source's container in order.
unsigned copySchemes(Host& host, PluginState& state, Handle source, Handle target, Handle category, SchemeKind kind) {
    const Handle container = appendElement(host, target, category, schemeContainerTag(kind).c_str(), {});
    if (container == kNoObject) return 0;
    const char* sourceContainer = kind == SchemeKind::Filter     ? "FilterSchemes"
                                  : kind == SchemeKind::Coloring ? "ColorizerSchemes"
                                                                 : "ValidationSchemes";
    const char* sourceTag = kind == SchemeKind::Filter     ? "FilterScheme"
                            : kind == SchemeKind::Coloring ? "ColorizerScheme"
                                                           : "ValidationScheme";
    const Handle from = findElement(host, state, source, kNoObject, sourceContainer, kWildcard, kWildcard, "");
    unsigned count = 0;
    for (Handle scheme = from == kNoObject ? kNoObject : host.firstChild(source, from); scheme != kNoObject;
         scheme = host.nextSibling(source, scheme)) {
        if (elementTag(host, source, scheme) != sourceTag) continue;
        ++count;
        const Handle made = appendElement(host, target, container, kTagScheme,
                                          {{kAttrName, {text(host, state, source, scheme, "SchemeName")}},
                                           {kAttrIncludeEddDefaults, {"False"}},
                                           {kAttrSpaceDelimited, {"False"}},
                                           {kAttrIgnoreCase, {"False"}},
                                           {kAttrProcessAllFlows, {"False"}},
                                           {kAttrComment, {kMigratedComment}}});
        if (made == kNoObject) continue;
        if (kind != SchemeKind::Coloring) {
            copyAttributeEntries(host, state, source, scheme, target, made);
            continue;
        }
        for (Handle rule = host.firstChild(source, scheme); rule != kNoObject; rule = host.nextSibling(source, rule)) {
            const Handle madeRule =
                appendElement(host, target, made, kTagRule,
                              {{kAttrName, {ruleName(text(host, state, source, rule, "RuleColor"))}},
                               {kAttrStyle, {text(host, state, source, rule, "RuleStyle")}},
                               {kAttrMatchAll, {text(host, state, source, rule, "MatchAll")}},
                               {kAttrOverride, {text(host, state, source, rule, "IsOverride")}}});
            if (madeRule != kNoObject) copyAttributeEntries(host, state, source, rule, target, madeRule);
        }
        renumberRules(host, state, target, made);
    }
    return count;
}

// Merges the master attribute list into the attribute library: new values
// are appended to an attribute the library has, a new attribute is added whole.
unsigned mergeMasterAttributes(Host& host, PluginState& state, Handle source, Handle target) {
    const Handle master = findElement(host, state, source, kNoObject, "MasterAttributeList", kWildcard, kWildcard, "");
    const Handle library = findElement(host, state, target, kNoObject, kTagAttributeList, kWildcard, kWildcard, "");
    if (master == kNoObject || library == kNoObject) return 0;
    unsigned count = 0;
    for (Handle entry = host.firstChild(source, master); entry != kNoObject; entry = host.nextSibling(source, entry)) {
        ++count;
        const std::string name = text(host, state, source, entry, "Name");
        const std::vector<std::string> values = readList(host, source, entry, "ValidValues", false);
        Handle known = kNoObject;
        for (Handle a = host.firstChild(target, library); a != kNoObject && known == kNoObject; a = host.nextSibling(target, a))
            if (text(host, state, target, a, kAttrName) == name) known = a;
        if (known == kNoObject) {
            appendElement(host, target, library, kTagAttribute, {{kAttrName, {name}}, {kAttrValues, values}});
            continue;
        }
        std::vector<std::string> merged = readList(host, target, known, kAttrValues, false);
        for (const std::string& value : values)
            if (std::find(merged.begin(), merged.end(), value) == merged.end()) merged.push_back(value);
        writeList(host, state, target, known, kAttrValues, merged);
    }
    return count;
}

// "Quorvane", or "Quorvane2", "Quorvane3" ... when the name is taken.
std::string newCategoryName(Host& host, PluginState& state, Handle target) {
    std::vector<std::string> taken;
    categoryNames(host, state, target, taken);
    std::string name = kSiblingName;
    for (unsigned n = 2; std::find(taken.begin(), taken.end(), name) != taken.end(); ++n)
        name = kSiblingName + std::to_string(n);
    return name;
}

}  // namespace

int MigrateSiblingSettings(Host& host, PluginState& state, MigrationCounts& counts) {
    counts = MigrationCounts{};
    if (!askQuestion(host, kAskToStart)) return 0;
    const bool withAttributes = askQuestion(host, kAskForAttributes);
    if (!askQuestion(host, withAttributes ? kLastChanceWithAttributes : kLastChanceWithoutAttributes)) return 0;

    const Handle source = host.activeDocument();
    if (source == kNoObject) {
        showMessage(host, kNoActiveDocument);
        return 0;
    }
    if (findElement(host, state, source, kNoObject, "MasterSettings", kWildcard, kWildcard, "") == kNoObject) {
        showMessage(host, kNotSiblingSettings);
        return 0;
    }
    const Handle target = state.mainSettingsDoc != kNoObject ? state.mainSettingsDoc : openMaster(host, state, 1);
    if (target == kNoObject) {
        showMessage(host, kNoMainSettings);
        return 0;
    }
    const Handle categories = findElement(host, state, target, kNoObject, kTagSchemeCategories, kWildcard, kWildcard, "");
    if (categories == kNoObject) {
        showMessage(host, kBrokenMainSettings);
        closeHeldMainSettings(host, state);
        return 0;
    }

    const Handle category =
        appendElement(host, target, categories, kTagSchemeCategory, {{kAttrName, {newCategoryName(host, state, target)}}});
    if (category != kNoObject) {
        counts.filter = copySchemes(host, state, source, target, category, SchemeKind::Filter);
        counts.coloring = copySchemes(host, state, source, target, category, SchemeKind::Coloring);
        counts.validation = copySchemes(host, state, source, target, category, SchemeKind::Validation);
    }
    if (withAttributes) counts.attributes = mergeMasterAttributes(host, state, source, target);

    const std::string ownPath = host.path(target);
    const bool saved = host.simpleSave(target, ownPath, false) != kNoObject &&
                       host.simpleSave(target, state.paths.localCopy, false) != kNoObject;
    closeHeldMainSettings(host, state);

    showMessage(host, "Migration complete.  Schemes migrated:\n\nFilter:  " + std::to_string(counts.filter) +
                          "\nColoring:  " + std::to_string(counts.coloring) + "\nValidation:  " +
                          std::to_string(counts.validation) + "\n\nMaster attributes migrated:  " +
                          std::to_string(counts.attributes) +
                          "\n\nYou can see the migrated schemes by opening the scheme editor and looking under the "
                          "Quorvane category.");
    return saved ? 1 : -1;
}

}  // namespace voka
