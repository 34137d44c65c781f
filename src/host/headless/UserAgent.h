// The person at the headless host: everything the host would show on screen
// and wait for (alerts, questions, prompts, the file chooser, modal dialogs,
// the Esc key) goes to a user agent, and so does what it merely shows
// (progress in a modeless dialog, warnings of loading a file).
//
// Two agents exist: ScriptedAgent answers tests from queues and keeps a
// transcript; BatchAgent serves the command line, never blocks, and prints
// what a user would have seen.
#pragma once

#include "host/Host.h"

#include <cstdint>
#include <string>
#include <vector>

namespace voka::headless {

// What a person can see and do in a dialog the host shows. Item numbers are
// those of the dialog resource.
class DialogUser {
public:
    virtual ~DialogUser() = default;
    virtual std::string name() const = 0;  // the resource name
    virtual std::string title() const = 0;
    virtual bool isUp() const = 0;
    virtual std::string text(int item) const = 0;
    virtual std::string label(int item) const = 0;
    virtual int state(int item) const = 0;
    virtual std::vector<std::string> labels(int item) const = 0;
    virtual bool sensitive(int item) const = 0;

    // Typing into a text box changes its text and sends no event.
    virtual bool type(int item, const std::string& text) = 0;
    // Clicking a check box or radio button, or choosing an entry of a pop-up
    // or list: sets the state and sends the item's event.
    virtual bool choose(int item, int state) = 0;
    // Double-clicking an entry of a list: its state, then the item's event with kEventDoubleClick.
    virtual bool doubleClick(int item, int state) = 0;
    // Pressing a button sends its event; a closing button then ends a modal
    // dialog unless the plug-in asked it to stay up. False when the item is
    // missing, insensitive or the dialog is down.
    virtual bool press(int item) = 0;
    // Closing the window: the close event, then the dialog is down.
    virtual void cancel() = 0;
};

// Kinds of what the user was shown, in a transcript.
enum class Said { Alert, Question, Prompt, FileChooser, Dialog, Warning, Error };

// The text lines of a modeless dialog (the status dialog while work goes on).
struct DialogView {
    std::string dialog;  // resource name
    std::string title;
    std::vector<std::string> lines;  // each item's text, or its label when it has no text
};

// How far a long pass over a document is: it stands at element `done` of `total`.
struct ProgressPoint {
    const std::string& document;  // its title, or its path
    std::uint64_t done;
    std::uint64_t total;
};

class UserAgent {
public:
    virtual ~UserAgent() = default;
    // Continue alerts return 0; questions 0 for Yes, non-zero for No.
    virtual int alert(const std::string& message, AlertKind kind) = 0;
    // 0 and the answer, or non-zero when cancelled.
    virtual int promptString(const std::string& prompt, const std::string& initial, std::string& answer) = 0;
    // 0 and the chosen path in host notation, or non-zero when cancelled.
    virtual int chooseFile(const std::string& title, const std::string& directory, const std::string& defaultName,
                           int mode, std::string& chosen) = 0;
    // True when Esc was pressed since the last poll. `elementSteps` counts the
    // tree steps the plug-in has taken so far (firstChild, nextSibling ...).
    virtual bool userCancelled(std::uint64_t elementSteps) = 0;
    // Acts on a modal dialog until it is down; the host closes it when the
    // agent returns with it still up.
    virtual void runModalDialog(DialogUser& dialog) = 0;
    // A modeless dialog was shown or one of its texts changed.
    virtual void modelessDialogChanged(const DialogView& view) {}
    virtual void modelessDialogClosed(const std::string& dialog) {}
    // Said at each Esc poll of a long pass, before userCancelled().
    virtual void progress(const ProgressPoint& point) {}
    // What the host itself reports: warnings and errors of loading files.
    virtual void hostMessage(Said kind, const std::string& text) = 0;
};

}  // namespace voka::headless
