// The handle of an array whose element type is known at compile time.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/EnumElement.hpp>
#include <foundation/vexadata/ObjectElement.hpp>
#include <foundation/vexadata/StringElement.hpp>
#include <foundation/vexadata/StructElement.hpp>
#include <foundation/vexadata/TypedIterator.hpp>

#include <complex>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// An array's own buffer and the function that frees it.
template <class T>
using buffer_ptr = std::unique_ptr<T[], void (*)(void*)>;

/// A new array of 0x0 elements of a kind, one reference for the caller. Without a back-end it ends the
/// process, as creating with an ArrayFactory does.
/// @throws errors of the back-end
VEXADATA_API ArrayImpl* newEmptyArray(ArrayType type);

/// Whether handles to arrays of elements `T` can be made before their arrays: not where an array has names
/// from the beginning.
template <class T>
inline constexpr bool startsEmpty =
    isPrimitiveElement<T> || std::is_same_v<T, String> || std::is_same_v<T, Array>;

/// An element handle with further indices appended.
template <class Ref>
VEXADATA_INLINE inline Ref indexed(Ref element) {
    return element;
}
template <class Ref, class... Index>
VEXADATA_INLINE inline Ref indexed(Ref element, std::size_t next, Index... indices) {
    return indexed<Ref>(std::move(element)[next], indices...);
}

} // namespace detail

/// An array of elements `T`, any of the catalogue's element types. Copies, moves and assigns between its own
/// kind as
/// `Array` does; from other arrays it checks their kind.
template <class T>
class VEXADATA_API TypedArray : public Array {
    static_assert(
        detail::isElementType<T>,
        "T of TypedArray<T> must be an element type: bool, char16_t, float, double, std::int8_t to std::int64_t, "
        "std::uint8_t to std::uint64_t, std::complex of one of these ten numbers, String, Array (cells), "
        "StructElement, Enumeration, ValueObject or HandleObjectRef");

public:
    using value_type = T;
    /// Iterators in storage order.
    using iterator = TypedIterator<T>;
    using const_iterator = TypedIterator<const T>;

    /// An array of 0x0 elements, for a handle that gets its array later: a class member, an entry of a map.
    /// For numbers, logicals, characters, strings and cells.
    /// @throws errors of the back-end
    template <class U = T, std::enable_if_t<std::is_same_v<U, T> && detail::startsEmpty<U>, int> = 0>
    TypedArray() : Array(detail::newEmptyArray(detail::arrayTypeOf<U>)) {}
    /// @throws InvalidArrayTypeException when the array is not one of elements `T`; a moved argument is
    /// emptied even then
    TypedArray(const Array& array) : Array(array) { requireType(*this); }
    TypedArray(Array&& array) : Array(std::move(array)) { requireType(*this); }
    /// The array that an element holds.
    /// @throws TypeMismatchException when it is not one of elements `T`; index errors
    template <class Ref, std::enable_if_t<detail::isArrayReference<Ref>, int> = 0>
    TypedArray(const Ref& element) : TypedArray(detail::heldAs<TypedArray<T>>(element)) {}
    /// Adopts the one reference that `impl` carries; its kind is not checked.
    explicit TypedArray(vexa::data::impl::ArrayImpl* impl) : Array(impl) {}
    /// Shares `impl`; its kind is not checked.
    TypedArray(std::shared_ptr<vexa::data::impl::ArrayImpl> impl) noexcept : Array(std::move(impl)) {}
    TypedArray(const TypedArray&) noexcept = default;
    TypedArray(TypedArray&&) noexcept = default;
    TypedArray& operator=(const TypedArray&) noexcept = default;
    TypedArray& operator=(TypedArray&&) noexcept = default;
    ~TypedArray() override {} // compilers may omit a defaulted one from an explicit instantiation

    /// Shares the array. A moved argument keeps it too: only handles of one type are emptied by assignment.
    /// @throws InvalidArrayTypeException when the array is not one of elements `T`; this handle has not
    /// changed then
    TypedArray& operator=(const Array& array) {
        requireType(array);
        Array::operator=(array);
        return *this;
    }

    /// @throws TypeMismatchException when the element does not hold an array of elements `T`; index errors
    template <class Ref, std::enable_if_t<detail::isArrayReference<Ref>, int> = 0>
    TypedArray& operator=(const Ref& element) {
        return *this = TypedArray(element);
    }

    /// Read-only iterators in storage order; they never copy the array.
    VEXADATA_INLINE const_iterator begin() const {
        return const_iterator(this->impl_->beginIterator(nullptr, false));
    }
    const_iterator cbegin() const { return begin(); }
    VEXADATA_INLINE const_iterator end() const { return endOf<const T>(false); }
    const_iterator cend() const { return end(); }
    /// Writable iterators; the array is made private first.
    /// @throws std::bad_alloc, the handle unchanged
    VEXADATA_INLINE iterator begin() {
        detail::Access::unshare(*this);
        return iterator(this->impl_->beginIterator(nullptr, true));
    }
    VEXADATA_INLINE iterator end() {
        detail::Access::unshare(*this);
        return endOf<T>(true);
    }

    /// An element, or a partial subscript that needs further indices; as `Array::operator[]`.
    VEXADATA_INLINE detail::ElementRefOf<T, false> operator[](std::size_t index) {
        detail::Access::unshare(*this);
        return detail::ElementRefOf<T, false>(detail::ElementPosition::firstOf<T>(this->impl_.get(), index));
    }
    VEXADATA_INLINE detail::ElementRefOf<T, true> operator[](std::size_t index) const {
        return detail::ElementRefOf<T, true>(detail::ElementPosition::firstOf<T>(this->impl_.get(), index));
    }

    /// Number of elements.
    template <class U = T>
    std::size_t size() const {
        return this->impl_->getNumberOfElements();
    }
    /// First element in storage; null without elements. Valid until the array is changed or released. The
    /// form of a handle that is not const makes the array private first, as `begin` does.
    /// @throws std::bad_alloc, the handle unchanged
    template <class U = T, std::enable_if_t<detail::isPrimitiveElement<U>, int> = 0>
    const U* data() const {
        return static_cast<const detail::TypedArrayImpl<U>&>(*this->impl_).getTypedDataPtr();
    }
    template <class U = T, std::enable_if_t<detail::isPrimitiveElement<U>, int> = 0>
    U* data() {
        detail::Access::unshare(*this);
        this->impl_->unshare();
        // Storage of a private array may be written; the interface hands it out as read-only because most
        // callers read.
        return const_cast<U*>(std::as_const(*this).template data<U>());
    }

    /// The element at these indices, one for each dimension or one into a row or column, as `a[i][j]`.
    template <class... Index>
    VEXADATA_INLINE auto operator()(std::size_t first, Index... indices) {
        return detail::indexed((*this)[first], static_cast<std::size_t>(indices)...);
    }
    template <class... Index>
    VEXADATA_INLINE auto operator()(std::size_t first, Index... indices) const {
        return detail::indexed((*this)[first], static_cast<std::size_t>(indices)...);
    }
    /// The same, tested at once.
    /// @throws EArrayIndexOutOfRange, NotEnoughIndicesProvidedException, TooManyIndicesProvidedException
    template <class... Index>
    auto at(std::size_t first, Index... indices) {
        auto element = (*this)(first, indices...);
        detail::completePosition(element);
        return element;
    }
    template <class... Index>
    auto at(std::size_t first, Index... indices) const {
        auto element = (*this)(first, indices...);
        detail::completePosition(element);
        return element;
    }

    /// Hands the elements over in a buffer that the caller owns: the array's own when no other handle shares
    /// it, a copy otherwise. Ends iterators and references into the array; what it reports afterwards is the
    /// back-end's choice.
    /// @throws InvalidArrayTypeException when the back-end has no buffer of elements; std::bad_alloc
    detail::buffer_ptr<T> release() {
        void* data = nullptr;
        void (*deleter)(void*) = nullptr;
        if (detail::Access::isPrivate(this->impl_)) {
            this->impl_->releaseBuffer(data, deleter);
        } else {
            this->impl_->copyOutBuffer(data, deleter);
        }
        return detail::buffer_ptr<T>(static_cast<T*>(data), deleter);
    }

private:
    /// A back-end that cannot tell the kind of its array ends the process.
    static ArrayType typeOf(const Array& array) noexcept { return array.getType(); }
    static void requireType(const Array& array) {
        if (!detail::acceptsType<T>(typeOf(array))) {
            detail::raise<InvalidArrayTypeException>();
        }
    }

    /// String, struct and enumeration arrays end where the number of elements says.
    static constexpr bool endsByCount =
        std::is_same_v<T, String> || std::is_same_v<T, StructElement> || std::is_same_v<T, Enumeration>;
    template <class U>
    VEXADATA_INLINE TypedIterator<U> endOf(bool writable) const {
        if constexpr (endsByCount) {
            TypedIterator<U> it(this->impl_->beginIterator(nullptr, writable));
            it.advance(static_cast<std::ptrdiff_t>(this->impl_->getNumberOfElements()));
            return it;
        } else {
            return TypedIterator<U>(this->impl_->endIterator(nullptr, writable));
        }
    }
};

#define VEXADATA_ELEMENT(T)                                                                                  \
    extern template class VEXADATA_API TypedArray<T>;                                                        \
    extern template VEXADATA_API TypedArray<T> detail::castTo<TypedArray<T>, false>(                         \
        std::shared_ptr<detail::ReferenceImpl>);                                                             \
    extern template VEXADATA_API TypedArray<T> detail::castTo<TypedArray<T>, true>(                          \
        std::shared_ptr<detail::ReferenceImpl>);
#include <foundation/vexadata/detail/ElementTypes.inc>

} // namespace foundation::vexadata
