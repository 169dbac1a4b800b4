// Sizes that arrays of this back-end may have.
#pragma once

#include <vexa/data/detail/IndexRules.hpp>

#include <cstddef>
#include <new>
#include <vector>

namespace vexa::client {

using Dimensions = std::vector<std::size_t>;

using data::detail::elementCount;

/// `count`, when a vector of `T` can hold so many elements.
/// @throws std::bad_alloc
template <class T>
std::size_t allocatable(std::size_t count) {
    if (count > std::vector<T>().max_size()) {
        throw std::bad_alloc();
    }
    return count;
}

} // namespace vexa::client
