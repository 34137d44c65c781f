// The colouring commands: colour the selection, a document or a book, and
// remove colouring from a document or a book. One routine serves the menus
// and the text commands of other clients; it finds the target, checks that a
// colouring scheme is active, shows progress, resolves the scheme's colours
// for each document and reports the outcome as a result code (ColoringResult).
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

namespace voka {

enum ColoringAction : int {
    kColorSelection = 10,
    kColorDocument = 13,
    kColorBook = 14,
    kUncolorDocument = 15,
    kUncolorBook = 16,
};

// target: a document or book, or 0 for the active one. askScheme 1 lets the
// active scheme dialog (state.calls) come first when the user asked for it;
// showProgress 1 opens the progress dialog; interactive 1 allows messages.
int ColorCommand(Host& host, PluginState& state, Handle target, int code, int askScheme, int showProgress,
                 int interactive);

// Colours (14) or uncolours (16) every open document of the book; closed
// components are passed over. Only a cancel stops it early.
int ColorBook(Host& host, PluginState& state, Handle book, int interactive, int code);

// Colours every structured flow the scheme asks for (the main flow, or all
// flows) after removing all format overrides. Code 13 or 14.
int ColorDocument(Host& host, PluginState& state, Handle doc, int code, int interactive);

}  // namespace voka
