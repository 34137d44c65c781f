// A scheme world for the validation tests: the report template in the
// per-user folder, a client that hands commands, notifications and dialog
// events to the plug-in, a validation scheme made active in one call, and the
// report read back as "Tag|text" lines with its link markers.
#pragma once

#include "plugin/CommandTable.h"
#include "plugin/DialogDispatch.h"
#include "plugin/Menus.h"
#include "plugin/Notifications.h"
#include "schemes/SchemeWorld.h"
#include "validation/ValidationScheme.h"

#include <filesystem>
#include <string>
#include <vector>

namespace voka::testing {

using Texts = std::vector<std::string>;

struct ValidationWorld : World, Client {
    ValidationWorld() {
        host.attachClient(this);
        requestNotifications(host);
        std::filesystem::copy_file(VOKA_SOURCE_DIR "/resources/BR_Plugin_Report_Template.fm", folder / kTemplate);
        state.paths.reportTemplate = hostPath(kTemplate);
        state.paths.report = hostPath("VOKA_Plugin_Report.fm");
        state.schemeDialog.showBeforeValidation = 0;
        for (int& active : state.prefs.validationRuleActive) active = 1;
    }
    void initialize(int) override {}
    void command(int number) override { runCommand(host, state, number); }
    void notify(int code, Handle doc, const std::string& text, int number) override {
        handleNotification(host, state, code, doc, text, number);
    }
    void dialogEvent(int dialog, int item, int modifiers) override {
        dispatchDialogEvent(host, state, dialog, item, modifiers);
    }

    // Holds main settings with this one scheme (category "Manuals") and makes it active.
    void useValidation(const std::vector<ConditionSpec>& attributes, SchemeOptionValues options = {}) {
        holdMainSettings({CategorySpec{.name = "Manuals", .validationSchemes = {{"Check", attributes, options}}}});
        state.active.category = "Manuals";
        state.active.validationScheme = "Check";
        ASSERT_EQ(LoadValidationScheme(host, state, "Manuals", "Check", 0), kValidationLoaded);
    }
    void useRules(std::vector<int> active) {
        for (std::size_t i = 0; i < 4; ++i) state.prefs.validationRuleActive[i] = active[i];
    }

    // The report document left open in the host, or 0.
    Handle report() {
        for (Handle doc = host.firstOpenDocument(); doc != kNoObject; doc = host.nextOpenDocument(doc))
            if (host.path(doc) == state.paths.report) return doc;
        return kNoObject;
    }
    Texts entries() {
        const Handle doc = report();
        Texts out;
        const Handle root = host.highestLevelElement(doc, host.mainFlow(doc));
        for (Handle e = host.firstChild(doc, root); e != kNoObject; e = host.nextSibling(doc, e))
            out.push_back(elementTag(host, doc, e) + "|" + host.text(doc, host.elementTextRange(doc, e)));
        return out;
    }
    Texts links() {
        const Handle doc = report();
        Texts out;
        for (Handle m = host.firstMarker(doc); m != kNoObject; m = host.nextMarker(doc, m))
            out.push_back(host.markerText(doc, m));
        return out;
    }
    std::string objectLink(Handle doc, Handle element) {
        return "openObjectId " + host.path(doc) + ":5 " + std::to_string(host.intProperty(doc, element, kPropUnique));
    }
    // "rule attribute value" of each finding.
    Texts findings() const {
        Texts out;
        for (const ValidationFinding& f : state.validationFindings)
            out.push_back(std::to_string(f.rule) + " " + f.attribute + (f.value.empty() ? "" : " " + f.value));
        return out;
    }

    static constexpr const char* kTemplate = "BR_Plugin_Report_Template.fm";
};

}  // namespace voka::testing
