// The models of the fuzzer: the inputs that were kept, and inputs from fixed seeds. A difference ends the
// process and says after which operations.
#include "fuzz/arrays/World.hpp"
#include "support/AllocationCountdown.hpp"

#include <vexa/testing/ForwardingFactory.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

using foundation::vexadata::ArrayFactory;
using vexa::fuzz::World;
using Bytes = std::vector<std::uint8_t>;

/// As long as those of the fuzzer; a few are longer, for arrays with many elements.
Bytes fromSeed(unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(seed % 16 == 15 ? 4096 : 64 + random() % 449);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random());
    }
    return bytes;
}

/// Runs it, and sees that nothing is left of it.
void replay(const Bytes& bytes, const ArrayFactory& factory) {
    support::AllocationCountdown::start();
    World(bytes.data(), bytes.size(), factory).run();
    const std::ptrdiff_t left = support::AllocationCountdown::liveBlocks();
    support::AllocationCountdown::stop();
    EXPECT_EQ(left, 0);
}

ArrayFactory embedded() { return ArrayFactory(); }
ArrayFactory forwarding() { return vexa::testing::forwardingFactory(); }

/// The embedded back-end, whose elements handles reach in place, and one whose elements are asked for.
class Replay : public testing::TestWithParam<ArrayFactory (*)()> {
protected:
    void SetUp() override { World::isNested = GetParam() == &embedded; }
    const ArrayFactory factory = GetParam()();
};

TEST_P(Replay, InputsThatWereKept) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VEXADATA_CORPUS "/fuzz_arrays")) {
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path(), std::ios::binary);
        const Bytes bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        World(bytes.data(), bytes.size(), factory).run(); // what is made once a process is made here
        replay(bytes, factory);
        ++count;
    }
    EXPECT_GE(count, 40U);
}

TEST_P(Replay, InputsFromSeeds) {
    for (unsigned seed = 0; seed < 3000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        const Bytes bytes = fromSeed(seed);
        if (seed < 100) {
            World(bytes.data(), bytes.size(), factory).run(); // what is made once a process is made here
        }
        replay(bytes, factory);
    }
}

INSTANTIATE_TEST_SUITE_P(BackEnds, Replay, testing::Values(&embedded, &forwarding),
                         [](const auto& each) { return each.index == 0 ? "Embedded" : "Forwarding"; });

TEST(ReplayCanary, APlantedFaultIsNoticed) {
    EXPECT_DEATH(
        {
            World::isFaultPlanted = true;
            for (unsigned seed = 0; seed < 3000; ++seed) {
                const Bytes bytes = fromSeed(seed);
                World(bytes.data(), bytes.size(), ArrayFactory()).run();
            }
        },
        "difference after.*'copy a handle'");
}

} // namespace
