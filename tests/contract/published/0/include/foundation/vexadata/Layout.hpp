// The same elements in another order or shape, or side by side with others. The umbrella header does not
// include this one.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ArrayView.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <type_traits>
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

/// What a view shows, rows, columns, parts and transposes among them, as an array of its own, column-major.
/// One index gives n by 1.
/// @throws NumberOfElementsExceedsMaximumException; errors of the back-end
template <class T, std::size_t Rank>
TypedArray<std::remove_const_t<T>> toArray(const ArrayView<T, Rank>& view) {
    using Element = std::remove_const_t<T>;
    const ArrayFactory factory;
    buffer_ptr<Element> values = factory.createBuffer<Element>(view.size());
    std::copy(view.begin(), view.end(), values.get());
    return factory.createArrayFromBuffer<Element>({view.extents().begin(), view.extents().end()},
                                                  std::move(values));
}

/// The same elements in the order in which they lie, under other dimensions. Hand the array over with
/// `std::move`: when nobody else shares it, nothing is copied.
/// @throws std::invalid_argument when the dimensions have another number of elements;
/// NumberOfElementsExceedsMaximumException; errors of the back-end
template <class T>
TypedArray<T> reshaped(TypedArray<T> array, std::vector<std::size_t> dims) {
    static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements are reshaped");
    if (detail::elementsOf(dims) != array.getNumberOfElements()) {
        throw std::invalid_argument("reshaped: an array of " + dimensionText(array) +
                                    " elements has another number of them");
    }
    const vexa::data::MemoryLayout layout = array.getMemoryLayout();
    return ArrayFactory().createArrayFromBuffer<T>(std::move(dims), array.release(), layout);
}

/// Arrays one behind the other along a dimension, counted from 0: 0 puts matrices below each other, 1 side by
/// side, 2 makes pages of them. All other dimensions must agree; those that an array does not have are 1.
/// Column-major.
/// @throws std::invalid_argument, naming the dimensions, when they do not agree, or for no arrays at all;
/// NumberOfElementsExceedsMaximumException; errors of the back-end
template <class T>
TypedArray<T> joined(std::size_t dimension, const std::vector<TypedArray<T>>& arrays) {
    static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements are joined");
    if (arrays.empty()) {
        throw std::invalid_argument("joined: no arrays");
    }
    std::size_t rank = dimension + 1;
    for (const TypedArray<T>& array : arrays) {
        rank = std::max(rank, array.getDimensions().size());
    }
    const auto extentsOf = [rank](const Array& array) {
        std::vector<std::size_t> extents = array.getDimensions();
        extents.resize(rank, 1);
        return extents;
    };
    const std::vector<std::size_t> first = extentsOf(arrays.front());
    std::vector<std::size_t> all = first;
    all[dimension] = 0;
    for (const TypedArray<T>& array : arrays) {
        std::vector<std::size_t> extents = extentsOf(array);
        all[dimension] += std::exchange(extents[dimension], first[dimension]);
        if (extents != first) {
            throw std::invalid_argument("joined: arrays of " + dimensionText(arrays.front()) + " and " +
                                        dimensionText(array) + " elements do not fit along dimension " +
                                        std::to_string(dimension));
        }
    }

    const ArrayFactory factory;
    const std::size_t count = detail::elementsOf(all);
    buffer_ptr<T> values = factory.createBuffer<T>(count);
    std::size_t run = 1; // elements of the whole up to and with the dimension
    for (std::size_t k = 0; k <= dimension; ++k) {
        run *= all[k];
    }
    T* place = values.get();
    for (const TypedArray<T>& array : arrays) {
        const TypedArray<T> inOrder = withLayout(array, vexa::data::MemoryLayout::COLUMN_MAJOR);
        const std::size_t outer = run == 0 ? 0 : count / run;
        const std::size_t part = outer == 0 ? 0 : inOrder.getNumberOfElements() / outer;
        for (std::size_t k = 0; k < outer; ++k) {
            std::copy_n(inOrder.data() + k * part, part, place + k * run);
        }
        place += part;
    }
    return factory.createArrayFromBuffer<T>(std::move(all), std::move(values));
}

} // namespace foundation::vexadata
