#include "coloring/ColoringMenu.h"

#include "coloring/ColoringCommands.h"

#include <array>

namespace voka {

namespace {

struct MenuColoring {
    int command;
    int code;
    int askScheme;
    int showProgress;
    int interactive;
};

// Uncolouring is not interactive: it never asks for a scheme or reports.
constexpr std::array<MenuColoring, 5> kMenuColorings = {{
    {5, kColorSelection, 1, 1, 1},
    {6, kColorDocument, 1, 1, 1},
    {7, kColorBook, 1, 1, 1},
    {20, kUncolorDocument, 0, 1, 0},
    {21, kUncolorBook, 0, 1, 0},
}};

}  // namespace

int colorCommandForMenu(Host& host, PluginState& state, int commandNumber) {
    for (const MenuColoring& entry : kMenuColorings) {
        if (entry.command == commandNumber) {
            return ColorCommand(host, state, kNoObject, entry.code, entry.askScheme, entry.showProgress,
                                entry.interactive);
        }
    }
    return 0;
}

}  // namespace voka
