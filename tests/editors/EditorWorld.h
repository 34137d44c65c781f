// A world whose host hands dialog events to the plug-in's dispatcher, as the
// editors need, with the main settings saved as "main.fm" and named as the
// master, and the file text of what the editors write.
#pragma once

#include "plugin/DialogDispatch.h"
#include "schemes/SchemeWorld.h"

#include <fstream>
#include <sstream>

namespace voka::testing {

struct EditorWorld : World, Client {
    EditorWorld() {
        host.attachClient(this);
        saveMainSettings({{"Manuals"}}, "main.fm");
        state.prefs.masterPath = hostPath("main.fm");
        state.paths.localCopy = hostPath("local.fm");
    }
    void initialize(int) override {}
    void command(int) override {}
    void notify(int, Handle, const std::string&, int) override {}
    void dialogEvent(int dialog, int item, int modifiers) override {
        dispatchDialogEvent(host, state, dialog, item, modifiers);
    }
    std::string fileText(const std::string& name) const {
        std::ifstream in(folder / name, std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        return all.str();
    }
};

}  // namespace voka::testing
