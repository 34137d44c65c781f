// Moving a book and its chapters into another folder for a duplicate-file
// filter: the book is saved there, each chapter saved there under its own
// file name, cross-references re-pointed to the moved files, and chapters
// whose whole content would go left out. The originals are never written.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>

namespace voka {

// Transport error codes, left in state.settingsError.
inline constexpr int kTransportNoBook = 200;
inline constexpr int kTransportCancelled = 210;
inline constexpr int kTransportChapterUnopened = 216;
inline constexpr int kTransportBookNotSaved = 217;
inline constexpr int kTransportChapterNotSaved = 218;
inline constexpr int kTransportChapterNotOpen = 220;
inline constexpr int kTransportBadFolder = 224;

// The component marker: "<none>" on a chapter whose whole content goes.
inline constexpr const char* kRemovedChapter = "<none>";

// The new book, or 0 with the error code set and `failed` naming the file
// that could not be handled. When a chapter cannot be saved in the folder
// the original book's handle comes back instead, with code 218.
Handle TransportBook(Host& host, PluginState& state, Handle book, const std::string& folder, std::string& failed,
                     int removeMarked);

}  // namespace voka
