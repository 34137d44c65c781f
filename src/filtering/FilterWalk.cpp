#include "filtering/FilterWalk.h"

#include "filtering/FilterVerdict.h"
#include "frame/Alerts.h"
#include "frame/Dialogs.h"
#include "frame/Selection.h"
#include "schemes/ElementWalker.h"

#include <vector>

namespace voka {

namespace {

constexpr const char* kNoStartMessage = "A critical error has occurred during the filter. Please contact technical support.";
constexpr const char* kDeleteFailedMessage =
    "A critical error occurred while attempting to delete an element. This usually occurs when the software "
    "attempts to delete a single table cell, which is not permitted in FrameMaker. Otherwise, there may be a "
    "bug.\n\nThe filter process will abort, and the offending element will be selected in the current document. "
    "Take a look to see why the element could not be deleted. If you can't find any good reason, there is likely "
    "a problem with the software.";
constexpr const char* kHiddenCondition = "Hidden";
constexpr int kCellLeftInPlace = 221;

// Esc is polled once every this many elements, as colouring does.
constexpr int kElementsPerPoll = 102;

std::string tagOf(Host& host, Handle doc, Handle element) {
    return host.definitionTag(doc, host.elementDefinition(doc, element));
}

// The table a part or row belongs to: its parent or, for a row in a body,
// heading or footing, its grandparent. 0 when neither is a table, as for a
// row some vocabulary puts straight into an unknown container.
Handle tableOf(Host& host, Handle doc, Handle element) {
    Handle at = host.parent(doc, element);
    if (at != kNoObject && host.elementType(doc, at) != kElementTable) at = host.parent(doc, at);
    return at != kNoObject && host.elementType(doc, at) == kElementTable ? at : kNoObject;
}

bool isTablePart(int type) {
    return type == kElementTableHeading || type == kElementTableBody || type == kElementTableFooting ||
           type == kElementTableRow;
}

// Where a deletion of a table part goes on when the element after it went
// too: after the table, or at its parent. 0 for other elements.
Handle fallbackAfter(Host& host, Handle doc, Handle element) {
    const Handle table = isTablePart(host.elementType(doc, element)) ? tableOf(host, doc, element) : kNoObject;
    if (table == kNoObject) return kNoObject;
    const Handle next = host.nextSibling(doc, table);
    return next != kNoObject ? next : host.parent(doc, table);
}

void hide(Host& host, Handle doc, Handle element, Handle hidden) {
    const std::vector<Handle> conditions{hidden};
    if (host.elementType(doc, element) == kElementTableRow) {
        host.setRowConditions(doc, host.formattingObject(doc, element), conditions);
        return;
    }
    host.setElementSelection(doc, wholeElement(host, doc, element));
    host.setTextConditions(doc, host.textSelection(doc), conditions);
}

}  // namespace

bool DeleteFromDuplicate(Host& host, PluginState& state, Handle doc, Handle element) {
    host.clearError();
    if (tagOf(host, doc, element).empty()) {
        host.setElementSelection(doc, wholeElement(host, doc, element));
        host.clearSelection(doc);
        return host.errorNumber() == kErrorNone;
    }
    const Handle parent = host.parent(doc, element);
    const int type = host.elementType(doc, element);
    const Handle table = isTablePart(type) ? tableOf(host, doc, element) : kNoObject;
    // A table part outside any table is deleted like any other element.
    switch (isTablePart(type) && table == kNoObject ? kElementContainer : type) {
        case kElementTableTitle:
            host.setIntProperty(doc, host.formattingObject(doc, parent), kPropTblTitlePosition, 0);
            break;
        case kElementTableHeading:
        case kElementTableFooting: {
            int rows = 0;
            for (Handle row = host.firstChild(doc, element); row != kNoObject; row = host.nextSibling(doc, row)) ++rows;
            host.deleteRows(doc, host.formattingObject(doc, table),
                            host.formattingObject(doc, host.firstChild(doc, element)), rows);
            break;
        }
        case kElementTableBody:
            // A table cannot do without its body.
            host.deleteObject(doc, table);
            break;
        case kElementTableRow: {
            const bool onlyRowOfBody = host.elementType(doc, parent) == kElementTableBody &&
                                       host.firstChild(doc, parent) == element && host.nextSibling(doc, element) == kNoObject;
            if (onlyRowOfBody) host.deleteObject(doc, table);
            else host.deleteRows(doc, host.formattingObject(doc, table), host.formattingObject(doc, element), 1);
            break;
        }
        case kElementTableCell:
            // A failing cell stays, quietly, and the walk goes on after it.
            state.settingsError = kCellLeftInPlace;
            break;
        default:
            host.deleteObject(doc, element);
    }
    return host.errorNumber() == kErrorNone;
}

void FilterSubtree(Host& host, PluginState& state, Handle doc, Handle start, int scope, int interactive) {
    if (doc == kNoObject || start == kNoObject) {
        if (interactive) showMessage(host, kNoStartMessage);
        state.cancel = 1;
        return;
    }
    state.cancel = 0;
    state.walk.direction = WalkDirection::Down;
    state.walk.enabled = 1;
    const int type = state.prefs.filterType;

    Handle hidden = kNoObject;
    if (type == kFilterSourceFile) {
        hidden = host.namedObject(doc, kConditionFormatObject, kHiddenCondition);
        if (hidden == kNoObject && state.filterDiagnostics) showMessage(host, "Failed to retrieve the Hidden condition");
    }

    Handle end = host.nextSibling(doc, start);
    if (end == kNoObject) end = host.parent(doc, start);

    FilterContext context;
    prepareFilter(state, doc, context);
    int steps = 0;
    for (Handle current = start; current != kNoObject && current != end;) {
        // The polling element resets the count without counting itself.
        if (steps > kElementsPerPoll - 2) {
            steps = 0;
            if (pollCancel(host, state)) {
                state.cancel = 1;
                host.setIntProperty(doc, doc, kPropIsOnScreen, 1);
                return;
            }
        } else {
            ++steps;
        }
        if (filterVerdictIn(host, context, current) == kFilterKeep) {
            current = nextTaggedElement(host, state, doc, current);
            continue;
        }
        if (state.filterDiagnostics) showMessage(host, "Deleting: " + tagOf(host, doc, current) + " element");
        if (type == kFilterSourceFile) {
            hide(host, doc, current, hidden);
            state.walk.direction = WalkDirection::Up;  // its children are hidden with it
            current = nextTaggedElement(host, state, doc, current);
            continue;
        }
        if (type != kFilterDuplicateFile) {
            current = nextTaggedElement(host, state, doc, current);
            continue;
        }
        const Handle removed = current;
        state.walk.direction = WalkDirection::Up;
        Handle next = nextTaggedElement(host, state, doc, removed);
        const bool wentUp = state.walk.direction == WalkDirection::Up;
        state.walk.enabled = 0;
        const Handle fallback = fallbackAfter(host, doc, removed);
        if (!DeleteFromDuplicate(host, state, doc, removed)) {
            showElement(host, doc, removed);
            showMessage(host, kDeleteFailedMessage);
            state.cancel = 1;
            return;
        }
        // Deleting a table part may take the element the walk was heading for.
        const bool nextGone = next == kNoObject || host.intProperty(doc, next, kPropUnique) == 0;
        if (fallback != kNoObject && nextGone) next = fallback;
        // An element still there after its removal (a cell left in place, a
        // heading emptied of its rows) would be entered again from its parent
        // for ever: the walk goes on after the parent instead.
        const bool stillThere = host.intProperty(doc, removed, kPropUnique) != 0;
        state.walk.direction = stillThere && wentUp ? WalkDirection::Up : WalkDirection::Down;
        current = next;
        state.walk.enabled = 1;
    }
}

}  // namespace voka
