// References that are kept while what they refer to is replaced, released or shared: they fail or follow, and
// never reach into memory that is not theirs.
#include "support/Ledger.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Exception.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;

class KeptReferences : public support::LedgerTest {
protected:
    /// Every use of a reference to an array of another kind than the one that lies there by now.
    template <class Held>
    static void expectRefused(Held& held) {
        const Held& readOnly = held;
        EXPECT_THROW(held[0], TypeMismatchException);
        EXPECT_THROW(readOnly[0], TypeMismatchException);
        EXPECT_THROW(held.begin(), TypeMismatchException);
        EXPECT_THROW(held.end(), TypeMismatchException);
        EXPECT_THROW(readOnly.begin(), TypeMismatchException);
        EXPECT_THROW(readOnly.end(), TypeMismatchException);
    }

    ArrayFactory factory;
    TypedArray<Array> cells = factory.createArray<Array>({1, 2});
};

TEST_F(KeptReferences, ToArraysTestTheirKindAtEveryUse) {
    const auto replacements = {Array(factory.createArray<std::int8_t>({1, 1})), Array()};
    for (const Array& replacement : replacements) {
        cells[0] = factory.createArray<double>({1, 3}, {1, 2, 3});
        Reference<TypedArray<double>> doubles = cells[0];
        cells[0] = replacement;
        expectRefused(doubles);

        cells[0] = factory.createCharArray("text");
        Reference<CharArray> text = cells[0];
        cells[0] = replacement;
        expectRefused(text);
        EXPECT_THROW(text.toUTF16(), TypeMismatchException);
        EXPECT_THROW(text.toAscii(), TypeMismatchException);

        cells[0] = factory.createEnumArray({1, 1}, "Color", {"red"});
        Reference<EnumArray> colors = cells[0];
        cells[0] = replacement;
        expectRefused(colors);
        EXPECT_THROW(colors.getClassName(), TypeMismatchException);

        cells[0] = factory.createStructArray({1, 1}, {"a"});
        Reference<StructArray> records = cells[0];
        cells[0] = replacement;
        expectRefused(records);
        EXPECT_THROW(records.getFieldNames(), TypeMismatchException);
        EXPECT_THROW(records.getNumberOfFields(), TypeMismatchException);
    }
    // What lies there is found again when it is of the right kind.
    Reference<Array> any = cells[0];
    any = factory.createArray<double>({1, 1}, {7});
    Reference<TypedArray<double>> doubles = cells[0];
    any = factory.createArray<double>({1, 2}, {8, 9});
    EXPECT_EQ(doubles[1], 9);
}

TEST_F(KeptReferences, ToElementsNoticeAnotherArray) {
    cells[0] = factory.createArray<double>({1, 4}, {1, 2, 3, 4});
    Reference<TypedArray<double>> held = cells[0];
    Reference<double> last = held[3];
    auto named = held[3];
    const auto deeper = held[0];
    auto further = deeper[3];
    last = 40;
    EXPECT_EQ(named, 40);

    cells[0] = factory.createArray<double>({1, 1}, {1});
    EXPECT_THROW(last = 5, EArrayIndexOutOfRange);
    EXPECT_THROW(named = 5, EArrayIndexOutOfRange);
    EXPECT_THROW(further = 5, EArrayIndexOutOfRange);
    EXPECT_THROW(static_cast<void>(static_cast<double>(last)), EArrayIndexOutOfRange);
    cells[0] = factory.createArray<std::int8_t>({1, 4});
    EXPECT_THROW(last = 5, TypeMismatchException);
    EXPECT_THROW(named = 5, TypeMismatchException);
    EXPECT_THROW(further = 5, TypeMismatchException);
}

TEST_F(KeptReferences, ToStringsRecordsAndObjectsNoticeAnotherArray) {
    cells[0] = factory.createArray<String>({1, 2});
    Reference<TypedArray<String>> strings = cells[0];
    Reference<String> text = strings[1];
    cells[0] = factory.createEnumArray({1, 2}, "Color", {"red", "blue"});
    EXPECT_THROW(text = u"x", TypeMismatchException);
    Reference<EnumArray> colors = cells[0];
    Reference<Enumeration> color = colors[1];
    cells[0] = factory.createStructArray({1, 2}, {"a"});
    EXPECT_THROW(color = "blue", TypeMismatchException);

    Reference<StructArray> records = cells[0];
    Reference<StructElement> record = records[1];
    Reference<Array> field = record["a"];
    cells[0] = factory.createStructArray({1, 1}, {"a"});
    EXPECT_THROW(record["a"], EArrayIndexOutOfRange);
    EXPECT_THROW(field = factory.createScalar(1.0), EArrayIndexOutOfRange);
    cells[0] = factory.createArray<double>({1, 2});
    EXPECT_THROW(record.getNumberOfFields(), TypeMismatchException);
    EXPECT_THROW(record.begin(), TypeMismatchException);
    EXPECT_THROW(record = (std::vector<Array>{Array()}), TypeMismatchException);
    EXPECT_THROW(field = factory.createScalar(1.0), TypeMismatchException);
}

TEST_F(KeptReferences, ToFieldsCopyWhatTheirRecordShares) {
    cells[0] = factory.createStructArray({1, 2}, {"a"});
    Reference<StructArray> records = cells[0];
    Reference<StructElement> record = records[0];
    Reference<Array> kept = record["a"];
    const StructArray backup = cells[0];
    record["a"] = factory.createScalar(2.0);
    EXPECT_TRUE(backup[0]["a"].isEmpty());
    EXPECT_EQ(StructArray(cells[0])[0]["a"][0], 2.0);
    kept = factory.createScalar(3.0);
    EXPECT_EQ(StructArray(cells[0])[0]["a"][0], 3.0);
    const StructArray second = cells[0];
    kept[0] = 4.0; // one level deeper
    EXPECT_EQ(second[0]["a"][0], 3.0);
    EXPECT_EQ(StructArray(cells[0])[0]["a"][0], 4.0);
    EXPECT_THROW(records[2]["a"], EArrayIndexOutOfRange) << "not only when it is written through";
}

TEST_F(KeptReferences, EndWithTheStorageThatIsReleased) {
    TypedArray<double> array = factory.createArray<double>({2, 2}, {1, 2, 3, 4});
    Reference<double> element = array[1][1];
    auto handle = array[1][1];
    const auto buffer = array.release();
    EXPECT_THROW(static_cast<void>(static_cast<double>(element)), EArrayIndexOutOfRange);
    EXPECT_THROW(element = 5, EArrayIndexOutOfRange);
    EXPECT_THROW(element += 5, EArrayIndexOutOfRange);
    EXPECT_THROW(handle = 5, EArrayIndexOutOfRange);
    EXPECT_EQ(buffer[3], 4);
}

TEST_F(KeptReferences, StandForArraysOfKindsThatHaveNoElementsOfTheirOwn) {
    cells[0] = factory.createArray(ArrayType::SPARSE_DOUBLE, {3, 3});
    Reference<SparseArray<double>> sparse = cells[0];
    EXPECT_EQ(sparse.getDimensions(), (std::vector<std::size_t>{3, 3}));
    const SparseArray<double> taken = sparse;
    EXPECT_EQ(taken.getCols(), 3U);
    EXPECT_EQ(
        (SparseArray<double>(detail::castTo<Reference<SparseArray<double>>, true>(detail::chainOf(cells[0])))
             .getRows()),
        3U);
    sparse = SparseArray<double>(factory.createArray(ArrayType::SPARSE_DOUBLE, {1, 2}));
    EXPECT_EQ(cells[0].getNumberOfElements(), 2U);
    EXPECT_THROW((Reference<SparseArray<bool>>(cells[0])), TypeMismatchException);

    cells[1] = factory.createArray<ValueObject>({1, 2});
    Reference<ValueObjectArray> objects = cells[1];
    EXPECT_EQ(objects.getNumberOfElements(), 2U);
    const ValueObjectArray all = objects;
    EXPECT_EQ(all.getNumberOfElements(), 2U);
    EXPECT_NO_THROW((detail::castTo<Reference<ValueObjectArray>, false>(detail::chainOf(cells[1]))));
    EXPECT_THROW((Reference<ValueObjectArray>(cells[0])), TypeMismatchException);
}

TEST_F(KeptReferences, ExchangeWhatTheyReferTo) {
    TypedArray<double> numbers = factory.createArray<double>({1, 2}, {1, 2});
    Reference<double> first = numbers[0];
    Reference<double> second = numbers[1];
    swap(first, second);
    EXPECT_EQ(numbers[0], 2);
    Reference<double> moved = std::move(first);
    first = 3;
    EXPECT_EQ(moved, 3) << "there is no moving";

    cells[0] = factory.createScalar(1.0);
    cells[1] = factory.createCharArray("b");
    std::reverse(cells.begin(), cells.end());
    EXPECT_EQ(cells[0].getType(), ArrayType::CHAR);
    EXPECT_EQ(cells[1].held()[0], 1.0);
    TypedArray<String> texts = factory.createArray<String>({1, 3});
    texts[0] = "c";
    texts[1] = "b";
    texts[2] = "a";
    std::sort(texts.begin(), texts.end(), [](const String& a, const String& b) { return *a < *b; });
    EXPECT_TRUE(texts[0] == "a" && texts[1] == "b" && texts[2] == "c");
    EnumArray colors = factory.createEnumArray({1, 2}, "Color", {"red", "blue"});
    std::iter_swap(colors.begin(), colors.begin() + 1);
    EXPECT_EQ(colors[0], "blue");
}

TEST_F(KeptReferences, TakeWhatOtherElementsHold) {
    cells[0] = factory.createArray<double>({1, 1}, {1});
    cells[1] = factory.createArray<double>({1, 1}, {2});
    Reference<TypedArray<double>> doubles = cells[0];
    doubles = cells[1];
    EXPECT_EQ(doubles[0], 2);
    cells[1] = factory.createArray<double>({1, 1}, {3});
    Reference<Array> any = cells[1];
    doubles = any;
    EXPECT_EQ(doubles[0], 3);
    cells[1] = factory.createArray<bool>({1, 1});
    EXPECT_THROW(doubles = cells[1], TypeMismatchException);
    EXPECT_THROW(doubles = any, TypeMismatchException);
    EXPECT_EQ(doubles[0], 3);
    cells[0] = factory.createCharArray("a");
    cells[1] = factory.createCharArray("b");
    Reference<CharArray> text = cells[0];
    text = cells[1];
    EXPECT_EQ(text.toAscii(), "b");
    cells[0] = factory.createStructArray({1, 1}, {"a"});
    Reference<StructArray> records = cells[0];
    records = cells[0];
    cells[1] = factory.createEnumArray({1, 1}, "Color", {"red"});
    Reference<EnumArray> colors = cells[1];
    colors = cells[1];
    // A whole record, the way that the name of the function says.
    detail::setElement<std::vector<Array>>(detail::chainOf(Reference<StructElement>(records[0])),
                                           {factory.createScalar(5.0)});
    EXPECT_EQ(StructArray(cells[0])[0]["a"][0], 5.0);
}

TEST_F(KeptReferences, OnlyReadWhereTheArrayIsConst) {
    cells[0] = factory.createCharArray("text");
    cells[1] = factory.createArray<double>({1, 2}, {1, 2});
    const TypedArray<Array> shared = cells;
    const Reference<const CharArray> text = shared[0];
    EXPECT_EQ(text.toAscii(), "text");
    EXPECT_EQ(text[1], u'e');
    const Reference<const TypedArray<double>> doubles = shared[1];
    double sum = 0;
    for (const double& element : doubles) {
        sum += element;
    }
    EXPECT_EQ(sum, 3);
    const Reference<const Array> any = shared[1];
    EXPECT_EQ(any[1], 2.0);
    EXPECT_EQ(TypedArray<double>(any)[0], 1);
    EXPECT_THROW((Reference<const CharArray>(shared[1])), TypeMismatchException);
    EXPECT_EQ((detail::castTo<Reference<CharArray>, true>(detail::chainOf(shared[0])).toAscii()), "text");
}

} // namespace
