// Registration of back-end factories in a process that has none to begin with. A registration lasts as long
// as the process, so each case wants a process of its own, as ctest gives it.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

using foundation::vexadata::ArrayFactory;
using foundation::vexadata::detail::Access;
using vexa::data::impl::ArrayFactoryImpl;

using Function = ArrayFactoryImpl* (*)();

/// Known by its number; makes nothing.
class NumberedFactory final : public ArrayFactoryImpl, private vexa::testing::LiveObjects::Counted {
    using ArrayImpl = vexa::data::impl::ArrayImpl;
    using ArrayType = foundation::vexadata::ArrayType;
    using Deleter = void (*)(void*);

public:
    explicit NumberedFactory(int number) : number_(number) {}
    int number() const noexcept { return number_; }

    ArrayImpl* createArrayImpl(ArrayType, Dimensions) override { return nullptr; }
    ArrayImpl* createArrayWithDataImpl(ArrayType, Dimensions, const void*, std::size_t) override {
        return nullptr;
    }
    void createBufferImpl(void*&, Deleter&, ArrayType, std::size_t) override {}
    void createUntypedBufferImpl(void*&, Deleter&, std::size_t) override {}
    ArrayImpl* createArrayFromBufferImpl(Dimensions, ArrayType, vexa::data::impl::Buffer<void>,
                                         vexa::data::MemoryLayout) override {
        return nullptr;
    }

private:
    int number_;
};

std::atomic<int> calls{0};

template <int number>
ArrayFactoryImpl* make() {
    ++calls;
    return new NumberedFactory(number);
}
constexpr std::array<Function, 8> functions{&make<0>, &make<1>, &make<2>, &make<3>,
                                            &make<4>, &make<5>, &make<6>, &make<7>};

std::shared_ptr<ArrayFactoryImpl> defaultFactory() {
    return Access::createSharedPtr(ArrayFactoryImpl::getDefaultFactory());
}
/// The number of the function that is in force, or -1 without any.
int registeredNumber() {
    const auto factory = defaultFactory();
    return factory == nullptr ? -1 : dynamic_cast<const NumberedFactory&>(*factory).number();
}

class RegistrationTest : public support::LedgerTest {
protected:
    void SetUp() override {
        LedgerTest::SetUp();
        ASSERT_EQ(registeredNumber(), -1)
            << "a back-end is registered already: run each case alone, e.g. with ctest";
    }
};

struct Slot {
    bool (*assign)(Function);
    const char* message;
};
const Slot engineSlot{&ArrayFactoryImpl::registerVexaFactoryFunction,
                      "attempted to assign vexaFactoryFuncPtr twice to different values."};
const Slot clientSlot{&ArrayFactoryImpl::registerClientFactoryFunction,
                      "attempted to assign clientFactoryFuncPtr twice to different values."};

TEST_F(RegistrationTest, FactoriesMadeBeforeAnyRegistrationAreAndStayEmpty) {
    const ArrayFactory early;
    EXPECT_EQ(early.getArrayFactoryImpl(), nullptr);
    EXPECT_EQ(ArrayFactoryImpl::getDefaultFactory(), nullptr);
    clientSlot.assign(functions[0]);
    EXPECT_EQ(early.getArrayFactoryImpl(), nullptr);
    EXPECT_NE(ArrayFactory().getArrayFactoryImpl(), nullptr);
}

TEST_F(RegistrationTest, CreatingWithoutABackEndTellsWhatToLinkAndEndsTheProcess) {
    testing::internal::CaptureStderr();
    const ArrayFactory factory;
    ArrayFactory moved = factory;
    static_cast<void>(ArrayFactory(std::move(moved)));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    const std::function<void()> creating[] = {
        [&] {
            factory.createArray<double>({2, 2});
        },
        [&] {
            factory.createArray<bool>({1, 1}, {true});
        },
        [&] { factory.createScalar("text"); },
        [&] { factory.createCharArray("text"); },
        [&] { factory.createBuffer<double>(3); },
        [&] { factory.createBuffer(3); },
        [&] {
            factory.createStructArray({1, 1}, {"a"});
        },
        [&] {
            factory.createEnumArray({1, 1}, "Colors");
        },
        [&] { factory.createClassInfo("Point"); },
        [&] {
            moved.createArray<double>({1, 1});
        },
    };
    for (const auto& create : creating) {
        EXPECT_EXIT(create(), testing::KilledBySignal(SIGABRT), "^vexadata: .*vexadata::client.*\n$");
    }
}

/// Registers number `own`, then tries `other`.
void expectOwnIsKept(const Slot& slot, unsigned own, unsigned other) {
    EXPECT_TRUE(slot.assign(functions[own]));
    EXPECT_TRUE(slot.assign(functions[own]));
    EXPECT_TRUE(
        support::throwsExactly<std::logic_error>([&] { slot.assign(functions[other]); }, slot.message));
    EXPECT_EQ(registeredNumber(), static_cast<int>(own));
    EXPECT_TRUE(slot.assign(functions[own])) << "after a failed attempt";
}
TEST_F(RegistrationTest, EachSlotKeepsItsFirstFunctionAndTheEngineRegisteredLastWins) {
    expectOwnIsKept(clientSlot, 1, 2);
    expectOwnIsKept(engineSlot, 2, 1);
}
TEST_F(RegistrationTest, EngineRegisteredFirstWins) {
    EXPECT_TRUE(engineSlot.assign(functions[1]));
    EXPECT_TRUE(clientSlot.assign(functions[2]));
    EXPECT_EQ(registeredNumber(), 1);
}

TEST_F(RegistrationTest, EachRequestCallsTheFunctionForOneReference) {
    for (const Slot& slot : {clientSlot, engineSlot}) { // in this order, for the engine hides the client
        calls = 0;
        slot.assign(functions[3]);
        EXPECT_EQ(calls, 0) << "registering calls nothing";
        const auto first = defaultFactory();
        const auto second = defaultFactory();
        EXPECT_EQ(calls, 2);
        EXPECT_NE(first, second);
        EXPECT_EQ(first->referenceCount(), 1u);
        EXPECT_EQ(second->referenceCount(), 1u);
        const ArrayFactory factory;
        const ArrayFactory copy = factory;
        EXPECT_EQ(calls, 3) << "copies of a factory share its back-end";
        EXPECT_EQ(copy.getArrayFactoryImpl()->referenceCount(), 1u);
    }
}

/// True when one of several threads with different functions succeeds, the others fail, and its function is
/// in force.
bool oneOfManyThreadsWins(const Slot& slot) {
    std::atomic<std::size_t> waiting{functions.size()};
    std::atomic<int> winners{0}, losers{0}, winner{-1};
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < functions.size(); ++i) {
        threads.emplace_back([&, i] {
            for (--waiting; waiting != 0;) {
                std::this_thread::yield();
            }
            try {
                winners += slot.assign(functions[i]) ? 1 : 0;
                winner = static_cast<int>(i);
            } catch (const std::logic_error&) {
                ++losers;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    return winners == 1 && losers == static_cast<int>(functions.size()) - 1 && registeredNumber() == winner;
}

TEST_F(RegistrationTest, OneOfManyThreadsWins) {
    for (int round = 0; round < 400; ++round) {
        const pid_t child = fork(); // a process has one race a slot to offer
        ASSERT_NE(child, -1);
        if (child == 0) {
            _exit(oneOfManyThreadsWins(clientSlot) && oneOfManyThreadsWins(engineSlot) ? 0 : 1);
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0) << "round " << round;
    }
}

} // namespace
