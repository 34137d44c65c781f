// The master colour list: the colour names coloring rules may use, kept in
// `Names` of the main settings' `ColorList`, its editor, and the choices the
// scheme editor offers for a rule's colour.
#pragma once

#include "frame/PluginState.h"
#include "host/Host.h"

#include <string>
#include <vector>

namespace voka {

// The stored names; then "<skip>" and "<refresh EDD>" with `withSpecials`;
// then "Placeholder" (a dialog list's filler entry) with `withPlaceholder`.
std::vector<std::string> colorChoices(Host& host, PluginState& state, Handle doc, bool withSpecials,
                                      bool withPlaceholder);

// The Colors... command: the list editor on the master colour list; OK
// writes the list back and saves the main settings to their path (not the
// local copy). Returns 1 when a list was saved, 0 otherwise.
int EditMasterColorList(Host& host, PluginState& state);

}  // namespace voka
