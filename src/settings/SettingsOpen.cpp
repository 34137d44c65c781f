// Opening a settings document so that the user never sees it and is never
// asked anything.
#include "settings/SettingsDocument.h"

namespace voka {

Handle openSettingsInvisibly(Host& host, const std::string& path) {
    OpenParams params;
    params.makeVisible = false;
    params.interactive = false;
    const Handle doc = host.open(path, params);
    if (doc == kNoObject) return kNoObject;
    host.setVisible(doc, false);
    return doc;
}

Handle openSettingsInvisiblyChecked(Host& host, Handle doc, const std::string& path) {
    const std::string file = doc != kNoObject ? host.path(doc) : path;
    if (file.empty() || !host.fileExists(file)) return kNoObject;
    return openSettingsInvisibly(host, file);
}

}  // namespace voka
