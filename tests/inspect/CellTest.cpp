#include "Cell.hpp"

#include "Column.hpp"
#include "Table.hpp"
#include "Words.hpp"

#include <vexa/interop/FieldNames.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace vexa::inspect;
using vexa::interop::fieldNames;

constexpr double infinity = std::numeric_limits<double>::infinity();

double numberIn(const char* text, bool decimalComma = false) {
    const Cell cell = parseCell(text, decimalComma);
    EXPECT_EQ(cell.kind, CellKind::number) << text;
    return cell.number.value;
}

TEST(Cell, numbers) {
    EXPECT_EQ(numberIn("-12.5"), -12.5);
    EXPECT_EQ(numberIn(" +7\t"), 7);
    EXPECT_EQ(numberIn(".5"), 0.5);
    EXPECT_EQ(numberIn("1E3"), 1000);
    EXPECT_EQ(numberIn("0.1"), 0.1);
    EXPECT_EQ(numberIn("1e400"), infinity);
    EXPECT_EQ(numberIn("-1e400"), -infinity);
    EXPECT_EQ(numberIn("1e-400"), 0);
    EXPECT_EQ(numberIn("-Inf"), -infinity);
    EXPECT_EQ(numberIn("-0,25e1", true), -2.5);
}

TEST(Cell, textThatLooksLikeNumbers) {
    for (const char* text :
         {"0x10", "1,5", "1 2", "1e", "-", "+", ".", "+-1", "++1", "12%", "2012-01-01", "1_0", "t"})
        EXPECT_EQ(parseCell(text, false).kind, CellKind::text) << text;
    for (const char* text : {"1.234,5", "1,2,3", ",", "1,5x"})
        EXPECT_EQ(parseCell(text, true).kind, CellKind::text) << text;
}

TEST(Cell, missingAndLogical) {
    for (const char* text : {"", "  ", "NA", "n/a", "#N/A", "NaN", "-nan", "NULL"}) {
        EXPECT_EQ(parseCell(text, false).kind, CellKind::missing) << text;
        EXPECT_TRUE(isMissing(text)) << text;
    }
    for (const char* text : {"nah", "nil", "N", "none", "nan(1)"}) {
        EXPECT_EQ(parseCell(text, false).kind, CellKind::text) << text;
        EXPECT_FALSE(isMissing(text)) << text;
    }
    EXPECT_EQ(parseCell("TRUE", false).number.value, 1);
    EXPECT_EQ(parseCell("False", false).kind, CellKind::logical);
}

Column::Kind kindOf(std::initializer_list<const char*> cells, bool decimalComma = false) {
    MemoryBudget budget(1'000'000);
    Column column("x", decimalComma, Column::Texts::whenNeeded, budget);
    for (const char* cell : cells)
        column.add(cell);
    return column.kind();
}

TEST(Column, kindFollowsFromAllCells) {
    EXPECT_EQ(kindOf({"", "NA"}), Column::Kind::undecided);
    EXPECT_EQ(kindOf({"", "true", "false"}), Column::Kind::logical);
    EXPECT_EQ(kindOf({"1", "", "2"}), Column::Kind::number);
    EXPECT_EQ(kindOf({"true", "1"}), Column::Kind::text);
    EXPECT_EQ(kindOf({"1", "true"}), Column::Kind::text);
    EXPECT_EQ(kindOf({"9007199254740993", "x"}), Column::Kind::text);
    EXPECT_EQ(kindOf({"1,5", "2", "2.5"}, true), Column::Kind::text);
    EXPECT_EQ(kindOf({"1,5", "2", "3,5"}, true), Column::Kind::number);
}

struct Held {
    Column::Kind kind;
    std::size_t rounded;
    friend bool operator==(const Held&, const Held&) = default;
};
Held heldAs(std::vector<std::string> cells) {
    MemoryBudget budget(1'000'000);
    Column column("x", false, Column::Texts::whenNeeded, budget);
    for (const std::string& cell : cells)
        column.add(cell);
    return {column.kind(), column.losses().rounded};
}

TEST(Column, bigWholeNumbersAreHeldExactlyOrCounted) {
    using enum Column::Kind;
    const std::pair<std::vector<std::string>, Held> cases[] = {
        {{"1", "9007199254740992", "2.0", "1e3"}, {number, 0}},
        {{"1", "-9007199254740993", "9007199254740993.0", "1e3"}, {int64, 0}},
        {{"-9223372036854775808", "9223372036854775807", "0"}, {int64, 0}},
        {{"18446744073709551615", "9007199254740993", "7"}, {uint64, 0}},
        {{"-1", "9223372036854775809", "9007199254740993"}, {number, 2}},
        {{"18446744073709551615", "9007199254740994", "7", ""}, {number, 1}},
        {{"18446744073709551615", "9007199254740993", "0.5"}, {number, 2}},
        {{"9007199254740993", "1e300"}, {number, 1}},
        {{"9007199254740993", "18446744073709551616"}, {number, 1}}, // 2^64 is a double
        {{"10000000000000000000000", "10000000000000000000001"}, {number, 1}},
    };
    for (auto [cells, held] : cases) {
        std::sort(cells.begin(), cells.end());
        do {
            EXPECT_EQ(heldAs(cells), held) << testing::PrintToString(cells);
        } while (std::next_permutation(cells.begin(), cells.end()));
    }
    MemoryBudget budget(1'000);
    Column column("x", false, Column::Texts::whenNeeded, budget);
    for (const char* cell : {"-3", "-9223372036854775808"})
        column.add(cell);
    EXPECT_EQ(column.integers()[0], -3);
    EXPECT_EQ(column.integers()[1], std::numeric_limits<std::int64_t>::min());
}

TEST(Column, lateWordFreesTheNumbers) {
    MemoryBudget budget(8'000'000);
    Column first("first", false, Column::Texts::whenNeeded, budget);
    for (int k = 0; k < 500'000; ++k)
        first.add(k == 7 ? "" : "1.5");
    EXPECT_EQ(first.values().size(), 500'000U);
    first.add("word");
    first.add("NA");
    EXPECT_EQ(first.kind(), Column::Kind::text);
    EXPECT_EQ(first.missing(), 2U);
    EXPECT_TRUE(first.hasLostTexts());

    Column second("second", false, Column::Texts::whenNeeded, budget);
    for (int k = 0; k < 500'000; ++k)
        second.add("2");
    EXPECT_EQ(second.values().data()[499'999], 2);
}

TEST(Column, keepsTextsAsTheyStand) {
    MemoryBudget budget(100'000);
    for (const auto texts : {Column::Texts::whenNeeded, Column::Texts::fromTheStart}) {
        Column column("x", false, texts, budget);
        if (texts == Column::Texts::fromTheStart) column.add("007");
        for (const char* cell : {"", "NA", "day", "1.50"})
            column.add(cell);
        const std::size_t first = column.texts().size() - 4;
        EXPECT_FALSE(column.hasLostTexts());
        EXPECT_EQ(column.texts()[0].value_or("missing"), first == 0 ? "missing" : "007");
        EXPECT_EQ(column.texts()[first + 1], std::nullopt);
        EXPECT_EQ(column.texts()[first + 2], "day");
        EXPECT_EQ(column.texts()[first + 3], "1.50");
    }
}

bool categories(std::initializer_list<const char*> words, int times) {
    MemoryBudget budget(100'000);
    TextBuffer texts(budget);
    for (int k = 0; k < times; ++k)
        for (const char* word : words)
            texts.push(word);
    texts.pushMissing();
    return areCategories(texts);
}

TEST(Words, areCategoriesWhenFewRepeatOften) {
    EXPECT_TRUE(categories({"red", "blue"}, 3));
    EXPECT_FALSE(categories({"red", "blue"}, 2));
    EXPECT_FALSE(categories({"grün"}, 9)) << "members are named in ASCII";
    EXPECT_TRUE(categories({std::string(63, 'w').c_str()}, 3));
    EXPECT_FALSE(categories({std::string(64, 'w').c_str()}, 3)) << "too long for a name";
    EXPECT_FALSE(categories({}, 3));
    EXPECT_TRUE(categories(
        {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o", "p", "q", "r", "s", "t"},
        3));
    EXPECT_FALSE(categories({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k",
                             "l", "m", "n", "o", "p", "q", "r", "s", "t", "u"},
                            3));
}

TEST(Names, ofFieldsAreIdentifiersAndDifferent) {
    const std::vector<std::string> expected{"size",   "gr____e",  "x2x", "x",
                                            "size_2", "size_2_2", "a_b", "a_b_2"};
    const std::vector<std::string> many =
        fieldNames(std::vector<std::string>(300'000, std::string(100, 'a')));
    EXPECT_EQ(many.back(), std::string(63, 'a') + "_300000") << "in time that does not grow with the square";
    EXPECT_EQ(fieldNames({"size", "größe", "2x", "", "size", "size_2", "a b", "a_b"}), expected);
}

} // namespace
