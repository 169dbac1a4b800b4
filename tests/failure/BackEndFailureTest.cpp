// Every operation over a back-end whose operations fail one after the other: the error comes out as it is,
// nothing is lost, nothing is changed.
#include "Sweep.hpp"
#include "ThrowingBackEnd.hpp"
#include "support/AllocationCountdown.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace {

using failure::Operation;
using failure::World;
using support::AllocationCountdown;

/// An error that no interface knows.
struct Foreign {};

enum class Thrown { libraryError, standardError, foreignType };
constexpr void (*failures[])() = {[] { throw foundation::vexadata::TypeMismatchException(); },
                                  &vexa::testing::FailingHook::failOrdinarily, [] { throw Foreign(); }};

using Parameters = std::tuple<std::size_t, Thrown>;

class BackEndFails : public testing::TestWithParam<Parameters> {
protected:
    enum class Outcome { succeeded, asThrown, otherError };

    Outcome outcomeOf(const Operation& operation, World& world) const {
        Thrown caught = thrown();
        try {
            operation.run(world);
            return Outcome::succeeded;
        } catch (const foundation::vexadata::TypeMismatchException&) {
            caught = Thrown::libraryError;
        } catch (const std::runtime_error&) {
            caught = Thrown::standardError;
        } catch (const Foreign&) {
            caught = Thrown::foreignType;
        } catch (...) {
            return Outcome::otherError;
        }
        return caught == thrown() ? Outcome::asThrown : Outcome::otherError;
    }

    /// Lets back-end operation `number` fail; false when the operation asks for fewer.
    bool inject(const Operation& operation, std::size_t number, const std::string& expected) {
        AllocationCountdown::start();
        std::optional<World> world(std::in_place, factory_);
        world->made();
        failure::steps.failAt(number, failure::Failing::operation, failures[static_cast<int>(thrown())]);
        const Outcome outcome = outcomeOf(operation, *world);
        failure::steps.failNothing();
        const bool fired = failure::steps.hasFailed();
        if (fired && outcome == Outcome::asThrown) {
            EXPECT_EQ(world->text(), expected) << "a failed operation has changed something";
        }
        world.reset();
        const std::ptrdiff_t left = AllocationCountdown::liveBlocks();
        AllocationCountdown::stop();
        EXPECT_EQ(left, 0) << "blocks are left, or were freed twice";
        EXPECT_NE(outcome, Outcome::otherError) << "not what the back-end threw";
        EXPECT_TRUE(!fired || operation.swallows || outcome == Outcome::asThrown)
            << "the failure was swallowed";
        return fired;
    }
    static Thrown thrown() { return std::get<1>(GetParam()); }

    failure::ArrayFactory factory_ = failure::throwingFactory();
};

TEST_P(BackEndFails, AnErrorComesOutAndNothingIsLost) {
    const std::size_t injections = failure::sweep(
        failure::families().at(std::get<0>(GetParam())), factory_, "operations of the back-end",
        [this](const Operation& operation, std::size_t number, const std::string& text) {
            return inject(operation, number, text);
        });
    EXPECT_GT(injections, 0U);
}

std::string nameOf(const testing::TestParamInfo<Parameters>& info) {
    const char* const errors[] = {"LibraryError", "StandardError", "ForeignType"};
    return failure::families().at(std::get<0>(info.param)).name +
           std::string(errors[static_cast<int>(std::get<1>(info.param))]);
}

// All but the last: workspaces ask the back-end of their arrays nothing.
INSTANTIATE_TEST_SUITE_P(Families, BackEndFails,
                         testing::Combine(testing::Range<std::size_t>(0, failure::families().size() - 1),
                                          testing::Values(Thrown::libraryError, Thrown::standardError,
                                                          Thrown::foreignType)),
                         nameOf);

} // namespace
