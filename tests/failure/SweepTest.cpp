// Every operation with memory that runs out at each of its allocations, and over a back-end whose operations fail
// one after the other: the error comes out as it is, nothing is lost, nothing is changed.
#include "Sweep.hpp"

#include "ThrowingBackEnd.hpp"
#include "support/AllocationCountdown.hpp"

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <stdexcept>

namespace {

using failure::ArrayFactory;
using failure::Operation;
using failure::steps;
using failure::World;
using foundation::vexadata::TypeMismatchException;
using support::AllocationCountdown;

/// An error that no interface knows.
struct Foreign {};

/// Of the exception that is being handled.
template <class E>
bool isA() {
    try {
        throw;
    } catch (const E&) {
        return true;
    } catch (...) {
        return false;
    }
}

/// What fails, and what it throws.
struct Way {
    const char* name;
    bool inBackEnd;
    void (*failAt)(std::size_t number);
    bool (*isTheError)();
};
template <void (*failure)()>
void failOperation(std::size_t number) {
    steps.failAt(number, failure::Failing::operation, failure);
}
void throwError() { throw TypeMismatchException(); }
void throwForeign() { throw Foreign(); }
void failOnwards(std::size_t number) { AllocationCountdown::failAt(number, true); }
void failOnce(std::size_t number) { AllocationCountdown::failAt(number); }

constexpr std::size_t memoryWays = 2;
constexpr Way ways[] = {{"Once", false, failOnce, isA<std::bad_alloc>},
                        {"FromThenOn", false, failOnwards, isA<std::bad_alloc>},
                        {"LibraryError", true, failOperation<throwError>, isA<TypeMismatchException>},
                        {"StandardError", true, failOperation<vexa::testing::FailingHook::failOrdinarily>,
                         isA<std::runtime_error>},
                        {"ForeignType", true, failOperation<throwForeign>, isA<Foreign>}};

class Failures : public testing::TestWithParam<std::tuple<std::size_t, std::size_t>> {
protected:
    /// Fails step `number`; false when the operation has fewer.
    bool inject(const Operation& operation, std::size_t number, const std::string& expected) {
        AllocationCountdown::start();
        std::optional<World> world(std::in_place, factory_);
        world->made();
        bool succeeded = true, isTheError = false;
        way_.failAt(number);
        try {
            operation.run(*world);
        } catch (...) {
            succeeded = false;
            isTheError = way_.isTheError();
        }
        const bool fired = way_.inBackEnd ? steps.hasFailed() : AllocationCountdown::fired();
        AllocationCountdown::failAt(0);
        steps.failNothing();
        if (!succeeded) {
            EXPECT_EQ(world->text(), expected) << "a failed operation has changed something";
        }
        world.reset();
        const std::ptrdiff_t left = AllocationCountdown::liveBlocks();
        AllocationCountdown::stop();
        EXPECT_EQ(left, 0) << "blocks are left, or were freed twice";
        EXPECT_TRUE(succeeded || (fired && isTheError)) << "another error came out";
        EXPECT_TRUE(!fired || operation.swallows || !succeeded) << "the failure was swallowed";
        return fired;
    }

    const Way& way_ = ways[std::get<1>(GetParam())];
    ArrayFactory factory_ = way_.inBackEnd ? failure::throwingFactory() : ArrayFactory();
};

TEST_P(Failures, LoseAndChangeNothing) {
    const std::size_t injections =
        failure::sweep(failure::families().at(std::get<0>(GetParam())), factory_,
                       way_.inBackEnd ? "operations of the back-end" : "allocations",
                       [this](const Operation& operation, std::size_t number, const std::string& text) {
                           return inject(operation, number, text);
                       });
    EXPECT_TRUE(injections > 0 || !AllocationCountdown::seesMalloc());
}

std::string nameOf(const testing::TestParamInfo<Failures::ParamType>& info) {
    return failure::families().at(std::get<0>(info.param)).name +
           std::string(ways[std::get<1>(info.param)].name);
}

INSTANTIATE_TEST_SUITE_P(OfMemory, Failures,
                         testing::Combine(testing::Range<std::size_t>(0, failure::families().size()),
                                          testing::Range<std::size_t>(0, memoryWays)),
                         nameOf);
// All families but the last: workspaces ask the back-end of their arrays nothing.
INSTANTIATE_TEST_SUITE_P(OfBackEnds, Failures,
                         testing::Combine(testing::Range<std::size_t>(0, failure::families().size() - 1),
                                          testing::Range<std::size_t>(memoryWays, std::size(ways))),
                         nameOf);

} // namespace
