// The inputs that the fuzzer of saved files kept, whole and cut short, through the same code.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

TEST(Replay, OfWhatTheFuzzerKept) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VEXADATA_CORPUS "/fuzz_storage")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        for (std::size_t size = 0; size <= bytes.size(); ++size) {
            LLVMFuzzerTestOneInput(bytes.data(), size);
        }
        ++count;
    }
    EXPECT_GE(count, 20U);
}
