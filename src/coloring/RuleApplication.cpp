#include "coloring/RuleApplication.h"

#include <array>

namespace voka {

namespace {

struct StyleProperty {
    TextProperty property;
    int value;
};

// Text properties of each style number, in the order they are set.
struct StyleEffect {
    int count;
    std::array<StyleProperty, 2> properties;
};

constexpr std::array<StyleEffect, 8> kStyleEffects = {{
    {0, {}},
    {1, {{{TextProperty::Overline, 1}}}},
    {1, {{{TextProperty::Strikethrough, 1}}}},
    {1, {{{TextProperty::Underlining, kSingleUnderline}}}},
    {1, {{{TextProperty::Underlining, kDoubleUnderline}}}},
    {1, {{{TextProperty::ChangeBar, 1}}}},
    {1, {{{TextProperty::Underlining, kNumericUnderline}}}},
    {2, {{{TextProperty::ChangeBar, 1}, {TextProperty::Underlining, kNumericUnderline}}}},
}};

TextRange contentRange(Host& host, Handle doc, Handle element) {
    Handle child = host.firstChild(doc, element);
    ElementLocation begin{element, child, 0};
    ElementLocation end{element, kNoObject, child != kNoObject ? 0 : kEndOfObject};
    return TextRange{host.toTextLocation(doc, begin), host.toTextLocation(doc, end)};
}

TextRange objectRange(Host& host, Handle doc, Handle element) {
    Handle object = host.formattingObject(doc, element);
    return TextRange{{host.firstParagraph(doc, object), 0}, {host.lastParagraph(doc, object), kEndOfObject}};
}

TextRange ruleRange(Host& host, Handle doc, Handle element, int rangeMode, int objectText) {
    if (rangeMode == 1 && objectText == 0) return contentRange(host, doc, element);
    if (rangeMode == 1 && objectText == 1) return objectRange(host, doc, element);
    return host.elementTextRange(doc, element);
}

}  // namespace

void ApplyRuleToElement(Host& host, PluginState& state, Handle doc, Handle element, int ruleIndex, int rangeMode,
                        int objectText) {
    if (ruleIndex < 0 || ruleIndex >= static_cast<int>(state.coloring.rules.size())) return;
    const ColorRule& rule = state.coloring.rules[static_cast<std::size_t>(ruleIndex)];

    TextRange range = ruleRange(host, doc, element, rangeMode, objectText);
    // An element that begins with an anchor character is coloured after it.
    if (host.intProperty(doc, element, kPropElementBeginAdjust) == 1) range.begin.offset += 1;

    if (rule.colorId == kRefreshEddColor) {
        host.setElementDefinition(doc, element, host.elementDefinition(doc, element));
    } else {
        // "<skip>" and missing colours go through too; the host refuses them.
        host.setTextProperty(doc, range, TextProperty::Color, static_cast<int>(rule.colorId));
    }

    if (rule.style < 1 || rule.style >= static_cast<int>(kStyleEffects.size())) return;
    const StyleEffect& effect = kStyleEffects[static_cast<std::size_t>(rule.style)];
    for (int i = 0; i < effect.count; ++i) {
        host.setTextProperty(doc, range, effect.properties[static_cast<std::size_t>(i)].property,
                             effect.properties[static_cast<std::size_t>(i)].value);
    }
}

}  // namespace voka
