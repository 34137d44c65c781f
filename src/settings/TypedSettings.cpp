// Typed settings: one element search for the first element of a tag that
// carries the key, then one read or write by the value words of the type.
#include "settings/SettingsDocument.h"

#include "frame/Strings.h"

#include <string>

namespace voka {

namespace {

// The three-way choice is read and written asymmetrically on purpose:
// "Never" is written from 0 but read back as 3, and callers rely on both.
int readThreeWay(const std::string& word) {
    if (word == "Never") return 3;
    if (word == "Once") return 2;
    return 1;
}

std::string threeWayWord(int number) {
    if (number == 0) return "Never";
    if (number == 2) return "Once";
    return "Always";
}

Handle settingElement(Host& host, PluginState& state, Handle doc, const std::string& tag, const std::string& name) {
    return findElement(host, state, doc, kNoObject, tag, name, kWildcard, "Main");
}

}  // namespace

int readSetting(Host& host, PluginState& state, Handle doc, const std::string& tag, const std::string& name,
                std::string& text, int type) {
    const Handle element = settingElement(host, state, doc, tag, name);
    if (element == kNoObject) {
        if (type == kSettingString) text = kMissingValue;
        return 0;
    }
    if (type == kSettingList) {
        state.settingsList = readList(host, doc, element, name, false);
        return 1;
    }
    std::string value;
    readString(host, state, doc, element, name, value);
    if (type == kSettingBoolean) return value == "True" ? 1 : 0;
    if (type == kSettingInteger) return value == kMissingValue ? 0 : leadingInteger(value);
    if (type == kSettingString) {
        text = value;
        return 1;
    }
    if (type == kSettingThreeWay) return readThreeWay(value);
    return 0;
}

int writeSetting(Host& host, PluginState& state, Handle doc, const std::string& tag, const std::string& name,
                 int number, const std::string& text, int type) {
    if (type < kSettingBoolean || type > kSettingList) return 0;
    const Handle element = settingElement(host, state, doc, tag, name);
    if (element == kNoObject) return 0;
    if (type == kSettingList) return writeList(host, state, doc, element, name, state.settingsList) ? 1 : 0;
    std::string word = text;
    if (type == kSettingBoolean) word = number == 1 ? "True" : "False";
    if (type == kSettingInteger) word = std::to_string(number);
    if (type == kSettingThreeWay) word = threeWayWord(number);
    return writeString(host, state, doc, element, name, word) ? 1 : 0;
}

}  // namespace voka
