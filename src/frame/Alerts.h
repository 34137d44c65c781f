// The alert helpers: every message the plug-in shows goes through these, so
// the prefix and the alert kind are decided in one place. The fixed messages
// keep a single blank after their prefix on purpose; the general message and
// the question have none.
#pragma once

#include "host/Host.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace voka {

inline constexpr const char* kMessagePrefix = "-- VOKA plugin message --\n\n";

// A warning with one Continue button, prefixed.
void showMessage(Host& host, const std::string& text);
// The pattern with each "%s" replaced by the next text, in order.
std::string withTexts(const char* pattern, std::initializer_list<std::string_view> texts);
// A Yes/No question, prefixed; true when the user answers Yes.
bool askQuestion(Host& host, const std::string& text);
// A warning without the plug-in prefix.
void showPlainWarning(Host& host, const std::string& text);

void showMainSettingsReadError(Host& host, const std::string& what);
void showMainSettingsOpenError(Host& host);
void showDialogError(Host& host);
void showPreferencesOpenError(Host& host);

}  // namespace voka
