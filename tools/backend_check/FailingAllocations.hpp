// Lets the n-th allocation of this process fail, and counts the blocks that are alive.
#pragma once

#include <cstddef>

namespace vexa::check {

/// The command brings its own allocation functions, which back-ends find before those of the C library. They count on
/// the calling thread only, and only while told to. With a sanitizer `malloc` and its relatives are not among them.
class FailingAllocations {
public:
    /// From now on, counts blocks; forgets earlier counts.
    static void start() noexcept;
    static void stop() noexcept;
    /// Lets allocation number `number` (1 is the next one) fail, and with `onwards` all that follow; 0 lets none.
    static void failAt(std::size_t number, bool onwards = false) noexcept;
    /// Whether a failure asked for has happened.
    static bool fired() noexcept;
    /// Blocks allocated less blocks freed since `start`.
    static std::ptrdiff_t liveBlocks() noexcept;
};

} // namespace vexa::check
