// The host's full form: a document saved in it loads back with everything the
// model holds. The seeds are full-form files, so most inputs reach its loader;
// a content-form input is saved in the full form too, which keeps all but its
// prolog, comments and instructions.
#include "FuzzSupport.h"
#include "host/headless/persist/Persist.h"
#include "support/ModelEquality.h"

#include <unistd.h>

using namespace voka::headless;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    LoadResult loaded = loadFile(voka::fuzz::writeScratch("input.fm", data, size));
    if (!loaded.document) return 0;
    const std::string saved = voka::fuzz::scratchPath("saved.fm");
    SaveResult result = saveDocument(*loaded.document, saved, SaveForm::Full);
    if (!result.ok) voka::fuzz::fail("a loaded document does not save", result.error);
    LoadResult again = loadFile(saved);
    ::unlink(saved.c_str());
    if (!again.document) voka::fuzz::fail("a saved document does not load", again.error);
    if (again.document->contentForm) voka::fuzz::fail("a full-form save loads as content form", saved);
    loaded.document->contentForm = false;
    const std::string difference = voka::test::firstDifference(*loaded.document, *again.document);
    if (!difference.empty()) voka::fuzz::fail("a saved document loads back different", difference);
    return 0;
}
