// What may be appended to an index chain, and which element it means. Stated once, over plain values; the
// shared chain and the element handles that hold their chain in place both use it.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Exception.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vexa::data::detail {

namespace fv = foundation::vexadata;

namespace rules {

/// Any extent of 0. The two-dimensional case comes first because most arrays are matrices.
inline bool hasNoElements(const std::vector<std::size_t>& dimensions) noexcept {
    if (dimensions.size() == 2) {
        return dimensions[0] == 0 || dimensions[1] == 0;
    }
    return std::find(dimensions.begin(), dimensions.end(), 0U) != dimensions.end();
}

/// @throws EArrayIndexOutOfRange
inline void requireInside(std::size_t index, std::size_t extent) {
    if (index >= extent) {
        fv::detail::raise<fv::EArrayIndexOutOfRange>();
    }
}

/// Column-major position in a matrix.
inline std::size_t inMatrix(const std::vector<std::size_t>& dimensions, std::size_t row, std::size_t column) {
    requireInside(row, dimensions[0]);
    requireInside(column, dimensions[1]);
    return row + column * dimensions[0];
}

/// Position of the element at these indices, one for each dimension.
/// @throws EArrayIndexOutOfRange
inline std::size_t columnMajor(const std::vector<std::size_t>& dimensions, const std::uint64_t* indices) {
    std::size_t position = 0;
    std::size_t stride = 1;
    for (std::size_t k = 0; k < dimensions.size(); ++k) {
        requireInside(indices[k], dimensions[k]);
        position += indices[k] * stride;
        stride *= dimensions[k];
    }
    return position;
}
inline std::size_t rowMajor(const std::vector<std::size_t>& dimensions, const std::uint64_t* indices) {
    std::size_t position = 0;
    std::size_t stride = 1;
    for (std::size_t k = dimensions.size(); k-- > 0;) {
        requireInside(indices[k], dimensions[k]);
        position += indices[k] * stride;
        stride *= dimensions[k];
    }
    return position;
}

} // namespace rules

/// Product of dimensions that are known to have one.
inline std::size_t elementCount(const std::vector<std::size_t>& dimensions) noexcept {
    std::size_t product = 1;
    for (const std::size_t extent : dimensions) {
        product *= extent;
    }
    return product;
}

/// Checks that `index` may follow `count` indices into an array of the given dimensions. A surplus zero may.
/// @throws CantIndexIntoEmptyArrayException for a first index into an array without elements
/// @throws TooManyIndicesProvidedException for a non-zero index beyond the last dimension
inline void checkAppend(const std::vector<std::size_t>& dimensions, std::size_t count, std::size_t index) {
    if (count == 0 && rules::hasNoElements(dimensions)) {
        fv::detail::raise<fv::CantIndexIntoEmptyArrayException>();
    }
    if (count >= dimensions.size() && index != 0) {
        fv::detail::raise<fv::TooManyIndicesProvidedException>();
    }
}

/// True for a row or a column, which take a single index.
inline bool isVector(const std::vector<std::size_t>& dimensions) noexcept {
    return dimensions.size() == 2 && (dimensions[0] == 1 || dimensions[1] == 1);
}

/// True when a single index into a matrix still has to be spread over both dimensions.
inline bool isSingleIndexIntoMatrix(const std::vector<std::size_t>& dimensions, std::size_t count) noexcept {
    return count == 1 && dimensions.size() == 2;
}

/// Spreads a single index over the two dimensions of a row or column vector, in `indices[0..1]`.
/// @throws NotEnoughIndicesProvidedException for any other matrix: those are not indexed linearly
inline void spreadSingleIndex(const std::vector<std::size_t>& dimensions, std::uint64_t* indices) {
    if (dimensions[0] == 1) {
        indices[1] = indices[0];
        indices[0] = 0;
    } else if (dimensions[1] == 1) {
        indices[1] = 0;
    } else {
        fv::detail::raise<fv::NotEnoughIndicesProvidedException>();
    }
}

/// Position in storage of the element at `indices`, one index for each dimension. With a layout that is
/// neither column- nor row-major the position is 0 and nothing is checked.
/// @throws EArrayIndexOutOfRange when an index is not less than its dimension
inline std::size_t positionOf(const std::vector<std::size_t>& dimensions, const std::uint64_t* indices,
                              MemoryLayout layout) {
    if (layout == MemoryLayout::COLUMN_MAJOR) {
        return rules::columnMajor(dimensions, indices);
    }
    return layout == MemoryLayout::ROW_MAJOR ? rules::rowMajor(dimensions, indices) : 0;
}

} // namespace vexa::data::detail
