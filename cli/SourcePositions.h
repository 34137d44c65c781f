// Lines and columns of elements' start tags in the files they were read
// from, for findings that editors and CI annotate. The loader keeps where
// each start tag ends; its `<` is the last one before that, as an attribute
// value cannot hold one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace voka::cli {

struct SourcePosition {
    std::uint32_t line = 0;    // 1-based; 0 when unknown
    std::uint32_t column = 0;  // 1-based, in characters (Unicode code points)
};

// The positions of the start tags that end at `tagEnds` (byte offsets; 0
// for unknown) in the file at `systemPath`, in the order given. The file is
// read once, front to back.
std::vector<SourcePosition> startTagPositions(const std::string& systemPath, const std::vector<std::uint32_t>& tagEnds);

}  // namespace voka::cli
