// Memory for elements, always freed by the function that travels with it.
#pragma once

#include <cstddef>

namespace vexa::client {

/// Frees what the functions below return.
void freeElements(void* data);

/// `count` elements of `size` bytes, all zero; costs what `calloc` costs. Never null.
/// @throws std::bad_alloc
void* allocateZeros(std::size_t count, std::size_t size);

/// The same without setting the bytes.
/// @throws std::bad_alloc
void* allocateElements(std::size_t count, std::size_t size);

} // namespace vexa::client
