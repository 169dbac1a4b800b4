// The interfaces of back-end objects, of their properties and of handle objects. Binary contract: each
// virtual operation keeps its slot; the destructor has slots 0 and 1.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <foundation/vexadata/ZVMID.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vexa::data::impl {

/// One property of an object as seen while walking it.
///
/// A reference to a property is a chain to the element of a cell array: its `getArrayImpl` is an array of
/// type CELL in which the property is the element at the chain's position, with the value as what that
/// element holds. Were it the value itself, then storing, copying and looking up fields would go to the first
/// element of the value. An object that keeps its values in a cell array hands out `ArrayReferenceImpl(cells,
/// place)`.
class VEXADATA_API PropertyImpl : public detail::RefCounted {
public:
    ~PropertyImpl() override;

    /// Slot 2. The identifier, kept by the property; borrowed.
    virtual const foundation::vexadata::VexaPropertyIdentifier* getIdentifier() const = 0;
    /// Slot 3. The value, shared.
    virtual std::shared_ptr<ArrayImpl> getValue() const = 0;
    /// Slot 4. A writable reference to the property, one reference for the caller. For a property from a
    /// read-only walk every way to write through it throws CantAssignArrayToThisArrayException: `setArray`,
    /// `prepareForWrite`,
    /// `getElementArray` and `createReference` with the write flag.
    virtual detail::ReferenceImpl* getReference() = 0;

protected:
    PropertyImpl() noexcept = default;
    PropertyImpl(const PropertyImpl&) noexcept = default;
};

/// An object of a user-defined class. Iterators and
/// references are new ones, with one reference for the caller.
class VEXADATA_API ObjectImpl : public detail::RefCounted {
public:
    /// Names a property.
    using VexaPropertyIdentifier = foundation::vexadata::VexaPropertyIdentifier;

    ~ObjectImpl() override;

    /// Slot 2. An independent copy, one reference for the caller.
    virtual ObjectImpl* sharedCopy() const = 0;
    /// Slot 3. Name of the enumeration member that the object is, NUL-terminated, as long as the object
    /// lives.
    virtual const char* getEnumerationName() const = 0;
    virtual foundation::vexadata::ClassInfo getClassInfo() const = 0; ///< slot 4
    /// Slot 5. The value of a property, shared. An unknown one is the back-end's to report.
    virtual std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier id) const = 0;
    /// Slot 6. A writable reference to a property, as PropertyImpl describes it.
    virtual detail::ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) = 0;
    virtual detail::ForwardIteratorImpl* begin() = 0; ///< slot 7: PropertyImpl objects, writable
    virtual detail::ForwardIteratorImpl* end() = 0;   ///< slot 8
    /// Slot 9. The same, read-only; see slot 4 of PropertyImpl.
    virtual detail::ForwardIteratorImpl* cbegin() const = 0;
    virtual detail::ForwardIteratorImpl* cend() const = 0; ///< slot 10
    virtual void reservedOp12();                           ///< slot 11, not called by this library
    virtual void reservedOp13();                           ///< slot 12, not called by this library
    virtual void reservedOp14();                           ///< slot 13, not called by this library
    virtual void reservedOp15();                           ///< slot 14, not called by this library
    virtual bool hasProperty(const VexaPropertyIdentifier& id) const = 0;                ///< slot 15
    virtual std::size_t numOfProperties() const = 0;                                     ///< slot 16
    virtual std::vector<std::string> getExternalRepresentationPropertyNames() const = 0; ///< slot 17

protected:
    ObjectImpl() noexcept = default;
    ObjectImpl(const ObjectImpl&) noexcept = default;
};

/// The second interface of an object with reference semantics, reached from its ObjectImpl by a cross-cast.
/// It is not counted on its own.
class VEXADATA_API HandleObjectRefImpl {
public:
    virtual ~HandleObjectRefImpl();

    virtual void reservedOp0();         ///< slot 2, not called by this library
    virtual ZVMID getZVMID() const = 0; ///< slot 3: the engine instance that owns the object
    virtual long getId() const = 0;     ///< slot 4: unique within that instance
    /// Slot 5. One more reference to the object exists, for example because it was stored into an array.
    /// The default does nothing.
    virtual void addReference() const;

protected:
    HandleObjectRefImpl() noexcept = default;
    HandleObjectRefImpl(const HandleObjectRefImpl&) noexcept = default;
};

} // namespace vexa::data::impl
