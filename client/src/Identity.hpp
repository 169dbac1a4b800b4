// Identities of arrays.
#pragma once

#include <atomic>
#include <cstdint>

namespace vexa::client {

/// A number that no other array of the process has, drawn when first asked for. Never 0, which is the empty array's.
class Identity {
public:
    Identity() noexcept = default;
    Identity(const Identity&) noexcept {} // a copy is another array
    Identity& operator=(const Identity&) = delete;

    std::uint64_t get() const noexcept {
        const std::uint64_t known = value_.load(std::memory_order_relaxed);
        return known != 0 ? known : draw();
    }
    /// Forgets the number; the next question draws a new one.
    void reset() noexcept { value_.store(0, std::memory_order_relaxed); }

private:
    std::uint64_t draw() const noexcept;

    mutable std::atomic<std::uint64_t> value_{0};
};

} // namespace vexa::client
