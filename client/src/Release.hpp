// Destroying nested arrays to any depth.
#pragma once

#include "ArrayHolder.hpp"

#include <foundation/vexadata/Array.hpp>

#include <vector>

namespace vexa::client {

/// Releases everything in `places`, for the destructor that owns them. When too many of these run inside each
/// other on one thread, what is left is put aside for the outermost, so that no depth of nesting overflows
/// the stack.
void releaseAll(std::vector<foundation::vexadata::Array>&& places) noexcept;
void releaseAll(std::vector<Held>&& places) noexcept;

} // namespace vexa::client
