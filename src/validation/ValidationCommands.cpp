#include "validation/ValidationCommands.h"

#include "frame/Alerts.h"
#include "frame/BookComponents.h"
#include "frame/Dialogs.h"
#include "frame/Paths.h"
#include "frame/Selection.h"
#include "frame/Strings.h"
#include "schemes/NameLists.h"
#include "validation/PluginReport.h"
#include "validation/ValidationCheck.h"
#include "validation/ValidationErrors.h"

#include <string>

namespace voka {

namespace {

constexpr const char* kNothingOpen = "No active book or document. Cannot validate.";
constexpr const char* kNoScheme = "Cannot validate - no active validation scheme.";
constexpr const char* kNoSchemeForDocument =
    "No active validation scheme - cannot validate. Please set an active validation scheme and try again.\n\nNote "
    "that you can set a default validation scheme in your preferences.";
constexpr const char* kNoStructure = "No structure found in the main flow. Cannot apply color.";
constexpr const char* kBlank = "   ";
constexpr std::size_t kShownNameLength = 50;

void blankLine(Host& host, PluginState& state) {
    WriteReportEntry(host, state, kEntryMessage, kNoObject, kNoObject, 0, kBlank);
}

void emptyLine(Host& host, PluginState& state) {
    WriteReportEntry(host, state, kEntryEmptyLine, kNoObject, kNoObject, 0);
}

void schemeLine(Host& host, PluginState& state) {
    WriteReportEntry(host, state, kEntryMessage, kNoObject, kNoObject, 0, "Validation scheme: ",
                     state.active.validationScheme, " ");
}

std::string documentName(Host& host, Handle doc) {
    const std::string path = host.path(doc);
    return path.empty() ? host.title(doc) : path;
}

const char* progressTitle(int code) {
    if (code == kValidateBook) return "Validating Book...";
    if (code == kValidateDocument) return "Validating Document...";
    return kKeep;
}

const char* nothingFound(int code) {
    if (code == kValidateSelection) return "No validation errors found in selection.";
    if (code == kValidateDocument) return "No validation errors found in document.";
    return "No validation errors found in book.";
}

// Nothing to work on for the code: no element for one or a selection, no
// document or book for the others.
bool lacksTarget(int code, Handle doc, Handle book, Handle element) {
    if (code == kValidateElement || code == kValidateSelection) return element == kNoObject;
    if (code == kValidateDocument) return doc == kNoObject;
    return book == kNoObject;
}

int dispatch(Host& host, PluginState& state, int code, Handle doc, Handle book, Handle element) {
    switch (code) {
        case kValidateElement: return CheckElement(host, state, doc, element, code);
        case kValidateSelection: return CheckSubtree(host, state, doc, element, code);
        case kValidateDocument: return ValidateDocument(host, state, doc, code);
        default: return ValidateBook(host, state, book);
    }
}

}  // namespace

int Validate(Host& host, PluginState& state, int code, int progress, Handle element, Handle doc) {
    state.cancel = 0;
    if (code != kValidateElement) state.validationFindings.clear();
    if (code < kValidateElement || code > kValidateBook) return 0;
    if (doc == kNoObject) doc = host.activeDocument();
    const Handle book = host.activeBook();
    if (doc == kNoObject && book == kNoObject) {
        showMessage(host, kNothingOpen);
        return 0;
    }
    if (doc != kNoObject && element == kNoObject) element = selectedElement(host, doc);
    if (lacksTarget(code, doc, book, element)) return 0;

    const bool whole = code == kValidateDocument || code == kValidateBook;
    if (whole && state.schemeDialog.showBeforeValidation != 0 && state.calls.showActiveSchemeDialog != nullptr &&
        state.calls.showActiveSchemeDialog(host, state, code) == 0)
        return 0;
    if (isNoneName(state.active.validationScheme)) {
        showMessage(host, kNoScheme);
        return 0;
    }

    if (code != kValidateElement) OpenPluginReport(host, state);
    const bool showProgress = progress == 1;
    if (showProgress) {
        openStatus(host, state, progressTitle(code));
        setStatusLines(host, state, "", "Please wait...", "", "Press Esc to cancel");
    }

    const int result = dispatch(host, state, code, doc, book, element);

    if (showProgress) closeStatus(host, state);
    if (result == -1 && code != kValidateElement) {
        showMessage(host, nothingFound(code));
        if (code != kValidateBook) ClosePluginReport(host, state);
    }
    // A kept report stays open in the host; the next run makes its own.
    state.report = kNoObject;
    return state.cancel == 1 ? 0 : 1;
}

int ValidateDocument(Host& host, PluginState& state, Handle doc, int code) {
    state.cancel = 0;
    if (isNoneName(state.active.validationScheme)) {
        showMessage(host, kNoSchemeForDocument);
        return -1;
    }

    blankLine(host, state);
    setStatusLines(host, state, "Please wait. Currently processing:",
                   lastCharactersShown(documentName(host, doc), kShownNameLength), kKeep, "Press Esc to cancel");
    blankLine(host, state);
    emptyLine(host, state);
    WriteReportEntry(host, state, kEntryHeading2Link, doc, kNoObject, 1, "Validating...   ", fileNameOf(host.path(doc)),
                     " ");
    if (code == kValidateDocument) schemeLine(host, state);
    blankLine(host, state);

    const bool allFlows = state.validation.options.processAllFlows == 1;
    Handle flow = allFlows ? host.firstFlow(doc) : host.mainFlow(doc);
    if (!allFlows && host.highestLevelElement(doc, flow) == kNoObject) {
        if (code == kValidateDocument) {
            showMessage(host, kNoStructure);
            state.cancel = 1;
        }
        return -1;
    }

    int result = -1;
    const TextRange selection = host.textSelection(doc);
    for (; flow != kNoObject && state.cancel != 1; flow = allFlows ? host.nextFlow(doc, flow) : kNoObject) {
        const Handle root = host.highestLevelElement(doc, flow);
        if (root == kNoObject) continue;  // flows without structure are passed over
        const int rule = CheckSubtree(host, state, doc, root, code);
        if (rule >= 0) result = rule;
    }
    host.setTextSelection(doc, selection);
    host.scrollTo(doc, selection);
    host.redisplay(doc);

    if (result == -1) {
        WriteReportEntry(host, state, kEntryMessage, kNoObject, kNoObject, 0, "No errors found in document.", "  ");
        emptyLine(host, state);
    }
    return result;
}

int ValidateBook(Host& host, PluginState& state, Handle book) {
    state.cancel = 0;
    blankLine(host, state);
    emptyLine(host, state);
    emptyLine(host, state);
    blankLine(host, state);
    WriteReportEntry(host, state, kEntryHeading1, kNoObject, kNoObject, 0, "Validating entire book...", "  ");
    WriteReportEntry(host, state, kEntryLinkMessage, book, kNoObject, 1, fileNameOf(host.path(book)), "  ");
    schemeLine(host, state);
    WriteReportEntry(host, state, kEntryLongDate, kNoObject, kNoObject, 0);
    blankLine(host, state);
    emptyLine(host, state);
    emptyLine(host, state);

    int result = -1;
    const OpenDocuments open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        const Handle doc = componentDocument(host, open, book, component);
        if (doc != kNoObject) {
            const int rule = ValidateDocument(host, state, doc, kValidateBook);
            if (rule >= 0) result = rule;
        } else {
            blankLine(host, state);
            WriteReportEntry(host, state, kEntryMessage, kNoObject, kNoObject, 0, "The file \"",
                             fileNameOf(host.componentPath(book, component)), "\" is not open. Could not validate.");
        }
        if (state.cancel == 1) break;
    }
    emptyLine(host, state);
    emptyLine(host, state);
    return result;
}

}  // namespace voka
