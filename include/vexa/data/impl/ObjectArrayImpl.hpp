// The interface of object array back-ends, which continues TypedArrayImpl: slots 42 to 69. Slots between those
// that this library calls are kept by reserved operations.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <string>
#include <vector>

namespace vexa::data::impl {

/// An array of objects, of value or handle classes alike. Slot 39 answers with the HandleObjectRef at an
/// element, slot 40 stores one; value objects go through slots 59 to 61. Iterators and references are new
/// ones, with one reference for the caller.
class VEXADATA_API ObjectArrayImpl : public TypedArrayImpl<foundation::vexadata::HandleObjectRef> {
public:
    /// Names a property.
    using VexaPropertyIdentifier = foundation::vexadata::VexaPropertyIdentifier;

    ~ObjectArrayImpl() override;

    virtual foundation::vexadata::ClassInfo getClassInfo() const = 0; ///< slot 42
    virtual bool isHeterogeneous() const = 0; ///< slot 43: elements of different classes
    virtual foundation::vexadata::Array getArrayProperty(VexaPropertyIdentifier id) const = 0; ///< slot 44
    /// Slot 45. A writable reference to an array property, as PropertyImpl describes it.
    virtual detail::ReferenceImpl* getArrayPropertyReference(VexaPropertyIdentifier id) = 0;
    virtual detail::ForwardIteratorImpl* beginArrayProp() = 0; ///< slot 46: PropertyImpl objects, writable
    virtual detail::ForwardIteratorImpl* endArrayProp() = 0;   ///< slot 47
    virtual detail::ForwardIteratorImpl* cbeginArrayProp() const = 0; ///< slot 48: the same, read-only
    virtual detail::ForwardIteratorImpl* cendArrayProp() const = 0;   ///< slot 49
    virtual bool hasArrayProperty(const VexaPropertyIdentifier& id) const = 0; ///< slot 50
    virtual std::size_t numOfArrayProperties() const = 0;                      ///< slot 51
    virtual void reservedOp51(); ///< slot 52, not called by this library
    virtual void reservedOp52(); ///< slot 53, not called by this library
    virtual void reservedOp53(); ///< slot 54, not called by this library
    virtual void reservedOp54(); ///< slot 55, not called by this library
    virtual std::vector<std::size_t> getExternalDimensions() const = 0;                       ///< slot 56
    virtual bool isExternalDimensionsSet() const = 0;                                         ///< slot 57
    virtual std::vector<std::string> getExternalRepresentationArrayPropertyNames() const = 0; ///< slot 58
    /// Slot 59. Value of one property of element `index`. What an element without object answers is the
    /// back-end's choice.
    virtual foundation::vexadata::Array getElementProperty(std::size_t index,
                                                           VexaPropertyIdentifier id) const = 0;
    /// Slot 60. Stores an object (borrowed: add a reference to keep it) into element `index`.
    virtual void setElementObject(std::size_t index, ObjectImpl* object) = 0;
    /// Slot 61. The object at element `index` with one reference for the caller; null when the element holds
    /// none.
    virtual ObjectImpl* getElementObject(std::size_t index) const = 0;
    virtual void reservedOp61(); ///< slot 62, not called by this library
    virtual void reservedOp62(); ///< slot 63, not called by this library
    virtual void reservedOp63(); ///< slot 64, not called by this library
    virtual void reservedOp64(); ///< slot 65, not called by this library
    virtual void reservedOp65(); ///< slot 66, not called by this library
    /// Slot 67. The properties of element `index`.
    virtual detail::ForwardIteratorImpl* beginElementProperties(std::size_t index) = 0;
    virtual detail::ForwardIteratorImpl* endElementProperties(std::size_t index) = 0; ///< slot 68
    /// Slot 69. Equality of the array properties with those of another object array, of whatever dimensions
    /// and back-end. Handles ask this first and then, whatever the answer, slot 36, which has to compare
    /// dimensions itself. Must not throw.
    virtual bool isEqualArrayProperties(const ArrayImpl* other) const = 0;

protected:
    ObjectArrayImpl() noexcept = default;
    ObjectArrayImpl(const ObjectArrayImpl&) noexcept = default;
};

} // namespace vexa::data::impl
