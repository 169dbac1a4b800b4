// Dimensions of arrays.
#pragma once

#include <cstddef>
#include <new>
#include <vector>

namespace vexa::client {

using Dimensions = std::vector<std::size_t>;

/// 1 by 1 and 0 by 0, made when the library is loaded and never destroyed.
extern const Dimensions& dimensionsOfScalars;
extern const Dimensions& dimensionsOfNothing;

/// Product of dimensions that are known to have one.
inline std::size_t elementCount(const Dimensions& dimensions) noexcept {
    std::size_t product = 1;
    for (const std::size_t extent : dimensions) {
        product *= extent;
    }
    return product;
}

/// `count`, when a vector of `T` can hold so many. More are out of memory like any others.
/// @throws std::bad_alloc
template <class T>
std::size_t allocatable(std::size_t count) {
    if (count > std::vector<T>().max_size()) {
        throw std::bad_alloc();
    }
    return count;
}

} // namespace vexa::client
