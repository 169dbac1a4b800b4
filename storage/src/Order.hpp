// From one memory layout to the other, element by element.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>

#include <cstddef>
#include <vector>

namespace vexa::storage {

/// Where the element number `k` of a column-major order lies in a row-major one.
inline std::size_t rowMajorPlace(const std::vector<std::size_t>& dimensions, std::size_t k) noexcept {
    std::size_t place = 0;
    for (const std::size_t extent : dimensions) {
        place = place * extent + k % extent;
        k /= extent;
    }
    return place;
}
/// The other way round.
inline std::size_t columnMajorPlace(const std::vector<std::size_t>& dimensions, std::size_t k) noexcept {
    std::size_t place = 0;
    for (std::size_t n = dimensions.size(); n-- > 0;) {
        place = place * dimensions[n] + k % dimensions[n];
        k /= dimensions[n];
    }
    return place;
}

} // namespace vexa::storage
