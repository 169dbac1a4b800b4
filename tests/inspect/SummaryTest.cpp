#include "Summary.hpp"

#include "Memory.hpp"
#include "Progress.hpp"
#include "Text.hpp"
#include "TextTable.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

namespace {

using namespace vexa::inspect;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largest = std::numeric_limits<double>::max();

Summary summaryOf(std::vector<double> values) { return summarise(values); }

TEST(Summary, handComputed) {
    const Summary odd = summaryOf({9, 1, 4, 2, 100});
    EXPECT_EQ(odd.minimum, 1);
    EXPECT_EQ(odd.median, 4);
    EXPECT_DOUBLE_EQ(odd.mean, 23.2);
    EXPECT_EQ(odd.maximum, 100);
    EXPECT_EQ(summaryOf({4, -1, 3, 0}).median, 1.5);
    EXPECT_EQ(summaryOf({7}).median, 7);
    EXPECT_TRUE(std::isnan(summaryOf({}).minimum));
    EXPECT_TRUE(std::isnan(summaryOf({}).mean));
}

TEST(Summary, extremesNeitherOverflowNorLoseDigits) {
    EXPECT_EQ(summaryOf({largest, largest}).mean, largest);
    EXPECT_EQ(summaryOf({largest, largest}).median, largest);
    EXPECT_NEAR(summaryOf(std::vector<double>(1'000'000, 0.1)).mean, 0.1, 1e-15);
    EXPECT_EQ(summaryOf({1, 2, infinity}).mean, infinity);
    EXPECT_EQ(summaryOf({1, 2, -infinity}).median, 1);
}

TEST(Bins, equalStepsFromMinimumToMaximum) {
    using Bins = std::vector<std::size_t>;
    EXPECT_EQ(countBins({0, 0.5, 1, 2.9, 3, 4}, 4), (Bins{2, 1, 1, 2}));
    EXPECT_EQ(countBins({1, 3, 3, 2, 3}, 12), (Bins{1, 1, 3}));
    EXPECT_EQ(countBins({5, 5}, 12), (Bins{2}));
    EXPECT_EQ(countBins({}, 12), Bins{});
    EXPECT_EQ(countBins({infinity, 1, 2, -infinity}, 12), (Bins{1, 1}));
    EXPECT_EQ(countBins({infinity}, 12), Bins{});
    EXPECT_EQ(countBins({-largest, 0, largest}, 4), (Bins{1, 0, 1, 1}));
}

TEST(Bins, pictureShowsSingleValues) {
    EXPECT_EQ(barPicture({8, 0, 1, 4, 1000}), "▁ ▁▁█");
    EXPECT_EQ(barPicture({1, 2, 3, 4, 5, 6, 7, 8}), "▁▂▃▄▅▆▇█");
    EXPECT_EQ(barPicture({}), "");
}

TEST(Text, numbers) {
    EXPECT_EQ(formatNumber(3.029432), "3.02943");
    EXPECT_EQ(formatNumber(-0.0), "0");
    EXPECT_EQ(formatNumber(20120101), "20120101");
    EXPECT_EQ(formatNumber(1234567.89), "1234568");
    EXPECT_EQ(formatNumber(-999999.7), "-1e+06");
    EXPECT_EQ(formatNumber(2e20), "2e+20");
    EXPECT_EQ(formatNumber(-infinity), "-inf");
    EXPECT_EQ(formatNumber(std::nan("")), "-");
}

TEST(Text, widthAndForeignBytes) {
    EXPECT_EQ(displayWidth("größe"), 5U);
    EXPECT_EQ(displayWidth("日本語"), 6U);
    EXPECT_EQ(displayWidth("e\u0301"), 1U);
    EXPECT_EQ(displayWidth("हिन्दी"), 3U) << "vowel signs stand above their letters";
    EXPECT_EQ(printable("a\nb\x1b[1m\x7f\\"), "a\\nb\\u001b[1m\\u007f\\");
    EXPECT_EQ(printable("caf\xe9 ok \xe2\x82 \xed\xa0\x80"), "caf\\xe9 ok \\xe2\\x82 \\xed\\xa0\\x80");
    EXPECT_EQ(printable("größe 日本語"), "größe 日本語");
    EXPECT_EQ(printable("\u061C\u00AD\u200B\u2066\uFEFF\U000E0041"),
              "\\u061c\\u00ad\\u200b\\u2066\\ufeff\\U000e0041");
    EXPECT_EQ(printable("größe", 3), "grö...");
    EXPECT_EQ(printable("größe", 5), "größe");
}

TEST(Text, sizes) {
    EXPECT_EQ(parseBytes("500"), 500U);
    EXPECT_EQ(parseBytes("2 kb"), 2000U);
    EXPECT_EQ(parseBytes("3GiB"), std::uint64_t{3} << 30);
    EXPECT_EQ(parseBytes("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    for (const char* text :
         {"", "MB", "-1", "+1", "1.5GB", "1 000", "1iB", "1XB", "20EB", "18446744073709551616"})
        EXPECT_EQ(parseBytes(text), std::nullopt) << text;
}

TEST(TextTable, alignsByDisplayWidth) {
    using enum TextTable::Align;
    TextTable table({left, right, left});
    table.addRow({"größe", "1", "x"});
    table.addRow({"日本語", "123", ""});
    EXPECT_EQ(table.str(), "größe     1  x\n"
                           "日本語  123\n");
}

TEST(Progress, onlyForLargeFilesAndErasedAtTheEnd) {
    std::ostringstream terminal;
    { Progress(&terminal, 3'000'000).advance(3'000'000); }
    EXPECT_EQ(terminal.str(), "");
    { Progress(&terminal, 10'000'000).advance(5'000'000); }
    EXPECT_EQ(terminal.str(), "\rread 5 MB of 10 MB (50 %)\x1b[K\r\x1b[K");
    terminal.str("");
    { Progress(&terminal, std::nullopt).advance(5'000'000); }
    EXPECT_EQ(terminal.str(), "\rread 5 MB\x1b[K\r\x1b[K");
}

} // namespace
