// Sparse matrices through the handle and the factory, over the embedded back-end.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/testing/BareArray.hpp>
#include <vexa/testing/ForwardingFactory.hpp>
#include <vexa/testing/PointerIterator.hpp>

#include <gtest/gtest.h>

#include <complex>
#include <cstdlib>
#include <new>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using detail::Access;
using support::throwsExactly;
using Index = std::size_t;

int freed = 0;
template <class T>
buffer_ptr<T> bufferOf(const std::vector<T>& values) {
    auto* data = static_cast<T*>(std::malloc(values.size() * sizeof(T) + 1));
    if (data == nullptr) {
        throw std::bad_alloc();
    }
    std::copy(values.begin(), values.end(), data);
    return buffer_ptr<T>(data, [](void* block) {
        ++freed;
        std::free(block);
    });
}

template <class T>
struct Triplets {
    std::vector<T> values;
    std::vector<Index> rows;
    std::vector<Index> columns;

    void add(Index row, Index column, T value) {
        rows.push_back(row);
        columns.push_back(column);
        values.push_back(value);
    }
};

class Sparse : public testing::Test {
protected:
    template <class T>
    SparseArray<T> make(std::vector<Index> dims, const Triplets<T>& from) {
        std::vector<T> values = from.values;
        return factory.createSparseArray<T>(std::move(dims), from.rows.size(), bufferOf(values),
                                            bufferOf(from.rows), bufferOf(from.columns));
    }
    SparseArray<double> sample() {
        Triplets<double> triplets;
        triplets.add(0, 1, 7.0);
        triplets.add(2, 0, 5.0);
        return make<double>({3, 3}, triplets);
    }
    ArrayFactory factory;
};

/// Position to value, in the order of the storage.
template <class T>
using Entries = std::vector<std::tuple<Index, Index, T>>; // column, row, value

template <class T>
Entries<T> entriesOf(const SparseArray<T>& matrix) {
    Entries<T> entries;
    for (auto it = matrix.begin(); it != matrix.end(); ++it) {
        const auto [row, column] = matrix.getIndex(it);
        entries.emplace_back(column, row, *it);
    }
    return entries;
}

/// The same from the pieces in which the matrix is kept.
template <class T>
Entries<T> entriesOfPieces(const SparseArray<T>& matrix) {
    Entries<T> entries;
    for (Index column = 0; column < matrix.getCols(); ++column) {
        for (Index k = matrix.getJc()[column]; k < matrix.getJc()[column + 1]; ++k) {
            entries.emplace_back(column, matrix.getIr()[k], matrix.begin()[static_cast<std::ptrdiff_t>(k)]);
        }
    }
    return entries;
}

TEST_F(Sparse, IteratesInColumnOrderAndTellsPositions) {
    const SparseArray<double> matrix = sample();
    EXPECT_TRUE(isSparse(matrix));
    EXPECT_EQ(matrix.getType(), ArrayType::SPARSE_DOUBLE);
    EXPECT_EQ(matrix.getDimensions(), (std::vector<Index>{3, 3}));
    EXPECT_EQ(matrix.getNumberOfElements(), 9U);
    EXPECT_EQ(matrix.getNumberOfNonZeroElements(), 2U);
    EXPECT_EQ(entriesOf(matrix), (Entries<double>{{0, 2, 5.0}, {1, 0, 7.0}}));
    EXPECT_EQ(entriesOfPieces(matrix), entriesOf(matrix));
    const SparseArray<double> nothing = make<double>({4, 0}, {});
    EXPECT_EQ(nothing.begin(), nothing.end());
    EXPECT_TRUE(nothing.isEmpty());
    const Array zeros = factory.createArray(ArrayType::SPARSE_LOGICAL, {5});
    EXPECT_EQ(zeros.getDimensions(), (std::vector<Index>{5, 1}));
    EXPECT_EQ(SparseArray<bool>(zeros).getNumberOfNonZeroElements(), 0U);
}

TEST_F(Sparse, IsMadePrivateByWritableIterators) {
    SparseArray<double> matrix = sample();
    const SparseArray<double> other = matrix;
    const auto readOnly = std::as_const(matrix).begin();
    EXPECT_EQ(std::as_const(matrix).getIndex(readOnly), (std::pair<Index, Index>{2, 0}));
    EXPECT_EQ(matrix.getArrayID(), other.getArrayID()) << "reading unshares";
    for (double& value : matrix) {
        value *= 2;
    }
    EXPECT_EQ(entriesOf(matrix), (Entries<double>{{0, 2, 10.0}, {1, 0, 14.0}}));
    EXPECT_EQ(entriesOf(other), (Entries<double>{{0, 2, 5.0}, {1, 0, 7.0}}));
    EXPECT_EQ(matrix.getIndex(matrix.begin() + 1), (std::pair<Index, Index>{0, 1}));
    SparseArray<double> third = matrix;
    third.end();
    EXPECT_NE(third.getArrayID(), matrix.getArrayID());
}

TEST_F(Sparse, TakesItsOwnKindOnly) {
    const Array any = sample();
    const Array dense = factory.createArray<double>({3, 3});
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { SparseArray<bool> no(any); }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { SparseArray<std::complex<double>> no(any); }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { SparseArray<double> no(dense); }));
    EXPECT_FALSE(isSparse(dense));
    SparseArray<double> matrix = sample();
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { matrix = dense; }));
    EXPECT_EQ(matrix, any);
    auto cells = factory.createArray<Array>({1, 1}, {matrix});
    SparseArray<double> held = cells[0];
    EXPECT_EQ(entriesOf(held), entriesOf(matrix));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { SparseArray<bool> no = cells[0]; }));
    Array moved = dense;
    EXPECT_THROW(SparseArray<double>(std::move(moved)), InvalidArrayTypeException);
}

TEST_F(Sparse, TakesAnAssignedArrayOver) {
    Array any = sample();
    SparseArray<double> matrix = make<double>({1, 1}, {});
    matrix = std::move(any);
    EXPECT_EQ(matrix, sample());
    EXPECT_EQ(Access::impl(any), nullptr); // unlike a typed array, it takes what is offered
}

/// Another back-end's matrix of one row, whose iterators do not count.
class Row final : public vexa::testing::BareArray<vexa::data::impl::ArrayImpl, ArrayType::SPARSE_DOUBLE, 3> {
    struct Iterator final : vexa::testing::PointerIterator<Iterator, double> {
        using PointerIterator::PointerIterator;
        std::int64_t distanceTo(const IteratorImpl&) const override { return 100; }
    };

public:
    vexa::data::detail::IteratorImpl* beginIterator(void*, bool) override { return new Iterator(values_); }
    vexa::data::detail::IteratorImpl* endIterator(void*, bool) override { return new Iterator(values_ + 3); }
    std::pair<Index, Index> getIndex(Index k) const override { return {0, k}; }

private:
    double values_[3] = {1, 2, 3};
};

TEST_F(Sparse, FindsPositionsByTheAddressesOfValues) {
    SparseArray<double> matrix(new Row);
    EXPECT_EQ(matrix.getIndex(++ ++matrix.begin()), (std::pair<Index, Index>{0, 2}));
    EXPECT_EQ(std::as_const(matrix).getIndex(++matrix.cbegin()), (std::pair<Index, Index>{0, 1}));
}

TEST_F(Sparse, SumsNeighboursInOrder) {
    Triplets<double> twice; // in order and without zeros, which needs no sorting
    for (const Index row : {0U, 0U, 2U}) {
        twice.add(row, 1, 1.0);
    }
    EXPECT_EQ(make<double>({3, 3}, twice).getNumberOfNonZeroElements(), 2U);
}

TEST_F(Sparse, RefusesWhatDoesNotFit) {
    freed = 0;
    Triplets<double> outside;
    outside.add(0, 0, 1.0);
    outside.add(3, 0, 1.0);
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { make<double>({3, 3}, outside); }));
    outside.rows[1] = 0;
    outside.columns[1] = 3;
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { make<double>({3, 3}, outside); }));
    EXPECT_TRUE(throwsExactly<EInvalidDimensionsInSparseArray>([&] { make<double>({3, 3, 1}, {}); }));
    EXPECT_TRUE(throwsExactly<NumberOfElementsExceedsMaximumException>([&] {
        make<double>({Index{1} << 32, Index{1} << 32}, {});
    }));
    EXPECT_THROW(make<double>({1, Index{1} << 62}, {}), std::bad_alloc);
    EXPECT_THROW(make<double>({0, static_cast<Index>(-1)}, {}), std::bad_alloc);
    const auto compressed = [&](const std::vector<Index>& starts, const std::vector<Index>& rows) {
        return factory.createVEXASparseArray<double>({3, 2}, 2, bufferOf<double>({1.0, 2.0}), bufferOf(rows),
                                                     bufferOf(starts));
    };
    for (const std::vector<Index>& starts : {std::vector<Index>{1, 1, 2}, {0, 3, 2}, {0, 1, 1}, {0, 1, 3}}) {
        EXPECT_TRUE(throwsExactly<vexa::client::InvalidColumnStartsException>(
            [&] {
                compressed(starts, {0, 0});
            },
            "Column starts must rise from zero to the number of values"));
    }
    EXPECT_THROW(compressed({0, 1, 2}, {0, 3}), EArrayIndexOutOfRange);
    EXPECT_EQ(freed, 11 * 3 + 0) << "each buffer is freed once";
    EXPECT_TRUE(throwsExactly<EInvalidDimensionsInSparseArray>([&] {
        factory.createVEXASparseArray<double>({3, 2, 1}, 0, bufferOf<double>({}), bufferOf<Index>({}),
                                              bufferOf<Index>({0, 0, 0}));
    }));
    for (int absent = 0; absent < 3; ++absent) {
        const auto buffer = [&]<class T>(int number, std::vector<T> values) {
            return number == absent ? buffer_ptr<T>(nullptr, std::free) : bufferOf(values);
        };
        const auto values = [&] { return buffer(0, std::vector<double>{1.0}); };
        const auto rows = [&] { return buffer(1, std::vector<Index>{0}); };
        EXPECT_THROW(
            factory.createSparseArray<double>({1, 1}, 1, values(), rows(), buffer(2, std::vector<Index>{0})),
            vexa::client::InvalidBufferException);
        EXPECT_THROW(factory.createVEXASparseArray<double>({1, 1}, 1, values(), rows(),
                                                           buffer(2, std::vector<Index>{0, 1})),
                     vexa::client::InvalidBufferException);
    }
}

TEST_F(Sparse, ZerosWrittenLaterCompareAsAbsent) {
    SparseArray<double> matrix = sample();
    *matrix.begin() = 0;
    Triplets<double> one;
    one.add(0, 1, 7.0);
    EXPECT_EQ(matrix, make<double>({3, 3}, one));
    EXPECT_EQ(make<double>({3, 3}, one), matrix);
    EXPECT_NE(matrix, sample());
    EXPECT_EQ(matrix.getNumberOfNonZeroElements(), 2U) << "a zero stays stored";
    for (const auto& [row, value] : {std::pair<Index, double>{0, 8.0}, {1, 7.0}}) {
        Triplets<double> other;
        other.add(row, 1, value);
        EXPECT_NE(matrix, make<double>({3, 3}, other));
    }
}

TEST_F(Sparse, AreTheSameWhoeverMadeThem) {
    const auto none = [] { return buffer_ptr<Index>(nullptr, std::free); };
    const Array zeros =
        factory.createVEXASparseArray<double>({3, 2}, 0, {nullptr, std::free}, none(), none());
    EXPECT_EQ(zeros, factory.createArray(ArrayType::SPARSE_DOUBLE, {3, 2}));
    const SparseArray<double> own = sample();
    factory = vexa::testing::forwardingFactory();
    const SparseArray<double> foreign = sample();
    EXPECT_TRUE(own == foreign && foreign == own && own != zeros);
    EXPECT_THROW(Access::impl(own)->getIndex(2), EArrayIndexOutOfRange);
}

TEST_F(Sparse, ComeFromRangesAndGiveSingleElements) {
    struct Place {
        int row;
        unsigned column;
        float value;
    };
    const auto matrix =
        factory.createSparseArray<double>({3, 4}, std::vector<Place>{{2, 1, 5}, {0, 0, 1}, {1, 1, 4}});
    EXPECT_EQ(matrix,
              factory.createSparseArray<double>({3, 4}, std::vector<int>{5, 1, 4}, std::vector<int>{2, 0, 1},
                                                std::vector<char>{1, 0, 1}));
    EXPECT_EQ(matrix, factory.createSparseArray<double>({3, 4}, std::vector<std::tuple<Index, Index, double>>{
                                                                    {2, 1, 5}, {0, 0, 1}, {1, 1, 4}}));
    for (Index i = 0; i < 3; ++i) {
        for (Index j = 0; j < 4; ++j) {
            const double expected = i == 0 && j == 0 ? 1 : i == 1 && j == 1 ? 4 : i == 2 && j == 1 ? 5 : 0;
            EXPECT_EQ(matrix(i, j), expected) << i << ", " << j;
        }
    }
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { matrix(3, 0); }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { matrix(0, 4); }));
    EXPECT_THROW(factory.createSparseArray<double>({3, 4}, std::vector<double>{1}, std::vector<int>{0, 1},
                                                   std::vector<int>{0}),
                 std::invalid_argument);
    const auto nothing = factory.createSparseArray<bool>({2, 2}, std::vector<Place>());
    EXPECT_EQ(nothing.getNumberOfNonZeroElements(), 0U);
    EXPECT_FALSE(nothing(1, 1));
}

} // namespace
