#include "plugin/FrameCommands.h"

#include "frame/Alerts.h"
#include "frame/Selection.h"
#include "settings/SharedSettingsMerge.h"

#include <string>

namespace voka {

void runTestCommand(Host& host, PluginState& state) {
    Handle doc = host.activeDocument();
    if (doc == kNoObject) doc = host.activeBook();
    const Handle element = selectedElement(host, doc);
    showMessage(host, "Doc:  " + std::to_string(static_cast<int>(doc)) +
                          "\n\nElement:  " + std::to_string(static_cast<int>(element)));
}

std::string aboutText(const PluginState& state) {
    return "VOKA plugin version " + state.version + " for Adobe(R) FrameMaker(R), compile date " + state.compileDate +
           ".\n\nThank you for using VOKA."
           "\n\nVOKA is provided by Brindel Consulting as is, without warranty of any kind. Brindel accepts no "
           "liability for any loss or damage to documents, books or settings arising from its use; keep copies of "
           "your work before colouring, filtering or restoring it."
           "\n\nSuggestions and bug reports are welcome at " +
           std::string(kSupportAddress) + ".";
}

void showAboutBox(Host& host, PluginState& state) { showMessage(host, aboutText(state)); }

bool confirmOverrideWarning(Host& host, PluginState& state) {
    if (state.overrideWarningPending == 0) return true;
    if (!askQuestion(host, "This command has the same effect as refreshing the EDD definitions to remove format "
                           "overrides. It will remove all format overrides, whether applied by VOKA or otherwise. "
                           "Are you sure you want to continue?\n\n If you choose Yes, this warning will not appear "
                           "again.")) {
        return false;
    }
    state.overrideWarningPending = 0;
    return true;
}

int probeClientCall(Host& host, PluginState& state, const std::string& defaultClient,
                    const std::string& defaultMessage, bool showResult, bool remember) {
    // Remembered answers stand in for the given defaults on the next probe.
    const std::string& clientDefault = remember && !state.probeClient.empty() ? state.probeClient : defaultClient;
    std::string client;
    if (host.promptString("Client?", clientDefault, client) != 0) return 0;
    if (remember) state.probeClient = client;
    const std::string& messageDefault = remember && !state.probeMessage.empty() ? state.probeMessage : defaultMessage;
    std::string message;
    if (host.promptString("Message?", messageDefault, message) != 0) return 0;
    if (remember) state.probeMessage = message;
    const int result = host.callClient(client, message);
    if (showResult) showPlainWarning(host, "Return value:\n\n" + std::to_string(result));
    return 1;
}

}  // namespace voka
