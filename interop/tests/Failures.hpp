// What the tests of conversions share: the text of a refusal, and memory that runs out.
#pragma once

#include <vexa/testing/FailingAllocations.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>

/// What the action says why it refuses; empty when it does not.
template <class Action>
std::string refusal(Action action) {
    try {
        action();
    } catch (const std::invalid_argument& error) {
        return error.what();
    } catch (const std::range_error& error) {
        return error.what();
    }
    return {};
}

/// Runs an operation with its first allocation failing, then the second, until none does. What it throws is
/// std::bad_alloc, and nothing stays behind. Calls `check(failed)` after each.
template <class Operation, class Check>
void withFailingMemory(std::size_t leastFailures, Operation operation, Check check) {
    using vexa::testing::FailingAllocations;
    operation(); // what is made once a process
    std::size_t failures = 0;
    for (bool failed = true; failed; ++failures) {
        FailingAllocations::start();
        FailingAllocations::failAt(failures + 1);
        failed = false;
        try {
            operation();
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        FailingAllocations::failAt(0);
        EXPECT_EQ(FailingAllocations::liveBlocks(), 0) << "failure " << failures;
        FailingAllocations::stop();
        check(failed);
    }
    EXPECT_GT(failures, leastFailures);
}
