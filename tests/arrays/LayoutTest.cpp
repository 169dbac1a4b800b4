// Arrays filled row by row, and the change from one order to the other; handles that get their array later.
#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <ranges>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

TEST(Layout, ValuesComeRowByRow) {
    const ArrayFactory factory;
    const TypedArray<double> array =
        factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6}, MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(array.getMemoryLayout(), MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(double(array[0][2]), 3);
    EXPECT_EQ(double(array[1][0]), 4);
    const TypedArray<double> columns =
        factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6}, MemoryLayout::COLUMN_MAJOR);
    EXPECT_EQ(double(columns[1][0]), 2);
}

TEST(Layout, TooFewTooManyAndOnlyOnce) {
    const ArrayFactory factory;
    const std::vector<int> values{1, 2, 3, 4, 5, 6, 7};
    const auto few =
        factory.createArray<double>({2, 2}, values.begin(), values.begin() + 2, MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(few, factory.createArray<double>({2, 2}, {1, 0, 2, 0}));
    const auto many =
        factory.createArray<std::int8_t>({1, 3}, values.begin(), values.end(), MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(many, factory.createArray<std::int8_t>({1, 3}, {1, 2, 3}));
    std::istringstream stream("1 2 3 4");
    const auto once = factory.createArray<double>({2, 2}, std::istream_iterator<int>(stream),
                                                  std::istream_iterator<int>(), MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(once, factory.createArray<double>({2, 2}, {1, 3, 2, 4}));
    EXPECT_TRUE(
        factory.createArray<double>({0, 3}, values.begin(), values.end(), MemoryLayout::ROW_MAJOR).isEmpty());
    EXPECT_THROW(
        factory.createArray<double>({SIZE_MAX, 2}, values.begin(), values.end(), MemoryLayout::ROW_MAJOR),
        NumberOfElementsExceedsMaximumException);
}

TEST(Layout, ElementsKeepTheirIndices) {
    const ArrayFactory factory;
    for (const std::vector<std::size_t>& dims : {std::vector<std::size_t>{1, 1},
                                                 {3, 4},
                                                 {40, 17},
                                                 {1, 5},
                                                 {2, 3, 4},
                                                 {3, 1, 2, 5},
                                                 {0, 3},
                                                 {2, 0, 3}}) {
        std::vector<double> values(detail::elementsOf(dims));
        std::iota(values.begin(), values.end(), 1);
        const auto columns = factory.createArray<double>(dims, values.begin(), values.end());
        const auto rows = withLayout(columns, MemoryLayout::ROW_MAJOR);
        ASSERT_EQ(rows.getMemoryLayout(), MemoryLayout::ROW_MAJOR);
        EXPECT_EQ(rows, columns);
        EXPECT_EQ(rows.getDimensions(), columns.getDimensions());
        const auto back = withLayout(rows, MemoryLayout::COLUMN_MAJOR);
        EXPECT_TRUE(std::equal(back.begin(), back.end(), values.begin(), values.end()));
    }
    const auto array = factory.createArray<double>({2, 3});
    EXPECT_EQ(withLayout(array, MemoryLayout::COLUMN_MAJOR).getArrayID(), array.getArrayID()) << "shared";
    EXPECT_THROW(withLayout(array, MemoryLayout::NONE), InvalidArrayTypeException);
}

TEST(Contiguous, StandardViewsTakePrimitiveElements) {
    static_assert(std::contiguous_iterator<TypedArray<double>::iterator>);
    static_assert(std::ranges::contiguous_range<const TypedArray<bool>>);
    static_assert(!std::contiguous_iterator<TypedArray<String>::iterator> &&
                  std::random_access_iterator<TypedArray<std::complex<float>>::iterator>);
    TypedArray<double> array = ArrayFactory().createArray<double>({1, 3}, {3, 1, 2});
    const std::span view(array.begin(), array.end());
    std::ranges::sort(array);
    EXPECT_EQ(view[2], 3);
    EXPECT_EQ(std::ranges::data(array), view.data());
}

namespace {

template <class T>
void startsEmpty(ArrayType type) {
    TypedArray<T> array;
    EXPECT_EQ(array.getType(), type);
    EXPECT_EQ(array.getDimensions(), (std::vector<std::size_t>{0, 0}));
    EXPECT_TRUE(array.begin() == array.end());
    array = ArrayFactory().createArray<T>({1, 2});
    EXPECT_EQ(array.getNumberOfElements(), 2U);
}

} // namespace

TEST(FilledLater, HandlesStartEmptyOfTheirKind) {
    startsEmpty<double>(ArrayType::DOUBLE);
    startsEmpty<bool>(ArrayType::LOGICAL);
    startsEmpty<std::complex<float>>(ArrayType::COMPLEX_SINGLE);
    startsEmpty<String>(ArrayType::STRING);
    startsEmpty<Array>(ArrayType::CELL);
    EXPECT_EQ(CharArray().toAscii(), "");
    std::map<std::string, TypedArray<double>> byName;
    byName["a"] = ArrayFactory().createScalar(1.5);
    EXPECT_EQ(double(byName["a"][0]), 1.5);
    EXPECT_TRUE(byName["b"].isEmpty());
    std::vector<TypedArray<double>> several(3);
    several[1] = byName["a"];
    EXPECT_TRUE(several[2].isEmpty());
    static_assert(!std::is_default_constructible_v<TypedArray<Enumeration>> &&
                  !std::is_default_constructible_v<TypedArray<StructElement>>);
}

TEST(Shapes, AreTakenFromViewsChangedAndJoined) {
    const ArrayFactory factory;
    const auto a = factory.createArray<int>({2, 3}, {1, 2, 3, 4, 5, 6});
    const auto byRow = withLayout(a, MemoryLayout::ROW_MAJOR);
    const auto turned = factory.createArray<int>({3, 2}, {1, 3, 5, 2, 4, 6});
    EXPECT_EQ(toArray(readOnlyView(a).transposed()), turned);
    EXPECT_EQ(toArray(readOnlyView(byRow).transposed()), turned);
    EXPECT_EQ(toArray(readOnlyView(byRow).row(1)), factory.createArray<int>({3, 1}, {2, 4, 6}));
    EXPECT_TRUE(toArray(readOnlyView(a).part(1, 3, 0)).isEmpty());

    auto b = factory.createArray<int>({3, 2}, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(reshaped(std::move(b), {2, 3}), a);
    auto large = factory.createArray<int>({30, 40}); // small ones keep their elements to themselves
    const int* const place = std::as_const(large).data();
    EXPECT_EQ(reshaped(std::move(large), {600, 2}).data(), place);
    const auto otherRows = reshaped(byRow, {3, 2});
    EXPECT_EQ(otherRows.getMemoryLayout(), MemoryLayout::ROW_MAJOR);
    EXPECT_EQ(otherRows, factory.createArray<int>({3, 2}, {1, 5, 4, 3, 2, 6}));
    EXPECT_EQ(byRow[1][2], 6) << "which is still there";
    EXPECT_THROW(reshaped(a, {4, 2}), std::invalid_argument);

    using List = std::vector<TypedArray<int>>;
    EXPECT_EQ(joined(1, List{a, byRow}),
              factory.createArray<int>({2, 6}, {1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(joined(0, List{a, factory.createArray<int>({1, 3}, {7, 8, 9})}),
              factory.createArray<int>({3, 3}, {1, 2, 7, 3, 4, 8, 5, 6, 9}));
    const auto pages = joined(2, List{a, joined(2, List{byRow, a})});
    EXPECT_EQ(pages.getDimensions(), (std::vector<std::size_t>{2, 3, 3}));
    EXPECT_EQ(toArray(readOnlyView<3>(pages).page(1)), a);
    EXPECT_EQ(joined(0, List{factory.createArray<int>({0, 3}), a}), a);
    EXPECT_THROW(joined(0, List{a, turned}), std::invalid_argument);
    EXPECT_THROW(joined(0, List()), std::invalid_argument);
}
