// Operations whose n-th allocation fails.
#pragma once

#include <vexa/testing/FailingAllocations.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <new>
#include <string>

namespace support {

using AllocationCountdown = vexa::testing::FailingAllocations;

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

/// Lets the 1st, 2nd, ... allocation of `operation(state)` fail, each time over a fresh `state = setup()`,
/// until it runs through. After each failure `check(state)` says whether everything is as promised; then the
/// state is dropped, after which no block may be left. Only std::bad_alloc may come out, and at least one
/// failure has to happen.
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
            AllocationCountdown::failAt(0);
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
