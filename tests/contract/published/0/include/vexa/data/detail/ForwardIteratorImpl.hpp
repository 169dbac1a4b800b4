// Iterators of back-end sequences of names, classes and properties. Binary contract: virtual operations in
// the order of their numbers; the two entries of the destructor are operations 1 and 2.
#pragma once

#include <vexa/data/detail/RefCounted.hpp>

namespace vexa::data::detail {

/// A position in a sequence of back-end objects. A new one carries one reference for the caller.
class VEXADATA_API ForwardIteratorImpl : public RefCounted {
public:
    ~ForwardIteratorImpl() override;

    /// Operation 3. An independent iterator at the same position, one reference for the caller.
    virtual ForwardIteratorImpl* clone() const = 0;
    /// Operation 4. The object at the position, with one reference added for the caller.
    virtual RefCounted* get() const = 0;
    /// Operation 5. Both stand at the same position.
    virtual bool equal(const ForwardIteratorImpl* other) const = 0;
    /// Operation 6. Moves to the next object.
    virtual void increment() = 0;

protected:
    ForwardIteratorImpl() noexcept = default;
    ForwardIteratorImpl(const ForwardIteratorImpl&) noexcept = default;
};

} // namespace vexa::data::detail
