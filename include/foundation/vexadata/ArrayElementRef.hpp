// Handles to elements of arrays whose kind is not known at compile time, and of cell arrays.
#pragma once

#include <foundation/vexadata/ElementPosition.hpp>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// Copies the element at `from` to the element at `to`: a value between arrays of one primitive kind, the array held
/// between cells and fields.
/// @throws TypeMismatchException; index errors
VEXADATA_API void copyElement(const ElementPosition& from, const ElementPosition& to);

} // namespace detail

/// What `Array::operator[]` returns: an element of any kind of array, or a row of them that wants more indices. Scalars
/// are read and written when the array's kind is exactly theirs; array handles are constructed from it and assigned to
/// it when the element holds an array. Validity and indices as for ArrayElementTypedRef.
template <bool isConst>
class ArrayElementRef {
    template <class T>
    using IfScalar = std::enable_if_t<detail::isPrimitiveElement<T>, int>;

public:
    explicit ArrayElementRef(detail::ElementPosition position) noexcept : position_(std::move(position)) {}
    /// Adopts the chain of an element that is known already.
    explicit ArrayElementRef(const std::shared_ptr<detail::ReferenceImpl>& chain) noexcept
        : position_(chain) {}
    ArrayElementRef(const ArrayElementRef&) = default;
    ArrayElementRef(ArrayElementRef&&) noexcept = default;
    ~ArrayElementRef() = default;

    /// Appends an index.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    [[gnu::always_inline]] ArrayElementRef operator[](std::size_t index) && {
        position_.append(index);
        return std::move(*this);
    }
    ArrayElementRef operator[](std::size_t index) const& {
        ArrayElementRef longer(*this);
        longer.position_.append(index);
        return longer;
    }

    /// Reads a scalar.
    /// @throws TypeMismatchException when the array is not one of elements `T`; index errors
    template <class T, IfScalar<T> = 0>
    operator T() const {
        requireElementsOf<T>();
        return position_.template value<T>();
    }

    /// Writes a scalar.
    /// @throws TypeMismatchException when the array is not one of elements `T`; index errors
    template <class T, IfScalar<T> = 0>
    ArrayElementRef& operator=(const T& value) {
        static_assert(!isConst, "this reference is read-only: its array is const");
        requireElementsOf<T>();
        position_.template setValue<T>(value);
        return *this;
    }

    /// Stores an array, shared with the handle until one of them is written. Taking any handle type as it is keeps this
    /// apart from the scalar form.
    /// @throws CantAssignArrayToThisArrayException when elements hold no arrays; index errors
    template <class A, std::enable_if_t<std::is_base_of_v<Array, A>, int> = 0>
    ArrayElementRef& operator=(const A& array) {
        static_assert(!isConst, "this reference is read-only: its array is const");
        detail::storeArray(position_.chain(), array);
        return *this;
    }

    /// Writes the other element's content; never makes this handle refer elsewhere.
    /// @throws TypeMismatchException; index errors
    ArrayElementRef& operator=(const ArrayElementRef& other) { return copyFrom(other.position_); }
    template <bool otherIsConst>
    ArrayElementRef& operator=(const ArrayElementRef<otherIsConst>& other) {
        return copyFrom(detail::Access::position(other));
    }
    template <class T, bool otherIsConst>
    ArrayElementRef& operator=(const ArrayElementTypedRef<T, otherIsConst>& other) {
        return copyFrom(detail::Access::position(other));
    }
    template <class T>
    ArrayElementRef& operator=(const Reference<T>& other) {
        return copyFrom(detail::ElementPosition(other.chain()));
    }

private:
    ArrayElementRef& copyFrom(const detail::ElementPosition& from) {
        static_assert(!isConst, "this reference is read-only: its array is const");
        detail::copyElement(from, position_);
        return *this;
    }
    template <class T>
    void requireElementsOf() const {
        if (position_.array()->getType() != detail::arrayTypeOf<T>) {
            detail::raise<TypeMismatchException>();
        }
    }

    friend struct detail::Access;
    detail::ElementPosition position_;
};

} // namespace foundation::vexadata
