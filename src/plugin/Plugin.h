// The VOKA plug-in as a client of its host: one instance per host session,
// owning the session state and answering the host's four callbacks.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

class Plugin : public Client {
public:
    explicit Plugin(Host& host) : host_(host) {}

    void initialize(int initCode) override;
    void command(int commandNumber) override;
    void notify(int code, Handle document, const std::string& text, int number) override;
    void dialogEvent(int dialogNumber, int item, int modifiers) override;

    PluginState& state() { return state_; }
    const PluginState& state() const { return state_; }
    // True once start-up completed and the menus are defined.
    bool started() const { return started_; }

private:
    Host& host_;
    PluginState state_;
    bool started_ = false;
};

}  // namespace voka
