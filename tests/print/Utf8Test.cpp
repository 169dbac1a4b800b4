// UTF-8 of texts, of elements and of arrays.
#include <foundation/vexadata/Utf8.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace foundation::vexadata;

namespace {

std::u16string unitsOf(char32_t code) {
    if (code < 0x10000) {
        return {static_cast<char16_t>(code)};
    }
    return {static_cast<char16_t>(0xD7C0 + (code >> 10)), static_cast<char16_t>(0xDC00 + (code & 0x3FF))};
}

std::string messageOf(void (*action)()) {
    try {
        action();
    } catch (const std::range_error& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(Utf8, EveryCharacterGoesThereAndBack) {
    std::size_t length = 0;
    for (char32_t code = 0; code < 0x110000; ++code) {
        if (code >= 0xD800 && code < 0xE000) {
            continue;
        }
        const std::u16string units = unitsOf(code);
        const std::string bytes = toUtf8(units);
        length += bytes.size();
        ASSERT_EQ(fromUtf8(bytes), units) << std::uint32_t(code);
    }
    EXPECT_EQ(length, 0x80 + 2 * (0x800 - 0x80) + 3 * (0x10000 - 0x800 - 0x800) + 4 * 0x100000);
    EXPECT_EQ(toUtf8(u"a\u00E9\u20AC\U0001F600"), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Utf8, WordsOfAsciiEndAnywhere) {
    for (std::size_t before = 0; before < 20; ++before) {
        for (std::size_t after = 0; after < 20; ++after) {
            const std::u16string text =
                std::u16string(before, u'x') + u'\u00E9' + std::u16string(after, u'y');
            const std::string bytes = std::string(before, 'x') + "\xC3\xA9" + std::string(after, 'y');
            ASSERT_EQ(toUtf8(text), bytes);
            ASSERT_EQ(fromUtf8(bytes), text);
        }
    }
    EXPECT_EQ(toUtf8(std::u16string(3, u'\0')), std::string(3, '\0'));
}

TEST(Utf8, IllFormedTextIsRefusedWithItsPlace) {
    EXPECT_EQ(messageOf([] { toUtf8(u"abc\xD800"); }), "UTF-16 text: unit 3 is half of a surrogate pair");
    EXPECT_EQ(messageOf([] { toUtf8(u"\xDC00\xD800"); }), "UTF-16 text: unit 0 is half of a surrogate pair");
    EXPECT_EQ(messageOf([] { fromUtf8("123456789\xFF"); }), "UTF-8 text: byte 9 belongs to no character");
    // Overlong, surrogates, beyond the last character, cut short, a continuation alone.
    for (const char* text : {"\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xF0\x8F\xBF\xBF", "\xED\xA0\x80",
                             "\xED\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xE2\x82",
                             "\xF0\x9F\x98", "\xC3", "\x80", "\xC3\xC3\xA9"}) {
        EXPECT_THROW(fromUtf8(text), std::range_error) << text;
    }
}

TEST(Utf8, LossyFormsPutAMarkForEachBrokenPart) {
    EXPECT_EQ(toUtf8Lossy(u"a\xD800z\xDC00"), "a\xEF\xBF\xBDz\xEF\xBF\xBD");
    EXPECT_EQ(fromUtf8Lossy("a\xFFz"), u"a\uFFFDz");
    EXPECT_EQ(fromUtf8Lossy("\xE2\x82z"), u"\uFFFDz"); // cut short: one part
    EXPECT_EQ(fromUtf8Lossy("\xED\xA0\x80"),
              u"\uFFFD\uFFFD\uFFFD"); // a surrogate: no byte belongs to the one before
    EXPECT_EQ(fromUtf8Lossy("\xF0\x9F\x98"), u"\uFFFD");
    EXPECT_EQ(fromUtf8Lossy("\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42"),
              u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFDB");
}

TEST(Utf8, ArraysAndElements) {
    const ArrayFactory factory;
    const CharArray characters = charArrayFromUtf8(factory, "gr\xC3\xBC\xC3\x9F");
    EXPECT_EQ(characters.getNumberOfElements(), 4U);
    EXPECT_EQ(toUtf8(characters), "gr\xC3\xBC\xC3\x9F");

    const std::vector<std::optional<std::string>> texts{"\xE2\x82\xAC", std::nullopt, ""};
    TypedArray<String> strings = stringArrayFromUtf8(factory, {2, 2}, texts);
    EXPECT_EQ(toUtf8(strings),
              (std::vector<std::optional<std::string>>{"\xE2\x82\xAC", std::nullopt, "", std::nullopt}));
    EXPECT_EQ(toUtf8(strings[0][0]), "\xE2\x82\xAC");
    EXPECT_EQ(toUtf8(strings[1][0]), std::nullopt);
    strings[1][0] = fromUtf8("\xC3\xA9");
    EXPECT_TRUE(strings[1][0] == u"\u00E9");
    EXPECT_EQ(stringArrayFromUtf8(factory, {1, 1}, std::vector<const char*>{"a", "b"}).getNumberOfElements(),
              1U);
    EXPECT_THROW(stringArrayFromUtf8(factory, {1, 1}, std::vector<std::string>{"\xFF"}), std::range_error);
}
