// Expressions of xtensor over our storage, and arrays of its results: values, layouts, addresses, lifetimes.
#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Xtensor.hpp>

#include <gtest/gtest.h>
#include <xtensor/xmath.hpp>

#include <complex>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

using namespace foundation::vexadata;
using namespace vexa::interop;
using vexa::data::MemoryLayout;

namespace {

const ArrayFactory factory;
constexpr auto byRow = xt::layout_type::row_major;

} // namespace

TEST(Xtensor, SeesTheElementsThemselvesInEitherLayout) {
    std::vector<double> values(24);
    std::iota(values.begin(), values.end(), 0.0);
    for (const auto layout : {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR}) {
        const auto array = factory.createArray<double>({2, 3, 4}, values.begin(), values.end(), layout);
        const auto check = [&](const auto& view) {
            EXPECT_EQ(view.data(), array.data());
            EXPECT_EQ(view.dimension(), 3U);
            EXPECT_EQ(view(1, 2, 3), double(array[1][2][3]));
            EXPECT_EQ(view(1, 0, 2), double(array[1][0][2]));
            EXPECT_EQ(xt::sum(view)(), 276);
        };
        if (layout == MemoryLayout::ROW_MAJOR) {
            check(xtensorView<byRow>(array));
            EXPECT_THROW(xtensorView(array), std::invalid_argument);
        } else {
            check(xtensorView(array));
            EXPECT_THROW(xtensorView<byRow>(array), std::invalid_argument);
        }
    }
    const auto row = factory.createArray<std::complex<float>>({1, 2}, {{1, 2}, {3, 4}});
    EXPECT_EQ(xtensorView<byRow>(row)(0, 1), (std::complex<float>(3, 4)));
    EXPECT_EQ(xtensorView(factory.createArray<bool>({0, 2})).size(), 0U);
}

TEST(Xtensor, WritesAfterOneCopyAndKeepsTheArrayAlive) {
    TypedArray<double> array = factory.createArray<double>({2, 2}, {1, 2, 3, 4});
    const TypedArray<double> before = array;
    auto view = writableXtensorView(array);
    view *= 10;
    EXPECT_EQ(array[1][1], 40.0);
    array = factory.createArray<double>({1, 1});
    EXPECT_EQ(view(0, 1), 30);
    EXPECT_EQ(before[0][1], 3.0);
}

TEST(Xtensor, MovesItsResultsIntoArrays) {
    xt::xarray<int> theirs = {{1, 2, 3}, {4, 5, 6}};
    const int* const data = theirs.data();
    const TypedArray<int> moved = fromXtensor(std::move(theirs));
    EXPECT_EQ(moved.data(), data);
    EXPECT_EQ(moved.getMemoryLayout(), MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(moved[0][2], 3);
    const auto array = factory.createArray<double>({2, 2}, {1, 2, 3, 4});
    EXPECT_EQ(fromXtensor(xtensorView(array) + 1.0), factory.createArray<double>({2, 2}, {2, 3, 4, 5}));
    EXPECT_EQ(fromXtensor(xt::xarray<double>(5.0)), factory.createScalar(5.0)) << "without dimensions";
    EXPECT_EQ(fromXtensor(xt::xarray<double>{1.0, 2.0}).getDimensions(), (std::vector<std::size_t>{2, 1}));
    const std::vector<std::size_t> shape = {2, 2};
    const std::vector<std::ptrdiff_t> strides = {3, 7};
    xt::xarray<double, xt::layout_type::dynamic> odd(shape, strides);
    EXPECT_THROW(fromXtensor(std::move(odd)), std::invalid_argument);
}
