// Handles of the headless host: the object type code in the top 8 bits (as
// the host publishes them), and an id in the low 24 bits that is never
// reused within a session, so a handle of a deleted or closed object is
// recognised as such. Objects kept in a vector per document have the id
// index + 1; elements share their id with their formatting objects (table,
// row, cell, footnote).
#pragma once

#include "host/Host.h"
#include "host/headless/Model.h"

#include <cstdint>

namespace voka::headless {

constexpr std::uint32_t kIdMask = 0x00FFFFFFu;

inline Handle makeHandle(int type, std::uint32_t id) { return (static_cast<Handle>(type) << 24) | (id & kIdMask); }
inline std::uint32_t handleId(Handle h) { return h & kIdMask; }
inline Handle indexHandle(int type, Index index) { return makeHandle(type, index + 1); }
inline Handle elementHandle(Index index) { return indexHandle(kElementObject, index); }

// The index a handle of `type` names; kNil for another type or none.
inline Index handleIndex(Handle h, int type) {
    if (objectType(h) != type || handleId(h) == 0) return kNil;
    return handleId(h) - 1;
}

// True when an id still fits in a handle.
inline bool idFits(std::uint64_t id) { return id >= 1 && id <= kIdMask; }

}  // namespace voka::headless
