// What a reference to another file in a DITA map or an XInclude document
// names on disk. References are URI references: a fragment or a query names
// a part of the file, and the file is what a book holds; a reference with a
// scheme other than file: is on the network, which voka never reads.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace voka::headless {

// How many files one book may gather from a map or an XInclude document,
// and how deep maps may nest, whatever the files say.
inline constexpr std::size_t kMaxGatheredComponents = 20000;
inline constexpr std::size_t kMaxMapNesting = 32;
inline constexpr std::size_t kMaxMapsRead = 2000;

enum class Reference { File, Empty, Remote };

// `href` resolved against `base`, a file or folder URI reference already
// resolved to a path: "../t.dita#a/b" against "/m/maps/x.ditamap" is
// "/m/t.dita". `path` is set, absolute and lexically normal, for File.
Reference resolveReference(std::string_view href, const std::string& base, std::string& path);

// The folder a relative reference resolves against, ending with '/', for a
// base given as a path: "/m/maps/x.ditamap" -> "/m/maps/", "/m/maps/" stays.
std::string baseFolder(const std::string& base);

}  // namespace voka::headless
