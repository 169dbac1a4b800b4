// Every operation under memory that runs out at each of its allocations: nothing is lost, nothing is changed.
#include "Sweep.hpp"
#include "support/AllocationCountdown.hpp"

#include <gtest/gtest.h>

#include <optional>

namespace {

using failure::ArrayFactory;
using failure::Operation;
using failure::World;
using support::AllocationCountdown;
using support::Outcome;

/// What happens at allocation number n and after it.
enum class Memory { failsOnce, failsFromThenOn };

class OutOfMemory : public testing::TestWithParam<std::tuple<std::size_t, Memory>> {
protected:
    /// Fails allocation `number`; false when the operation makes fewer.
    bool inject(const Operation& operation, std::size_t number, const std::string& expected) {
        AllocationCountdown::start();
        std::optional<World> world(std::in_place, factory_);
        world->made();
        AllocationCountdown::failAt(number, memory() == Memory::failsFromThenOn);
        const Outcome outcome = support::outcomeOf([&] { operation.run(*world); });
        const bool fired = AllocationCountdown::fired();
        AllocationCountdown::failAt(0);
        if (outcome != Outcome::succeeded) {
            EXPECT_EQ(world->text(), expected) << "a failed operation has changed something";
        }
        world.reset();
        const std::ptrdiff_t left = AllocationCountdown::liveBlocks();
        AllocationCountdown::stop();
        EXPECT_EQ(left, 0) << "blocks are left, or were freed twice";
        EXPECT_NE(outcome, Outcome::otherError) << "something else than std::bad_alloc came out";
        EXPECT_TRUE(!fired || operation.swallows || outcome == Outcome::badAlloc)
            << "the failure was swallowed";
        EXPECT_TRUE(fired || outcome == Outcome::succeeded);
        return fired;
    }
    static Memory memory() { return std::get<1>(GetParam()); }

    ArrayFactory factory_;
};

TEST_P(OutOfMemory, LosesAndChangesNothing) {
    const std::size_t injections =
        failure::sweep(failure::families().at(std::get<0>(GetParam())), factory_, "allocations",
                       [this](const Operation& operation, std::size_t number, const std::string& text) {
                           return inject(operation, number, text);
                       });
    EXPECT_TRUE(injections > 0 || !AllocationCountdown::seesMalloc());
}

std::string nameOf(const testing::TestParamInfo<std::tuple<std::size_t, Memory>>& info) {
    const bool once = std::get<1>(info.param) == Memory::failsOnce;
    return failure::families().at(std::get<0>(info.param)).name + std::string(once ? "Once" : "FromThenOn");
}

INSTANTIATE_TEST_SUITE_P(Families, OutOfMemory,
                         testing::Combine(testing::Range<std::size_t>(0, failure::families().size()),
                                          testing::Values(Memory::failsOnce, Memory::failsFromThenOn)),
                         nameOf);

} // namespace
