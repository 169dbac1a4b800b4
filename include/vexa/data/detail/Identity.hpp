// Identities of arrays, from one counter for all back-ends of the process.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <atomic>
#include <cstdint>

namespace vexa::data::detail {

/// A number for `ArrayImpl::getArrayID` that no other call in this process has given or will give; never 0.
/// Arrays with equal identities count as equal unseen, so back-ends that may meet in one process all draw
/// from here. Safe from any thread.
VEXADATA_API std::uint64_t nextIdentity() noexcept;

/// The identity of one array, drawn when first asked for, which most arrays never are. Safe from any thread.
class Identity {
public:
    Identity() noexcept = default;
    /// A copy is another array.
    Identity(const Identity&) noexcept {}
    Identity& operator=(const Identity&) = delete;

    /// The same number every time until `reset`.
    std::uint64_t get() const noexcept {
        const std::uint64_t known = value_.load(std::memory_order_relaxed);
        return known != 0 ? known : draw();
    }
    /// Forgets the number; the next question draws a new one.
    void reset() noexcept { value_.store(0, std::memory_order_relaxed); }

private:
    std::uint64_t draw() const noexcept {
        const std::uint64_t fresh = nextIdentity();
        std::uint64_t current = 0;
        return value_.compare_exchange_strong(current, fresh, std::memory_order_relaxed) ? fresh : current;
    }

    mutable std::atomic<std::uint64_t> value_{0};
};

} // namespace vexa::data::detail
