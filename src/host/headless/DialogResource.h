// Dialog resources: the XML files under resources/dialogs that describe each
// dialog the plug-in opens by name (title, and items with number, kind,
// label, text, state, choices and whether a button ends a modal dialog).
// docs/file-formats.md gives the format.
#pragma once

#include <string>
#include <vector>

namespace voka::headless {

struct DialogItemSpec {
    int number = 0;
    std::string kind;  // label, text, edit, button, checkbox, radio, popup, scrolllist
    std::string label;
    std::string text;
    int state = 0;  // check boxes and radio buttons 0/1; pop-ups and lists the selected index, -1 none
    std::vector<std::string> choices;
    bool closes = false;
};

struct DialogSpec {
    std::string name;
    std::string title;
    std::vector<DialogItemSpec> items;  // sorted by number
};

struct DialogLoadResult {
    bool ok = false;
    DialogSpec spec;
    std::string error;  // names the file, and the line when the XML is malformed
};

DialogLoadResult loadDialogResource(const std::string& systemPath);

// The position of an item in spec.items, or -1.
int findDialogItem(const std::vector<DialogItemSpec>& items, int number);

}  // namespace voka::headless
