#include "coloring/ColoringCommands.h"

#include "coloring/ColoringEngine.h"
#include "coloring/ColoringMessages.h"
#include "coloring/RuleColors.h"
#include "frame/Alerts.h"
#include "frame/BookComponents.h"
#include "frame/Dialogs.h"
#include "frame/Selection.h"
#include "schemes/NameLists.h"

#include <array>

namespace voka {

namespace {

constexpr std::size_t kShownNameLength = 50;

// The host's display switch and the view settings kept around a colouring
// when the save-view option is on.
constexpr int kPropDisplaying = 92;
constexpr std::array<int, 4> kViewProperties = {kPropViewBorders, kPropViewRulers, kPropViewTextSymbols,
                                                kPropElementBoundaryDisplay};

struct ActionTitle {
    int code;
    const char* title;
};
constexpr std::array<ActionTitle, 5> kTitles = {{
    {kColorSelection, "Coloring Selection..."},
    {kColorDocument, "Coloring Document..."},
    {kColorBook, "Coloring Book..."},
    {kUncolorDocument, "Uncoloring Document..."},
    {kUncolorBook, "Uncoloring Book..."},
}};

const char* progressTitle(int code) {
    for (const ActionTitle& entry : kTitles) {
        if (entry.code == code) return entry.title;
    }
    return "";
}

std::string documentName(Host& host, Handle doc) {
    std::string name = host.path(doc);
    return name.empty() ? host.title(doc) : name;
}

bool isBookAction(int code) { return code == kColorBook || code == kUncolorBook; }

int colorSelection(Host& host, PluginState& state, Handle doc, const TextRange& saved, int interactive) {
    if (doc == kNoObject) {
        if (interactive) showMessage(host, kNoDocument);
        return kColoringNoTarget;
    }
    Handle element = selectedElement(host, doc);
    if (element == kNoObject) {
        if (interactive) showMessage(host, kNoElementSelected);
        return kColoringNoElement;
    }
    // Start from the definition's formatting, as a whole-document colouring does.
    host.setElementDefinition(doc, element, host.elementDefinition(doc, element));
    int result = ColorElementTree(host, state, doc, element, kColorSelection, 1, interactive);
    host.clearError();
    TextLocation paragraphStart{saved.begin.object, 0};
    host.scrollTo(doc, TextRange{paragraphStart, paragraphStart});
    host.setTextSelection(doc, saved);
    return result;
}

int colorOrUncolorBook(Host& host, PluginState& state, Handle book, int code, int interactive) {
    if (interactive && !allComponentsOpen(host, book) && !askQuestion(host, kComponentsNotOpen)) {
        return kColoringCancelled;
    }
    return ColorBook(host, state, book, interactive, code);
}

struct SavedView {
    bool saved = false;
    std::array<int, 4> values{};
};

SavedView hideDisplay(Host& host, PluginState& state, Handle doc) {
    SavedView view;
    if (state.coloringOptions.saveView != 1) return view;
    view.saved = true;
    for (std::size_t i = 0; i < kViewProperties.size(); ++i) {
        view.values[i] = host.intProperty(doc, doc, kViewProperties[i]);
    }
    host.setIntProperty(doc, doc, kPropDisplaying, 0);
    return view;
}

void showDisplay(Host& host, Handle doc, const SavedView& view) {
    host.setIntProperty(doc, doc, kPropDisplaying, 1);
    if (!view.saved) return;
    for (std::size_t i = 0; i < kViewProperties.size(); ++i) {
        host.setIntProperty(doc, doc, kViewProperties[i], view.values[i]);
    }
}

}  // namespace

int ColorCommand(Host& host, PluginState& state, Handle target, int code, int askScheme, int showProgress,
                 int interactive) {
    host.clearError();
    state.cancel = 0;

    Handle doc = kNoObject;
    Handle book = kNoObject;
    if (target == kNoObject) {
        doc = host.activeDocument();
        book = host.activeBook();
    } else if (isBookAction(code)) {
        book = target;
    } else {
        doc = target;
    }
    if (book != kNoObject && (code == kColorDocument || code == kUncolorDocument)) return kColoringNothingDone;
    if (doc == kNoObject && book == kNoObject) {
        showMessage(host, kNoTarget);
        return kColoringNoTarget;
    }

    TextRange savedSelection;
    if (doc != kNoObject) savedSelection = host.textSelection(doc);

    if (askScheme == 1 && code != kColorSelection && state.schemeDialog.showBeforeColoring == 1 &&
        state.calls.showActiveSchemeDialog != nullptr) {
        if (state.calls.showActiveSchemeDialog(host, state, code) == 0) return kColoringNothingDone;
    }
    if (isNoneName(state.active.coloringScheme)) {
        if (interactive) showMessage(host, kNoSchemeToColor);
        return kColoringNoScheme;
    }

    if (showProgress == 1) {
        openStatus(host, state, progressTitle(code));
        setStatusLines(host, state, "", "Please wait...", "", code == kUncolorDocument ? "" : "Press Esc to cancel");
    }

    int result = kColoringNothingDone;
    if (code == kColorSelection) {
        result = colorSelection(host, state, doc, savedSelection, interactive);
    } else if (code == kColorDocument) {
        result = ColorDocument(host, state, doc, kColorDocument, interactive);
    } else if (isBookAction(code)) {
        result = colorOrUncolorBook(host, state, book, code, interactive);
    } else if (code == kUncolorDocument) {
        RemoveColoring(host, state, doc);
        result = kColoringDone;
    }

    if (result == kColoringCancelled && interactive) showMessage(host, kColoringCancelledMessage);
    if (showProgress == 1) closeStatus(host, state);
    if (result == kColoringDone && code == kColorBook && interactive) showMessage(host, kBookColoringComplete);
    return result;
}

int ColorBook(Host& host, PluginState& state, Handle book, int interactive, int code) {
    int result = kColoringDone;
    state.cancel = 0;
    const auto open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        Handle doc = componentDocument(host, open, book, component);
        if (doc != kNoObject && code == kUncolorBook) {
            RemoveColoring(host, state, doc);
            result = kColoringDone;
        } else if (doc != kNoObject && code == kColorBook) {
            result = ColorDocument(host, state, doc, kColorBook, interactive);
        }
        if (state.cancel == 0 && pollCancel(host, state)) state.cancel = 1;
        if (state.cancel != 0) break;
    }
    host.setActiveBook(book);
    return result;
}

int ColorDocument(Host& host, PluginState& state, Handle doc, int code, int interactive) {
    if (isNoneName(state.active.coloringScheme)) {
        if (interactive) showMessage(host, kNoActiveSchemeToApply);
        return kColoringNoScheme;
    }
    const std::string name = documentName(host, doc);
    setStatusLines(host, state, "Please wait. Currently processing:", name.substr(0, kShownNameLength), kKeep,
                   "Press Esc to cancel");

    std::string missing;
    if (!ResolveRuleColors(host, state, doc, missing) && state.coloringOptions.warnMissingColors == 1 &&
        interactive) {
        if (!askQuestion(host, withTexts(kDocumentColorsMissing, {name, missing}))) {
            state.cancel = 1;
            return kColoringCancelled;
        }
        state.cancel = 0;
    }

    const bool allFlows = state.coloring.options.processAllFlows == 1;
    Handle flow = allFlows ? host.firstFlow(doc) : host.mainFlow(doc);
    if (!allFlows && host.highestLevelElement(doc, flow) == kNoObject) {
        if (code == kColorDocument) {
            state.cancel = 1;
            if (interactive) showMessage(host, kNoStructureInMainFlow);
        }
        return kColoringNoStructure;
    }

    SavedView view = hideDisplay(host, state, doc);
    TextRange selection = host.textSelection(doc);
    RemoveColoring(host, state, doc);  // every colouring starts from the definitions' formatting

    for (; flow != kNoObject; flow = allFlows ? host.nextFlow(doc, flow) : kNoObject) {
        Handle root = host.highestLevelElement(doc, flow);
        if (root == kNoObject) continue;  // flows without structure are passed over
        int result = ColorElementTree(host, state, doc, root, code, 1, interactive);
        if (result != kColoringDone) return result;
    }

    showDisplay(host, doc, view);
    host.setTextSelection(doc, selection);
    host.scrollTo(doc, selection);
    host.redisplay(doc);
    return kColoringDone;
}

}  // namespace voka
