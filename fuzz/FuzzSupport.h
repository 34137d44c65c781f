// What the fuzz targets share. The loaders read paths, not memory, so each
// input goes to a file in a private scratch folder first; a broken promise
// aborts, so that libFuzzer reports it and keeps the input that broke it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace voka::fuzz {

// The file `name` in this process's scratch folder, made under $TMPDIR (or
// /tmp) at the first call and removed at a normal exit.
std::string scratchPath(const char* name);

// Replaces the file `name` in the scratch folder by the bytes; returns its path.
std::string writeScratch(const char* name, const std::uint8_t* data, std::size_t size);

// Prints what went wrong and aborts.
[[noreturn]] void fail(const char* what, const std::string& detail);

}  // namespace voka::fuzz
