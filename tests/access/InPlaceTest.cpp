// Elements that handles reach in place, without asking the back-end. That they are those that a back-end
// gives when it is asked is what the models say in tests/models, over both.
#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

using namespace foundation::vexadata;

// A handle to an element that is used after the buffer went away finds nothing there.
TEST(InPlace, EndsWithTheStorage) {
    auto array = ArrayFactory().createArray<double>({2, 2}, {1, 2, 3, 4});
    const auto element = array[1][1];
    const auto single = array[0];
    const auto buffer = array.release();
    EXPECT_EQ(buffer[3], 4);
    EXPECT_THROW(static_cast<void>(static_cast<double>(element)), EArrayIndexOutOfRange);
    EXPECT_THROW(static_cast<void>(static_cast<double>(single)), NotEnoughIndicesProvidedException);
    EXPECT_THROW(array[0], CantIndexIntoEmptyArrayException);
}
