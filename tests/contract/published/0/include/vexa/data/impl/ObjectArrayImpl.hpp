// The interface of object array back-ends, continuing the order of TypedArrayImpl: 41 to 68. Places between
// the operations that this library calls are kept by reserved ones.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <string>
#include <vector>

namespace vexa::data::impl {

/// An array of objects, of value or handle classes alike. Order 38 answers with the HandleObjectRef at an
/// element, order 39 stores one; value objects go through orders 58 to 60. Iterators and references are new
/// ones, with one reference for the caller.
class VEXADATA_API ObjectArrayImpl : public TypedArrayImpl<foundation::vexadata::HandleObjectRef> {
public:
    using VexaPropertyIdentifier = foundation::vexadata::VexaPropertyIdentifier;

    ~ObjectArrayImpl() override;

    virtual foundation::vexadata::ClassInfo getClassInfo() const = 0; ///< order 41
    virtual bool isHeterogeneous() const = 0; ///< order 42: elements of different classes
    virtual foundation::vexadata::Array getArrayProperty(VexaPropertyIdentifier id) const = 0; ///< order 43
    /// Order 44. A writable reference to an array property, as PropertyImpl describes it.
    virtual detail::ReferenceImpl* getArrayPropertyReference(VexaPropertyIdentifier id) = 0;
    virtual detail::ForwardIteratorImpl* beginArrayProp() = 0; ///< order 45: PropertyImpl objects, writable
    virtual detail::ForwardIteratorImpl* endArrayProp() = 0;   ///< order 46
    virtual detail::ForwardIteratorImpl* cbeginArrayProp() const = 0; ///< order 47: the same, read-only
    virtual detail::ForwardIteratorImpl* cendArrayProp() const = 0;   ///< order 48
    virtual bool hasArrayProperty(const VexaPropertyIdentifier& id) const = 0; ///< order 49
    virtual std::size_t numOfArrayProperties() const = 0;                      ///< order 50
    virtual void reservedOp51(); ///< order 51, not called by this library
    virtual void reservedOp52(); ///< order 52, not called by this library
    virtual void reservedOp53(); ///< order 53, not called by this library
    virtual void reservedOp54(); ///< order 54, not called by this library
    virtual std::vector<std::size_t> getExternalDimensions() const = 0;                       ///< order 55
    virtual bool isExternalDimensionsSet() const = 0;                                         ///< order 56
    virtual std::vector<std::string> getExternalRepresentationArrayPropertyNames() const = 0; ///< order 57
    /// Order 58. Value of one property of element `index`. What an element without object answers is the
    /// back-end's choice.
    virtual foundation::vexadata::Array getElementProperty(std::size_t index,
                                                           VexaPropertyIdentifier id) const = 0;
    /// Order 59. Stores an object (borrowed: add a reference to keep it) into element `index`.
    virtual void setElementObject(std::size_t index, ObjectImpl* object) = 0;
    /// Order 60. The object at element `index` with one reference for the caller; null when the element holds
    /// none.
    virtual ObjectImpl* getElementObject(std::size_t index) const = 0;
    virtual void reservedOp61(); ///< order 61, not called by this library
    virtual void reservedOp62(); ///< order 62, not called by this library
    virtual void reservedOp63(); ///< order 63, not called by this library
    virtual void reservedOp64(); ///< order 64, not called by this library
    virtual void reservedOp65(); ///< order 65, not called by this library
    /// Order 66. The properties of element `index`.
    virtual detail::ForwardIteratorImpl* beginElementProperties(std::size_t index) = 0;
    virtual detail::ForwardIteratorImpl* endElementProperties(std::size_t index) = 0; ///< order 67
    /// Order 68. Equality of the array properties with those of another object array, of whatever dimensions
    /// and back-end. Handles ask this first and then, whatever the answer, order 35, which has to compare
    /// dimensions itself. Must not throw.
    virtual bool isEqualArrayProperties(const ArrayImpl* other) const = 0;

protected:
    ObjectArrayImpl() noexcept = default;
    ObjectArrayImpl(const ObjectArrayImpl&) noexcept = default;
};

} // namespace vexa::data::impl
