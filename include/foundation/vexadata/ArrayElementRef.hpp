// Handles to elements of arrays whose kind is not known at compile time, and of cell arrays.
#pragma once

#include <foundation/vexadata/ElementHandle.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// Copies the element at `from` to the element at `to`: a value between arrays of one primitive kind, the array held
/// between cells and fields.
/// @throws TypeMismatchException; index errors
VEXADATA_API void copyElement(const ElementPosition& from, const ElementPosition& to);

/// Of a row or column of cells indexed twice: the element at the second index of the array in the cell at the first.
/// @throws TypeMismatchException for any other position; index errors
VEXADATA_API ElementPosition elementInCell(const ElementPosition& position, bool forWrite);

/// The same for elements `T`.
/// @throws TypeMismatchException when the array in the cell has other elements
template <class T>
[[gnu::noinline, gnu::cold]] ElementPosition scalarsInCell(const ElementPosition& position, bool forWrite) {
    ElementPosition inner = elementInCell(position, forWrite);
    if (inner.array()->getType() != arrayTypeOf<T>) {
        raise<TypeMismatchException>();
    }
    return inner;
}

/// What `["name"]` gives: a reference to write through, or the array held.
template <bool isConst>
using FieldOf = std::conditional_t<isConst, const Array, Reference<Array>>;
VEXADATA_API const Array fieldOf(const ElementPosition& record, const std::string& fieldName, std::true_type);
VEXADATA_API Reference<Array> fieldOf(const ElementPosition& record, const std::string& fieldName,
                                      std::false_type);

} // namespace detail

/// What `Array::operator[]` returns: an element of any kind of array, or a row of them that wants more indices. Scalars
/// are read and written when the array's kind is exactly theirs, fields reached by name, and array handles are constructed from it and assigned to
/// it when the element holds an array. Validity and indices as for ArrayElementTypedRef.
template <bool isConst>
class ArrayElementRef : public detail::Indexing<ArrayElementRef<isConst>> {
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

    /// Appends an index. On an element that an iterator gave, which needs none, the index goes into the array that it holds.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException; index errors
    /// of the array held
    [[gnu::always_inline]] ArrayElementRef operator[](std::size_t index) && {
        return position_.isFixed() ? inside(index)
                                   : static_cast<detail::Indexing<ArrayElementRef>&&>(*this)[index];
    }
    ArrayElementRef operator[](std::size_t index) const& {
        return position_.isFixed() ? inside(index)
                                   : static_cast<const detail::Indexing<ArrayElementRef>&>(*this)[index];
    }

    /// The field of the record that the element is: a reference to it, or the array itself when this handle is read-only.
    /// @throws TypeMismatchException when the array is no struct array; index errors; errors of the back-end, such as for
    /// an unknown name
    detail::FieldOf<isConst> operator[](const std::string& fieldName) const {
        return fieldOf(position_, fieldName, std::bool_constant<isConst>());
    }
    /// The same for a literal, which would otherwise be taken for an index into itself.
    template <std::size_t length>
    detail::FieldOf<isConst> operator[](const char (&fieldName)[length]) const {
        return (*this)[std::string(fieldName)];
    }

    /// Reads a scalar. From a row or column of cells, `cells[i][j]` also reads element j of the array in cell i, since a
    /// cell itself is never a scalar.
    /// @throws TypeMismatchException when the array is not one of elements `T`; index errors
    template <class T, IfScalar<T> = 0>
    operator T() const {
        if (!holdsElements<T>(position_)) {
            return detail::scalarsInCell<T>(position_, false).template value<T>();
        }
        return position_.template value<T>();
    }

    /// Writes a scalar, to the same places as reading. Everything on the way into a cell is made private first.
    /// @throws TypeMismatchException when the array is not one of elements `T`; index errors
    template <class T, IfScalar<T> = 0>
    ArrayElementRef& operator=(const T& value) {
        static_assert(!isConst, "this reference is read-only: its array is const");
        if (!holdsElements<T>(position_)) {
            detail::scalarsInCell<T>(position_, true).template setValue<T>(value);
        } else {
            position_.template setValue<T>(value);
        }
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
    ArrayElementRef inside(std::size_t index) const {
        std::shared_ptr<detail::ReferenceImpl> chain = position_.chain();
        return ArrayElementRef(detail::createReferenceWithIndex<isConst>(chain, index));
    }
    template <class T>
    static bool holdsElements(const detail::ElementPosition& position) {
        return position.array()->getType() == detail::arrayTypeOf<T>;
    }

    friend struct detail::Access;
    detail::ElementPosition position_;
};

} // namespace foundation::vexadata
