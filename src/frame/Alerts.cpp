#include "frame/Alerts.h"

namespace voka {

void showMessage(Host& host, const std::string& text) {
    host.alert(kMessagePrefix + text, kAlertContinueWarning);
}

bool askQuestion(Host& host, const std::string& text) {
    return host.alert(kMessagePrefix + text, kAlertYesDefault) == 0;
}

void showPlainWarning(Host& host, const std::string& text) { host.alert(text, kAlertContinueWarning); }

void showMainSettingsReadError(Host& host, const std::string& what) {
    showMessage(host, " A critical error occurred while reading your main settings file for " + what +
                          ". Please obtain technical support.");
}

void showMainSettingsOpenError(Host& host) {
    showMessage(host,
                " Could not open the main settings document. Check to make sure the path specified in your "
                "preferences is correct. If it is, another user may have it open, or you may be having network "
                "problems.\n\nThis operation will be aborted. If the problem persists, please obtain technical "
                "support.");
}

void showDialogError(Host& host) {
    showMessage(host,
                " A critical error occurred while producing the dialog box. Please obtain technical support.");
}

void showPreferencesOpenError(Host& host) {
    showMessage(host,
                " A critical error occurred while attempting to open your preferences settings document. Make "
                "sure that the file is named correctly, that it is residing in the correct folder, and that it is "
                "not corrupt.\n\nThis operation will be aborted. If the problem persists, please obtain technical "
                "support.");
}

std::string withTexts(const char* pattern, std::initializer_list<std::string_view> texts) {
    std::string_view rest(pattern);
    std::string out;
    auto next = texts.begin();
    for (std::size_t at = rest.find("%s"); at != std::string_view::npos && next != texts.end();
         at = rest.find("%s")) {
        out.append(rest.substr(0, at));
        out.append(*next++);
        rest.remove_prefix(at + 2);
    }
    out.append(rest);
    return out;
}

}  // namespace voka
