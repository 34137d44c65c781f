#include "coloring/ColoringEngine.h"

#include "coloring/ColoringMessages.h"
#include "schemes/ElementWalker.h"
#include "coloring/RuleApplication.h"
#include "coloring/RuleColors.h"
#include "frame/Alerts.h"
#include "frame/Dialogs.h"
#include "schemes/NameLists.h"
#include "schemes/RuleMatching.h"

namespace voka {

namespace {

// The two element kinds whose rules are applied with their own context code.
int contextForElement(Host& host, Handle doc, Handle element, int contextCode) {
    int type = host.elementType(doc, element);
    if (type == kElementTableCell) return kContextTableCell;
    if (type == kElementFootnote) return kContextFootnote;
    return contextCode;
}

void colorElement(Host& host, PluginState& state, MatchContext& context, Handle doc, Handle element,
                  int contextCode) {
    int code = contextForElement(host, doc, element, contextCode);
    int rule = findMatchingRuleIn(host, state, context, element, code);
    if (rule < 0) return;
    ApplyRuleToElement(host, state, doc, element, rule, 1, 0);
    if (code == kContextFootnote) {
        // A footnote's text lives in its own paragraphs as well.
        ApplyRuleToElement(host, state, doc, element, rule, 0, 1);
        ApplyRuleToElement(host, state, doc, element, rule, 1, 1);
    }
    if (state.coloring.rules[static_cast<std::size_t>(rule)].override == 1) state.walk.direction = WalkDirection::Up;
}

}  // namespace

int ColorElementTree(Host& host, PluginState& state, Handle doc, Handle start, int contextCode, int walkOn,
                     int interactive) {
    if (isNoneName(state.active.coloringScheme)) {
        if (interactive) showMessage(host, kNoActiveSchemeToApply);
        return kColoringNoScheme;
    }
    if (contextCode == kContextSelection) {
        std::string missing;
        if (!ResolveRuleColors(host, state, doc, missing) && state.coloringOptions.warnMissingColors == 1 &&
            interactive) {
            if (!askQuestion(host, withTexts(kSelectionColorsMissing, {missing}))) return kColoringCancelled;
        }
    }

    state.walk.enabled = 1;
    state.walk.direction = WalkDirection::Down;
    state.cancel = 0;
    int steps = 0;
    TextRange selection;
    if (contextCode == kContextSelection) selection = host.textSelection(doc);

    Handle stop = host.nextSibling(doc, start);
    if (stop == kNoObject) stop = host.parent(doc, start);

    MatchContext context;
    prepareMatching(state, doc, context);
    for (Handle element = start; element != kNoObject && element != stop;) {
        // The polling element resets the count without counting itself.
        if (steps > kElementsPerCancelPoll - 2) {
            steps = 0;
            if (pollCancel(host, state)) {
                state.cancel = 1;
                return kColoringCancelled;
            }
        } else {
            ++steps;
        }
        if (state.walk.direction != WalkDirection::Up) colorElement(host, state, context, doc, element, contextCode);
        element = walkOn ? nextTaggedElement(host, state, doc, element, &context) : kNoObject;
    }

    if (contextCode == kContextSelection) {
        host.setTextSelection(doc, selection);
        host.scrollTo(doc, selection);
        host.redisplay(doc);
    }
    return kColoringDone;
}

}  // namespace voka
