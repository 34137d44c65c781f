#include "frame/Paths.h"

namespace voka {

void initializePathsAndState(Host& host, PluginState& state) {
    // Plain concatenation: the host's directory always ends with a separator.
    const std::string folder = host.sessionDirectory() + kFolderName;
    state.paths.folder = folder;
    state.paths.sharedSettings = folder + kSharedSettingsName;
    state.paths.tempSharedSettings = folder + kTempSharedSettingsName;
    state.paths.localCopy = folder + kLocalCopyName;
    state.paths.reportTemplate = folder + kReportTemplateName;
    state.paths.report = folder + kReportName;

    state.active = ActiveNames{};
    state.prefs.externalCallDelimiter.clear();
    state.prefs.extra101.clear();
    state.prefs.pendingMasterPath = kNothingName;
    state.editorName1 = kNothingName;
    state.editorName2 = kNothingName;
    state.editorDefaultName = "Filter";
    state.editorCategory = kNone;
    state.restoreDocOption = 1;
    state.restoreBookOption = 1;
    state.overrideWarningPending = 1;
    state.coloringOptions = ColoringOptions{1, 0, 0};
    const int filtering[4] = {1, 0, 0, 0};
    for (int i = 0; i < 4; ++i) state.filteringOptions[i] = filtering[i];
    state.schemeDialog = SchemeDialogOptions{1, 1};
    state.lastColoringError = 0;
    state.schemeEditorList.clear();
    state.filterFileList.clear();
    state.validationRuleList.clear();
}

std::string fileNameOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

std::string folderOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

}  // namespace voka
