// Changing the order in which elements lie. The umbrella header does not include this one.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace foundation::vexadata {

namespace detail {

/// Copies a matrix of `rows` elements side by side to one of `columns` elements side by side, in squares that
/// stay in the cache.
template <class T>
void transpose(const T* from, T* to, std::size_t rows, std::size_t columns) {
    constexpr std::size_t side = 16;
    for (std::size_t j = 0; j < columns; j += side) {
        for (std::size_t i = 0; i < rows; i += side) {
            const std::size_t lastRow = std::min(i + side, rows);
            const std::size_t lastColumn = std::min(j + side, columns);
            for (std::size_t column = j; column < lastColumn; ++column) {
                for (std::size_t row = i; row < lastRow; ++row) {
                    to[row * columns + column] = from[column * rows + row];
                }
            }
        }
    }
}

/// Copies elements of which the first index varies fastest to where the last one does.
template <class T>
void reverseOrder(const T* from, T* to, const std::vector<std::size_t>& extents) {
    if (extents.size() == 2) {
        transpose(from, to, extents[0], extents[1]);
        return;
    }
    std::size_t count = 1;
    for (const std::size_t extent : extents) {
        count *= extent;
    }
    std::vector<std::size_t> steps(extents.size(), 1); // in the target, for each index
    for (std::size_t k = extents.size(); k-- > 1;) {
        steps[k - 1] = steps[k] * extents[k];
    }
    std::vector<std::size_t> indices(extents.size(), 0);
    std::size_t target = 0;
    for (std::size_t k = 0; k < count; ++k) {
        to[target] = from[k];
        for (std::size_t d = 0; d < extents.size(); ++d) {
            target += steps[d];
            if (++indices[d] < extents[d]) {
                break;
            }
            target -= steps[d] * extents[d];
            indices[d] = 0;
        }
    }
}

} // namespace detail

/// The same elements under the same indices, in the order of `layout`: `array` itself, shared, when they lie
/// so already, and a copy otherwise. Algorithms over two arrays walk them in the order in which each lies, so
/// that both should have one layout.
/// @throws InvalidArrayTypeException for a layout other than the two; errors of the back-end
template <class T>
TypedArray<T> withLayout(const TypedArray<T>& array, vexa::data::MemoryLayout layout) {
    using vexa::data::MemoryLayout;
    static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements have a layout");
    if (layout != MemoryLayout::COLUMN_MAJOR && layout != MemoryLayout::ROW_MAJOR) {
        detail::raise<InvalidArrayTypeException>();
    }
    if (array.getMemoryLayout() == layout) {
        return array;
    }
    const ArrayFactory factory;
    std::vector<std::size_t> extents = array.getDimensions();
    buffer_ptr<T> values = factory.createBuffer<T>(array.getNumberOfElements());
    if (!array.isEmpty()) {
        std::vector<std::size_t> order = extents;
        if (layout == MemoryLayout::COLUMN_MAJOR) {
            std::reverse(order.begin(), order.end());
        }
        detail::reverseOrder(&*array.begin(), values.get(), order);
    }
    return factory.createArrayFromBuffer<T>(std::move(extents), std::move(values), layout);
}

} // namespace foundation::vexadata
