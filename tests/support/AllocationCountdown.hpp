// Operations whose n-th allocation fails.
#pragma once

#include <vexa/testing/FailingAllocations.hpp>

#include <cstddef>
#include <exception>
#include <new>

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

} // namespace support
