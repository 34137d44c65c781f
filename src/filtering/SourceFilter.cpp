#include "filtering/SourceFilter.h"

#include "filtering/FilterWalk.h"
#include "frame/Alerts.h"
#include "frame/BookComponents.h"
#include "frame/Dialogs.h"
#include "frame/Paths.h"
#include "frame/Selection.h"
#include "frame/Strings.h"

#include <vector>

namespace voka {

namespace {

constexpr const char* kHidden = "Hidden";
constexpr const char* kRestoreDocumentQuestion =
    "This command will restore a document that had content hidden by a \"source file\" filter. It will remove most "
    "or all native conditional text from the document. Are you sure you want to continue?";
constexpr const char* kRestoreBookQuestion =
    "This command will restore an entire book whose files had content hidden by a \"source file\" filter. It will "
    "remove most or all native conditional text from the documents. It will not open any documents that are "
    "currently closed.\n\n Are you sure you want to continue?";
constexpr const char* kFindFailed =
    "An error occurred while attempting to remove existing conditional text settings in the document %s, which is "
    "necessary to complete a \"source file\" filter successfully. You should inspect the output carefully.";

constexpr std::size_t kShownPathLength = 50;
constexpr int kImportFromItself = kImportRemoveOverrides | kImportNoNotify;  // 9

void diagnostic(Host& host, const PluginState& state, const std::string& text) {
    if (state.filterDiagnostics) showMessage(host, text);
}

}  // namespace

void RemoveConditionalTextSettings(Host& host, PluginState& state, Handle doc, const std::string& conditionName) {
    const std::vector<Handle> none;
    host.setIntProperty(doc, doc, kPropShowAll, 1);
    for (Handle flow = host.firstFlow(doc); flow != kNoObject; flow = host.nextFlow(doc, flow)) {
        const Handle top = host.highestLevelElement(doc, flow);
        if (top == kNoObject) continue;
        host.setElementSelection(doc, wholeElement(host, doc, top));
        const TextRange all = host.textSelection(doc);
        host.setTextConditions(doc, all, none);
        host.clearError();
        for (TextRange found = host.findConditionalText(doc, all.begin, {conditionName});
             host.errorNumber() == kErrorNone && found.begin.object != kNoObject;
             found = host.findConditionalText(doc, found.end, {conditionName})) {
            host.setTextConditions(doc, found, none);
        }
        if (host.errorNumber() != kErrorNone && host.errorNumber() != kErrorNotFound)
            showMessage(host, withTexts(kFindFailed, {fileNameOf(host.path(doc))}));
    }
    for (Handle table = host.firstTable(doc); table != kNoObject; table = host.nextTable(doc, table))
        for (Handle row = host.firstRow(doc, table); row != kNoObject; row = host.nextRow(doc, row))
            if (host.elementOfObject(doc, row) != kNoObject) host.setRowConditions(doc, row, none);
}

int FilterPass(Host& host, PluginState& state, Handle doc, int scope, int interactive) {
    state.cancel = 0;
    setStatusLines(host, state, "Please wait. Currently processing:", lastCharactersShown(host.path(doc), kShownPathLength), ". . .",
                   "Press Esc to cancel");
    const bool source = state.prefs.filterType == kFilterSourceFile;
    Handle hidden = kNoObject;
    TextRange selection;
    const Handle target = scope == kFilterScopeBook ? host.activeBook() : doc;
    if (source) {
        hidden = host.namedObject(doc, kConditionFormatObject, kHidden);
        if (hidden == kNoObject) {
            diagnostic(host, state, "Creating Hidden condition");
            hidden = host.newNamedObject(doc, kConditionFormatObject, kHidden);
        }
        RemoveConditionalTextSettings(host, state, doc, kHidden);
        selection = host.textSelection(target);
    }
    host.setActiveDocument(doc);

    const bool allFlows = state.filter.options.processAllFlows != 0;
    for (Handle flow = allFlows ? host.firstFlow(doc) : host.mainFlow(doc); flow != kNoObject;
         flow = host.nextFlow(doc, flow)) {
        diagnostic(host, state, "Flow name: " + host.flowName(doc, flow));
        const Handle top = host.highestLevelElement(doc, flow);
        if (top != kNoObject) {
            diagnostic(host, state, "HLE tag: " + host.definitionTag(doc, host.elementDefinition(doc, top)));
            FilterSubtree(host, state, doc, top, scope, interactive);
        }
        if (state.cancel == 1) {
            host.setIntProperty(doc, doc, kPropIsOnScreen, 1);
            return 0;
        }
        if (!allFlows) break;
    }

    if (source) {
        host.setConditionShown(doc, hidden, false);
        host.setIntProperty(doc, doc, kPropShowAll, 0);
    }
    if (state.filteringOptions[kFilterRemoveColoringOption] == 1) host.importElementDefinitions(doc, doc, kImportFromItself);
    if (source) host.setTextSelection(target, selection);
    host.setIntProperty(doc, doc, kPropIsOnScreen, 1);
    return 1;
}

void RestoreDocument(Host& host, PluginState& state, Handle doc, int ask) {
    if (doc == kNoObject) doc = host.activeDocument();
    if (doc == kNoObject) {
        showMessage(host, kNoActiveDocumentToFilter);
        return;
    }
    if (ask == 1 && !askQuestion(host, kRestoreDocumentQuestion)) return;
    RemoveConditionalTextSettings(host, state, doc, kHidden);
}

int RestoreBook(Host& host, PluginState& state, Handle book, int ask) {
    if (book == kNoObject) book = host.activeBook();
    if (book == kNoObject) {
        showMessage(host, kNoActiveDocumentToFilter);
        return 0;
    }
    if (ask == 1 && !askQuestion(host, kRestoreBookQuestion)) return 0;
    const OpenDocuments open = openDocumentsByPath(host);
    for (Handle component = host.firstComponent(book); component != kNoObject;
         component = host.nextComponent(book, component)) {
        const Handle doc = componentDocument(host, open, book, component);
        if (doc == kNoObject) continue;  // a closed chapter is not opened
        host.setIntProperty(doc, doc, kPropIsInFront, 1);
        RestoreDocument(host, state, doc, 0);
    }
    return host.setIntProperty(book, book, kPropIsInFront, 1) ? 1 : 0;
}

}  // namespace voka
