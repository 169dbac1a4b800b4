// Linking the embedded back-end is all that it takes: no header of it and no name of it appears here.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace {

TEST(LinkOnlyTest, ArraysAreMadeAndReadBack) {
    foundation::vexadata::ArrayFactory factory;
    ASSERT_NE(factory.getArrayFactoryImpl(), nullptr);
    auto array = factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6});
    array[1][2] = 60;
    EXPECT_EQ(array.getDimensions(), (std::vector<std::size_t>{2, 3}));
    const auto& read = std::as_const(array);
    EXPECT_EQ(std::vector<double>(read.begin(), read.end()), (std::vector<double>{1, 2, 3, 4, 5, 60}));
}

} // namespace
