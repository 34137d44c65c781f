// Edits of the in-memory model that keep its offsets consistent: inserting
// text and empty elements, deleting elements and text, and copying element
// subtrees from one document into another (the clipboard).
//
// Offsets are absolute byte offsets in a flow's text. Inserting text moves
// what follows it at once; deleting only queues the removed range
// (Flow::pendingCuts), so a pass that deletes thousands of elements pays for
// the offsets once, when Document::applyCuts runs. Every function that reads
// or writes offsets expects a document without pending cuts.
#pragma once

#include "host/headless/Model.h"

#include <string_view>
#include <vector>

namespace voka::headless {

// The innermost element at `offset`: from `element`, down through children
// that contain the offset strictly inside them. Text inserted there belongs
// to that element.
Index anchorAt(const Document& doc, Index element, std::uint32_t offset);
// The same from the flow's highest-level element; kNil when the offset lies
// outside it.
Index flowAnchorAt(const Document& doc, std::uint16_t flow, std::uint32_t offset);

// Inserts text at `offset` into `anchor` (kNil: outside any element). The
// anchor and its ancestors grow; what follows moves on; the new text carries
// no format overrides and no conditions. A marker at the offset stays before
// the new text, unless the text is added at the anchor's end.
void insertText(Document& doc, std::uint16_t flow, std::uint32_t offset, Index anchor, std::string_view text);

// A new empty element at `offset`, a child of `parent` placed before
// `before` (kNil: the last child).
Index insertElement(Document& doc, Index definition, Index parent, Index before, std::uint32_t offset);

// Deletes an element with its subtree; its text is queued for removal.
void cutElement(Document& doc, Index element);
// Deletes the text [begin, end) of a flow and the elements wholly inside it
// (not the element that holds the range).
void cutText(Document& doc, std::uint16_t flow, std::uint32_t begin, std::uint32_t end);

// Copies the sibling elements first..last (inclusive) of `from`, with the
// text they span, their attributes, format overrides, conditions and table
// properties, into `to` as children of `parent` before `before`, at `offset`.
// Definitions, colours and condition formats missing in `to` are added;
// attribute values the target's definition does not declare are dropped.
// Returns the copies' indices.
std::vector<Index> copyElements(const Document& from, Index first, Index last, Document& to, Index parent,
                                Index before, std::uint32_t offset);

// True when `ancestor` is `element` or one of its ancestors.
bool isAncestorOrSelf(const Document& doc, Index ancestor, Index element);

}  // namespace voka::headless
