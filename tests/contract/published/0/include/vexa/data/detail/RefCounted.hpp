// Root of every back-end object. Binary contract: the virtual destructor, then one 64-bit count.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <atomic>
#include <cstdint>

#if __has_include(<sys/single_threaded.h>)
#    include <sys/single_threaded.h>
#endif

namespace vexa::data::detail {

/// True while the process has never had a second thread, or has none any more: counts then need no locked
/// instruction, which would cost several times what the rest of a handle's copy does.
inline bool processIsSingleThreaded() noexcept {
#if __has_include(<sys/single_threaded.h>)
    return __libc_single_threaded != 0;
#else
    return false;
#endif
}

/// An object that counts its own references. It is created with a count of 1, which belongs to whoever
/// receives the raw pointer. Counting is safe from any thread.
class VEXADATA_API RefCounted {
public:
    /// Destroys the object whatever its count; ordinarily `release` does. Must not throw.
    virtual ~RefCounted();

    /// Adds one reference.
    void retain() const noexcept {
        if (processIsSingleThreaded()) {
            count_.store(count_.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        } else {
            count_.fetch_add(1, std::memory_order_relaxed);
        }
    }

    /// Drops one reference; the thread that drops the last one destroys the object.
    void release() const noexcept {
        if (drop() == 1) {
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
    /// The count before.
    std::uint64_t drop() const noexcept {
        if (!processIsSingleThreaded()) {
            return count_.fetch_sub(1, std::memory_order_seq_cst);
        }
        const std::uint64_t before = count_.load(std::memory_order_relaxed);
        count_.store(before - 1, std::memory_order_relaxed);
        return before;
    }

    mutable std::atomic<std::uint64_t> count_{1};
};

} // namespace vexa::data::detail
