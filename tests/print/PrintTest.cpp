// Arrays and elements as text.

#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iomanip>
#include <limits>
#include <numeric>
#include <sstream>

namespace {

using namespace foundation::vexadata;

class Printing : public testing::Test {
protected:
    template <class T>
    static std::string streamed(const T& value) {
        std::ostringstream stream;
        stream << value;
        return stream.str();
    }
    /// Elements 0, 1, 2, ... in column-major order.
    template <class T>
    TypedArray<T> counting(std::vector<std::size_t> dims) {
        auto array = factory.createArray<T>(std::move(dims));
        for (std::size_t k = 0; k < array.getNumberOfElements(); ++k) {
            *(array.begin() + static_cast<std::ptrdiff_t>(k)) = static_cast<T>(k);
        }
        return array;
    }

    ArrayFactory factory;
};

TEST_F(Printing, NumbersShowTheirSignificantDigits) {
    const double infinity = std::numeric_limits<double>::infinity();
    const auto show = [this](double value) { return toText(factory.createScalar(value)); };
    EXPECT_EQ(show(0), "0");
    EXPECT_EQ(show(1234567), "1234567");
    EXPECT_EQ(show(-1234567.25), "-1234567");
    EXPECT_EQ(show(123456789012345678.0), "1.23457e+17");
    EXPECT_EQ(show(123456789012345.0) + show(1234567890123456.0), "1234567890123451.23457e+15");
    EXPECT_EQ(show(0.000012345678), "1.23457e-05");
    EXPECT_EQ(toText(factory.createScalar(12.25), {0}), "12");
    EXPECT_EQ(show(std::numeric_limits<double>::denorm_min()), "4.94066e-324");
    EXPECT_EQ(show(999999.5), "1e+06") << "rounds up to a digit more";
    EXPECT_EQ(show(-infinity), "-Inf");
    EXPECT_EQ(show(std::numeric_limits<double>::quiet_NaN()), "NaN");
    EXPECT_EQ(toText(factory.createScalar(std::numeric_limits<std::uint64_t>::max())),
              "18446744073709551615");
    EXPECT_EQ(toText(factory.createScalar(std::complex<float>(0.1F, -2))), "0.1-2i");
    EXPECT_EQ(toText(factory.createScalar(0.1), {20}), "0.10000000000000001") << "17 digits at most";
}

TEST_F(Printing, MatricesAlignTheirDecimalPointsWhateverTheLayout) {
    EXPECT_EQ(streamed(factory.createArray<double>({2, 2}, {1, 20.5, -3, 4e-7})), "2x2 double\n"
                                                                                  "   1    -3\n"
                                                                                  "  20.5   4e-07");
    auto buffer = factory.createBuffer<std::int8_t>(6);
    std::iota(buffer.get(), buffer.get() + 6, std::int8_t(0));
    EXPECT_EQ(streamed(factory.createArrayFromBuffer<std::int8_t>({2, 3}, std::move(buffer),
                                                                  vexa::data::MemoryLayout::ROW_MAJOR)),
              "2x3 int8\n"
              "  0  1  2\n"
              "  3  4  5");
    EXPECT_EQ(streamed(counting<std::uint16_t>({1, 2, 2, 2})), "1x2x2x2 uint16\n"
                                                               "  [:][:][0][0]\n"
                                                               "  0  1\n"
                                                               "  [:][:][1][0]\n"
                                                               "  2  3\n"
                                                               "  [:][:][0][1]\n"
                                                               "  4  5\n"
                                                               "  [:][:][1][1]\n"
                                                               "  6  7");
    EXPECT_EQ(streamed(factory.createArray<std::complex<double>>({2, 1}, {{1.5, 2}, {-1, 0}})),
              "2x1 complex double\n"
              "  1.5+2i\n"
              "   -1+0i");
    EXPECT_STREQ(kindName(ArrayType::SPARSE_COMPLEX_DOUBLE), "sparse complex double");
    EXPECT_STREQ(kindName(static_cast<ArrayType>(33)), "unknown") << "the next one";
    EXPECT_EQ(streamed(Array()), "empty");
    EXPECT_EQ(streamed(factory.createArray<double>({2, 0, 3})), "2x0x3 double");
}

TEST_F(Printing, LargeArraysLeaveTheMiddleOut) {
    PrintOptions options;
    options.threshold = 6;
    options.edge = 1;
    EXPECT_EQ(toText(counting<double>({3, 2}), options), "3x2 double\n  0  3\n  1  4\n  2  5");
    EXPECT_EQ(toText(counting<double>({3, 2, 4}), options), "3x2x4 double\n"
                                                            "  [:][:][0]\n"
                                                            "    0    3\n"
                                                            "  ...  ...\n"
                                                            "    2    5\n"
                                                            "  ...\n"
                                                            "  [:][:][3]\n"
                                                            "   18   21\n"
                                                            "  ...  ...\n"
                                                            "   20   23");
    options.width = 12;
    EXPECT_EQ(toText(counting<double>({1, 6}), options), "1x6 double\n"
                                                         "  columns 0 to 3:\n"
                                                         "  0  1  2  3\n"
                                                         "  columns 4 to 5:\n"
                                                         "  4  5");
    options.width = 1;
    EXPECT_EQ(toText(counting<double>({1, 2}), options), "1x2 double\n  column 0:\n  0\n  column 1:\n  1");
    EXPECT_EQ(toText(factory.createCharArray("abc"), options), "'a'...");
    EXPECT_EQ(toText(factory.createCharArray(u"\U0001F600"), options), "''...") << "no half of a character";
    options.edge = 0;
    EXPECT_EQ(toText(counting<double>({7, 1}), options), "7x1 double\n  ...");
}

TEST_F(Printing, LinesTakeAsManyColumnsAsFit) {
    const auto numbers = factory.createArray<double>({1, 6}, {1, 20.5, -3.25, 4e-7, 100, 0.5});
    for (std::size_t width = 1; width < 50; ++width) {
        SCOPED_TRACE(width);
        PrintOptions options;
        options.width = width;
        std::istringstream text(toText(numbers, options));
        std::string line;
        std::vector<std::string> rows;
        std::getline(text, line);
        while (std::getline(text, line)) {
            const bool isTitle = line.back() == ':';
            if (!isTitle) {
                rows.push_back(line.substr(2));
                EXPECT_TRUE(line.size() <= width || rows.back().find(' ') == std::string::npos);
            }
        }
        for (std::size_t k = 1; k < rows.size(); ++k) {
            EXPECT_GT(2 + rows[k - 1].size() + 2 + std::min(rows[k].find(' '), rows[k].size()), width);
        }
        EXPECT_EQ(rows.size() == 1, width >= 2 + std::string("1  20.5  -3.25  4e-07  100  0.5").size());
    }
}

TEST_F(Printing, EveryCharacterHasItsWidthAndItsEscape) {
    const auto spacesBehind = [this](const std::u16string& first) { // in a column with four letters
        auto strings = factory.createArray<String>({2, 2});
        strings[0][0] = first;
        strings[1][0] = u"aaaa";
        strings[0][1] = strings[1][1] = u"";
        const std::string text = toText(strings);
        const std::size_t row = text.find('\n') + 3;
        return static_cast<std::size_t>(
            std::count(text.begin() + static_cast<std::ptrdiff_t>(row),
                       text.begin() + static_cast<std::ptrdiff_t>(text.rfind('\n')), ' '));
    };
    // The ends of some ranges, and of what UTF-8 needs more bytes for.
    const std::pair<std::size_t, std::vector<std::u16string>> widths[] = {
        {0, {u"\u0300", u"\u036F", u"\uFE2F"}},
        {1,
         {u"A", u"\u00E9", u"\u02FF", u"\u0370", u"\u07FF", u"\u0800", u"\u10FF", u"\u1160", u"\U00010000"}},
        {2, {u"\u1100", u"\u115F", u"\uFFE6", u"\U0001F300", u"\U0001F64F", u"\U0003FFFD"}}};
    for (const auto& [width, characters] : widths) {
        for (const std::u16string& character : characters) {
            EXPECT_EQ(spacesBehind(character), 4 - width + 2) << std::filesystem::path(character);
        }
    }

    std::size_t escapes = 0;
    char32_t sum = 0;
    for (char32_t code = 0; code < 0x110000;
         code += code < 0x20000 || code >> 9 == 0x6FF || code >> 9 == 0x700 ? 1 : 256) {
        std::u16string text(1, static_cast<char16_t>(code));
        if (code >= 0x10000) {
            text = {static_cast<char16_t>(0xD7C0 + (code >> 10)),
                    static_cast<char16_t>(0xDC00 | (code & 0x3FF))};
        }
        const std::string quoted = toText(factory.createCharArray(text));
        const std::string shown = quoted.substr(1, quoted.size() - 2);
        if (shown[0] == '\\') {
            char escape[12];
            std::snprintf(escape, sizeof escape, code < 0x10000 ? "\\u%04x" : "\\U%08x",
                          static_cast<unsigned>(code));
            EXPECT_EQ(shown, code == '\n'   ? "\\n"
                             : code == '\t' ? "\\t"
                             : code == '\'' ? "\\'"
                             : code == '\\' ? "\\\\"
                                            : escape);
            ++escapes;
            sum += code;
        } else {
            EXPECT_EQ(std::filesystem::path(std::u8string(shown.begin(), shown.end())).u16string(), text);
        }
    }
    EXPECT_EQ(escapes, 2278U) << "controls, surrogates, what turns text or has no width";
    EXPECT_EQ(sum, 0xDE7D64CU) << "their sum";
}

TEST_F(Printing, TextIsQuotedAndMissingTextMarked) {
    auto strings = factory.createArray<String>({2, 2});
    strings[0][0] = u"\u4E2D\u6587"; // wide characters
    strings[1][0] = u"a\"\n\xD800\u200F\U0001F600";
    strings[0][1] = u"";
    EXPECT_EQ(streamed(strings), "2x2 string\n"
                                 "  \"中文\"                 \"\"\n"
                                 "  \"a\\\"\\n\\ud800\\u200f\U0001F600\"  <missing>");
    EXPECT_EQ(streamed(factory.createCharArray("it's")), "'it\\'s'");
    EXPECT_EQ(streamed(factory.createCharArray({2, 1})), "2x1 char\n  '\\u0000'\n  '\\u0000'");
    auto members = factory.createEnumArray({2, 1}, "Sky");
    members[1] = "sun";
    EXPECT_EQ(streamed(members), "2x1 enumeration Sky\n  <none>\n  sun");
}

TEST_F(Printing, NestedArraysAreIndented) {
    auto inner = factory.createStructArray({1, 1}, {"x", "none"});
    inner[0]["x"] = counting<bool>({2, 1});
    auto cells = factory.createArray<Array>({2, 2});
    cells[1][0] = inner;
    cells[0][1] = factory.createStructArray({2, 1}, {"a"});
    EXPECT_EQ(streamed(cells), "2x2 cell\n"
                               "  [0][0] empty\n"
                               "  [1][0] 1x1 struct\n"
                               "    x: 2x1 logical\n"
                               "      0\n"
                               "      1\n"
                               "    none: empty\n"
                               "  [0][1] 2x1 struct\n"
                               "    [0]\n"
                               "      a: empty\n"
                               "    [1]\n"
                               "      a: empty\n"
                               "  [1][1] empty");
    auto deep = factory.createArray<Array>({1, 2});
    for (int level = 0; level < 60; ++level) { // would never end
        auto next = factory.createArray<Array>({1, 2});
        next[0] = deep;
        next[1] = deep;
        deep = next;
    }
    PrintOptions options;
    options.depth = 2;
    EXPECT_EQ(toText(deep, options), "1x2 cell\n"
                                     "  [0] 1x2 cell\n"
                                     "    [0] 1x2 cell\n"
                                     "      ...\n"
                                     "    [1] 1x2 cell\n"
                                     "      ...\n"
                                     "  [1] 1x2 cell\n"
                                     "    [0] 1x2 cell\n"
                                     "      ...\n"
                                     "    [1] 1x2 cell\n"
                                     "      ...");
    const std::string many = toText(factory.createArray<Array>({21, 1}));
    EXPECT_NE(many.find("  [2] empty\n  ...\n  [18] empty"), std::string::npos) << many;
    auto field = factory.createArray<Array>({1, 1});
    field[0] = counting<double>({101, 1});
    EXPECT_NE(streamed(field).find("\n    ...\n"), std::string::npos) << "sooner than outside";
    field[0] = counting<double>({100, 1});
    EXPECT_EQ(streamed(field).find("..."), std::string::npos);
}

TEST_F(Printing, SparseMatricesAndObjects) {
    auto values = factory.createBuffer<std::complex<double>>(2);
    auto rows = factory.createBuffer<std::size_t>(2);
    auto columns = factory.createBuffer<std::size_t>(2);
    values[0] = {1.5, 2};
    values[1] = -1;
    rows[0] = 12;
    rows[1] = 0;
    columns[0] = 0;
    columns[1] = 3;
    const Array sparse = factory.createSparseArray<std::complex<double>>({20, 4}, 2, std::move(values),
                                                                         std::move(rows), std::move(columns));
    PrintOptions options;
    options.threshold = 2; // all that there are
    options.edge = 0;
    EXPECT_EQ(toText(sparse, options), streamed(sparse));
    options.threshold = 1;
    EXPECT_EQ(streamed(printed(sparse, options)), "20x4 sparse complex double, 2 non-zeros\n  ...");
    EXPECT_EQ(streamed(sparse), "20x4 sparse complex double, 2 non-zeros\n"
                                "  [12][0]  1.5+2i\n"
                                "  [0][3]    -1+0i");

    const ClassInfo point = factory.createClassInfo("Point", {"x", "y"});
    ValueObject object = factory.createValueObject(point);
    object["y"] = factory.createScalar(1.5);
    auto objects = factory.createArray<ValueObject>({1, 2});
    objects[0] = object;
    const std::string expected = "1x2 object\n"
                                 "  [0] object\n"
                                 "    x: empty\n"
                                 "    y: 1.5\n"
                                 "  [1] <none>";
    EXPECT_EQ(streamed(objects), expected);
    EXPECT_EQ(streamed(Array(objects)[0]), "object\n  x: empty\n  y: 1.5");
    EXPECT_EQ(streamed(object), streamed(Array(objects)[0]));
    EXPECT_EQ(toText(ValueObject()), "<none>");
    EXPECT_EQ(streamed(factory.createHandleObjectRef(ZVMID(), 7)), "handle 7");
    EXPECT_EQ((*point.getPropertyIDs().begin()).getClassName(), "Point") << "links are left alone";
    auto handles = factory.createArray<HandleObjectRef>({1, 1});
    handles[0] = factory.createHandleObjectRef(ZVMID(), 7);
    EXPECT_EQ(streamed(handles), "1x1 handle object\n  [0] handle 7");
}

TEST_F(Printing, ElementsPrintAsTheirValues) {
    std::ostringstream stream;
    auto numbers = factory.createArray<double>({1, 2}, {1.0 / 3, 2});
    const Array untyped = numbers;
    stream << std::fixed << std::setprecision(2) << std::setw(6) << numbers[0] << '|' << untyped[1] << '|'
           << Reference<double>(numbers[1]) << '|' << std::boolalpha << factory.createScalar(true)[0] << '|'
           << factory.createScalar(std::uint8_t(65))[0] << '|' << factory.createScalar('A')[0] << '|'
           << factory.createScalar(std::complex<double>(0.25, -1))[0];
    EXPECT_EQ(stream.str(), "  0.33|2.00|2.00|true|65|A|0.25-1i");

    auto strings = factory.createArray<String>({1, 2});
    strings[0] = u"gr\u00F6\u00DFe";
    EXPECT_EQ(streamed(strings[0]) + streamed(std::as_const(strings)[1]), "größe<missing>");
    strings[0] =
        u"\xD7FF\xD800\xDC00\xDC00\xDC00\xDBFF\xDFFF\xD800\xE000\xDFFF"; // halves of pairs among pairs
    EXPECT_EQ(streamed(strings[0]), "\uD7FF\U00010000\uFFFD\uFFFD\U0010FFFF\uFFFD\uE000\uFFFD");
    auto members = factory.createEnumArray({1, 1}, "Sky", {"sun"});
    EXPECT_EQ(streamed(members[0]), "sun");
    auto records = factory.createStructArray({1, 1}, {"a"});
    records[0]["a"] = numbers;
    EXPECT_EQ(streamed(records[0]), "a: 1x2 double\n  0.333333  2");
    EXPECT_EQ(streamed(records[0]["a"]), "1x2 double\n  0.333333  2");
    EXPECT_EQ(Array(std::as_const(records)[0]["a"]).getArrayID(), numbers.getArrayID())
        << "nothing was copied";
    const Array sparse = factory.createArray(ArrayType::SPARSE_DOUBLE, {2, 2});
    EXPECT_THROW(streamed(sparse[0][0]), TypeMismatchException);
    for (const auto& record : std::as_const(records)) {
        EXPECT_EQ(streamed(record), "a: 1x2 double\n  0.333333  2");
    }
    auto cells = factory.createArray<Array>({1, 1});
    cells[0] = numbers;
    const Reference<TypedArray<double>> inside = cells[0];
    EXPECT_EQ(streamed(inside), "1x2 double\n  0.333333  2");
    EXPECT_EQ(streamed(factory.createStructArray({1, 1}, {})[0]), "");
    EXPECT_THROW(streamed(factory.createArray<double>({2, 2})[0]), NotEnoughIndicesProvidedException);
    EXPECT_THROW(streamed(numbers[2]), EArrayIndexOutOfRange);
}

TEST_F(Printing, LeavesStreamsAndArraysAsTheyWere) {
    std::ostringstream stream;
    stream << std::hex << std::showpos << std::setprecision(3) << std::setfill('*') << std::setw(40);
    const auto flags = stream.flags();
    auto cells = factory.createArray<Array>({1, 1});
    cells[0] = factory.createScalar(1.0 / 3);
    const Array shared = cells;
    const auto inside = Array(shared[0]).getArrayID();
    stream << shared;
    EXPECT_EQ(stream.str(), "1x1 cell\n  [0] 0.333");
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.precision(), 3);
    EXPECT_EQ(stream.fill(), '*');
    EXPECT_EQ(stream.width(), 0);
    EXPECT_EQ(shared.getArrayID(), cells.getArrayID());
    EXPECT_EQ(Array(shared[0]).getArrayID(), inside);

    stream.setstate(std::ios::failbit);
    stream << shared;
    EXPECT_EQ(stream.str(), "1x1 cell\n  [0] 0.333");
}

} // namespace
