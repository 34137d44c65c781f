// A scheme world that is the host's client, as the plug-in is: a message
// another client sends reaches the plug-in's notification handler and the
// answer comes back through the host. The local copy of the main settings
// holds category "Manuals" with a scheme of each kind.
#pragma once

#include "plugin/Menus.h"
#include "plugin/Notifications.h"
#include "schemes/SchemeWorld.h"
#include "support/ModelEquality.h"

#include <string>

namespace voka::testing {

inline constexpr const char* kLocalCopy = "VOKA_MainSettings_LocalCopy.fm";

struct CallWorld : World, Client {
    CallWorld() {
        host.attachClient(this);
        requestNotifications(host);
        state.prefs.externalCallDelimiter = "---";
        state.paths.localCopy = hostPath(kLocalCopy);
        for (int& active : state.prefs.validationRuleActive) active = 1;
        // "Loud" names a colour no test document has, so colouring with it asks when interactive.
        const std::pair<std::string, std::vector<std::string>> expert{"audience", {"expert"}}, novice{"audience", {"novice"}};
        saveMainSettings({{.name = "Manuals",
                           .coloring = {{"Print", {{"Red", {expert}}, {"Blue", {novice}}}},
                                        {"Loud", {{"Red", {expert}}, {"Blue", {novice}}, {"Orange", {{"audience", {"nobody"}}}}}}},
                           .filter = {{"Novice", {novice}}, {"Experts", {expert}}},
                           .validationSchemes = {{"Check", {{"audience", {"novice", "expert"}}}}}}},
                         kLocalCopy);
    }
    void initialize(int) override {}
    void command(int) override {}
    void notify(int code, Handle doc, const std::string& text, int number) override {
        handleNotification(host, state, code, doc, text, number);
    }
    void dialogEvent(int, int, int) override {}

    int call(const std::string& message) { return host.callClientFromOutside(message); }

    // A document or book saved to its file, as duplicates and moves need.
    Handle saved(Handle docOrBook) {
        const Handle kept = host.simpleSave(docOrBook, host.path(docOrBook), false);
        EXPECT_NE(kept, kNoObject);
        return kept;
    }

    // Every open document and book as a user sees it, with its path.
    std::string openModels() {
        std::string out;
        for (Handle d = host.firstOpenDocument(); d != kNoObject; d = host.nextOpenDocument(d))
            out += host.path(d) + "\n" + test::canonicalDump(*host.document(d));
        for (Handle b = host.firstOpenBook(); b != kNoObject; b = host.nextOpenBook(b))
            out += host.path(b) + "\n" + test::canonicalDump(*host.book(b));
        return out;
    }
};

inline std::string id(Handle object) { return std::to_string(object); }

}  // namespace voka::testing
