#include "Allocation.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace vexa::client {

namespace {

void* orThrow(void* data) {
    if (data == nullptr) {
        throw std::bad_alloc();
    }
    return data;
}

} // namespace

void freeElements(void* data) { std::free(data); }

void* allocateZeros(std::size_t count, std::size_t size) {
    return orThrow(std::calloc(std::max<std::size_t>(count, 1), size));
}

void* allocateElements(std::size_t count, std::size_t size) {
    if (count > std::numeric_limits<std::size_t>::max() / size) {
        throw std::bad_alloc();
    }
    return orThrow(std::malloc(std::max<std::size_t>(count, 1) * size));
}

} // namespace vexa::client
