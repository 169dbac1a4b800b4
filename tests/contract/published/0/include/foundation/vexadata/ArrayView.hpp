// Checked access by several indices for inner loops: everything about the array is looked up once.
#pragma once

#include <foundation/vexadata/TypedArray.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#if __has_include(<mdspan>)
#    include <mdspan>
#endif

namespace foundation::vexadata {

/// Walks a view in the order of its indices, the first fastest. Does not keep the array alive. Iterators that
/// are compared must come from one view.
template <class T, std::size_t Rank>
class ViewIterator {
    using Extents = std::array<std::size_t, Rank>;

public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::remove_const_t<T>;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;

    /// Stands nowhere.
    ViewIterator() noexcept = default;
    /// At the first of some elements, with these extents and strides.
    ViewIterator(T* first, const Extents& extents, const Extents& strides) noexcept
        : element_(first), extents_(extents), strides_(strides) {}
    /// Behind `count` elements.
    explicit ViewIterator(std::size_t count) noexcept : passed_(count) {}

    /// As of every forward iterator. Nothing is tested.
    T& operator*() const noexcept { return *element_; }
    T* operator->() const noexcept { return element_; }
    ViewIterator& operator++() noexcept {
        ++passed_;
        for (std::size_t k = 0; k < Rank; ++k) {
            if (++indices_[k] < extents_[k]) {
                element_ += strides_[k];
                return *this;
            }
            element_ -= (extents_[k] - 1) * strides_[k];
            indices_[k] = 0;
        }
        return *this;
    }
    ViewIterator operator++(int) noexcept {
        const ViewIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const ViewIterator& a, const ViewIterator& b) noexcept {
        return a.passed_ == b.passed_;
    }
    friend bool operator!=(const ViewIterator& a, const ViewIterator& b) noexcept { return !(a == b); }

private:
    T* element_ = nullptr;
    std::size_t passed_ = 0;
    Extents indices_{};
    Extents extents_{};
    Extents strides_{};
};

/// A window on the elements of a primitive array with `Rank` indices, of either memory layout. Reads and
/// writes the elements themselves, without copy-on-write and without asking the back-end again. Shares the
/// array, which therefore stays alive; while a view exists, a write through a handle of the array gives that
/// handle a copy of its own and leaves the view where it was. Copies are cheap and see the same elements. `T`
/// is const for read-only views.
template <class T, std::size_t Rank = 2>
class ArrayView {
    static_assert(Rank > 0, "a view needs an index");

public:
    using element_type = T;
    using value_type = std::remove_const_t<T>;
    /// One number for each index.
    using Extents = std::array<std::size_t, Rank>;

    /// Over `data` with these extents and strides, counted in elements; `owner` keeps the storage alive.
    ArrayView(std::shared_ptr<const vexa::data::impl::ArrayImpl> owner, T* data, const Extents& extents,
              const Extents& strides) noexcept
        : data_(data), extents_(extents), strides_(strides), owner_(std::move(owner)) {}

    /// The element at `indices`, one for each dimension.
    /// @throws EArrayIndexOutOfRange
    template <class... Index>
    T& operator()(Index... indices) const {
        static_assert(sizeof...(Index) == Rank, "one index for each dimension of the view");
        static_assert((std::is_integral_v<Index> && ...), "indices are integers");
        return data_[offset(std::make_index_sequence<Rank>(), static_cast<std::size_t>(indices)...)];
    }

    /// Dimensions and strides of the view, counted in elements. No dimension is tested.
    static constexpr std::size_t rank() noexcept { return Rank; }
    std::size_t extent(std::size_t dimension) const { return extents_[dimension]; }
    std::size_t stride(std::size_t dimension) const { return strides_[dimension]; }
    const Extents& extents() const noexcept { return extents_; }
    const Extents& strides() const noexcept { return strides_; }
    /// First element in storage; null for an array without elements.
    T* data() const noexcept { return data_; }
    /// Number of elements.
    std::size_t size() const noexcept {
        std::size_t product = 1;
        for (const std::size_t extent : extents_) {
            product *= extent;
        }
        return product;
    }

    /// The elements with one index fixed, of which none is left for it: `view.slice(0, i)` is row i,
    /// `view.slice(1, j)` column j, `view.slice(2, k)` page k.
    /// @throws EArrayIndexOutOfRange
    ArrayView<T, Rank - 1> slice(std::size_t dimension, std::size_t index) const {
        static_assert(Rank > 1, "a view of one index has no slices");
        return {owner_, elements(dimension, index, 1), without(extents_, dimension),
                without(strides_, dimension)};
    }
    ArrayView<T, Rank - 1> row(std::size_t i) const { return slice(0, i); }
    ArrayView<T, Rank - 1> column(std::size_t j) const { return slice(1, j); }
    ArrayView<T, Rank - 1> page(std::size_t k) const { return slice(2, k); }

    /// `count` indices of a dimension from `first` on, and of these every `step`-th.
    /// @throws EArrayIndexOutOfRange when the last of them is not there, or `step` is 0
    ArrayView part(std::size_t dimension, std::size_t first, std::size_t count, std::size_t step = 1) const {
        ArrayView chosen = *this;
        const std::size_t steps = count == 0 ? 0 : count - 1;
        if (step == 0 || (steps != 0 && steps > extents_.at(dimension) / step)) {
            detail::raise<EArrayIndexOutOfRange>();
        }
        chosen.data_ = elements(dimension, first, count == 0 ? 0 : steps * step + 1);
        chosen.extents_[dimension] = count;
        chosen.strides_[dimension] *= step;
        return chosen;
    }

    /// The same elements with the dimensions in reverse: rows are columns.
    ArrayView transposed() const noexcept {
        ArrayView turned = *this;
        std::reverse(turned.extents_.begin(), turned.extents_.end());
        std::reverse(turned.strides_.begin(), turned.strides_.end());
        return turned;
    }

    /// The elements in the order of their indices, the first index fastest, whatever the memory layout:
    /// elements of two views that are walked together have the same indices.
    ViewIterator<T, Rank> begin() const noexcept {
        return size() == 0 ? end() : ViewIterator<T, Rank>(data_, extents_, strides_);
    }
    ViewIterator<T, Rank> end() const noexcept { return ViewIterator<T, Rank>(size()); }

#if defined(__cpp_lib_mdspan)
    /// The same window as the standard's; it does not keep the array alive.
    operator std::mdspan<T, std::dextents<std::size_t, Rank>, std::layout_stride>() const {
        using Shape = std::dextents<std::size_t, Rank>;
        return {data_, std::layout_stride::mapping<Shape>(Shape(extents_), strides_)};
    }
#endif

private:
    /// Where `count` indices of a dimension begin at `first`.
    /// @throws EArrayIndexOutOfRange unless they are there
    T* elements(std::size_t dimension, std::size_t first, std::size_t count) const {
        if (dimension >= Rank || count > extents_[dimension] || first > extents_[dimension] - count) {
            detail::raise<EArrayIndexOutOfRange>();
        }
        return size() == 0 || count == 0 ? data_ : data_ + first * strides_[dimension];
    }
    static std::array<std::size_t, Rank - 1> without(const Extents& all, std::size_t dimension) {
        std::array<std::size_t, Rank - 1> rest{};
        std::copy(all.begin() + static_cast<std::ptrdiff_t>(dimension) + 1, all.end(),
                  std::copy_n(all.begin(), dimension, rest.begin()));
        return rest;
    }

    template <std::size_t... K, class... Index>
    std::size_t offset(std::index_sequence<K...>, Index... indices) const {
        if (((indices >= extents_[K]) || ...)) {
            detail::raise<EArrayIndexOutOfRange>();
        }
        return ((indices * strides_[K]) + ...);
    }

    T* data_;
    Extents extents_;
    Extents strides_;
    std::shared_ptr<const vexa::data::impl::ArrayImpl> owner_;
};

namespace detail {

/// Fills in the extents and strides of an array seen through `rank` indices: missing dimensions have extent
/// 1, and a row or column vector may be seen through one index.
/// @throws NotEnoughIndicesProvidedException when the array has more dimensions than that
VEXADATA_API void describeLayout(const ArrayImpl& array, std::size_t rank, std::size_t* extents,
                                 std::size_t* strides);

template <class T, std::size_t Rank>
ArrayView<T, Rank> makeView(const std::shared_ptr<ArrayImpl>& impl, T* data) {
    typename ArrayView<T, Rank>::Extents extents{};
    typename ArrayView<T, Rank>::Extents strides{};
    describeLayout(*impl, Rank, extents.data(), strides.data());
    return ArrayView<T, Rank>(impl, data, extents, strides);
}

} // namespace detail

/// A read-only view with `Rank` indices. Never unshares.
/// @throws NotEnoughIndicesProvidedException when the array has more dimensions
template <std::size_t Rank = 2, class T>
ArrayView<const T, Rank> readOnlyView(const TypedArray<T>& array) {
    static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements have views");
    const auto& impl = detail::Access::impl(array);
    const T* data = static_cast<const detail::TypedArrayImpl<T>&>(*impl).getTypedDataPtr();
    return detail::makeView<const T, Rank>(impl, data);
}

/// A writable view with `Rank` indices; the array is made private first, once.
/// @throws NotEnoughIndicesProvidedException when the array has more dimensions; std::bad_alloc, the handle
/// unchanged
template <std::size_t Rank = 2, class T>
ArrayView<T, Rank> writableView(TypedArray<T>& array) {
    static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements have views");
    detail::Access::unshare(array);
    const auto& impl = detail::Access::impl(array);
    impl->unshare();
    // Storage of a private array may be written; the interface hands it out as read-only because most callers
    // read.
    T* data = const_cast<T*>(static_cast<const detail::TypedArrayImpl<T>&>(*impl).getTypedDataPtr());
    return detail::makeView<T, Rank>(impl, data);
}

} // namespace foundation::vexadata
