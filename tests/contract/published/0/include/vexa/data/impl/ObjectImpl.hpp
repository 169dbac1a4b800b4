// The interfaces of back-end objects, of their properties and of handle objects. Binary contract: virtual
// operations in the order of their numbers.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <foundation/vexadata/ZVMID.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vexa::data::impl {

/// One property of an object as seen while walking it. Operations 1 to 3 follow the destructor.
///
/// A reference to a property is a chain to the element of a cell array: its `getArrayImpl` is an array of
/// type CELL in which the property is the element at the chain's position, with the value as what that
/// element holds. Were it the value itself, then storing, copying and looking up fields would go to the first
/// element of the value. An object that keeps its values in a cell array hands out `ArrayReferenceImpl(cells,
/// place)`.
class VEXADATA_API PropertyImpl : public detail::RefCounted {
public:
    ~PropertyImpl() override;

    /// Operation 1. The identifier, kept by the property; borrowed.
    virtual const foundation::vexadata::VexaPropertyIdentifier* getIdentifier() const = 0;
    /// Operation 2. The value, shared.
    virtual std::shared_ptr<ArrayImpl> getValue() const = 0;
    /// Operation 3. A writable reference to the property, one reference for the caller. For a property from a
    /// read-only walk every way to write through it throws CantAssignArrayToThisArrayException: `setArray`,
    /// `prepareForWrite`,
    /// `getElementArray` and `createReference` with the write flag.
    virtual detail::ReferenceImpl* getReference() = 0;

protected:
    PropertyImpl() noexcept = default;
    PropertyImpl(const PropertyImpl&) noexcept = default;
};

/// An object of a user-defined class. The two entries of the destructor are operations 1 and 2. Iterators and
/// references are new ones, with one reference for the caller.
class VEXADATA_API ObjectImpl : public detail::RefCounted {
public:
    using VexaPropertyIdentifier = foundation::vexadata::VexaPropertyIdentifier;

    ~ObjectImpl() override;

    /// Operation 3. An independent copy, one reference for the caller.
    virtual ObjectImpl* sharedCopy() const = 0;
    /// Operation 4. Name of the enumeration member that the object is, NUL-terminated, as long as the object
    /// lives.
    virtual const char* getEnumerationName() const = 0;
    virtual foundation::vexadata::ClassInfo getClassInfo() const = 0; ///< operation 5
    /// Operation 6. The value of a property, shared. An unknown one is the back-end's to report.
    virtual std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier id) const = 0;
    /// Operation 7. A writable reference to a property, as PropertyImpl describes it.
    virtual detail::ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) = 0;
    virtual detail::ForwardIteratorImpl* begin() = 0; ///< operation 8: PropertyImpl objects, writable
    virtual detail::ForwardIteratorImpl* end() = 0;   ///< operation 9
    /// Operation 10. The same, read-only; see operation 3 of PropertyImpl.
    virtual detail::ForwardIteratorImpl* cbegin() const = 0;
    virtual detail::ForwardIteratorImpl* cend() const = 0; ///< operation 11
    virtual void reservedOp12();                           ///< operation 12, not called by this library
    virtual void reservedOp13();                           ///< operation 13, not called by this library
    virtual void reservedOp14();                           ///< operation 14, not called by this library
    virtual void reservedOp15();                           ///< operation 15, not called by this library
    virtual bool hasProperty(const VexaPropertyIdentifier& id) const = 0;                ///< operation 16
    virtual std::size_t numOfProperties() const = 0;                                     ///< operation 17
    virtual std::vector<std::string> getExternalRepresentationPropertyNames() const = 0; ///< operation 18

protected:
    ObjectImpl() noexcept = default;
    ObjectImpl(const ObjectImpl&) noexcept = default;
};

/// The second interface of an object with reference semantics, reached from its ObjectImpl by a cross-cast.
/// It is not counted on its own. After the destructor comes one unused operation, then operations 1 to 3.
class VEXADATA_API HandleObjectRefImpl {
public:
    virtual ~HandleObjectRefImpl();

    virtual void reservedOp0();         ///< not called by this library
    virtual ZVMID getZVMID() const = 0; ///< operation 1: the engine instance that owns the object
    virtual long getId() const = 0;     ///< operation 2: unique within that instance
    /// Operation 3. One more reference to the object exists, for example because it was stored into an array.
    /// The default does nothing.
    virtual void addReference() const;

protected:
    HandleObjectRefImpl() noexcept = default;
    HandleObjectRefImpl(const HandleObjectRefImpl&) noexcept = default;
};

} // namespace vexa::data::impl
