// Views by several indices: positions in either layout, errors, copy-on-write once, and what they keep alive.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ArrayView.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Layout.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <array>
#include <complex>
#include <cstdint>
#include <functional>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using vexa::data::MemoryLayout;

/// Elements that are their position in storage.
TypedArray<std::int32_t> counting(std::vector<std::size_t> dims,
                                  MemoryLayout layout = MemoryLayout::COLUMN_MAJOR) {
    ArrayFactory factory;
    const std::size_t count = std::accumulate(dims.begin(), dims.end(), std::size_t{1}, std::multiplies<>());
    auto buffer = factory.createBuffer<std::int32_t>(count);
    std::iota(buffer.get(), buffer.get() + count, 0);
    return factory.createArrayFromBuffer(std::move(dims), std::move(buffer), layout);
}

constexpr MemoryLayout layouts[] = {MemoryLayout::COLUMN_MAJOR, MemoryLayout::ROW_MAJOR};

class Views : public support::LedgerTest {};

TEST_F(Views, ReadAndWriteWhatIndexingDoes) {
    for (const MemoryLayout layout : layouts) {
        SCOPED_TRACE(static_cast<int>(layout));
        auto matrix = counting({3, 4}, layout);
        auto cube = counting({2, 3, 4}, layout);
        const auto two = readOnlyView(std::as_const(matrix));
        const auto three = readOnlyView<3>(cube);
        for (std::size_t i = 0; i < 2; ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                EXPECT_EQ(two(i, j), std::as_const(matrix)[i][j]);
                for (std::size_t k = 0; k < 4; ++k) {
                    EXPECT_EQ(three(i, j, k), std::as_const(cube)[i][j][k]);
                }
            }
        }
        EXPECT_EQ(two.stride(0), layout == MemoryLayout::COLUMN_MAJOR ? 1U : 4U);
        EXPECT_EQ(two.stride(1), layout == MemoryLayout::COLUMN_MAJOR ? 3U : 1U);
        EXPECT_EQ(three.extents(), (std::array<std::size_t, 3>{2, 3, 4}));
        EXPECT_EQ(three.size(), 24U);

        auto own = counting({2, 2, 2, 2}, layout);
        const auto four = writableView<4>(own);
        four(1, 0, 1, 1) = 100;
        EXPECT_EQ(std::as_const(own)[1][0][1][1], 100);
    }
}

TEST_F(Views, FillMissingDimensionsAndSeeVectorsThroughOneIndex) {
    for (const MemoryLayout layout : layouts) {
        SCOPED_TRACE(static_cast<int>(layout));
        const auto row = counting({1, 5}, layout);
        const auto column = counting({5, 1}, layout);
        EXPECT_EQ(readOnlyView<1>(row)(3), 3);
        EXPECT_EQ(readOnlyView<1>(column)(4), 4);
        EXPECT_EQ(readOnlyView<1>(column).extent(0), 5U);
        EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { readOnlyView<1>(row)(5); }));
        const auto matrix = counting({2, 3}, layout);
        const auto four = readOnlyView<4>(matrix);
        EXPECT_EQ(four(1, 2, 0, 0), 5);
        EXPECT_EQ(four(1, 0, 0, 0), std::as_const(matrix)[1][0]);
        EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { four(1, 2, 0, 1); }));
    }
}

TEST_F(Views, CheckEveryIndexAndTheirNumber) {
    auto matrix = counting({3, 4});
    const auto view = writableView(matrix);
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { view(3, 0) = 1; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { view(0, 4) = 1; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { view(-1, 0) = 1; }));
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { readOnlyView<1>(matrix); }));
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { writableView<1>(matrix); }));
    const auto cube = counting({2, 2, 2});
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { readOnlyView(cube); }));
    const auto nothing = counting({0, 3});
    EXPECT_EQ(readOnlyView(nothing).size(), 0U);
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { readOnlyView(nothing)(0, 0); }));
}

TEST_F(Views, DecideCopyOnWriteOnce) {
    auto made = vexa::testing::recorded(counting({2, 2}));
    const TypedArray<std::int32_t> other = made.array;
    const auto read = readOnlyView(made.array);
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"getTypedDataPtr()"}));
    const auto view = writableView(made.array);
    view(0, 0) = 10;
    view(1, 1) = 11;
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"sharedCopy()", "unshare()", "getTypedDataPtr()"}));
    EXPECT_EQ(std::as_const(made.array)[0][0], 10);
    EXPECT_EQ(other[0][0], 0);
    EXPECT_EQ(read(0, 0), 0);
    // A copy of the handle made afterwards shares what the view writes.
    const TypedArray<std::int32_t> later = made.array;
    view(0, 1) = 12;
    EXPECT_EQ(later[0][1], 12);
}

TEST_F(Views, KeepTheirElementsWhenTheHandleGoesElsewhere) {
    auto made = vexa::testing::recorded(counting({2, 2}));
    auto view = writableView(made.array);
    EXPECT_TRUE(made.array.isShared());
    made.array[0][0] = 50; // the handle parts from the view
    EXPECT_EQ(view(0, 0), 0);
    view(0, 0) = 60;
    EXPECT_EQ(std::as_const(made.array)[0][0], 50);
    made.array = counting({1, 1});
    EXPECT_EQ(vexa::testing::LiveObjects::count(), 1);
    const auto copy = view;
    view = writableView(made.array);
    EXPECT_EQ(copy(0, 0), 60);
}

TEST_F(Views, GiveRowsColumnsPagesAndPartsOfEitherLayout) {
    const auto byColumn = ArrayFactory().createArray<std::int32_t>(
        {2, 3, 2}, {0, 100, 10, 110, 20, 120, 1, 101, 11, 111, 21, 121}); // each value tells its indices
    const auto check = [](const TypedArray<std::int32_t>& array) {
        const auto all = readOnlyView<3>(array);
        const auto listed = [](const auto& view) {
            return std::vector<std::int32_t>(view.begin(), view.end());
        };
        using List = std::vector<std::int32_t>;
        EXPECT_EQ(listed(all), (List{0, 100, 10, 110, 20, 120, 1, 101, 11, 111, 21, 121}));
        const auto page = all.page(1);
        EXPECT_EQ(listed(page), (List{1, 101, 11, 111, 21, 121}));
        EXPECT_EQ(listed(page.transposed()), (List{1, 11, 21, 101, 111, 121}));
        EXPECT_EQ(page.transposed()(2, 1), 121);
        EXPECT_EQ(listed(page.row(1)), (List{101, 111, 121}));
        EXPECT_EQ(listed(page.column(2)), (List{21, 121}));
        EXPECT_EQ(listed(page.part(1, 0, 2, 2)), (List{1, 101, 21, 121}));
        EXPECT_EQ(listed(page.part(1, 2, 1, 99).part(0, 1, 1)), (List{121}));
        EXPECT_EQ(listed(page.part(0, 2, 0)), List());
        EXPECT_EQ(listed(all.slice(0, 1).slice(0, 2)), (List{120, 121}));
        EXPECT_THROW(page.row(2), EArrayIndexOutOfRange);
        EXPECT_THROW(page.slice(2, 0), EArrayIndexOutOfRange);
        EXPECT_THROW(page.part(1, 0, 2, 3), EArrayIndexOutOfRange);
        EXPECT_THROW(page.part(1, 1, 3), EArrayIndexOutOfRange);
        EXPECT_THROW(page.part(1, 0, 2, 0), EArrayIndexOutOfRange);
        EXPECT_THROW(page.part(1, 0, 3, std::size_t(1) << 63), EArrayIndexOutOfRange);
    };
    check(byColumn);
    check(withLayout(byColumn, vexa::data::MemoryLayout::ROW_MAJOR));

    auto written = ArrayFactory().createArray<std::int32_t>({2, 2});
    const auto row = writableView(written).row(1);
    std::fill(row.begin(), row.end(), 7);
    EXPECT_EQ(written, ArrayFactory().createArray<std::int32_t>({2, 2}, {0, 7, 0, 7}));
    const auto none = ArrayFactory().createArray<std::int32_t>({0, 3});
    EXPECT_EQ(readOnlyView(none).begin(), readOnlyView(none).end());
    EXPECT_EQ(readOnlyView(none).column(2).size(), 0U);
}

TEST_F(Views, CostNoAllocation) {
    ArrayFactory factory;
    auto array = factory.createArray<std::complex<double>>({8, 8});
    EXPECT_EQ(support::countAllocations([&] {
                  const auto view = writableView(array);
                  const auto read = readOnlyView(array);
                  for (std::size_t i = 0; i < 8; ++i) {
                      for (std::size_t j = 0; j < 8; ++j) {
                          view(i, j) = read(j, i) + 1.0;
                      }
                  }
              }),
              0U);
}

} // namespace
