// The pass of a filter over one document, and taking a source-filtered
// document back to its full content. A source-file filter gives the content
// of every element that fails the condition "Hidden" and hides it, after
// clearing every condition the document had; a duplicate-file filter runs
// the same pass on the duplicate and deletes instead.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

// Said by the filter and restore commands when there is nothing to work on.
inline constexpr const char* kNoActiveDocumentToFilter = "No active document. Cannot continue.";

// The filter of state.prefs.filterType over the document's main flow (every
// flow with ProcessAllFlows). 1 when done, 0 when cancelled or aborted.
int FilterPass(Host& host, PluginState& state, Handle doc, int scope, int interactive);

// Removes every condition from the document's text and structured table
// rows, looking in particular for text still carrying `conditionName`.
void RemoveConditionalTextSettings(Host& host, PluginState& state, Handle doc, const std::string& conditionName);

// Restores a source-filtered document (0: the active one), asking first with `ask`.
void RestoreDocument(Host& host, PluginState& state, Handle doc, int ask);
// Restores every open document of a book (0: the active one), asking first with `ask`.
int RestoreBook(Host& host, PluginState& state, Handle book, int ask);

}  // namespace voka
