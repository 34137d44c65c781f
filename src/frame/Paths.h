// The plug-in's files in the per-user "Brindel" folder, and the starting
// values of the session state. Built once at start-up, before anything
// reads a setting; nothing is checked here (a missing folder shows up when
// the settings documents fail to open).
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

inline constexpr const char* kFolderName = "Brindel\\";
inline constexpr const char* kSharedSettingsName = "BR_Settings.fm";
inline constexpr const char* kTempSharedSettingsName = "BR_Settings_TEMPVOKA.fm";
inline constexpr const char* kLocalCopyName = "VOKA_MainSettings_LocalCopy.fm";
inline constexpr const char* kReportTemplateName = "BR_Plugin_Report_Template.fm";
inline constexpr const char* kReportName = "VOKA_Plugin_Report.fm";

// The file name of a host path, and its folder with the trailing separator.
std::string fileNameOf(const std::string& path);
std::string folderOf(const std::string& path);

// Builds the five paths from the host's per-user directory and resets every
// session item to its starting value. The about-box and debug items set by
// start-up before this call are left alone.
void initializePathsAndState(Host& host, PluginState& state);

}  // namespace voka
