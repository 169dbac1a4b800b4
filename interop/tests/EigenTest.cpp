// Eigen's maps over our storage, and arrays of its results: values, layouts, addresses, lifetimes.
#include "Failures.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Eigen.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;
using vexa::interop::eigenView;
using vexa::interop::fromEigen;
using vexa::interop::writableEigenView;

namespace {

const ArrayFactory factory;

template <class T>
TypedArray<T> counting(std::size_t rows, std::size_t columns,
                       MemoryLayout layout = MemoryLayout::COLUMN_MAJOR) {
    std::vector<T> values(rows * columns);
    std::iota(values.begin(), values.end(), T(1));
    return factory.createArray<T>({rows, columns}, values.begin(), values.end(), layout);
}

} // namespace

TEST(Eigen, SeesTheElementsThemselves) {
    const TypedArray<double> array = counting<double>(3, 4);
    const auto map = eigenView(array);
    EXPECT_EQ(map.data(), &*array.begin());
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 4; ++j) {
            EXPECT_EQ(map(Eigen::Index(i), Eigen::Index(j)), double(array[i][j]));
        }
    }
    const TypedArray<std::int16_t> rows = counting<std::int16_t>(3, 4, MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(eigenView<Eigen::RowMajor>(rows)(1, 2), std::int16_t(rows[1][2]));
    EXPECT_EQ(eigenView<Eigen::RowMajor>(rows).data(), &*rows.begin());
    const TypedArray<std::complex<float>> complex =
        factory.createArray<std::complex<float>>({1, 1}, {{1, 2}});
    EXPECT_EQ(eigenView(complex)(0, 0), (std::complex<float>(1, 2)));
    EXPECT_TRUE(eigenView(factory.createArray<bool>({2, 1}, {true, true})).all());
}

TEST(Eigen, RefusesWhatItCannotMapAndSaysWhy) {
    EXPECT_EQ(refusal([] {
                  eigenView(factory.createArray<double>({2, 3, 4}));
              }),
              "Eigen: an array of 2x3x4 elements is no matrix");
    const auto rows = counting<double>(2, 3, MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(refusal([&] { eigenView(rows); }),
              "Eigen: the elements lie row by row; ask for eigenView<Eigen::RowMajor>");
    auto columns = counting<double>(2, 3);
    EXPECT_EQ(refusal([&] { writableEigenView<Eigen::RowMajor>(columns); }),
              "Eigen: the elements lie column by column; ask for eigenView<Eigen::ColMajor>");
    EXPECT_EQ(eigenView(counting<double>(1, 3, MemoryLayout::ROW_MAJOR)).sum(), 6) << "a row lies both ways";
    EXPECT_EQ(eigenView<Eigen::RowMajor>(counting<double>(3, 1)).sum(), 6);
}

TEST(Eigen, EmptyOnesAndLongOnes) {
    const auto empty = factory.createArray<double>({0, 3});
    EXPECT_EQ(eigenView(empty).rows(), 0);
    EXPECT_EQ(eigenView(empty).cols(), 3);
    EXPECT_EQ(fromEigen(factory, eigenView(empty)).getDimensions(), (std::vector<std::size_t>{0, 3}));
    const auto lengthy = counting<double>(1000000, 1);
    EXPECT_EQ(eigenView(lengthy).sum(), 500000500000.0);
    EXPECT_EQ(eigenView(lengthy).data(), &*lengthy.begin());
}

TEST(Eigen, WritingCopiesOnceAndSparesOthers) {
    TypedArray<double> array = counting<double>(2, 2);
    const TypedArray<double> other = array;
    const double* shared = &*other.begin();
    {
        auto map = writableEigenView(array);
        EXPECT_NE(map.data(), shared);
        map *= 2;
        map.col(0).setZero();
        map(1, 1) = 7;
        map = map.transpose().eval();
    }
    EXPECT_EQ(array, factory.createArray<double>({2, 2}, {0, 6, 0, 7}));
    EXPECT_EQ(other, counting<double>(2, 2));
    const double* alone = &*array.cbegin();
    EXPECT_EQ(writableEigenView(array).data(), alone) << "private already";
}

TEST(Eigen, AMapKeepsItsElements) {
    std::optional<TypedArray<double>> array = counting<double>(2, 2);
    const auto map = eigenView(*array);
    const auto copy = map;
    (*array)[0][0] = 9.0;
    EXPECT_EQ(map(0, 0), 1) << "the handle wrote to a copy of its own";
    array.reset();
    EXPECT_EQ(map(1, 1), 4);
    EXPECT_EQ(copy.sum(), 10);
}

TEST(Eigen, ResultsBecomeArrays) {
    const auto a = counting<double>(2, 3);
    const auto map = eigenView(a);
    EXPECT_EQ(fromEigen(factory, map * map.transpose()),
              factory.createArray<double>({2, 2}, {35, 44, 44, 56}));
    EXPECT_EQ(fromEigen(factory, map.array() + 1), factory.createArray<double>({2, 3}, {2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(fromEigen(factory, map.transpose()).getDimensions(), (std::vector<std::size_t>{3, 2}));
    EXPECT_EQ(fromEigen(factory, Eigen::Vector3f(1, 2, 3)), factory.createArray<float>({3, 1}, {1, 2, 3}));
    const Eigen::Matrix<int, 2, 2, Eigen::RowMajor> rows{{1, 2}, {3, 4}};
    EXPECT_EQ(fromEigen(factory, rows), factory.createArray<std::int32_t>({2, 2}, {1, 3, 2, 4}));
}

TEST(Eigen, SparseMatricesBothWays) {
    Eigen::SparseMatrix<double> made(4, 3);
    made.insert(3, 0) = 1.5;
    made.insert(0, 2) = -2;
    made.insert(1, 2) = 4; // not compressed: makeCompressed is ours to call
    const SparseArray<double> array = fromEigen(factory, made);
    EXPECT_EQ(array.getRows(), 4U);
    EXPECT_EQ(array.getCols(), 3U);
    EXPECT_EQ(array.getNumberOfNonZeroElements(), 3U);
    EXPECT_EQ(array.getIndex(array.begin()), (std::pair<std::size_t, std::size_t>(3, 0)));

    const auto map = eigenView(array);
    EXPECT_EQ(map.valuePtr(), &*array.begin());
    EXPECT_EQ(map.coeff(1, 2), 4);
    EXPECT_EQ(Eigen::Vector4d(map * Eigen::Vector3d(2, 1, 1)), Eigen::Vector4d(-2, 4, 0, 3));
    EXPECT_EQ(fromEigen(factory, map * 2.0), fromEigen(factory, made * 2.0));
    EXPECT_EQ(fromEigen(factory, Eigen::SparseMatrix<double, Eigen::RowMajor>(made)), array);

    const SparseArray<double> empty = fromEigen(factory, Eigen::SparseMatrix<double>(2, 0));
    EXPECT_EQ(eigenView(empty).nonZeros(), 0);
    EXPECT_EQ(eigenView(empty).rows(), 2);
}
