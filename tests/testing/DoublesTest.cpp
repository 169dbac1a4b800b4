// The doubles that are installed, and what the tests themselves are helped by.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/testing/CallLog.hpp>
#include <vexa/testing/Catalogue.hpp>
#include <vexa/testing/FailingBackEnd.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using vexa::testing::FailingAllocations;
using vexa::testing::FailingHook;
using Calls = std::vector<std::string>;

class Doubles : public support::LedgerTest {};

TEST_F(Doubles, WriteDownCallsWithTheirArguments) {
    const auto log = std::make_shared<vexa::testing::CallLog>();
    ArrayFactory factory = vexa::testing::forwardingFactory(log);
    auto numbers = factory.createArray<std::complex<double>>({1, 2}, {{1, 2}, {3, 4}});
    EXPECT_EQ(log->take(), (Calls{"createArrayWithDataImpl(14, \"1x2\", 2)"}));
    auto copy = numbers;
    copy[1] = {5, -6.5};
    EXPECT_EQ(log->operations(), (Calls{"sharedCopy()", "unshare()", "setElementValue(1, \"\", 5+-6.5i)"}));
    EXPECT_GT(log->all().size(), 3U) << "with the queries between them";
    log->clear();
    EXPECT_TRUE(log->operations().empty() && log->all().empty());
}

TEST_F(Doubles, OfWhatWasStoredAreSeparateFromIt) {
    ArrayFactory factory = vexa::testing::forwardingFactory();
    auto cell = factory.createArray<Array>({1, 1});
    auto numbers = factory.createArray<double>({1, 1});
    cell[0] = numbers;
    numbers[0] = 5.0;
    EXPECT_EQ(std::as_const(cell)[0].held()[0], 0.0);
    const ClassInfo info = factory.createClassInfo("Thing", {"x"});
    ValueObject object = factory.createValueObject(info);
    auto objects = factory.createValueObjectArray({1, 1}, info);
    objects[0] = object;
    object["x"] = numbers;
    EXPECT_TRUE(ValueObject(std::as_const(objects)[0])["x"].isEmpty());
}

TEST_F(Doubles, FailAtOneStepOfAKind) {
    const auto hook = std::make_shared<FailingHook>();
    ArrayFactory factory = vexa::testing::failingFactory(hook);
    auto numbers = factory.createArray<double>({1, 1});
    const auto write = [&] { numbers[0] = 1.0; };
    hook->failAt(2);
    EXPECT_TRUE(
        support::throwsExactly<std::runtime_error>(write, "the back-end failed")); // the write, not `unshare`
    EXPECT_TRUE(hook->hasFailed());
    EXPECT_EQ(std::as_const(numbers)[0], 0.0);
    hook->failAt(3);
    EXPECT_NO_THROW(write());
    EXPECT_FALSE(hook->hasFailed());
    hook->failAt(1, FailingHook::Failing::query, [] { throw 7; });
    EXPECT_THROW(detail::Access::impl(numbers)->getType(), int);
    hook->failAt(1, FailingHook::Failing::result);
    EXPECT_EQ(detail::Access::impl(numbers)->getUntypedDataPtr(), nullptr);
    EXPECT_EQ(detail::Access::impl(numbers)->getUntypedDataPtr() == nullptr, false) << "once";
    hook->failAt(1);
    hook->failNothing();
    EXPECT_NO_THROW(write());
}

TEST_F(Doubles, HoldEveryKindOfArray) {
    for (ArrayFactory factory : {ArrayFactory(), vexa::testing::forwardingFactory()}) {
        for (const vexa::testing::Kind& kind : vexa::testing::catalogue()) {
            SCOPED_TRACE(kind.name);
            Array array = kind.make(factory, 1);
            const Array copy = array;
            EXPECT_TRUE(kind.holds(array, 1));
            EXPECT_TRUE(!kind.holds(array, 2) || kind.name == "Sparsebool") << "whose values are all true";
            kind.change(factory, array, 2);
            EXPECT_TRUE(kind.holds(array, 2));
            EXPECT_TRUE(kind.holds(copy, 1)) << "a copy changed";
        }
    }
}

std::vector<std::vector<int>> sink; // keeps the compiler from leaving allocations out

TEST(FailingAllocations, CountOnThisThreadWhileTheyAreTold) {
    const auto allocate = [] { std::vector<std::vector<int>>(1, std::vector<int>(100)).swap(sink); };
    EXPECT_EQ(support::countAllocations(allocate), 3U);
    FailingAllocations::start();
    auto kept = std::make_unique<int>();
    EXPECT_EQ(FailingAllocations::liveBlocks(), 1);
    EXPECT_GE(FailingAllocations::liveBytes(), 4);
    FailingAllocations::failAt(2);
    EXPECT_EQ(support::outcomeOf(allocate), support::Outcome::badAlloc);
    EXPECT_TRUE(FailingAllocations::fired());
    EXPECT_EQ(support::outcomeOf(allocate), support::Outcome::succeeded) << "one failure alone";
    FailingAllocations::failAt(1, true);
    EXPECT_EQ(support::outcomeOf(allocate), support::Outcome::badAlloc);
    EXPECT_EQ(support::outcomeOf(allocate), support::Outcome::badAlloc) << "and all that follow";
    FailingAllocations::failAt(0);
    kept.reset();
    FailingAllocations::stop();
    EXPECT_EQ(support::outcomeOf([] { throw 1; }), support::Outcome::otherError);
}

TEST(ThrowsExactly, LooksAtTheClassAndTheMessage) {
    using support::throwsExactly;
    const auto mismatch = [] { throw TypeMismatchException(); };
    EXPECT_TRUE(throwsExactly<TypeMismatchException>(mismatch));
    EXPECT_FALSE(throwsExactly<TypeMismatchException>(mismatch, "another message"));
    EXPECT_FALSE(throwsExactly<InvalidArrayTypeException>(mismatch));
    EXPECT_FALSE(throwsExactly<std::exception>([] { throw std::runtime_error("x"); }, "x")) << "a base";
    EXPECT_FALSE(throwsExactly<TypeMismatchException>([] {}));
    EXPECT_FALSE(throwsExactly<TypeMismatchException>([] { throw 1; }));
}

} // namespace
