// Handles with static storage: made before main, used and dropped after it, when the libraries' own static
// objects may be gone.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

using namespace foundation::vexadata;

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "after main: %s\n", what);
        std::_Exit(1);
    }
}

/// Uses arrays once more when the static objects are destroyed.
struct LateUser {
    Array empty;
    TypedArray<double> numbers = ArrayFactory().createArray<double>({2, 2}, {1, 2, 3, 4});
    TypedArray<Array> cells = ArrayFactory().createArray<Array>({1, 2});

    ~LateUser() {
        require(empty == Array(), "empty arrays differ");
        require(cells[0] == empty, "a fresh cell is not empty");
        const Array shared = numbers;
        numbers[1][1] = 5.0;
        require(std::as_const(numbers)[1][1] == 5.0 && shared != numbers, "a write went to the shared array");
        cells[1] = numbers;
        auto made = ArrayFactory().createArray<double>({100, 100});
        require(made.getNumberOfElements() == 10000, "no array is made");
        cells[0] = made;
    }
};

LateUser user;

TEST(StaticHandlesTest, HoldTheirArraysBeforeAndAfterMain) {
    EXPECT_TRUE(user.empty.isEmpty());
    EXPECT_EQ(user.numbers[1][1], 4.0);
    user.cells[0] = Array();
}

} // namespace
