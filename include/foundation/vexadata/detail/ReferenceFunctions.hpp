// Growing, resolving, reading and writing index chains: what every element handle is made of.
#pragma once

#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

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

/// A chain into the array that the element of `chain` holds, with a first index. The writable form makes
/// everything on the way private before.
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

/// A chain at the same place as `chain`, which it keeps alive, that can grow without changing it. What
/// happens before a write through `chain` happens before one through the copy too. Its position is refused
/// when the array there has become one of another kind (TypeMismatchException) or of other dimensions
/// (EArrayIndexOutOfRange).
VEXADATA_API std::shared_ptr<ReferenceImpl> copyChain(const std::shared_ptr<ReferenceImpl>& chain);

/// The array that a chain indexes into, made ready for a write. The chain is asked for it before its hook
/// runs, as chains of back-ends have always seen it, and again afterwards, since the hook may have put a copy
/// in its place.
inline ArrayImpl* arrayForWrite(ReferenceImpl& chain) {
    chain.getArrayImpl();
    chain.prepareForWrite();
    return chain.getArrayImpl();
}

/// Tests that the array of a chain that was kept still has the dimensions that the chain was made for.
/// @throws EArrayIndexOutOfRange
VEXADATA_API void requireShape(const ReferenceImpl& chain, const ArrayImpl& array);

/// The same, and that it is still one of elements `T`: something else may lie in its cell or field by now.
/// @throws TypeMismatchException, EArrayIndexOutOfRange
template <class T>
void requireUnchanged(const ReferenceImpl& chain) {
    const ArrayImpl& array = *chain.getArrayImpl();
    if (!acceptsType<T>(array.getType())) {
        raise<TypeMismatchException>();
    }
    requireShape(chain, array);
}

/// Makes a bad index fail now rather than at the first read.
/// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
template <class T>
void validateReference(std::shared_ptr<ReferenceImpl> chain, bool unshare) {
    chain->getLinearIndex(unshare);
}

/// Text of the element.
VEXADATA_API std::string castToString(std::shared_ptr<ReferenceImpl> chain);

/// The element at `index` of `array` as a value. The array must be one of elements `T`; that is not tested.
/// String and enumeration elements are converted from the text that the back-end gives.
template <class T>
T readElement(ArrayImpl& array, std::size_t index, const std::string& fieldName) {
    if constexpr (std::is_same_v<T, String>) {
        const char16_t* text = nullptr;
        std::size_t length = 0;
        array.getStringElement(index, text, length);
        return text == nullptr ? String() : String(std::in_place, text, length);
    } else if constexpr (std::is_same_v<T, Enumeration>) {
        return Enumeration(array.castToString(index, fieldName));
    } else {
        static_assert(isPrimitiveElement<T>);
        return *static_cast<TypedArrayImpl<T>&>(array).getElementAddress(index, fieldName, false);
    }
}

/// Writes the element at `index` of `array`, which must be one of elements `T`; that is not tested.
template <class T>
void writeElement(ArrayImpl& array, std::size_t index, const std::string& fieldName, T value) {
    if constexpr (std::is_same_v<T, String>) {
        static_cast<TypedArrayImpl<String>&>(array).setStringElement(index, fieldName, std::move(value));
    } else if constexpr (std::is_same_v<T, Enumeration>) {
        array.setString(index, fieldName, value.getName());
    } else {
        static_assert(isPrimitiveElement<T>);
        static_cast<TypedArrayImpl<T>&>(array).setElementValue(index, fieldName, value);
    }
}

/// Value of the element of a chain; see `readElement`. Never unshares.
/// @throws index errors
template <class T>
T getValue(std::shared_ptr<ReferenceImpl> chain) {
    ArrayImpl* array = chain->getArrayImpl();
    return readElement<T>(*array, chain->getLinearIndex(), chain->stringIndex());
}

/// Writes the element of a chain; see `writeElement`. The array is made private before the index is looked
/// at, so that a failing write may have copied it.
/// @throws index errors; errors of the back-end
template <class T>
void setTypedElement(std::shared_ptr<ReferenceImpl> chain, T value) {
    ArrayImpl* array = arrayForWrite(*chain);
    writeElement<T>(*array, chain->getLinearIndex(), chain->stringIndex(), std::move(value));
}

/// Stores an array into the element. Storing an array into itself stores a copy, since it would own itself
/// otherwise.
/// @throws CantAssignArrayToThisArrayException when elements hold no arrays; index errors
VEXADATA_API void storeArray(const std::shared_ptr<ReferenceImpl>& chain, const Array& array);

/// Replaces the record of the element by the values of its fields, in their order. The array is made private
/// before the number of values is looked at.
/// @throws WrongVectorSizeForStructException when their number differs; TypeMismatchException when the array
/// is no struct array; index errors; errors of the back-end
VEXADATA_API void setElement(const std::shared_ptr<ReferenceImpl>& chain, std::vector<Array> values);

/// Stores an array of any handle type into the element, see `storeArray`; the values of a record when they
/// come as a vector.
template <class A>
void setElement(std::shared_ptr<ReferenceImpl> chain, A array) {
    if constexpr (std::is_same_v<A, std::vector<Array>>) {
        setElement(chain, std::move(array));
    } else {
        storeArray(chain, array);
    }
}

/// The element type behind a handle type; `Array`, which takes any array, has none.
template <class A>
struct HandleType {
    static bool accepts(ArrayType) noexcept { return true; }
};
template <class T>
struct TypedHandle {
    static bool accepts(ArrayType type) noexcept { return type == arrayTypeOf<T>; }
};
template <class T>
struct HandleType<TypedArray<T>> : TypedHandle<T> {};
template <>
struct HandleType<CharArray> : TypedHandle<char16_t> {};
template <>
struct HandleType<StructArray> : TypedHandle<StructElement> {};
template <>
struct HandleType<EnumArray> : TypedHandle<Enumeration> {};
template <>
struct HandleType<ValueObjectArray> : TypedHandle<ValueObject> {};
template <class T>
struct HandleType<SparseArray<T>> {
    static bool accepts(ArrayType type) noexcept { return type == sparseTypeOf<T>; }
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

/// The same, of a kind that a handle of type `A` takes. References ask at every use, since what an element
/// holds may have been replaced.
/// @throws E when the element holds none; TypeMismatchException when a handle of type `A` does not take it;
/// index errors
template <class A, class E = TypeMismatchException>
ArrayImpl& heldArray(const std::shared_ptr<ReferenceImpl>& chain, bool forWrite = false) {
    ArrayImpl& array = elementArray<E>(chain, forWrite);
    if (!HandleType<A>::accepts(array.getType())) {
        raise<TypeMismatchException>();
    }
    return array;
}

/// What castTo hands out for a handle type: the array, shared with the element.
template <class A>
struct CastTo {
    static A from(const std::shared_ptr<ReferenceImpl>& chain) {
        heldArray<A>(chain);
        ArrayImpl* handedOut = chain->getElementArrayForCopy();
        if (handedOut == nullptr) {
            raise<TypeMismatchException>();
        }
        handedOut->retain();
        return A(handedOut);
    }
};
/// For a reference to an array: the chain, once the kind of the array is known.
template <class A>
struct CastTo<Reference<A>> {
    static Reference<A> from(const std::shared_ptr<ReferenceImpl>& chain) {
        if constexpr (!isElementType<A>) {
            heldArray<std::remove_const_t<A>>(chain);
        }
        return Reference<A>(chain);
    }
};

/// The array that the element holds, as a handle of type `A` that shares it with the element, or as a
/// reference, which keeps the chain. References to records and enumeration elements are formed without a
/// test: their chain is the element.
/// @throws TypeMismatchException when the element holds no array or one of another kind; index errors
template <class A, bool isConst>
A castTo(std::shared_ptr<ReferenceImpl> chain) {
    return CastTo<A>::from(chain);
}

// One instance each in the library, for every element type. Those over handles are declared with the handles.
#define VEXADATA_ELEMENT(T)                                                                                  \
    extern template VEXADATA_API T getValue<T>(std::shared_ptr<ReferenceImpl>);                              \
    extern template VEXADATA_API void setTypedElement<T>(std::shared_ptr<ReferenceImpl>, T);
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
extern template VEXADATA_API Enumeration getValue<Enumeration>(std::shared_ptr<ReferenceImpl>);
extern template VEXADATA_API void setTypedElement<Enumeration>(std::shared_ptr<ReferenceImpl>, Enumeration);
extern template VEXADATA_API void setTypedElement<String>(std::shared_ptr<ReferenceImpl>, String);
#define VEXADATA_ELEMENT(T)                                                                                  \
    extern template VEXADATA_API void validateReference<T>(std::shared_ptr<ReferenceImpl>, bool);
#include <foundation/vexadata/detail/ElementTypes.inc>

} // namespace foundation::vexadata::detail
