// DITA maps opened as books: the components are the topics the map refers
// to, in reading order, with the maps it refers to expanded in place.
// docs/file-formats.md ("Books from DITA maps") says what counts.
#pragma once

#include "host/headless/Model.h"
#include "host/headless/persist/XmlParse.h"

#include <memory>
#include <string>
#include <vector>

namespace voka::headless {

// One topic or map a map refers to, in document order.
struct MapReference {
    std::string path;  // absolute, lexically normal
    bool map = false;
    int line = 0;  // of the reference, in the map that makes it
};

// True when the root element makes the file a DITA map: `map` or `bookmap`,
// a `class` (written or the DTD's default) naming map/map, or a file named
// *.ditamap.
bool isDitaMapRoot(ParseContext& context, const StartTag& root);

// Collects the references of the map being parsed (its root already known to be a map).
std::unique_ptr<ParseHandler> makeMapReader(std::vector<MapReference>& references, const std::string& mapPath);

// The book of the map at `mapPath` whose own references are `references`:
// referenced maps are read and expanded in place (no recursion; cycles and
// maps too deeply nested are left out), each topic once at its first place.
// What is left out with a reason goes to `warnings`.
void gatherMapBook(Book& book, const std::string& mapPath, std::vector<MapReference> references,
                   std::vector<std::string>& warnings);

}  // namespace voka::headless
