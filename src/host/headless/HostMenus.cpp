// Menus, commands, separators and notification requests, as the plug-in
// defines them; recorded so that they can be listed and commands invoked.
#include "host/headless/Handles.h"
#include "host/headless/HeadlessHost.h"

namespace voka::headless {

Handle HeadlessHost::defineCommand(int number, const std::string& tag, const std::string& label,
                                   const std::string& shortcut) {
    if (tag.empty()) return fail(kNoObject);
    for (std::size_t i = 0; i < commands_.size(); ++i) {
        if (commands_[i].tag != tag) continue;
        // Defining a command again updates it.
        commands_[i] = CommandObject{number, tag, label, shortcut};
        return indexHandle(kCommandObject, static_cast<Index>(i));
    }
    if (!idFits(commands_.size() + 1)) return fail(kNoObject);
    commands_.push_back(CommandObject{number, tag, label, shortcut});
    return indexHandle(kCommandObject, static_cast<Index>(commands_.size() - 1));
}

Handle HeadlessHost::defineMenu(const std::string& tag, const std::string& label) {
    if (tag.empty()) return fail(kNoObject);
    for (std::size_t i = 0; i < menus_.size(); ++i) {
        if (menus_[i].tag != tag) continue;
        if (!menus_[i].hostMenu) menus_[i].label = label;
        return indexHandle(kMenuObject, static_cast<Index>(i));
    }
    if (!idFits(menus_.size() + 1)) return fail(kNoObject);
    MenuObject menu;
    menu.tag = tag;
    menu.label = label;
    menus_.push_back(std::move(menu));
    return indexHandle(kMenuObject, static_cast<Index>(menus_.size() - 1));
}

bool HeadlessHost::addCommandToMenu(Handle menu, Handle commandOrSeparator) {
    const Index m = liveIndex(menu, kMenuObject, menus_.size());
    if (m == kNil) return false;
    const int type = objectType(commandOrSeparator);
    const std::size_t size = type == kCommandObject ? commands_.size() : separators_.size();
    if (type != kCommandObject && type != kMenuSeparatorObject) return fail(false);
    if (liveIndex(commandOrSeparator, type, size) == kNil) return false;
    menus_[m].items.push_back(commandOrSeparator);
    return true;
}

bool HeadlessHost::addMenuToMenu(Handle menu, Handle submenu) {
    const Index m = liveIndex(menu, kMenuObject, menus_.size());
    const Index s = liveIndex(submenu, kMenuObject, menus_.size());
    if (m == kNil || s == kNil) return false;
    if (menus_[s].hostMenu) return fail(false);
    // A menu may not end up inside itself.
    std::vector<Index> work{s};
    while (!work.empty()) {
        const Index at = work.back();
        work.pop_back();
        if (at == m) return fail(false);
        for (Handle item : menus_[at].items)
            if (objectType(item) == kMenuObject) work.push_back(handleId(item) - 1);
    }
    menus_[m].items.push_back(submenu);
    return true;
}

bool HeadlessHost::requestNotification(int code, bool on) {
    notificationLog_.emplace_back(code, on);
    if (on) notifications_.insert(code);
    else notifications_.erase(code);
    return true;
}

MenuItem HeadlessHost::menu(const std::string& name) const {
    for (std::size_t i = 0; i < menus_.size(); ++i) {
        if (menus_[i].tag != name) continue;
        // Menus cannot contain themselves (addMenuToMenu refuses), so this ends.
        struct Lister {
            const HeadlessHost& host;
            MenuItem list(Index m) const {
                const MenuObject& menu = host.menus_[m];
                MenuItem item{MenuItem::Kind::Menu, menu.tag, menu.label, {}, 0, {}};
                for (Handle h : menu.items) {
                    const Index i = handleId(h) - 1;
                    if (objectType(h) == kMenuObject) {
                        item.items.push_back(list(i));
                    } else if (objectType(h) == kCommandObject) {
                        const CommandObject& c = host.commands_[i];
                        item.items.push_back(MenuItem{MenuItem::Kind::Command, c.tag, c.label, c.shortcut, c.number, {}});
                    } else {
                        item.items.push_back(MenuItem{MenuItem::Kind::Separator, host.separators_[i], {}, {}, 0, {}});
                    }
                }
                return item;
            }
        };
        return Lister{*this}.list(static_cast<Index>(i));
    }
    return MenuItem{};
}

std::vector<CommandInfo> HeadlessHost::commands() const {
    std::vector<CommandInfo> list;
    for (const CommandObject& c : commands_) list.push_back(CommandInfo{c.number, c.tag, c.label, c.shortcut});
    return list;
}

}  // namespace voka::headless
