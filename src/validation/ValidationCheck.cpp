#include "validation/ValidationCheck.h"

#include "frame/Dialogs.h"
#include "schemes/ElementAttributes.h"
#include "schemes/ElementWalker.h"
#include "validation/ValidationErrors.h"
#include "validation/ValidationPath.h"
#include "validation/ValidationRules.h"

#include <string>
#include <string_view>
#include <vector>

namespace voka {

namespace {

// Esc is polled on every 102nd step, as colouring and filtering do.
constexpr int kStepsBetweenPolls = 101;

// Returns the rule of the last error told, or -1.
int checkAttribute(Host& host, PluginState& state, const ValidationPath& path, Handle doc, Handle element,
                   const std::string& name, ValidationPath::Views values, int slot, int mode) {
    const ValidationPath::Reference reference = path.reference(slot);
    AttributeUnderCheck attribute;
    attribute.values = values;
    attribute.valid = &path.rule(slot).values;
    attribute.emptyAllowed = path.emptyAllowed(slot);
    attribute.hasReference = reference.found;
    if (reference.found) attribute.reference = path.values(reference.values);
    RuleError errors[4];
    const int count = findRuleErrors(attribute, state.prefs.validationRuleActive, path.exact(), errors);
    for (int i = 0; i < count; ++i)
        ReportValidationError(host, state, errors[i].rule, doc, element, name, std::string(errors[i].value), mode);
    return count > 0 ? errors[count - 1].rule : -1;
}

// Two declared attributes on one listed name: the element's list is read
// whole, each attribute with its own values.
int checkWholeList(Host& host, PluginState& state, const ValidationPath& path, Handle doc, Handle element,
                   int mode) {
    const SchemeOptions& options = state.validation.options;
    const Attributes attributes =
        GetElementAttributes(host, state, doc, element, options.includeEddDefaults, options.spaceDelimited);
    int result = -1;
    std::vector<std::string_view> values;
    for (const Attribute& attribute : attributes) {
        const int slot = path.slotOf(attribute.name);
        if (slot < 0) continue;
        values.assign(attribute.values.begin(), attribute.values.end());
        const int rule = checkAttribute(host, state, path, doc, element, attribute.name, values, slot, mode);
        if (rule >= 0) result = rule;
    }
    return result;
}

void markElement(Host& host, PluginState& state, Handle doc, Handle element, bool failed) {
    const TextRange range = host.elementTextRange(doc, element);
    if (failed && state.prefs.applyStrikethrough == 1) {
        host.setTextProperty(doc, range, TextProperty::Strikethrough, 1);
        return;
    }
    // Whoever struck the text through, a passing element is shown plain.
    if (host.textProperty(doc, range.begin, TextProperty::Strikethrough) != 0)
        host.setTextProperty(doc, range, TextProperty::Strikethrough, 0);
}

int checkReached(Host& host, PluginState& state, ValidationPath& path, Handle doc, Handle element, int mode) {
    if (!path.reach(host, element) || path.declaresNothing()) return -1;
    int result = -1;
    if (path.needsWholeRead()) {
        result = checkWholeList(host, state, path, doc, element, mode);
    } else {
        for (const ValidationPath::Checked& checked : path.checked()) {
            const int rule = checkAttribute(host, state, path, doc, element, checked.name, path.own(checked.slot),
                                            checked.slot, mode);
            if (rule >= 0) result = rule;
        }
    }
    markElement(host, state, doc, element, result >= 0);
    return result;
}

}  // namespace

int CheckElement(Host& host, PluginState& state, Handle doc, Handle element, int mode) {
    ValidationPath path;
    path.prepare(state.validation, doc);
    return checkReached(host, state, path, doc, element, mode);
}

int CheckSubtree(Host& host, PluginState& state, Handle doc, Handle element, int mode) {
    ValidationPath path;
    path.prepare(state.validation, doc);
    state.walk.enabled = 1;
    state.walk.direction = WalkDirection::Down;
    Handle end = host.nextSibling(doc, element);
    if (end == kNoObject) end = host.parent(doc, element);

    int result = -1;
    int steps = 0;
    for (Handle at = element; at != kNoObject && at != end; at = nextTaggedElement(host, state, doc, at)) {
        // The polling step resets the count without counting itself.
        if (steps >= kStepsBetweenPolls) {
            steps = 0;
            if (pollCancel(host, state)) {
                state.cancel = 1;
                break;
            }
        } else {
            ++steps;
        }
        // A step back up to a parent is counted but not checked again.
        if (state.walk.direction == WalkDirection::Up) continue;
        const int rule = checkReached(host, state, path, doc, at, mode);
        if (rule >= 0) result = rule;
    }
    return result;
}

}  // namespace voka
