// The handle of an array of any kind. When the type of the elements is known at compile time: `TypedArray<T>`
// (TypedArray.hpp); an array that lies in a cell or field is referred to by `Reference<Array>`
// (Reference.hpp).
#pragma once

#include <foundation/vexadata/ArrayElementRef.hpp>
#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/HeldElementRef.hpp>
#include <foundation/vexadata/Reference.hpp>
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

/// An array as a value. Copying shares the back-end's array; the first write through a handle that shares
/// gives that handle a copy of its own. Moving leaves the source without an array: it may only be destroyed
/// or assigned. Distinct handles may be used, copied and dropped on different threads; one handle must not be
/// used on two at once.
class VEXADATA_API Array {
public:
    /// The empty array: type UNKNOWN, 0 by 0. Shares one object of the whole process.
    Array() noexcept;
    /// Shares `impl`.
    Array(std::shared_ptr<vexa::data::impl::ArrayImpl> impl) noexcept : impl_(std::move(impl)) {}
    /// Adopts the one reference that `impl` carries.
    /// @throws std::bad_alloc after dropping the reference
    explicit Array(vexa::data::impl::ArrayImpl* impl) : impl_(detail::Access::createSharedPtr(impl)) {}
    /// The array that an element holds, shared with the element until one of them is written.
    /// @throws TypeMismatchException when the element holds no array; index errors
    template <class Ref, std::enable_if_t<detail::isArrayReference<Ref>, int> = 0>
    Array(const Ref& element) : Array(detail::heldAs<Array>(element)) {}
    Array(const Array&) noexcept = default;
    Array(Array&&) noexcept = default;
    Array& operator=(const Array&) noexcept = default;
    Array& operator=(Array&&) noexcept = default;
    template <class Ref, std::enable_if_t<detail::isArrayReference<Ref>, int> = 0>
    Array& operator=(const Ref& element) {
        return *this = Array(element);
    }
    virtual ~Array();

    /// Asked of the back-end; all but `getDimensions` pass its errors on.
    ArrayType getType() const { return impl_->getType(); }
    vexa::data::MemoryLayout getMemoryLayout() const { return impl_->getMemoryLayout(); }
    /// A copy that later changes of the array do not reach. Ends the process when it cannot be allocated.
    std::vector<std::size_t> getDimensions() const noexcept { return impl_->getDimensions(); }
    /// Product of the dimensions, and whether it is 0.
    std::size_t getNumberOfElements() const { return impl_->getNumberOfElements(); }
    bool isEmpty() const { return impl_->isEmpty(); }
    /// Identity of the underlying data, defined by the back-end.
    std::uint64_t getArrayID() const { return impl_->getArrayID(); }
    /// True when other handles share the array. A default-constructed handle always shares.
    bool isShared() const noexcept { return impl_.use_count() >= 2; }

    /// An element, or a partial subscript that needs further indices; of a temporary array, only until the
    /// expression ends. The writable form makes the array private first, and stays attached to it when the
    /// handle is copied afterwards.
    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException; std::bad_alloc, the handle
    /// unchanged
    ArrayElementRef<false> operator[](std::size_t index) {
        detail::Access::unshare(*this);
        return ArrayElementRef<false>(detail::ElementPosition::firstOfAny(impl_.get(), index));
    }
    ArrayElementRef<true> operator[](std::size_t index) const {
        return ArrayElementRef<true>(detail::ElementPosition::firstOfAny(impl_.get(), index));
    }

protected:
    friend struct detail::Access;
    /// The back-end's array; null only after moving from this handle.
    std::shared_ptr<vexa::data::impl::ArrayImpl> impl_;
};

/// Equality: the same object or identity; else equal dimensions, type and elements. Ends the process when the
/// back-end fails in it.
VEXADATA_API bool operator==(const Array& a, const Array& b) noexcept;
inline bool operator!=(const Array& a, const Array& b) noexcept { return !(a == b); }

namespace detail {

extern template VEXADATA_API Array castTo<Array, false>(std::shared_ptr<ReferenceImpl>);
extern template VEXADATA_API Array castTo<Array, true>(std::shared_ptr<ReferenceImpl>);

} // namespace detail

/// True for the three kinds of sparse arrays.
VEXADATA_API bool isSparse(const Array& array);

} // namespace foundation::vexadata
