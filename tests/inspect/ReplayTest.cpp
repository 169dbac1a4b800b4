// The inputs that the fuzzer of the readers kept, the sample data, and both cut short. A difference between a
// file and a pipe ends the process and says what it is.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::size_t replayAll(const char* folder) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        for (std::size_t size = 0; size <= std::min<std::size_t>(bytes.size(), 400); ++size) {
            LLVMFuzzerTestOneInput(bytes.data(), size);
        }
        LLVMFuzzerTestOneInput(bytes.data(), std::min<std::size_t>(bytes.size(), 32768));
        ++count;
    }
    return count;
}

TEST(Replay, FilesAndPipesGiveTheSame) {
    EXPECT_GE(replayAll(VEXADATA_CORPUS "/fuzz_inspect"), 7U);
    EXPECT_GE(replayAll(VEXADATA_SAMPLE_DATA), 3U);
}

} // namespace
