// Armadillo's matrices over our storage, and arrays of its results: values, layouts, addresses, lifetimes.
#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Armadillo.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

using namespace foundation::vexadata;
using namespace vexa::interop;

namespace {

const ArrayFactory factory;
const TypedArray<double> matrix = factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6});

template <class Action>
std::string refusal(Action action) {
    try {
        action();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(Armadillo, SeesTheElementsThemselves) {
    const auto view = armadilloView(matrix);
    EXPECT_EQ(view->memptr(), matrix.data());
    EXPECT_EQ((*view)(1, 2), 6);
    EXPECT_EQ(arma::accu(*view * view->t()), 1 + 4 + 9 + 16 + 25 + 36 + 2 * (2 + 12 + 30));
    const auto cube = armadilloCube(factory.createArray<float>({1, 2, 2}, {1, 2, 3, 4}));
    EXPECT_EQ((*cube)(0, 1, 1), 4.0F);
    EXPECT_EQ(arma::accu(*armadilloView(factory.createArray<std::int32_t>({1000000, 1}))), 0);
    EXPECT_EQ(armadilloView(factory.createArray<double>({0, 3}))->n_cols, 3U);
    const auto row = factory.createArray<double>({1, 3}, {1, 2, 3}, vexa::data::MemoryLayout::ROW_MAJOR);
    EXPECT_EQ((*armadilloView(row))(2), 3);
}

TEST(Armadillo, WritesAfterOneCopyAndKeepsTheArrayAlive) {
    TypedArray<double> array = matrix;
    {
        auto written = writableArmadilloView(array);
        *written *= 2;
        EXPECT_THROW(written->resize(5, 5), std::logic_error);
        array[0][0] = 100; // the handle parts from the view
        EXPECT_EQ((*written)(0, 0), 2);
    }
    EXPECT_EQ(array[0][0], 100.0);
    EXPECT_EQ(array[1][2], 12.0);
    EXPECT_EQ(matrix[1][2], 6.0);
    static_assert(std::is_const_v<std::remove_reference_t<decltype(*armadilloView(matrix))>>);
}

TEST(Armadillo, MovesItsResultsIntoArrays) {
    arma::mat large(30, 20, arma::fill::ones);
    const double* const data = large.memptr();
    const TypedArray<double> moved = fromArmadillo(std::move(large));
    EXPECT_EQ(moved.data(), data);
    EXPECT_EQ(moved.getDimensions(), (std::vector<std::size_t>{30, 20}));
    EXPECT_EQ(fromArmadillo(arma::mat{{1, 3}, {2, 4}}), factory.createArray<double>({2, 2}, {1, 2, 3, 4}));
    EXPECT_EQ(fromArmadillo(*armadilloView(matrix) + 1.0),
              factory.createArray<double>({2, 3}, {2, 3, 4, 5, 6, 7}));
    const TypedArray<double> copied = fromArmadillo(*armadilloView(matrix));
    EXPECT_EQ(copied, matrix);
    EXPECT_NE(copied.data(), matrix.data()) << "memory that is not Armadillo's own";
    EXPECT_EQ(fromArmadillo(arma::rowvec{1, 2}).getDimensions(), (std::vector<std::size_t>{1, 2}));
    EXPECT_EQ(fromArmadillo(arma::vec{1, 2}).getDimensions(), (std::vector<std::size_t>{2, 1}));
    EXPECT_EQ(fromArmadillo(arma::cube(2, 3, 4)).getDimensions(), (std::vector<std::size_t>{2, 3, 4}));
    EXPECT_TRUE(fromArmadillo(arma::mat(0, 4)).isEmpty());
}

TEST(Armadillo, TakesSparseMatricesBothWays) {
    using Triplet = std::tuple<int, int, double>;
    const auto sparse =
        factory.createSparseArray<double>({3, 4}, std::vector<Triplet>{{2, 1, 5}, {0, 0, 1}, {1, 1, 4}});
    const arma::sp_mat theirs = toArmadillo(sparse);
    EXPECT_EQ(theirs.n_nonzero, 3U);
    EXPECT_EQ(double(theirs(2, 1)), 5);
    EXPECT_EQ(fromArmadillo(factory, theirs), sparse);
    EXPECT_EQ(fromArmadillo(factory, arma::sp_mat(theirs * 2.0))(1, 1), 8);
    const auto nothing = factory.createSparseArray<double>({2, 2}, std::vector<Triplet>());
    EXPECT_EQ(fromArmadillo(factory, toArmadillo(nothing)), nothing);
}

TEST(Armadillo, SaysWhatItCannotTake) {
    EXPECT_EQ(refusal([] {
                  armadilloView(factory.createArray<double>({2, 2, 2}));
              }),
              "Armadillo: an array of 2x2x2 elements is no matrix");
    EXPECT_EQ(refusal([] { armadilloCube(matrix); }), "Armadillo: an array of 2x3 elements is no cube");
    const auto byRow = withLayout(matrix, vexa::data::MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(
        refusal([&] { armadilloView(byRow); }),
        "Armadillo: the elements lie row by row; withLayout(array, COLUMN_MAJOR) has them in the other order");
}
