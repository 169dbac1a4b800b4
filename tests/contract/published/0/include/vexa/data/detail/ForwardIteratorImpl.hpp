// Iterators of back-end sequences of names, classes and properties. Binary contract: each virtual operation
// keeps its slot; the destructor has slots 0 and 1.
#pragma once

#include <vexa/data/detail/RefCounted.hpp>

namespace vexa::data::detail {

/// A position in a sequence of back-end objects. A new one carries one reference for the caller.
class VEXADATA_API ForwardIteratorImpl : public RefCounted {
public:
    ~ForwardIteratorImpl() override;

    /// Slot 2. An independent iterator at the same position, one reference for the caller.
    virtual ForwardIteratorImpl* clone() const = 0;
    /// Slot 3. The object at the position, with one reference added for the caller.
    virtual RefCounted* get() const = 0;
    /// Slot 4. Both stand at the same position.
    virtual bool equal(const ForwardIteratorImpl* other) const = 0;
    /// Slot 5. Moves to the next object.
    virtual void increment() = 0;

protected:
    ForwardIteratorImpl() noexcept = default;
    ForwardIteratorImpl(const ForwardIteratorImpl&) noexcept = default;
};

} // namespace vexa::data::detail
