// The content-form loader on any XML: whatever loads must save, and what is
// saved must load back to the same document.
#include "FuzzSupport.h"
#include "host/headless/persist/Persist.h"
#include "support/ModelEquality.h"

#include <unistd.h>

using namespace voka::headless;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    LoadResult loaded = loadFile(voka::fuzz::writeScratch("input.xml", data, size));
    if (!loaded.document) return 0;
    // Saved beside the input, so that a DTD the input names by a relative path resolves alike.
    const std::string saved = voka::fuzz::scratchPath("saved.xml");
    SaveResult result = saveDocument(*loaded.document, saved);
    if (!result.ok) voka::fuzz::fail("a loaded document does not save", result.error);
    LoadResult again = loadFile(saved);
    // Removed at once: the next input might name it as its DTD.
    ::unlink(saved.c_str());
    if (!again.document) voka::fuzz::fail("a saved document does not load", again.error);
    // A file in another encoding than UTF-8 comes back with its prolog declared UTF-8.
    loaded.document->contentProlog.clear();
    again.document->contentProlog.clear();
    const std::string difference = voka::test::firstDifference(*loaded.document, *again.document);
    if (!difference.empty()) voka::fuzz::fail("a saved document loads back different", difference);
    return 0;
}
