// Identity of an engine instance.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <cstring>

namespace foundation::vexadata {

/// Names the engine instance that owns a handle object. The sixteen bytes mean nothing to this library; two
/// values are equal exactly when all bytes are.
struct ZVMID {
    /// Their order counts.
    unsigned char bytes[16];
};

/// Byte by byte.
inline bool operator==(const ZVMID& a, const ZVMID& b) noexcept {
    return std::memcmp(a.bytes, b.bytes, sizeof a.bytes) == 0;
}
inline bool operator!=(const ZVMID& a, const ZVMID& b) noexcept { return !(a == b); }

} // namespace foundation::vexadata

namespace vexa::data::impl {
using foundation::vexadata::ZVMID;
} // namespace vexa::data::impl
