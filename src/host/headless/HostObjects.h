// The headless host's records of what is open in a session: documents and
// books with their selections, menus, commands and separators the plug-in
// defined, and open dialogs with their items. HeadlessHost owns them.
#pragma once

#include "host/Host.h"
#include "host/headless/Model.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace voka::headless {

struct Selection {
    // An element range set by the plug-in stays as it was set; otherwise the
    // element range is worked out from the text range.
    bool hasElementRange = false;
    ElementRange elements;
    TextRange text;  // object 0: no selection
};

struct OpenDocument {
    // After Open As New of an unchanged document, the copy takes its model
    // and `doc` keeps only what the host knows of the window (path, title,
    // visibility, stored properties); the file is read again when the model
    // is needed. A filtered duplicate of a large file then costs one model.
    std::unique_ptr<Document> doc;
    bool givenAway = false;
    bool asRead = false;  // the model is what reading its file gave, never saved since
    std::uint64_t order = 0;  // opening order
    Selection selection;
};

struct OpenBook {
    std::unique_ptr<Book> book;
    std::uint64_t order = 0;
    std::unordered_map<std::uint32_t, std::size_t> componentPosition;  // handle id -> position in components
};

struct MenuObject {
    std::string tag;
    std::string label;
    bool hostMenu = false;  // one of the host's own menus ("!MakerMainMenu" ...)
    std::vector<Handle> items;  // commands, separators and menus in insertion order
};

struct CommandObject {
    int number = 0;
    std::string tag;
    std::string label;
    std::string shortcut;
};

struct DialogItem {
    int number = 0;
    std::string kind;
    std::string label;
    std::string text;
    int state = 0;
    std::vector<std::string> labels;
    bool closes = false;
    bool sensitive = true;
};

struct DialogObject {
    std::string name;
    std::string title;
    std::vector<DialogItem> items;  // sorted by number
    std::uint32_t firstItemId = 0;  // item i has the handle id firstItemId + i
    bool shown = false;
    bool modal = false;
    int number = 0;  // the plug-in's dialog number, handed back with each event
};

}  // namespace voka::headless
