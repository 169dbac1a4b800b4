// The interface of back-end class descriptions. Binary contract: virtual operations in the order of their
// numbers; the two entries of the destructor are operations 1 and 2.
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

    virtual void reservedOp3(); ///< operation 3, not called by this library
    virtual std::shared_ptr<VexaClassIdentifierImpl> getClassIdentifier() const = 0; ///< operation 4
    virtual detail::ForwardIteratorImpl* beginProperties() const = 0;                ///< operation 5
    virtual detail::ForwardIteratorImpl* endProperties() const = 0;                  ///< operation 6
    virtual detail::ForwardIteratorImpl* beginArrayProperties() const = 0;           ///< operation 7
    virtual detail::ForwardIteratorImpl* endArrayProperties() const = 0;             ///< operation 8
    virtual detail::ForwardIteratorImpl* beginSuperclasses() const = 0;              ///< operation 9
    virtual detail::ForwardIteratorImpl* endSuperclasses() const = 0;                ///< operation 10
    virtual std::size_t getNumberOfProperties() const = 0;                           ///< operation 11
    virtual std::size_t getNumberOfArrayProperties() const = 0;                      ///< operation 12
    virtual void reservedOp13(); ///< operation 13, not called by this library
    /// Operation 14. Calls `updateClassInfo` with `classInfo` on every property identifier held.
    virtual void updateVexaPropertyIdentifiersClassInfo(foundation::vexadata::ClassInfo& classInfo) = 0;

protected:
    ClassInfoImpl() noexcept = default;
    ClassInfoImpl(const ClassInfoImpl&) noexcept = default;
};

} // namespace vexa::data::impl
