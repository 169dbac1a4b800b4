// Memory for elements, always freed by the function that travels with it. Offered to back-ends for their
// buffers.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <cstddef>

namespace vexa::data::detail {

/// Frees what the functions below return; null is left alone.
VEXADATA_API void freeElements(void* data);

/// `count` elements of `size` bytes, all zero; costs what `calloc` costs. Never null, also without elements.
/// @throws std::bad_alloc
VEXADATA_API void* allocateZeros(std::size_t count, std::size_t size);

/// The same without setting the bytes.
/// @throws std::bad_alloc
VEXADATA_API void* allocateElements(std::size_t count, std::size_t size);

} // namespace vexa::data::detail
