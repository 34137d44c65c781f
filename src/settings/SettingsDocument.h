// Reading and writing settings kept as attribute values of elements in
// structured settings documents: the element search, typed reads and writes
// with the missing-value sentinel, child counts and lists, and the invisible
// open. Nothing is cached; failures are told by results and by
// state.settingsError (200 no document, 201 no element, 212 no such
// attribute, 213 no attributes at all, 222 numeric read of a missing attribute).
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>
#include <vector>

namespace voka {

inline constexpr const char* kWildcard = "*";

enum SettingType : int {
    kSettingBoolean = 1,
    kSettingInteger = 2,
    kSettingString = 3,
    kSettingThreeWay = 4,
    kSettingList = 5,
};

// First element in pre-order from `start` (or from the root named by
// `rootName`: "" or "Main" for the main flow, else a flow name) whose tag,
// attribute and first value match; "*" matches anything.
Handle findElement(Host& host, PluginState& state, Handle doc, Handle start, const std::string& tag,
                   const std::string& attribute, const std::string& value, const std::string& rootName);

int attributeIndex(Host& host, Handle doc, Handle element, const std::string& name);  // last of the name, or -1
// The first value, or "ThisIsAnERROR"; returns the attribute's index or -1.
int readString(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
               std::string& value);
int readStringAt(Host& host, Handle doc, Handle element, int index, std::string& value);
int readNumber(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name);
// All values; with useDefaults, the declared defaults when the attribute has no value.
std::vector<std::string> readList(Host& host, Handle doc, Handle element, const std::string& name,
                                  bool useDefaults);
bool writeString(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
                 const std::string& value);
bool writeList(Host& host, PluginState& state, Handle doc, Handle element, const std::string& name,
               const std::vector<std::string>& values);
int countChildren(Host& host, Handle doc, Handle element, const std::string& tag, bool countUntagged);
std::vector<std::string> listChildValues(Host& host, PluginState& state, Handle doc, Handle element,
                                         const std::string& name);

// Typed settings: the first element under "Main" with the tag that carries
// the attribute, read or written by the type table. `text` carries strings in
// and out; lists go through `list`.
int readSetting(Host& host, PluginState& state, Handle doc, const std::string& tag, const std::string& name,
                std::string& text, int type);
int writeSetting(Host& host, PluginState& state, Handle doc, const std::string& tag, const std::string& name,
                 int number, const std::string& text, int type);

Handle openSettingsInvisibly(Host& host, const std::string& path);
Handle openSettingsInvisiblyChecked(Host& host, Handle doc, const std::string& path);

}  // namespace voka
