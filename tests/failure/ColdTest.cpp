// Every operation as the first thing that a process does, with memory that runs out at each of its
// allocations or a back-end that gives null; and which operations end the process. Nothing of the library is
// made in this process.
#include "Child.hpp"
#include "ThrowingBackEnd.hpp"
#include "World.hpp"
#include "support/AllocationCountdown.hpp"

#include <vexa/data/object_functions.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <set>

namespace {

using failure::ArrayFactory;
using failure::Cause;
using failure::End;
using failure::Ending;
using failure::Failing;
using failure::Operation;
using failure::World;
using support::AllocationCountdown;
using support::Outcome;
using support::outcomeOf;

using Maker = ArrayFactory (*)();
ArrayFactory embedded() { return ArrayFactory(); }

/// All numbers of steps with VEXADATA_SOAK in the environment, or else a sample.
std::size_t next(std::size_t number, std::size_t tried) {
    static const bool all = std::getenv("VEXADATA_SOAK") != nullptr;
    return number + (all ? 1 : 1 + tried);
}

void failNothing() {
    AllocationCountdown::failAt(0);
    failure::steps.failNothing();
}

struct Told {
    bool fired;
    Outcome outcome;
    std::size_t text; // of an unchanged world, or of one in which the operation failed
    bool worksAgain;
    std::ptrdiff_t left; // blocks, after all that was done
};

/// The operation with something failing as `prepare` has it, and once more with nothing failing. What it
/// works on was
/// `made` before, or is made meanwhile.
void runCold(const Operation& operation, Maker maker, bool made, const std::function<void()>& prepare,
             Told& told) {
    AllocationCountdown::start();
    {
        std::optional<World> world;
        if (made) {
            world.emplace(maker()).made();
        }
        prepare();
        told.outcome = outcomeOf([&] { operation.run(world ? *world : world.emplace(maker())); });
        told.fired = AllocationCountdown::fired() || failure::steps.hasFailed();
        failNothing();
        if (!world || told.outcome == Outcome::succeeded) {
            world.emplace(maker());
        }
        told.text = std::hash<std::string>()(world->text());
    }
    told.worksAgain = outcomeOf([&] {
                          World world(maker());
                          operation.run(world);
                      }) == Outcome::succeeded;
    told.left = AllocationCountdown::liveBlocks();
}

/// What a failure came from.
enum class Want { memoryOnce, memoryFromThenOn, null };

class Cold : public testing::TestWithParam<std::tuple<std::size_t, Maker, Want>> {
protected:
    void prepare(std::size_t number) const {
        if (want() == Want::null) {
            failure::steps.failAt(number, Failing::result);
        } else {
            AllocationCountdown::failAt(number, want() == Want::memoryFromThenOn);
        }
    }

    /// Lets each step fail, and gives the number of failures.
    std::size_t sweep(const Operation& operation) {
        const Maker maker = std::get<1>(GetParam());
        failure::Child<Told> child;
        EXPECT_EQ(child.run([&](Told& told) { runCold(operation, maker, false, failNothing, told); }),
                  End::itself);
        const Told whole = child.told();
        EXPECT_TRUE(whole.outcome == Outcome::succeeded && whole.worksAgain);
        std::size_t tried = 0;
        for (std::size_t number = 1; !HasFailure(); number = next(number, tried)) {
            SCOPED_TRACE(number);
            const End end = child.run([&](Told& told) {
                runCold(
                    operation, maker, want() == Want::null, [&] { prepare(number); }, told);
            });
            const Told told = child.told();
            if (end == End::itself && !told.fired) {
                EXPECT_EQ(told.outcome, Outcome::succeeded);
                break;
            }
            ++tried;
            if (end == End::violation && want() == Want::null) {
                ++ended_;
                continue;
            }
            if (end != End::itself) {
                ADD_FAILURE() << "an end of the process that is not listed: " << static_cast<int>(end);
                break;
            }
            EXPECT_TRUE(told.outcome == Outcome::badAlloc || operation.swallows || want() == Want::null)
                << (told.outcome == Outcome::succeeded ? "the failure was swallowed"
                                                       : "another error came out");
            EXPECT_EQ(told.text, whole.text) << "a failed operation has changed something";
            EXPECT_TRUE(told.worksAgain) << "a failure at first has left something behind";
            EXPECT_EQ(told.left, whole.left) << "blocks are left, or were freed twice";
        }
        return tried;
    }
    static Want want() { return std::get<2>(GetParam()); }

    std::size_t ended_ = 0;
};

TEST_P(Cold, LosesAndChangesNothing) {
    if (want() == Want::null && !AllocationCountdown::seesMalloc()) {
        GTEST_SKIP() << "sanitizers stop at null themselves";
    }
    const failure::Family& family = failure::families().at(std::get<0>(GetParam()));
    std::size_t injections = 0;
    for (const Operation& operation : family.operations) {
        SCOPED_TRACE(operation.name);
        injections += sweep(operation);
        if (HasFailure()) {
            break;
        }
    }
    std::printf("%s: %zu operations, %zu cold failures, of which %zu ended the process\n", family.name,
                family.operations.size(), injections, ended_);
}

std::string nameOf(const testing::TestParamInfo<Cold::ParamType>& info) {
    const char* const wants[] = {"Once", "FromThenOn", "Null"};
    return failure::families().at(std::get<0>(info.param)).name +
           std::string(std::get<1>(info.param) == &embedded ? "" : "Wrapped") +
           wants[static_cast<int>(std::get<2>(info.param))];
}

INSTANTIATE_TEST_SUITE_P(Memory, Cold,
                         testing::Combine(testing::Range<std::size_t>(0, failure::families().size()),
                                          testing::Values(&embedded, &failure::throwingFactory),
                                          testing::Values(Want::memoryOnce, Want::memoryFromThenOn)),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(BackEnd, Cold,
                         testing::Combine(testing::Range<std::size_t>(0, failure::families().size()),
                                          testing::Values(&failure::throwingFactory),
                                          testing::Values(Want::null)),
                         nameOf);

/// Lets step `number` of `cause` fail from now on.
void failFor(Cause cause, std::size_t number) {
    switch (cause) {
    case Cause::memory:
        AllocationCountdown::start();
        return AllocationCountdown::failAt(number, true);
    case Cause::operation:
        return failure::steps.failAt(number, Failing::operation);
    case Cause::query:
        return failure::steps.failAt(number, Failing::query);
    case Cause::result:
        return failure::steps.failAt(number, Failing::result);
    case Cause::stack:
    case Cause::nothing:
        break;
    }
}

/// Whether the operation ends the process for this cause, at one step at least.
bool ends(const Operation& operation, Cause cause) {
    const bool inBackEnd = cause == Cause::operation || cause == Cause::query || cause == Cause::result;
    failure::Child<bool> child;
    End end = End::itself;
    bool fired = true;
    for (std::size_t number = 1; fired && end == End::itself; ++number) {
        end = child.run([&](bool& told) {
            failFor(cause, number);
            outcomeOf([&] {
                World world(inBackEnd ? failure::throwingFactory() : embedded());
                operation.run(world);
            });
            told = AllocationCountdown::fired() || failure::steps.hasFailed();
        });
        fired = child.told();
    }
    return end == End::terminated || end == End::violation;
}

/// What docs/errors.md lists under what ends the process.
std::vector<std::string> listedEnds() {
    std::ifstream page(VEXADATA_ERRORS_PAGE);
    std::vector<std::string> items;
    bool inside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("## ")) {
            inside = line == "## What ends the process";
        } else if (inside && line.starts_with("- ")) {
            items.push_back(line);
        } else if (inside && line.starts_with("  ")) {
            items.back() += line.substr(1);
        }
    }
    return items;
}

TEST(Ends, AreThoseThatTheErrorPageLists) {
    const std::vector<std::string> page = listedEnds();
    std::set<std::string> seen;
    for (const Ending& ending : failure::endings()) {
        SCOPED_TRACE(ending.operation.name);
        const auto item = std::find_if(page.begin(), page.end(), [&](const std::string& each) {
            return each.find(ending.listed) != std::string::npos;
        });
        ASSERT_NE(item, page.end()) << "not listed";
        seen.insert(*item);
        for (const Cause cause : ending.causes) {
            if (cause == Cause::stack && !AllocationCountdown::seesMalloc()) {
                continue; // sanitizers treat the stack in ways of their own
            }
            EXPECT_TRUE(ends(ending.operation, cause)) << "cause number " << static_cast<int>(cause);
        }
    }
    EXPECT_THAT(seen, testing::UnorderedElementsAreArray(page)) << "all that is listed ends a process";
}

struct Compared {
    bool fired;
    bool objectsThrew;
    bool elementsEqual;
};

/// Their properties are arrays, whose `==` would end the process.
TEST(Ends, DoNotComeFromComparingObjects) {
    failure::Child<Compared> child;
    std::size_t number = 0;
    do {
        const End end = child.run([&](Compared& told) {
            World world(failure::throwingFactory());
            failure::ValueObject other = world.factory.createValueObject(world.point());
            other["x"] = world.factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6});
            world.objects()[1] = other;
            const auto left = failure::elementOf(world.objects(), 0),
                       right = failure::elementOf(world.objects(), 1);
            const failure::ValueObject& object = world.object();
            failure::steps.failAt(number, Failing::query);
            told.objectsThrew = outcomeOf([&] { failure::use(object == other); }) != Outcome::succeeded;
            failure::steps.failAt(number, Failing::query);
            told.elementsEqual = object_reference_is_equal(left.get(), right.get());
            told.fired = failure::steps.hasFailed();
        });
        ASSERT_EQ(end, End::itself);
        EXPECT_EQ(child.told().objectsThrew, child.told().fired) << number;
        EXPECT_EQ(child.told().elementsEqual, !child.told().fired) << number;
    } while (number++ == 0 || child.told().fired);
    EXPECT_GT(number, 4U);
}

} // namespace
