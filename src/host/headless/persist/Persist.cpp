#include "host/headless/persist/Persist.h"

namespace voka::headless {

const ElementKindTable& defaultElementKinds() {
    static const ElementKindTable kinds;
    return kinds;
}

LoadResult loadFile(const std::string& systemPath) { return loadFile(systemPath, LoadOptions{}); }

LoadResult loadFile(const std::string& systemPath, const LoadOptions&) {
    LoadResult result;
    result.error = "Cannot load \"" + systemPath + "\": the XML loader is not built yet";
    return result;
}

SaveResult saveDocument(const Document&, const std::string& systemPath) {
    return {false, "Cannot save \"" + systemPath + "\": the XML writer is not built yet"};
}

SaveResult saveBook(const Book&, const std::string& systemPath) {
    return {false, "Cannot save \"" + systemPath + "\": the XML writer is not built yet"};
}

}  // namespace voka::headless
