// Cells: arrays held by elements, reached through references, queried, written in place, walked and stored.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/BufferAccess.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using Cell = TypedArray<Array>;

/// A row of three cells: doubles 1 2 3 4 in a square, 32-bit integers 7 8, and an empty array.
Cell threeCells() {
    ArrayFactory factory;
    Cell cell = factory.createArray<Array>({1, 3});
    cell[0] = factory.createArray<double>({2, 2}, {1.0, 2.0, 3.0, 4.0});
    cell[1] = factory.createArray<std::int32_t>({1, 2}, {7, 8});
    return cell;
}

double firstOf(const Cell& cell, std::size_t index) {
    const TypedArray<double> held = cell[index];
    return held[0][0];
}

class Cells : public support::LedgerTest {
protected:
    ArrayFactory factory;
    Cell cell = threeCells();
};

TEST_F(Cells, HandOutTheirArraysToHandlesOfTheRightKind) {
    const Array any = cell[0];
    EXPECT_EQ(any.getType(), ArrayType::DOUBLE);
    const TypedArray<std::int32_t> integers = cell[1];
    EXPECT_EQ(integers[1], 8);
    EXPECT_EQ(Array(cell[2]), Array());
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { TypedArray<float> wrong = cell[0]; }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { TypedArray<double> wrong = cell[2]; }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { Cell wrong = std::as_const(cell)[1]; }));
    // An element that holds no array at all, and too few indices to hold any.
    Array numbers = factory.createArray<double>({2, 2});
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { Array none = numbers[0][0]; }));
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { Array none = numbers[0]; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { Array none = cell[3]; }));
}

TEST_F(Cells, ShareWithHandlesUntilOneSideIsWritten) {
    TypedArray<double> out = cell[0];
    out[0][0] = 10.0;
    EXPECT_EQ(firstOf(cell, 0), 1.0);
    out = TypedArray<double>(cell[0]);
    Reference<Array> held = cell[0];
    held[0][0] = 20.0;
    EXPECT_EQ(out[0][0], 1.0);
    EXPECT_EQ(firstOf(cell, 0), 20.0);

    Array in = factory.createArray<double>({1, 1}, {5.0});
    cell[2] = in;
    in[0] = 6.0;
    EXPECT_EQ(firstOf(cell, 2), 5.0);
}

TEST_F(Cells, AnswerQueriesAboutWhatTheyHold) {
    const Reference<Array> doubles = cell[0];
    EXPECT_EQ(doubles.getType(), ArrayType::DOUBLE);
    EXPECT_EQ(doubles.getDimensions(), (std::vector<std::size_t>{2, 2}));
    EXPECT_EQ(doubles.getNumberOfElements(), 4U);
    EXPECT_FALSE(doubles.isEmpty());
    EXPECT_EQ(doubles.getArrayID(), Array(cell[0]).getArrayID());
    EXPECT_NE(doubles.getArrayID(), Reference<Array>(cell[1]).getArrayID());
    const Reference<Array> nothing = cell[2];
    EXPECT_EQ(nothing.getType(), ArrayType::UNKNOWN);
    EXPECT_TRUE(nothing.isEmpty());
    EXPECT_EQ(nothing.getArrayID(), 0U);

    // Queries follow a later store.
    Reference<Array> changing = cell[1];
    EXPECT_EQ(changing.getType(), ArrayType::INT32);
    cell[1] = factory.createArray<double>({5, 1});
    EXPECT_EQ(changing.getNumberOfElements(), 5U);
    changing = factory.createArray<bool>({1, 1});
    EXPECT_EQ(changing.getType(), ArrayType::LOGICAL);
    EXPECT_EQ(Array(cell[1]).getType(), ArrayType::LOGICAL);
}

TEST_F(Cells, QueriesThroughIncompleteOrScalarReferencesFail) {
    Cell square = factory.createArray<Array>({2, 2});
    const Reference<Array> row = square[1]; // may be formed
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { row.getType(); }));
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { row.getDimensions(); }));
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { row.getArrayID(); }));
    Array numbers = factory.createArray<double>({1, 1});
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>(
        [&] { Reference<Array>(numbers[0]).getNumberOfElements(); }));
    EXPECT_TRUE(
        throwsExactly<NotEnoughIndicesProvidedException>([&] { Reference<Array>(numbers[0]).isEmpty(); }));
}

TEST_F(Cells, StoreOnlyArraysAndOnlyIntoCells) {
    auto numbers = factory.createArray<double>({1, 2}, {1.0, 2.0});
    Array untyped = numbers;
    EXPECT_TRUE(throwsExactly<CantAssignArrayToThisArrayException>([&] { untyped[0] = cell; }));
    EXPECT_TRUE(throwsExactly<CantAssignArrayToThisArrayException>([&] { untyped[0] = cell[0]; }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { cell[0] = 5.0; }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { cell[0] = untyped[0]; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { cell[3] = numbers; }));
    EXPECT_EQ(firstOf(cell, 0), 1.0);
    EXPECT_EQ(numbers[1], 2.0);

    cell[2] = cell[0]; // from cell to cell
    EXPECT_EQ(firstOf(cell, 2), 1.0);
    Reference<Array> second = cell[1];
    second = Reference<Array>(cell[0]);
    EXPECT_EQ(firstOf(cell, 1), 1.0);
}

TEST_F(Cells, WritesInsideThemLeaveCopiesUnchanged) {
    const Cell copy = cell;
    Reference<Array> held = cell[1];
    held[1] = std::int32_t{80};
    EXPECT_EQ(static_cast<std::int32_t>(TypedArray<std::int32_t>(cell[1])[1]), 80);
    EXPECT_EQ(static_cast<std::int32_t>(TypedArray<std::int32_t>(copy[1])[1]), 8);
    // Two levels down, with a copy made of the middle.
    Cell outer = factory.createArray<Array>({1, 1});
    outer[0] = copy;
    const Cell middle = outer[0];
    Reference<Array> first = outer[0];
    Reference<Array> inner = first[0];
    inner[1][1] = 40.0;
    EXPECT_EQ(static_cast<double>(TypedArray<double>(Cell(outer[0])[0])[1][1]), 40.0);
    EXPECT_EQ(static_cast<double>(TypedArray<double>(middle[0])[1][1]), 4.0);
    EXPECT_EQ(static_cast<double>(TypedArray<double>(copy[0])[1][1]), 4.0);
}

TEST_F(Cells, IndexedTwiceNameOneCell) {
    EXPECT_EQ(Array(cell[0][1]).getType(), ArrayType::INT32);
    // No cell is a scalar, whatever array lies in it.
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { static_cast<void>(std::int32_t(cell[0][1])); }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { cell[1][0] = std::int32_t{70}; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { Array none = cell[1][1]; }));
}

TEST_F(Cells, LeadIntoTheArraysThatTheyHold) {
    const Cell copy = cell;
    EXPECT_EQ(cell[1].held()[1], 8);
    EXPECT_EQ(std::as_const(cell)[0][1].held()[0], 7);
    cell[1].held()[0] = std::int32_t{70};
    cell[0][0].held()[1][1] += 1;
    EXPECT_EQ(cell[1].held()[0], 70);
    EXPECT_EQ(cell[0].held()[1][1], 5.0);
    EXPECT_EQ(copy[1].held()[0], 7) << "the array in the cell was shared";
    EXPECT_EQ(copy[0].held()[1][1], 4.0);

    EXPECT_TRUE(throwsExactly<TypeMismatchException>(
        [&] { static_cast<void>(static_cast<double>(cell[1].held()[1])); }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { cell[1].held()[2] = std::int32_t{1}; }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { cell[3].held()[0] = 1; }));
    EXPECT_TRUE(throwsExactly<CantIndexIntoEmptyArrayException>([&] { cell[2].held()[0] = 1; }));
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { cell[1].held()[0][0][1] = 1; }));
    Array numbers = factory.createArray<double>({1, 1});
    EXPECT_TRUE(throwsExactly<NotEnoughIndicesProvidedException>([&] { numbers[0].held()[0] = 1; }));

    // A handle that is kept looks the array up again.
    const auto kept = cell[0].held()[0];
    cell[0] = factory.createArray<double>({2, 2}, {9.0, 9.0, 9.0, 9.0});
    EXPECT_EQ(kept[1], 9.0);
    cell[0] = factory.createArray<double>({1, 1});
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { static_cast<void>(kept[1] == 9.0); }));

    // Deeper, with more indices than are kept in place, and as other handles.
    Cell outer = factory.createArray<Array>({1, 1}, {cell});
    outer[0].held()[1].held()[1] = std::int32_t{80};
    EXPECT_EQ(outer[0].held()[1].held()[1], 80);
    EXPECT_EQ(cell[1].held()[1], 8);
    outer[0] = factory.createArray<double>({1, 1, 1, 2}, {1.0, 2.0});
    outer[0].held()[0][0][0][1] = 3.0;
    EXPECT_EQ(outer[0].held()[0][0][0][1], 3.0);
    Reference<double> element = outer[0].held()[0][0][0][0];
    element = 4.0;
    EXPECT_EQ(outer[0].held()[0][0][0][0], 4.0);
    outer[0] = cell;
    const TypedArray<std::int32_t> inner = outer[0].held()[1];
    EXPECT_EQ(inner[0], 70);
}

TEST_F(Cells, LeadIntoTheirArraysWithoutAllocating) {
    cell[0].held()[1][1] = 4.0; // private from now on
    double sum = 0;
    const std::size_t allocations = support::countAllocations([&] {
        for (std::size_t j = 0; j < 2; ++j) {
            cell[0].held()[1][j] = cell[0].held()[0][j] + 1.0;
            sum += std::as_const(cell)[0][0].held()[1][j];
        }
    });
    EXPECT_EQ(allocations, 0U);
    EXPECT_EQ(sum, 6.0); // 1 + 1 and 3 + 1
}

TEST_F(Cells, WalkedForReadingAreIndexedInto) {
    auto element = std::as_const(cell).begin();
    EXPECT_EQ(static_cast<double>((*element)[1][0]), 2.0);
    const auto named = *++element;
    EXPECT_EQ(static_cast<std::int32_t>(named[1]), 8);
    EXPECT_EQ(static_cast<std::int32_t>(named[0]), 7) << "a named one stays as it is";
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { static_cast<void>(std::int32_t(named[2])); }));
}

TEST_F(Cells, ReferencesOfAKnownKindReadAndWrite) {
    Cell copy = cell;
    Reference<TypedArray<std::int32_t>> numbers = cell[1];
    numbers[0] = 70;
    for (std::int32_t& number : numbers) {
        number += 1;
    }
    EXPECT_EQ(numbers[0], 71);
    EXPECT_EQ(std::accumulate(std::as_const(numbers).begin(), std::as_const(numbers).end(), 0), 80);
    EXPECT_EQ(static_cast<std::int32_t>(copy[1].held()[0]), 7);
    const TypedArray<std::int32_t> taken = numbers;
    numbers = factory.createArray<std::int32_t>({1, 1}, {5});
    EXPECT_EQ(taken.getNumberOfElements(), 2U);
    EXPECT_EQ(numbers.getNumberOfElements(), 1U);
    Reference<TypedArray<std::int32_t>> other = copy[1];
    other = numbers; // writes, and goes on to refer to its own cell
    EXPECT_EQ(static_cast<std::int32_t>(copy[1].held()[0]), 5);
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { Reference<TypedArray<double>> no = cell[1]; }));
    using Typed = Reference<TypedArray<std::int32_t>>;
    EXPECT_EQ((detail::castTo<Typed, true>(detail::chainOf(cell[1]))[0]), 5);
    EXPECT_THROW((detail::castTo<Reference<CharArray>, false>(detail::chainOf(cell[1]))),
                 TypeMismatchException);
    EXPECT_NO_THROW((detail::castTo<Reference<Array>, false>(detail::chainOf(cell[2]))));
    EXPECT_EQ(*getReadOnlyElements<std::int32_t>(cell[1]).begin(), 5);
    *getWritableElements<std::int32_t>(cell[1]).begin() = 6;
    EXPECT_EQ(numbers[0], 6);
}

TEST_F(Cells, IndexErrorsOfTheInnerArrayLeaveTheReferenceUsable) {
    Reference<Array> held = cell[0];
    const Reference<Array>& readOnly = held;
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { held[2][0] = 5.0; }));
    EXPECT_TRUE(throwsExactly<TooManyIndicesProvidedException>([&] { held[0][0][1]; }));
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { held[0][0] = 5.0F; }));
    Reference<Array> nothing = cell[2];
    EXPECT_TRUE(throwsExactly<CantIndexIntoEmptyArrayException>([&] { nothing[0]; }));
    EXPECT_EQ(static_cast<double>(readOnly[1][1]), 4.0);
    held[1][1] = 5.0;
    EXPECT_EQ(static_cast<double>(readOnly[1][1]), 5.0);
}

TEST_F(Cells, StoredIntoThemselvesHoldWhatTheyWere) {
    cell[2] = cell;
    const Cell within = std::as_const(cell)[2];
    EXPECT_EQ(Array(within[2]), Array());
    EXPECT_EQ(firstOf(within, 0), 1.0);

    auto element = cell[1];
    const Cell shared = cell; // the element handle still writes the array that is shared now
    element = shared;
    EXPECT_EQ(Cell(shared[1]).getNumberOfElements(), 3U);
    EXPECT_EQ(Array(Cell(shared[1])[1]).getType(), ArrayType::INT32);
}

TEST_F(Cells, RangesOverTheirArraysCheckTheType) {
    Reference<Array> doubles = cell[0];
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { getReadOnlyElements<float>(doubles); }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { getWritableElements<bool>(doubles); }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>(
        [&] { getReadOnlyElements<double>(Reference<Array>(cell[2])); }));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>(
        [&] { getReadOnlyElements<double>(Reference<Array>(cell[3])); }));
}

TEST_F(Cells, WritableRangesUnshareAndReadOnlyOnesDoNot) {
    for (const bool queriedBefore : {false, true}) {
        SCOPED_TRACE(queriedBefore);
        Cell own = threeCells();
        const TypedArray<double> held = own[0];
        Reference<Array> reference = own[0];
        if (queriedBefore) {
            EXPECT_EQ(reference.getNumberOfElements(), 4U);
        }
        const auto read = getReadOnlyElements<double>(reference);
        EXPECT_EQ(std::accumulate(read.begin(), read.end(), 0.0), 10.0);
        EXPECT_EQ(reference.getArrayID(), held.getArrayID());
        for (double& each : getWritableElements<double>(reference)) {
            each *= 10.0;
        }
        EXPECT_EQ(firstOf(own, 0), 10.0);
        EXPECT_EQ(held[0][0], 1.0);
        EXPECT_NE(reference.getArrayID(), held.getArrayID());
        // Now it is the cell's alone: the next range writes in place.
        const auto identity = reference.getArrayID();
        *getWritableElements<double>(reference).begin() = 11.0;
        EXPECT_EQ(reference.getArrayID(), identity);
        EXPECT_EQ(firstOf(own, 0), 11.0);
    }
}

TEST_F(Cells, RangesOutliveTheReferenceTheyCameFrom) {
    auto reference = std::make_unique<Reference<Array>>(cell[0]);
    const auto* chain = reference->chain().get();
    chain->retain(); // to see who else holds it
    {
        auto read = getReadOnlyElements<double>(*reference);
        auto last = getWritableElements<double>(*reference).end();
        reference.reset();
        EXPECT_EQ(*--last, 4.0);
        EXPECT_GT(chain->referenceCount(), 1U);
        auto first = read.begin();
        read = {first, first};
        EXPECT_EQ(*first, 1.0);
        *last = 5.0;
    }
    EXPECT_EQ(chain->referenceCount(), 1U);
    chain->release();
    const TypedArray<double> held = cell[0];
    EXPECT_EQ(held[1][1], 5.0);
}

TEST_F(Cells, AreWalkedThroughReferences) {
    std::size_t elements = 0;
    for (const auto& each : std::as_const(cell)) {
        elements += Array(each).getNumberOfElements();
    }
    EXPECT_EQ(elements, 6U);
    const Cell copy = cell;
    for (Reference<Array> each : cell) {
        each = factory.createArray<double>({1, 1}, {9.0});
    }
    EXPECT_EQ(firstOf(cell, 2), 9.0);
    EXPECT_EQ(firstOf(copy, 0), 1.0);
    Reference<Array> first = *cell.begin();
    first[0] = 8.0;
    EXPECT_EQ(firstOf(cell, 0), 8.0);
    EXPECT_EQ(cell.begin()->getType(), ArrayType::DOUBLE);
    EXPECT_EQ(cell.end() - cell.begin(), 3);
    EXPECT_EQ((cell.begin() + 2)->getNumberOfElements(), 1U);
    // Made while the inner array is shared, so that the walk has to part them.
    const TypedArray<double> held = cell[1];
    (*(cell.begin() + 1))[0] = 7.0;
    EXPECT_EQ(held[0], 9.0);
}

TEST_F(Cells, AskTheBackEndInOrder) {
    auto made = vexa::testing::recorded(threeCells());
    Reference<Array> held = made.array[0];
    made.log->clear();
    EXPECT_EQ(held.getType(), ArrayType::DOUBLE);
    EXPECT_EQ(held.getNumberOfElements(), 4U); // from the cache
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"createElementReference(0, \"\", false)"}));
    held[0][0] = 5.0;
    EXPECT_EQ(made.log->take(),
              (std::vector<std::string>{"unshare()", "createElementReference(0, \"\", true)"}));
    EXPECT_EQ(static_cast<double>(std::as_const(held)[0][0]), 5.0);
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"createElementReference(0, \"\", false)"}));
    const TypedArray<double> out = held; // the check is cached, the hand-out has a cache of its own
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"createElementReference(0, \"\", false)"}));
    made.array[1] = out;
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"unshare()", "assignElementArray(1, \"\")"}));
    held = Array(out);
    EXPECT_EQ(made.log->take(), (std::vector<std::string>{"unshare()", "assignElementArray(0, \"\")"}));
}

} // namespace
