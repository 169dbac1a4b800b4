// Root of every back-end object. Binary contract: the virtual destructor, then one 64-bit count.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <atomic>
#include <cstdint>

namespace vexa::data::detail {

/// An object that counts its own references. It is created with a count of 1, which belongs to whoever receives
/// the raw pointer. Counting is safe from any thread.
class VEXADATA_API RefCounted {
public:
    /// Destroys the object whatever its count; ordinarily `release` does. Must not throw.
    virtual ~RefCounted();

    /// Adds one reference.
    void retain() const noexcept { count_.fetch_add(1, std::memory_order_relaxed); }

    /// Drops one reference; the thread that drops the last one destroys the object.
    void release() const noexcept {
        if (count_.fetch_sub(1, std::memory_order_seq_cst) == 1) {
            delete this;
        }
    }

    /// The number of references at this moment, ordered before later reads of the object.
    std::uint64_t referenceCount() const noexcept { return count_.load(std::memory_order_acquire); }

protected:
    RefCounted() noexcept = default;
    /// A copy is a new object: its count starts at 1, so that a back-end may clone itself by copying.
    RefCounted(const RefCounted&) noexcept {}
    RefCounted& operator=(const RefCounted&) noexcept { return *this; }

private:
    mutable std::atomic<std::uint64_t> count_{1};
};

} // namespace vexa::data::detail
