// String elements: comparing, reading, writing, and the compact storage behind them.
#include "support/AllocationCountdown.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/testing/BareArray.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;
using Strings = TypedArray<String>;

/// x, missing, present but empty, a long text, e acute.
Strings samples() {
    return ArrayFactory().createArray<String>({1, 5},
                                              {u"x", String(), u"", u"a text of more than six", u"\u00E9"});
}

/// Both operand orders of both operators.
template <class A, class B>
bool equals(const A& a, const B& b) {
    const bool forward = a == b;
    EXPECT_EQ(b == a, forward);
    EXPECT_EQ(a != b, !forward);
    EXPECT_EQ(b != a, !forward);
    return forward;
}

/// Calls `check` with each kind of handle to an element.
template <class Check>
void everyHandle(Strings& strings, std::size_t index, Check check) {
    check(strings[index]);
    check(std::as_const(strings)[index]);
    check(Reference<String>(strings[index]));
    check(strings.begin()[static_cast<std::ptrdiff_t>(index)]);
    check(strings.cbegin()[static_cast<std::ptrdiff_t>(index)]);
}

TEST(StringElements, CompareWithText) {
    Strings strings = samples();
    everyHandle(strings, 0, [](const auto& element) {
        EXPECT_TRUE(equals(element, std::u16string(u"x")));
        EXPECT_TRUE(equals(element, std::string("x")));
        EXPECT_TRUE(equals(element, u"x"));
        EXPECT_TRUE(equals(element, "x"));
        EXPECT_FALSE(equals(element, "X"));
        EXPECT_FALSE(equals(element, ""));
        EXPECT_FALSE(equals(element, u"x "));
    });
    for (const std::size_t withoutText : {1U, 2U}) {
        everyHandle(strings, withoutText, [](const auto& element) {
            EXPECT_TRUE(equals(element, ""));
            EXPECT_TRUE(equals(element, u""));
            EXPECT_FALSE(equals(element, "x"));
        });
    }
    EXPECT_TRUE(equals(strings[3], "a text of more than six"));
    EXPECT_FALSE(equals(strings[3], u"a text of more than siX"));
    EXPECT_FALSE(equals(strings[3], u"A text of more than six"));
    EXPECT_TRUE(equals(strings[4], u"\u00E9"));
    EXPECT_FALSE(equals(strings[4], "\xC3\xA9"));
    EXPECT_FALSE(equals(strings[4], "\xE9")) << "a unit above 127 equals no byte";
    strings[4] = u"\uFFE9";
    EXPECT_FALSE(equals(strings[4], "\xE9")) << "not even the one that it becomes when it is widened";
    for (std::size_t length = 1; length < 20; ++length) { // every way of comparing runs of units
        std::u16string text(length, u'a');
        strings[0] = text;
        EXPECT_TRUE(equals(strings[0], text));
        for (char16_t& unit : text) {
            unit = u'b';
            EXPECT_FALSE(equals(strings[0], text)) << length;
            unit = u'a';
        }
    }
    strings[0] = u"\u007F";
    EXPECT_TRUE(strings[0] == std::string("\x7F"));
}

TEST(StringElements, CompareWithEachOther) {
    Strings strings = samples();
    Strings others = samples();
    for (std::size_t i = 0; i < 5; ++i) {
        everyHandle(strings, i, [&](const auto& left) {
            for (std::size_t j = 0; j < 5; ++j) {
                const bool wanted = i == j && i != 1; // a missing one equals nothing
                everyHandle(others, j,
                            [&](const auto& right) { EXPECT_EQ(equals(left, right), wanted) << i << j; });
            }
        });
    }
}

TEST(StringElements, NeverThrowWhenCompared) {
    Strings strings = ArrayFactory().createArray<String>({2, 2}, {u"", u"", u"", u""});
    EXPECT_FALSE(equals(strings[2][0], ""));
    EXPECT_FALSE(equals(strings[0], u""));
    EXPECT_FALSE(equals(strings[0], strings[0][0]));
    EXPECT_THROW(strings[2][0].has_value(), EArrayIndexOutOfRange);
    EXPECT_THROW(static_cast<void>(std::u16string(strings[0])), NotEnoughIndicesProvidedException);
    EXPECT_THROW(static_cast<void>(Reference<String>{strings[0]}), NotEnoughIndicesProvidedException);
}

/// A back-end that gives lengths to texts which are not there.
class NoText final
    : public vexa::testing::BareArray<vexa::data::impl::StringArrayImpl, ArrayType::STRING, 1> {
public:
    void getStringElement(std::size_t, const char16_t*&, std::size_t& length) const override { length = 3; }
    String* getElementAddress(std::size_t, const std::string&, bool) override { return nullptr; }
    void setStringElement(std::size_t, const std::string&, String) override {}
    const String* getTypedDataPtr() const override { return nullptr; }
};

TEST(StringElements, WithoutTextEqualNoneWhateverTheirLength) {
    const Strings strings(new NoText);
    EXPECT_FALSE(equals(strings[0], u"abc"));
    EXPECT_FALSE(equals(strings[0], "abc"));
    EXPECT_FALSE(equals(strings[0], samples()[0]));
    EXPECT_FALSE(equals(strings[0], strings[0]));
    EXPECT_FALSE(strings[0].has_value());
    EXPECT_EQ(strings[0].toAscii(), "");
    const String value = strings[0];
    EXPECT_EQ(value, std::nullopt);
}

TEST(StringElements, AreReadAsValuesOrText) {
    Strings strings = samples();
    everyHandle(strings, 1, [](const auto& element) {
        EXPECT_FALSE(element.has_value());
        const String value = element;
        EXPECT_EQ(value, std::nullopt);
        EXPECT_TRUE(throwsExactly<std::runtime_error>([&] { const std::u16string text = element; },
                                                      "Missing string value"));
        EXPECT_EQ(element.toAscii(), "");
    });
    everyHandle(strings, 3, [](auto element) {
        EXPECT_TRUE(element.has_value());
        String value = element;
        EXPECT_EQ(value, u"a text of more than six");
        const std::u16string text = element;
        EXPECT_EQ(text, value);
        EXPECT_EQ(element.toAscii(), "a text of more than six");
    });
    EXPECT_TRUE(throwsExactly<NonAsciiCharInRequestedAsciiOutputException>([&] { strings[4].toAscii(); }));
}

TEST(StringElements, AreWrittenInEveryForm) {
    Strings strings = samples();
    const Strings copy = strings;
    strings[0] = "narrow";
    EXPECT_TRUE(strings[0] == u"narrow");
    strings[0] = std::string("n");
    strings[1] = std::u16string(u"w");
    strings[2] = String(u"s");
    EXPECT_TRUE(strings[0] == "n" && strings[1] == "w" && strings[2] == "s");
    strings[0] = strings[1];
    EXPECT_TRUE(strings[0] == "w");
    strings[0] = copy[3];
    EXPECT_TRUE(strings[0] == copy[3]);
    strings[0] = std::as_const(strings)[1];
    Reference<String> named = strings[4];
    named = strings[0];
    EXPECT_TRUE(strings[4] == "w");
    named = copy[1];
    EXPECT_FALSE(named.has_value());
    strings[0] = std::nullopt;
    EXPECT_FALSE(strings[0].has_value());
    EXPECT_TRUE(throwsExactly<NonAsciiCharInInputDataException>([&] { strings[1] = "\xE9"; }));
    EXPECT_TRUE(strings[1] == "w");
    EXPECT_TRUE(copy[0] == "x" && !copy[1].has_value()) << "a write went to the copy";
    Array any = strings;
    any[3] = any[1]; // elements of untyped handles are copied too
    EXPECT_TRUE(std::as_const(strings)[3] == "a text of more than six");
    EXPECT_TRUE(Strings(any)[3] == "w");
}

TEST(StringElements, NarrowTextOfTheBackEndIsWidenedWithItsSign) {
    Strings strings = samples();
    auto& impl = static_cast<vexa::data::impl::StringArrayImpl&>(*detail::Access::impl(strings));
    impl.setString(0, "", "A\xE9");
    EXPECT_TRUE(strings[0] == (std::u16string{0x0041, 0xFFE9}));
    EXPECT_EQ(impl.castToString(3, ""), "a text of more than six");
    EXPECT_EQ(impl.castToString(1, ""), "");
    EXPECT_THROW(impl.castToString(0, ""), NonAsciiCharInRequestedAsciiOutputException);
}

TEST(StringArrays, AreWalkedWithoutAllocations) {
    Strings strings = ArrayFactory().createArray<String>({1000, 1});
    for (auto element : strings) {
        element = u"sixsix";
    }
    const auto matches = [](auto& array) {
        std::size_t found = 0;
        for (const auto& element : array) {
            found += element == u"sixsix";
        }
        return found;
    };
    std::size_t found = 0;
    EXPECT_LE(support::countAllocations([&] { found = matches(strings) + matches(std::as_const(strings)); }),
              8U);
    EXPECT_EQ(found, 2000U);
    EXPECT_EQ(support::countAllocations([&] { found = strings[7] == u"sixsix"; }), 0U);
    EXPECT_LE(support::countAllocations([&] { strings[7] = u"six"; }), 1U) << "a short text needs no block";
    const Strings before = strings;
    const auto positions = strings.end() - strings.begin();
    EXPECT_EQ(positions, 1000);
    EXPECT_TRUE(before[999] == strings[999]);
}

TEST(StringArrays, AreNotFilledWithOverwrittenTexts) {
    constexpr std::size_t count = 50;
    Strings strings = ArrayFactory().createArray<String>({count, 1});
    strings[0] = u"at the beginning of the block";
    for (std::size_t step = 0; step < 5'000; ++step) {
        strings[1 + step * 7 % (count - 1)] = std::u16string(step % 16, u'x');
    }
    // What is left lies in a block of not much more than its own size.
    const char16_t* first = nullptr;
    const char16_t* last = nullptr;
    std::size_t units = 0;
    for (std::size_t k = 0; k < count; ++k) {
        const char16_t* text = nullptr;
        std::size_t length = 0;
        detail::Access::impl(strings)->getStringElement(k, text, length);
        if (length > 6) {
            first = first == nullptr ? text : std::min(first, text);
            last = std::max(last, text + length);
            units += length;
        }
    }
    EXPECT_LE(static_cast<std::size_t>(last - first), 2 * units + 16);
}

TEST(StringArrays, AreEqualWhenAllTextsAreThereAndEqual) {
    ArrayFactory factory;
    const auto make = [&](std::initializer_list<String> texts) {
        return factory.createArray<String>({1, 2}, texts);
    };
    EXPECT_EQ(make({u"a", u"longer than six"}), make({u"a", u"longer than six"}));
    EXPECT_NE(make({u"a", u"longer than six"}), make({u"a", u"longer than sIx"}));
    EXPECT_NE(make({u"a", String()}), make({u"a", String()}));
    EXPECT_NE(make({u"a", String()}), make({u"a", u""}));
    const std::vector<const char*> words{"one", "two"};
    EXPECT_EQ(factory.createArray<String>({1, 2}, words.begin(), words.end()), make({u"one", u"two"}));
    EXPECT_TRUE(throwsExactly<EArrayIndexOutOfRange>([&] { make({u"a", u"b", u"c"}); }));
}

} // namespace
