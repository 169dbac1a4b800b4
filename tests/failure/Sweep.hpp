// Runs the operations of a family with one step after the other failing.
#pragma once

#include "World.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <string>

namespace failure {

/// Calls `inject(operation, number, text)` with number 1, 2, ... for each operation, until that says that the
/// operation has fewer steps; `text` is that of an unchanged world. Prints and returns how many failures that
/// made. Stops at the first failure of the test.
template <class Inject>
std::size_t sweep(const Family& family, const ArrayFactory& factory, const char* steps, Inject inject) {
    constexpr std::size_t limit = 500;
    const std::string text = World(factory).text();
    std::size_t injections = 0;
    for (const Operation& operation : family.operations) {
        SCOPED_TRACE(operation.name);
        World warm(factory);
        operation.run(warm.made()); // what is made once a process is made here
        std::size_t number = 1;
        while (number < limit && inject(operation, number, text) && !testing::Test::HasFailure()) {
            ++number;
        }
        injections += number - 1;
        EXPECT_LT(number, limit) << "there is no end of its steps";
        if (testing::Test::HasFailure()) {
            ADD_FAILURE() << "at step number " << number;
            break;
        }
    }
    std::printf("%s: %zu operations, %zu failing %s\n", family.name, family.operations.size(), injections,
                steps);
    return injections;
}

} // namespace failure
