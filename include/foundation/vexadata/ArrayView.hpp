// Checked access by several indices for inner loops: everything about the array is looked up once.
#pragma once

#include <foundation/vexadata/TypedArray.hpp>

#include <array>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#if __has_include(<mdspan>)
#    include <mdspan>
#endif

namespace foundation::vexadata {

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

    static constexpr std::size_t rank() noexcept { return Rank; }
    std::size_t extent(std::size_t dimension) const { return extents_[dimension]; }
    std::size_t stride(std::size_t dimension) const { return strides_[dimension]; }
    const Extents& extents() const noexcept { return extents_; }
    const Extents& strides() const noexcept { return strides_; }
    /// First element in storage; null for an array without elements.
    T* data() const noexcept { return data_; }
    std::size_t size() const noexcept {
        std::size_t product = 1;
        for (const std::size_t extent : extents_) {
            product *= extent;
        }
        return product;
    }

#if defined(__cpp_lib_mdspan)
    /// The same window as the standard's; it does not keep the array alive.
    operator std::mdspan<T, std::dextents<std::size_t, Rank>, std::layout_stride>() const {
        using Shape = std::dextents<std::size_t, Rank>;
        return {data_, std::layout_stride::mapping<Shape>(Shape(extents_), strides_)};
    }
#endif

private:
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
