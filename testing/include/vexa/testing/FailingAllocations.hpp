// Lets the n-th allocation of this process fail, and counts allocations and the blocks that are alive.
#pragma once

#include <atomic>
#include <cstddef>

namespace vexa::testing {

/// A program that uses this brings its own allocation functions, which libraries find before those of the C
/// library: exactly one of its sources includes AllocationFunctions.hpp. They count on the calling thread
/// only, and only while told to. With a sanitizer `malloc` and its relatives are not among them. The library
/// of the author need not know of it.
///
///     FailingAllocations::start();
///     {
///         Array array = factory.createArray<double>({2, 2});
///         FailingAllocations::failAt(1);
///         operation(array); // throws std::bad_alloc
///         FailingAllocations::failAt(0);
///     }
///     FailingAllocations::liveBlocks(); // 0, or something is lost
///     FailingAllocations::stop();
class FailingAllocations {
public:
    /// From now on, counts blocks; forgets earlier counts.
    static void start() noexcept;
    /// Ends the counting; the counts stay.
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
    /// The same in bytes.
    static std::ptrdiff_t liveBytes() noexcept;
    /// From now on, `note`, which is borrowed, becomes true when the system refuses a request of at most 64
    /// MiB, on any thread; null ends that.
    static void noteRefusals(std::atomic<bool>* note) noexcept;
    /// Whether `malloc` is counted too.
    static bool seesMalloc() noexcept;
};

} // namespace vexa::testing
