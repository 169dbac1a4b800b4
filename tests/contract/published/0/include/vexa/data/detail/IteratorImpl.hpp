// Iterators of arrays. Binary contract: each virtual operation keeps its slot; the destructor has slots 0
// and 1.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <vexa/data/detail/RefCounted.hpp>

#include <cstdint>

namespace vexa::data::detail {

/// A position in an array, made by the array. A typed iterator owns it alone and deletes it; the count it
/// inherits stays at 1. Errors of any operation reach the caller unchanged.
class VEXADATA_API IteratorImpl : public RefCounted {
public:
    ~IteratorImpl() override = default; // inline: `reservedOp9` keeps the one vtable in the library

    /// Slot 2. An independent copy at the same position; the caller owns it.
    virtual IteratorImpl* clone() const = 0;
    /// Slot 3. Moves by `count` elements, back when negative.
    virtual void advance(std::int64_t count) = 0;
    /// Slot 4. Both stand at the same position. The other comes from the same array, which need not be
    /// tested.
    virtual bool isEqual(const IteratorImpl& other) const = 0;
    /// Slot 5. Number of elements from this position to the other, which comes from the same array.
    virtual std::int64_t distanceTo(const IteratorImpl& other) const = 0;
    /// Slot 6. Moves back one element.
    virtual void decrement() = 0;
    /// Slot 7. Moves forward one element.
    virtual void increment() = 0;
    /// Slot 8. Never called by this library; keeps its place.
    virtual void reservedOp9();
    /// Slot 9. A new chain to the current element, one reference for the caller; null for primitive
    /// elements, which have an address instead.
    virtual ReferenceImpl* createReference() = 0;
    /// Slot 10. Keeps `chain` alive as long as this iterator. The caller has added the reference that is
    /// adopted here.
    virtual void saveReference(ReferenceImpl* chain) = 0;
    /// Slot 11. Never called by this library; keeps its place.
    virtual void reservedOp12();
    /// Slot 12. Address of the current element. Asked past the end too, where the address is not read.
    /// Null for elements that are not primitive.
    virtual void* getElementAddress() = 0;

protected:
    IteratorImpl() noexcept = default;
    IteratorImpl(const IteratorImpl&) noexcept = default;
    IteratorImpl& operator=(const IteratorImpl&) = default;
};

} // namespace vexa::data::detail
