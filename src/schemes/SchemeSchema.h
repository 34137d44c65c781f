// The element tree of the main settings document: the tags and attribute
// names of categories, schemes, rules and conditions, the lookups every
// reader and editor shares, the rule styles with their editor labels, and the
// position prefix that rule names carry.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>
#include <string_view>
#include <vector>

namespace voka {

inline constexpr const char* kTagMainSettings = "VKP_MainSettings";
inline constexpr const char* kTagSchemeCategories = "SchemeCategories";
inline constexpr const char* kTagSchemeCategory = "SchemeCategory";
inline constexpr const char* kTagScheme = "Scheme";
inline constexpr const char* kTagRule = "Rule";
inline constexpr const char* kTagAttribute = "Attribute";
inline constexpr const char* kTagColorList = "ColorList";
inline constexpr const char* kTagAttributeList = "AttributeList";

inline constexpr const char* kAttrName = "Name";
inline constexpr const char* kAttrValues = "Values";
inline constexpr const char* kAttrNames = "Names";
inline constexpr const char* kAttrStyle = "Style";
inline constexpr const char* kAttrMatchAll = "MatchAll";
inline constexpr const char* kAttrOverride = "Override";
inline constexpr const char* kAttrComment = "Comment";
inline constexpr const char* kAttrIncludeEddDefaults = "IncludeEDDDefaults";
inline constexpr const char* kAttrSpaceDelimited = "SpaceDelimitedVals";
inline constexpr const char* kAttrIgnoreCase = "IgnoreCaseSensitivity";
inline constexpr const char* kAttrProcessAllFlows = "ProcessAllFlows";

// Colour names of a rule that are not colours, and the value keywords of a condition.
inline constexpr const char* kRefreshEddName = "<refresh EDD>";
inline constexpr const char* kSkipName = "<skip>";
inline constexpr const char* kAnyValue = "<any value>";
inline constexpr const char* kNoValue = "<no value>";

enum class SchemeKind { Filter, Coloring, Validation };

// "FilterSchemes", "ColoringSchemes" or "ValidationSchemes".
std::string schemeContainerTag(SchemeKind kind);

// The "SchemeCategory" named `category`, searched from the document root.
Handle findCategory(Host& host, PluginState& state, Handle doc, const std::string& category);
// The first container of the kind inside the category.
Handle findSchemeContainer(Host& host, PluginState& state, Handle doc, Handle category, SchemeKind kind);
// The first "Scheme" named `scheme` in the category's container of the kind.
Handle findScheme(Host& host, PluginState& state, Handle doc, const std::string& category, SchemeKind kind,
                  const std::string& scheme);

// Names of the categories, in document order, into `names`. A document
// without "SchemeCategories" is reported to the user; false then.
bool categoryNames(Host& host, PluginState& state, Handle doc, std::vector<std::string>& names);
// Names of the category's schemes of the kind; empty when the category or
// its container is missing.
std::vector<std::string> schemeNames(Host& host, PluginState& state, Handle doc, const std::string& category,
                                     SchemeKind kind);

// Rule styles: the stored number and the label the editor shows for it.
// An unknown label is style 0; an unknown number has the label "None".
int styleNumberForLabel(std::string_view label);
const char* styleLabel(int style);
// The labels in the order of the editor's style pop-up (not numeric order).
std::vector<std::string> stylePopupLabels();

// A rule's "Name": its 1-based position in three characters, then the colour.
std::string ruleNameWithPosition(unsigned position, const std::string& colorName);
// Rewrites the position prefix of every "Rule" child of the scheme in order,
// whatever three characters stood there. Returns the number of rules.
int renumberRules(Host& host, PluginState& state, Handle doc, Handle scheme);

// The four options of a `Scheme` element, read in the order IncludeEDDDefaults,
// SpaceDelimitedVals, IgnoreCaseSensitivity, ProcessAllFlows; each on when
// its value is "true" in any case.
SchemeOptions readSchemeOptions(Host& host, PluginState& state, Handle doc, Handle scheme);
// A category or scheme name that names none: empty, "<none>" in any case, or the missing-value mark.
bool namesNoScheme(const std::string& name);

// The tag of an element's definition, "" when it has none.
std::string elementTag(Host& host, Handle doc, Handle element);

}  // namespace voka
