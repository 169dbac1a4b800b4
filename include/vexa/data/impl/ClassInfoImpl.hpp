// The interface of back-end class descriptions. Binary contract: each virtual operation keeps its slot; the
// destructor has slots 0 and 1.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstddef>
#include <memory>

namespace vexa::data::impl {

/// Describes a class of objects. Iterators are new ones, with one reference for the caller.
class VEXADATA_API ClassInfoImpl : public detail::RefCounted {
public:
    ~ClassInfoImpl() override;

    virtual void reservedOp3(); ///< slot 2, not called by this library
    virtual std::shared_ptr<VexaClassIdentifierImpl> getClassIdentifier() const = 0; ///< slot 3
    virtual detail::ForwardIteratorImpl* beginProperties() const = 0;                ///< slot 4
    virtual detail::ForwardIteratorImpl* endProperties() const = 0;                  ///< slot 5
    virtual detail::ForwardIteratorImpl* beginArrayProperties() const = 0;           ///< slot 6
    virtual detail::ForwardIteratorImpl* endArrayProperties() const = 0;             ///< slot 7
    virtual detail::ForwardIteratorImpl* beginSuperclasses() const = 0;              ///< slot 8
    virtual detail::ForwardIteratorImpl* endSuperclasses() const = 0;                ///< slot 9
    virtual std::size_t getNumberOfProperties() const = 0;                           ///< slot 10
    virtual std::size_t getNumberOfArrayProperties() const = 0;                      ///< slot 11
    virtual void reservedOp13(); ///< slot 12, not called by this library
    /// Slot 13. Calls `updateClassInfo` with `classInfo` on every property identifier held.
    virtual void updateVexaPropertyIdentifiersClassInfo(foundation::vexadata::ClassInfo& classInfo) = 0;

protected:
    ClassInfoImpl() noexcept = default;
    ClassInfoImpl(const ClassInfoImpl&) noexcept = default;
};

} // namespace vexa::data::impl
