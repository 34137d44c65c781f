#include "plugin/Plugin.h"

#include "plugin/CommandTable.h"
#include "plugin/DialogDispatch.h"
#include "plugin/Notifications.h"
#include "plugin/Startup.h"

namespace voka {

void Plugin::initialize(int) { started_ = runStartup(host_, state_); }

void Plugin::command(int commandNumber) {
    // Asked before every dispatch but not used here: each handler takes the
    // active document or book itself.
    host_.activeDocument();
    host_.activeBook();
    runCommand(host_, state_, commandNumber);
}

void Plugin::notify(int code, Handle document, const std::string& text, int number) {
    handleNotification(host_, state_, code, document, text, number);
}

void Plugin::dialogEvent(int dialogNumber, int item, int modifiers) {
    dispatchDialogEvent(host_, state_, dialogNumber, item, modifiers);
}

}  // namespace voka
