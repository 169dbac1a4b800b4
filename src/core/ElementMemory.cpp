// Memory for elements, offered to back-ends.
#include <vexa/data/detail/ElementMemory.hpp>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace vexa::data::detail {

namespace {

void* orThrow(void* data) {
    if (data == nullptr) {
        throw std::bad_alloc();
    }
    return data;
}

/// At least one element, so that a buffer is never null.
std::size_t bytesOf(std::size_t count, std::size_t size) {
    if (count > std::numeric_limits<std::size_t>::max() / size) {
        throw std::bad_alloc();
    }
    return std::max<std::size_t>(count, 1) * size;
}

} // namespace

void freeElements(void* data) { std::free(data); }

void* allocateZeros(std::size_t count, std::size_t size) {
    return orThrow(std::calloc(bytesOf(count, size), 1));
}

void* allocateElements(std::size_t count, std::size_t size) {
    return orThrow(std::malloc(bytesOf(count, size)));
}

} // namespace vexa::data::detail
