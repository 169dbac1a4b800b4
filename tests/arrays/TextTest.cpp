// Character arrays as text, and what may pass between narrow and UTF-16 text.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/testing/BareArray.hpp>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

/// The texts of a character array, by handle and by reference; both ways have to agree, also in what they
/// throw.
template <class Check>
void bothWays(const CharArray& array, Check check) {
    auto cells = ArrayFactory().createArray<Array>({1, 1}, {array});
    const Reference<CharArray> held = cells[0];
    check(array);
    check(held);
}

TEST(CharArrays, ReadAsOneTextInStorageOrder) {
    ArrayFactory factory;
    bothWays(factory.createArray<char16_t>({2, 3}, {u'a', u'b', u'c', u'd', u'e', u'f'}),
             [](const auto& text) {
                 EXPECT_EQ(text.toUTF16(), u"abcdef");
                 EXPECT_EQ(text.toAscii(), "abcdef");
             });
    bothWays(factory.createCharArray({3, 0}), [](const auto& text) {
        EXPECT_EQ(text.toUTF16(), u"");
        EXPECT_EQ(text.toAscii(), "");
    });
    const CharArray zeros = factory.createCharArray({1, 2});
    EXPECT_EQ(zeros.toUTF16(), std::u16string(2, u'\0'));
    const CharArray made = factory.createCharArray(u"gr\u00FCn");
    EXPECT_EQ(made.getDimensions(), (std::vector<std::size_t>{1, 4}));
    EXPECT_EQ(made.toUTF16(), u"gr\u00FCn");
}

TEST(CharArrays, NarrowOnlyWhenAllOfThemIsAscii) {
    ArrayFactory factory;
    EXPECT_EQ(factory.createCharArray("\x7F").toUTF16(), u"\u007F");
    bothWays(factory.createCharArray(u"\u007F\u0001 ~"),
             [](const auto& text) { EXPECT_EQ(text.toAscii(), "\x7F\x01 ~"); });
    for (const std::u16string units :
         {u"\u0080", u"\u00E9", u"abcd\uFFFF", u"abcde\u0100", u"\xD83D\xDE00"}) {
        bothWays(factory.createCharArray(units), [&](const auto& text) {
            EXPECT_EQ(text.toUTF16(), units);
            EXPECT_TRUE(throwsExactly<NonAsciiCharInRequestedAsciiOutputException>(
                [&] { static_cast<void>(text.toAscii()); }));
        });
    }
    EXPECT_TRUE(throwsExactly<NonAsciiCharInInputDataException>([&] { factory.createCharArray("abc\x80"); }));
    EXPECT_TRUE(throwsExactly<NonAsciiCharInInputDataException>([&] { factory.createScalar("\xE9"); }));
    EXPECT_TRUE(
        throwsExactly<NonAsciiCharInInputDataException>([&] { factory.createScalar(std::string("x\xFF")); }));
    EXPECT_EQ(factory.createCharArray(std::string("a\0b", 3)).toUTF16(), std::u16string(u"a\0b", 3));
}

TEST(CharArrays, TextOfAnyArrayThatHasOne) {
    ArrayFactory factory;
    EXPECT_EQ(toUTF16(factory.createCharArray("x")), u"x");
    EXPECT_EQ(toUTF16(factory.createScalar(u"x")), u"x");
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] {
        toUTF16(factory.createArray<String>({1, 2}, {u"x", u"y"}));
    }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] {
        toUTF16(factory.createArray<String>({1, 1, 1}, {u"x"}));
    }));
    EXPECT_TRUE(throwsExactly<InvalidArrayTypeException>([&] { toUTF16(factory.createScalar(1.0)); }));
    EXPECT_TRUE(throwsExactly<std::runtime_error>(
        [&] {
            toUTF16(factory.createArray<String>({1, 1}));
        },
        "Missing string value"));
}

TEST(CharArrays, AreCharacterArraysOnly) {
    ArrayFactory factory;
    EXPECT_THROW(CharArray(Array(factory.createScalar(1.0))), InvalidArrayTypeException);
    auto cells =
        factory.createArray<Array>({1, 2}, {factory.createScalar(1.0), factory.createCharArray("abc")});
    EXPECT_TRUE(throwsExactly<TypeMismatchException>([&] { CharArray no = cells[0]; }));
    CharArray text = cells[1];
    text[1] = u'B';
    EXPECT_EQ(text.toAscii(), "aBc");
    Reference<CharArray> held = cells[1];
    EXPECT_EQ(held.toAscii(), "abc");
    held = text;
    EXPECT_EQ(held.toAscii(), "aBc");
    held[0] = u'A';
    EXPECT_EQ(text.toAscii(), "aBc");
}

/// A back-end that has characters but lends none.
class NullText final
    : public vexa::testing::BareArray<vexa::data::impl::TypedArrayImpl<char16_t>, ArrayType::CHAR, 2> {
public:
    char16_t* getElementAddress(std::size_t, const std::string&, bool) override { return nullptr; }
    void setElementValue(std::size_t, const std::string&, char16_t) override {}
    const char16_t* getTypedDataPtr() const override { return nullptr; }
};

TEST(CharArrays, TellWhenTheBackEndLendsNoText) {
    bothWays(CharArray(new NullText), [](const auto& text) {
        const auto message = "basic_string::_M_construct null not valid";
        EXPECT_TRUE(throwsExactly<std::logic_error>([&] { static_cast<void>(text.toUTF16()); }, message));
        EXPECT_TRUE(throwsExactly<std::logic_error>([&] { static_cast<void>(text.toAscii()); }, message));
    });
}

} // namespace
