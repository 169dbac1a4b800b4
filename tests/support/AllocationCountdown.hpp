// Makes the n-th allocation fail, and counts allocations and live blocks. A program that uses this gets its own global
// allocation functions; they count on the calling thread only, and only while told to. `malloc` and its relatives are
// among them unless a sanitizer has taken those.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <limits>
#include <new>
#include <string>

namespace support {

class AllocationCountdown {
public:
    /// From now on, counts allocations and blocks; forgets earlier counts.
    static void start() noexcept;
    static void stop() noexcept;
    /// Lets allocation number `number` (1 is the next one) fail, once.
    static void failAt(std::size_t number) noexcept;
    /// Lets allocation number `number` and all after it fail.
    static void failFrom(std::size_t number) noexcept;
    static void disarm() noexcept { failAt(std::numeric_limits<std::size_t>::max()); }

    /// Allocations since `start` or the last `failAt`, the failed one included.
    static std::size_t allocations() noexcept;
    /// Blocks allocated less blocks freed since `start`.
    static std::ptrdiff_t liveBlocks() noexcept;
    /// Whether the failure asked for has happened.
    static bool fired() noexcept;
    /// Whether `malloc` is counted too.
    static bool seesMalloc() noexcept;
};

/// The number of allocations that `operation` makes.
template <class Operation>
std::size_t countAllocations(Operation&& operation) {
    AllocationCountdown::start();
    operation();
    const std::size_t count = AllocationCountdown::allocations();
    AllocationCountdown::stop();
    return count;
}

enum class Outcome { succeeded, badAlloc, otherError };

/// Runs `operation` and tells how it ended.
template <class Operation>
Outcome outcomeOf(Operation&& operation) {
    Outcome outcome = Outcome::succeeded;
    try {
        operation();
    } catch (const std::bad_alloc&) {
        outcome = Outcome::badAlloc;
    } catch (...) {
        outcome = Outcome::otherError;
    }
    return outcome;
}

/// Lets the 1st, 2nd, ... allocation of `operation(state)` fail, each time over a fresh `state = setup()`, until it runs
/// through. After each failure `check(state)` says whether everything is as promised; then the state is dropped, after
/// which no block may be left. Only std::bad_alloc may come out, and at least one failure has to happen.
template <class Setup, class Operation, class Check>
void sweep(Setup&& setup, Operation&& operation, Check&& check) {
    constexpr std::size_t limit = 1000;
    {
        auto warm = setup(); // what is made once a process is made here
        operation(warm);
    }
    for (std::size_t number = 1; number <= limit; ++number) {
        SCOPED_TRACE("allocation number " + std::to_string(number) + " fails");
        AllocationCountdown::start();
        Outcome outcome = Outcome::succeeded;
        bool fired = false;
        {
            auto state = setup();
            AllocationCountdown::failAt(number);
            outcome = outcomeOf([&] { operation(state); });
            fired = AllocationCountdown::fired();
            AllocationCountdown::disarm();
            if (outcome != Outcome::succeeded) {
                check(state);
            }
        }
        const std::ptrdiff_t leaked = AllocationCountdown::liveBlocks();
        AllocationCountdown::stop();
        EXPECT_EQ(leaked, 0) << "blocks are left, or were freed twice";
        ASSERT_NE(outcome, Outcome::otherError) << "something else than std::bad_alloc came out";
        ASSERT_TRUE(number > 1 || fired || !AllocationCountdown::seesMalloc())
            << "the operation allocates nothing";
        if (!fired) {
            EXPECT_EQ(outcome, Outcome::succeeded);
            return;
        }
        EXPECT_EQ(outcome, Outcome::badAlloc) << "the failure was swallowed";
    }
    FAIL() << "still allocating after " << limit << " allocations";
}

} // namespace support
