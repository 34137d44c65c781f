#include "plugin/Menus.h"

#include "plugin/CommandTable.h"

#include <map>
#include <string>

namespace voka {

namespace {

constexpr int kNotifications[] = {kNotePostInsertElement, kNotePostWrapElement, kNotePostChangeElement,
                                  kNotePostDragElement,   kNotePostSetAttrValue, kNotePreQuitDoc,
                                  kNotePostQuitDoc,       kNoteClientCall};

struct MenuDefinition {
    const char* tag;
    const char* label;
};

constexpr MenuDefinition kMenus[] = {
    {"vkp_VOKAMenu", "VOKA"},
    {"vkp_VOKAMenu_Book", "VOKA"},
    {"vkp_MainSettingsMenu", "Main Settings"},
    {"vkp_ColoringMenuDoc", "Coloring"},
    {"vkp_ColoringMenuBook", "Coloring"},
    {"vkp_FilterMenuDoc", "Filtering"},
    {"vkp_FilterMenuBook", "Filtering"},
    {"vkp_ValidationMenuDoc", "Validation"},
    {"vkp_ValidationMenuBook", "Validation"},
};

// The third separator is created and never placed.
constexpr const char* kSeparators[] = {"vkp_separator1", "vkp_separator2", "vkp_separator3"};

enum class Placed { Submenu, Command, Separator };

struct Placement {
    const char* menu;  // "!..." names a host menu
    Placed what;
    const char* name;  // submenu or separator
    int command;
    bool debugOnly;    // placed only at debug level 5
};

constexpr const char* kSep1 = "vkp_separator1";
constexpr const char* kSep2 = "vkp_separator2";

constexpr Placement sub(const char* menu, const char* name) { return {menu, Placed::Submenu, name, 0, false}; }
constexpr Placement cmd(const char* menu, int number, bool debugOnly = false) {
    return {menu, Placed::Command, nullptr, number, debugOnly};
}
constexpr Placement sep(const char* menu, const char* name) { return {menu, Placed::Separator, name, 0, false}; }

constexpr Placement kPlacements[] = {
    sub("!MakerMainMenu", "vkp_VOKAMenu"),
    cmd("vkp_VOKAMenu", 1, true),
    sub("vkp_VOKAMenu", "vkp_ColoringMenuDoc"),
    cmd("vkp_ColoringMenuDoc", 5), cmd("vkp_ColoringMenuDoc", 6), cmd("vkp_ColoringMenuDoc", 20),
    cmd("vkp_ColoringMenuDoc", 8),
    sub("vkp_VOKAMenu", "vkp_FilterMenuDoc"),
    cmd("vkp_FilterMenuDoc", 9), cmd("vkp_FilterMenuDoc", 16),
    sub("vkp_VOKAMenu", "vkp_ValidationMenuDoc"),
    cmd("vkp_ValidationMenuDoc", 11), cmd("vkp_ValidationMenuDoc", 12), cmd("vkp_ValidationMenuDoc", 14),
    sep("vkp_VOKAMenu", kSep1), cmd("vkp_VOKAMenu", 15),
    sub("vkp_VOKAMenu", "vkp_MainSettingsMenu"),
    cmd("vkp_MainSettingsMenu", 2), cmd("vkp_MainSettingsMenu", 3), cmd("vkp_MainSettingsMenu", 4),
    cmd("vkp_MainSettingsMenu", 18),
    sep("vkp_VOKAMenu", kSep2), cmd("vkp_VOKAMenu", 19),

    sub("!BookMainMenu", "vkp_VOKAMenu_Book"),
    cmd("vkp_VOKAMenu_Book", 1, true),
    sub("vkp_VOKAMenu_Book", "vkp_ColoringMenuBook"),
    cmd("vkp_ColoringMenuBook", 7), cmd("vkp_ColoringMenuBook", 21), cmd("vkp_ColoringMenuBook", 8),
    sub("vkp_VOKAMenu_Book", "vkp_FilterMenuBook"),
    cmd("vkp_FilterMenuBook", 10), cmd("vkp_FilterMenuBook", 17),
    sub("vkp_VOKAMenu_Book", "vkp_ValidationMenuBook"),
    cmd("vkp_ValidationMenuBook", 13), cmd("vkp_ValidationMenuBook", 14),
    sep("vkp_VOKAMenu_Book", kSep1), cmd("vkp_VOKAMenu_Book", 15),
    sub("vkp_VOKAMenu_Book", "vkp_MainSettingsMenu"),
    sep("vkp_VOKAMenu_Book", kSep2), cmd("vkp_VOKAMenu_Book", 19),

    // Test sits in the structure context menu whatever the debug level.
    sep("!StructureContextMenu", kSep1), cmd("!StructureContextMenu", 5), cmd("!StructureContextMenu", 11),
    cmd("!StructureContextMenu", 1), sep("!StructureContextMenu", kSep1),

    cmd("!TableTextContextMenu", 5), cmd("!TableTextContextMenu", 11), sep("!TableTextContextMenu", kSep1),

    sep("!StructuredTextContextMenu", kSep1), cmd("!StructuredTextContextMenu", 5),
    cmd("!StructuredTextContextMenu", 11),
};

constexpr int kDebugLevelWithTest = 5;

}  // namespace

void requestNotifications(Host& host) {
    for (int code : kNotifications) host.requestNotification(code, true);
}

void defineMenus(Host& host, const PluginState& state) {
    std::map<std::string, Handle> objects;  // own menus and separators by name
    for (const MenuDefinition& menu : kMenus) objects[menu.tag] = host.defineMenu(menu.tag, menu.label);
    std::map<int, Handle> commands;
    for (const CommandEntry& entry : commandTable()) {
        commands[entry.number] = host.defineCommand(entry.number, entry.tag, entry.label, entry.shortcut);
    }
    for (const char* name : kSeparators) objects[name] = host.newNamedObject(kNoObject, kMenuSeparatorObject, name);

    for (const Placement& p : kPlacements) {
        if (p.debugOnly && state.debugLevel != kDebugLevelWithTest) continue;
        const Handle menu = p.menu[0] == '!' ? host.namedObject(kNoObject, kMenuObject, p.menu) : objects[p.menu];
        if (p.what == Placed::Submenu) host.addMenuToMenu(menu, objects[p.name]);
        if (p.what == Placed::Command) host.addCommandToMenu(menu, commands[p.command]);
        if (p.what == Placed::Separator) host.addCommandToMenu(menu, objects[p.name]);
    }
}

}  // namespace voka
