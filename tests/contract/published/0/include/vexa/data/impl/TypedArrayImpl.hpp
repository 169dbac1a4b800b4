// The interface of array back-ends with elements of one type, which continues ArrayImpl: slots 37 to 41.
#pragma once

#include <vexa/data/impl/ArrayImpl.hpp>

#include <complex>
#include <cstddef>
#include <string>

namespace vexa::data::impl {

/// An array whose elements are of type `T`. Character, logical, numeric and cell arrays add nothing to it;
/// string, struct, enumeration and object arrays have interfaces of their own that continue it.
template <class T>
class VEXADATA_API TypedArrayImpl : public ArrayImpl {
public:
    ~TypedArrayImpl() override {} // compilers may omit a defaulted one from an explicit instantiation

    virtual void reservedOp36(); ///< slot 37, not called by this library
    virtual void reservedOp37(); ///< slot 38, not called by this library
    /// Slot 39. Address of element `index`, valid until the array is changed. `forWrite` is always passed
    /// false.
    virtual T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) = 0;
    /// Slot 40. Stores `value`. The storage has been made exclusive before by slot 32.
    virtual void setElementValue(std::size_t index, const std::string& fieldName, T value) = 0;
    /// Slot 41. First element of contiguous storage, in the order of the memory layout; may be null without
    /// elements. Valid until the array is changed or released.
    virtual const T* getTypedDataPtr() const = 0;

protected:
    TypedArrayImpl() noexcept = default;
    TypedArrayImpl(const TypedArrayImpl&) noexcept = default;
};

/// String elements: slot 40 bears the name `setStringElement`, and `setElementValue` calls it.
template <>
class VEXADATA_API TypedArrayImpl<vexa::data::optional<std::u16string>> : public ArrayImpl {
public:
    /// A text that may be missing.
    using Element = vexa::data::optional<std::u16string>;

    ~TypedArrayImpl() override;

    virtual void reservedOp36(); ///< slot 37, not called by this library
    virtual void reservedOp37(); ///< slot 38, not called by this library
    /// Slot 39. Null from arrays that do not store optional objects; this library reads through slot 23.
    virtual Element* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) = 0;
    /// Slot 40. Stores an element; one without a value is missing. `fieldName` is passed on as it came.
    virtual void setStringElement(std::size_t index, const std::string& fieldName, Element value) = 0;
    /// Slot 41. Null from arrays that do not store optional objects.
    virtual const Element* getTypedDataPtr() const = 0;

    /// Calls `setStringElement`.
    void setElementValue(std::size_t index, const std::string& fieldName, Element value);

protected:
    TypedArrayImpl() noexcept = default;
    TypedArrayImpl(const TypedArrayImpl&) noexcept = default;
};

#define VEXADATA_ELEMENT(T) extern template class VEXADATA_API TypedArrayImpl<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
extern template class VEXADATA_API TypedArrayImpl<foundation::vexadata::Array>;
extern template class VEXADATA_API TypedArrayImpl<foundation::vexadata::StructElement>;
extern template class VEXADATA_API TypedArrayImpl<foundation::vexadata::Enumeration>;
extern template class VEXADATA_API TypedArrayImpl<foundation::vexadata::HandleObjectRef>;

} // namespace vexa::data::impl
