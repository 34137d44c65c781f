#include "plugin/Notifications.h"

#include "extcall/TextCommands.h"
#include "frame/Selection.h"
#include "frame/Strings.h"
#include "settings/MainSettings.h"
#include "validation/ValidationCommands.h"

namespace voka {

namespace {

enum class Target { NamedElement, SelectedElement, NamedElementUnlessIdAttribute };

struct AutoValidationRule {
    int code;
    Target target;
};

constexpr AutoValidationRule kAutoValidation[] = {
    {kNotePostInsertElement, Target::NamedElement},
    {kNotePostWrapElement, Target::NamedElement},
    {kNotePostDragElement, Target::NamedElement},
    {kNotePostChangeElement, Target::SelectedElement},
    {kNotePostSetAttrValue, Target::NamedElementUnlessIdAttribute},
};

// Setting an identifier never triggers validation.
bool isIdAttribute(const std::string& name) {
    return equalsIgnoreCase(name, "ID") || equalsIgnoreCase(name, "IDREF") || equalsIgnoreCase(name, "IDREFERENCE");
}

}  // namespace

Handle autoValidationTarget(Host& host, const PluginState& state, int code, Handle doc, const std::string& text,
                            int number) {
    if (state.prefs.autoValidate != 1) return kNoObject;
    for (const AutoValidationRule& rule : kAutoValidation) {
        if (rule.code != code) continue;
        if (rule.target == Target::SelectedElement) return selectedElement(host, doc);
        if (rule.target == Target::NamedElementUnlessIdAttribute && isIdAttribute(text)) return kNoObject;
        return static_cast<Handle>(number);
    }
    return kNoObject;
}

void handleNotification(Host& host, PluginState& state, int code, Handle document, const std::string& text,
                        int number) {
    const Handle doc = document != kNoObject ? document : host.activeDocument();
    if (code == kNoteClientCall) {
        host.returnValue(runTextCommand(host, state, text));
        return;
    }
    if (code == kNotePreQuitSession) {
        closeHeldMainSettings(host, state);
        return;
    }
    const Handle element = autoValidationTarget(host, state, code, doc, text, number);
    if (element == kNoObject) return;
    Validate(host, state, kValidateElement, 0, element, doc);
}

}  // namespace voka
