// ColorElement and ColorFile: the colouring walk on one element, and the
// colouring command on a whole document or book, with the colouring's
// result codes translated into the text commands' own.
#include "coloring/ColoringCommands.h"
#include "coloring/ColoringEngine.h"
#include "extcall/CallHandlers.h"
#include "extcall/FileArguments.h"
#include "extcall/MessageSplit.h"
#include "extcall/TextCommands.h"

#include <span>

namespace voka {

namespace {

struct ResultMapping {
    int coloring;
    int answer;
};

constexpr ResultMapping kElementResults[] = {
    {kColoringNoScheme, kCallNoScheme},
    {kColoringCancelled, kCallColoringCancelled},
    {kColoringNothingDone, kCallColoringFailed},
};

constexpr ResultMapping kFileResults[] = {
    {kColoringNoScheme, kCallNoScheme},
    {kColoringCancelled, kCallColoringCancelled},
    {kColoringNoStructure, kCallNoStructure},
    {kColoringDone, kCallDone},
};

int mapped(std::span<const ResultMapping> table, int coloring, int otherwise) {
    for (const ResultMapping& entry : table) {
        if (entry.coloring == coloring) return entry.answer;
    }
    return otherwise;
}

}  // namespace

int colorElementCall(Host& host, PluginState& state, const CallItems& items) {
    const Handle doc = findFileArgument(host, items[1], false);
    if (doc == kNoObject) return kCallFileNotFound;
    const Handle element = elementArgument(items[2]);
    if (element == kNoObject) return kCallNotAnElement;
    // The walk resolves the scheme's colours for the document itself in the selection context.
    const int result = ColorElementTree(host, state, doc, element, kColorSelection, flagArgument(items[3]) ? 1 : 0,
                                        flagArgument(items[4]) ? 1 : 0);
    return mapped(kElementResults, result, kCallDone);
}

int colorFileCall(Host& host, PluginState& state, const CallItems& items) {
    const Handle target = findFileArgument(host, items[1], true);
    if (target == kNoObject) return kCallFileNotFound;
    const int interactive = flagArgument(items[2]) ? 1 : 0;
    const int type = objectType(target);
    int result = kColoringNothingDone;
    if (type == kDocumentObject || type == kBookObject) {
        // No scheme dialog first: the caller chose the scheme with SetScheme.
        const int code = type == kBookObject ? kColorBook : kColorDocument;
        result = ColorCommand(host, state, target, code, 0, 1, interactive);
    }
    return mapped(kFileResults, result, kCallColoringFailed);
}

}  // namespace voka
