// Growing, resolving, reading and writing index chains: what every element handle is made of.
#pragma once

#include <foundation/vexadata/Access.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstddef>
#include <memory>
#include <string>

namespace foundation::vexadata::detail {

using vexa::data::detail::ReferenceImpl;
using vexa::data::impl::ArrayImpl;
using vexa::data::impl::TypedArrayImpl;

/// The field name of chains that have none.
VEXADATA_API extern const std::string noFieldName;

/// Appends a numeric index in place.
/// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
VEXADATA_API void addIndex(std::shared_ptr<ReferenceImpl>& chain, std::size_t index);

/// Sets the field name in place.
/// @throws CanOnlyUseOneStringIndexException
VEXADATA_API void addIndex(std::shared_ptr<ReferenceImpl>& chain, std::string fieldName);

/// A chain into the array that the element of `chain` holds, with a first index. The writable form makes everything on
/// the way private before.
/// @throws NotEnoughIndicesProvidedException when the element holds no array; index errors of either level
template <bool isConst>
VEXADATA_API std::shared_ptr<ReferenceImpl> createReferenceWithIndex(std::shared_ptr<ReferenceImpl>& chain,
                                                                     std::size_t index);
extern template VEXADATA_API std::shared_ptr<ReferenceImpl> createReferenceWithIndex<false>(
    std::shared_ptr<ReferenceImpl>& chain, std::size_t index);
extern template VEXADATA_API std::shared_ptr<ReferenceImpl> createReferenceWithIndex<true>(
    std::shared_ptr<ReferenceImpl>& chain, std::size_t index);

/// The read-only form of `createReferenceWithIndex`.
VEXADATA_API std::shared_ptr<ReferenceImpl> createConstReferenceWithIndex(
    const std::shared_ptr<ReferenceImpl>& chain, std::size_t index);

/// A chain at the same place as `chain`, which it keeps alive, that can grow without changing it.
VEXADATA_API std::shared_ptr<ReferenceImpl> copyChain(const std::shared_ptr<ReferenceImpl>& chain);

/// Makes a bad index fail now rather than at the first read.
/// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
template <class T>
void validateReference(std::shared_ptr<ReferenceImpl> chain, bool unshare) {
    chain->getLinearIndex(unshare);
}

/// Text of the element.
VEXADATA_API std::string castToString(std::shared_ptr<ReferenceImpl> chain);

/// Value of the element. The array must be one of elements `T`; that is not tested. Never unshares.
/// @throws index errors
template <class T>
T getValue(std::shared_ptr<ReferenceImpl> chain) {
    static_assert(isPrimitiveElement<T>);
    auto* array = static_cast<TypedArrayImpl<T>*>(chain->getArrayImpl());
    const std::size_t index = chain->getLinearIndex();
    return *array->getElementAddress(index, chain->stringIndex(), false);
}

/// Writes the element. The array must be one of elements `T`; that is not tested. The array is made private before the
/// index is looked at, so that a failing write may have copied it.
/// @throws index errors; errors of the back-end
template <class T>
void setTypedElement(std::shared_ptr<ReferenceImpl> chain, T value) {
    static_assert(isPrimitiveElement<T>);
    auto* array = static_cast<TypedArrayImpl<T>*>(chain->getArrayImpl());
    chain->prepareForWrite();
    const std::size_t index = chain->getLinearIndex();
    array->setElementValue(index, chain->stringIndex(), value);
}

/// Stores an array into the element. Storing an array into itself stores a copy, since it would own itself otherwise.
/// @throws CantAssignArrayToThisArrayException when elements hold no arrays; index errors
VEXADATA_API void storeArray(const std::shared_ptr<ReferenceImpl>& chain, const Array& array);

/// Stores an array of any handle type into the element; see `storeArray`.
template <class A>
void setElement(std::shared_ptr<ReferenceImpl> chain, A array) {
    storeArray(chain, array);
}

/// The kind of array that a handle type stands for; `Array` takes any.
template <class A>
struct HandleType {
    static bool accepts(ArrayType) noexcept { return true; }
};
template <class T>
struct HandleType<TypedArray<T>> {
    static bool accepts(ArrayType type) noexcept { return type == arrayTypeOf<T>; }
};

/// The array that the element holds, borrowed.
/// @throws E when the element holds none; index errors
template <class E>
ArrayImpl& elementArray(const std::shared_ptr<ReferenceImpl>& chain, bool forWrite = false) {
    ArrayImpl* array = chain->getElementArray(forWrite);
    if (array == nullptr) {
        raise<E>();
    }
    return *array;
}

/// The array that the element holds, as a handle of type `A` that shares it with the element.
/// @throws TypeMismatchException when the element holds no array or one of another kind; index errors
template <class A, bool isConst>
A castTo(std::shared_ptr<ReferenceImpl> chain) {
    const ArrayImpl& held = elementArray<TypeMismatchException>(chain);
    if (!HandleType<A>::accepts(held.getType())) {
        raise<TypeMismatchException>();
    }
    ArrayImpl* handedOut = chain->getElementArrayForCopy();
    if (handedOut == nullptr) {
        raise<TypeMismatchException>();
    }
    handedOut->retain();
    return A(handedOut);
}

} // namespace foundation::vexadata::detail
