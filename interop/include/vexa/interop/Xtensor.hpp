// Arrays as expressions of xtensor, without a copy, and xtensor's results as arrays. Needs xtensor 0.24;
// nothing else of the library includes this header. Results that move into arrays need vexadata::client, too.
#pragma once

#include <foundation/vexadata/TypedArray.hpp>
#include <vexa/client/Adoption.hpp>

#include <xtensor/xadapt.hpp>
#include <xtensor/xarray.hpp>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::interop {

namespace fv = foundation::vexadata;

namespace detail {

/// @throws std::invalid_argument unless the elements lie in the order `layout`; those of a row or column lie
/// in both
template <xt::layout_type layout>
void requireLayout(const fv::Array& array) {
    static_assert(layout == xt::layout_type::column_major || layout == xt::layout_type::row_major,
                  "elements lie column by column or row by row");
    const bool byRow = array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR;
    const std::vector<std::size_t> extents = array.getDimensions();
    const bool isLine = array.getNumberOfElements() == *std::max_element(extents.begin(), extents.end());
    if (byRow != (layout == xt::layout_type::row_major) && !isLine) {
        throw std::invalid_argument(
            byRow
                ? "xtensor: the elements lie row by row; ask for xtensorView<xt::layout_type::row_major>"
                : "xtensor: the elements lie column by column; ask for xtensorView<xt::layout_type::column_major>");
    }
}

} // namespace detail

/// An array of any number of dimensions as an expression of xtensor, read-only and without a copy; `layout`
/// is known when the program is compiled. Shares the array and keeps it alive; a write through a handle of
/// the array gives that handle a copy and leaves the expression where it was.
/// @throws std::invalid_argument, with a text that says what to ask for, when the array has the other layout
template <xt::layout_type layout = xt::layout_type::column_major, class T>
auto xtensorView(const fv::TypedArray<T>& array) {
    detail::requireLayout<layout>(array);
    const T* const data = array.data();
    return xt::adapt_smart_ptr<layout>(data, array.getDimensions(),
                                       std::make_shared<const fv::TypedArray<T>>(array));
}
/// The same for writing. The array is made private first, once.
/// @throws std::bad_alloc, the handle unchanged
template <xt::layout_type layout = xt::layout_type::column_major, class T>
auto writableXtensorView(fv::TypedArray<T>& array) {
    detail::requireLayout<layout>(array);
    T* const data = array.data();
    return xt::adapt_smart_ptr<layout>(data, array.getDimensions(),
                                       std::make_shared<const fv::TypedArray<T>>(array));
}

/// A container of xtensor as an array, which it is moved into: nothing is copied. One without dimensions is 1
/// by 1, one with one dimension a column.
/// @throws std::invalid_argument when its layout is dynamic and neither column- nor row-major
template <class T, xt::layout_type layout>
fv::TypedArray<T> fromXtensor(xt::xarray<T, layout> values) {
    static_assert(!std::is_same_v<T, bool> || sizeof(bool) == 1, "a logical is a byte");
    using data::MemoryLayout;
    const std::vector<std::size_t> dims(values.shape().begin(), values.shape().end());
    auto owner = std::make_shared<xt::xarray<T, layout>>(std::move(values));
    const bool byRow = owner->layout() == xt::layout_type::row_major;
    if (!byRow && owner->layout() != xt::layout_type::column_major) {
        throw std::invalid_argument("xtensor: the elements lie neither column by column nor row by row");
    }
    T* const data = owner->data();
    return client::adopt<T>(dims, data, std::move(owner),
                            byRow ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR);
}
/// The same for the value of an expression, which is evaluated into a container of `layout` first.
template <xt::layout_type layout = xt::layout_type::column_major, class Expression>
auto fromXtensor(const xt::xexpression<Expression>& expression) {
    using T = typename Expression::value_type;
    return fromXtensor(xt::xarray<T, layout>(expression.derived_cast()));
}

} // namespace vexa::interop
