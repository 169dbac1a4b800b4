// Handles of one array on several threads. The thread sanitizer sees more here than the checks of values do.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <semaphore>
#include <thread>

namespace {

using foundation::vexadata::ArrayFactory;
using Doubles = foundation::vexadata::TypedArray<double>;

constexpr std::size_t elements = 32;

bool holds(const Doubles& array, double value) {
    return std::all_of(array.begin(), array.end(), [value](double element) { return element == value; });
}
void fill(Doubles& array, double value) {
    for (std::size_t i = 0; i < elements; ++i) {
        array[i] = value;
    }
}

/// What one thread lends to another. Only the count of handles tells the lender that its array is its own
/// again: the semaphores order nothing between the borrower's reads and the lender's next write.
class Borrower {
public:
    explicit Borrower(int rounds) : thread_([this, rounds] { run(rounds); }) {}

    void lend(const Doubles& array) {
        vacant_.acquire();
        lent_ = array;
        occupied_.release();
    }
    /// The rounds in which the array changed under the borrower's eyes.
    int finish() {
        thread_.join();
        return faults_;
    }

private:
    void run(int rounds) {
        for (int round = 0; round < rounds; ++round) {
            occupied_.acquire();
            faults_ += holds(*lent_, round) ? 0 : 1;
            lent_.reset();
            vacant_.release();
        }
    }

    std::binary_semaphore vacant_{1};
    std::binary_semaphore occupied_{0};
    std::optional<Doubles> lent_;
    int faults_ = 0;
    std::thread thread_;
};

TEST(SharedHandlesTest, WritesInPlaceAfterAnotherThreadDroppedItsHandle) {
    constexpr int rounds = 10000;
    auto array = ArrayFactory().createArray<double>({elements, 1});
    const auto identity = array.getArrayID();
    int copies = 0;
    Borrower borrower(rounds);
    for (int round = 0; round < rounds; ++round) {
        borrower.lend(array);
        while (array.isShared()) {
            std::this_thread::yield();
        }
        fill(array, round + 1);
        copies += array.getArrayID() == identity ? 0 : 1;
    }
    EXPECT_EQ(borrower.finish(), 0);
    EXPECT_EQ(copies, 0) << "a handle that is alone needs no copy";
}

TEST(SharedHandlesTest, WritesWhileAnotherThreadReadsAndDrops) {
    constexpr int rounds = 10000;
    auto array = ArrayFactory().createArray<double>({elements, 1});
    int faults = 0;
    Borrower borrower(rounds);
    for (int round = 0; round < rounds; ++round) {
        borrower.lend(array);
        for (int delay = round % 16; delay > 0; --delay) {
            std::this_thread::yield();
        }
        fill(array, round + 1);
        faults += holds(array, round + 1) ? 0 : 1;
    }
    EXPECT_EQ(borrower.finish(), 0);
    EXPECT_EQ(faults, 0);
}

} // namespace
