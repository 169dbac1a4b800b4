// Lets the n-th allocation of this process fail, and counts allocations and the blocks that are alive. The
// tests use it too.
#pragma once

#include <atomic>
#include <cstddef>

namespace vexa::check {

/// A program that uses this brings its own allocation functions, which back-ends find before those of the C
/// library. They count on the calling thread only, and only while told to. With a sanitizer `malloc` and its
/// relatives are not among them.
class FailingAllocations {
public:
    /// From now on, counts blocks; forgets earlier counts.
    static void start() noexcept;
    static void stop() noexcept;
    /// Lets allocation number `number` (1 is the next one) fail, and with `onwards` all that follow; 0 lets
    /// none. Counts allocations anew.
    static void failAt(std::size_t number, bool onwards = false) noexcept;
    /// Allocations since `start` or the last `failAt`, failed ones included.
    static std::size_t allocations() noexcept;
    /// Whether a failure asked for has happened.
    static bool fired() noexcept;
    /// Blocks allocated less blocks freed since `start`.
    static std::ptrdiff_t liveBlocks() noexcept;
    /// From now on, `note` becomes true when the system refuses a request of usual size, on any thread; null
    /// ends that.
    static void noteRefusals(std::atomic<bool>* note) noexcept;
    /// The same in bytes.
    static std::ptrdiff_t liveBytes() noexcept;
    /// Whether `malloc` is counted too.
    static bool seesMalloc() noexcept;
};

} // namespace vexa::check
