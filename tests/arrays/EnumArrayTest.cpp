// Enumeration arrays.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/testing/BareArray.hpp>

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

EnumArray colors() { return ArrayFactory().createEnumArray({1, 3}, "Colors", {"Red", "Green", "Red"}); }

TEST(Enumerations, AreComparedByTheNamesOfTheirMembers) {
    EnumArray array = colors();
    const auto check = [](const auto& element) {
        EXPECT_TRUE(element == "Red" && "Red" == element && element == std::string("Red"));
        EXPECT_TRUE(element != "red" && "Red " != element && element != "");
        const Enumeration value = element;
        EXPECT_EQ(value, Enumeration("Red"));
        EXPECT_EQ(element.getName(), "Red");
    };
    check(array[0]);
    check(std::as_const(array)[2]);
    check(Reference<Enumeration>(array[0]));
    check(*array.begin());
    check(*array.cbegin());
    EXPECT_TRUE(array[0] == array[2]);
    EXPECT_TRUE(array[0] != array[1]);
    EXPECT_THROW(static_cast<void>(array[3] == "Red"), EArrayIndexOutOfRange);
    EnumArray square = ArrayFactory().createEnumArray({2, 2}, "Colors");
    EXPECT_THROW(static_cast<void>("Red" == square[0]), NotEnoughIndicesProvidedException);
}

TEST(Enumerations, AreWrittenAndCopiedOnWrite) {
    EnumArray array = colors();
    const EnumArray copy = array;
    array[0] = "Green";
    array[1] = std::string("Red");
    array[2] = Enumeration("Green");
    EXPECT_TRUE(array[0] == "Green" && array[1] == "Red" && array[2] == "Green");
    array[0] = copy[0];
    array[2] = array[0];
    Reference<Enumeration> named = array[1];
    named = copy[1];
    EXPECT_TRUE(array[0] == "Red" && array[1] == "Green" && array[2] == "Red");
    EXPECT_TRUE(copy[0] == "Red" && copy[1] == "Green");
    for (auto element : array) {
        element = "Green";
    }
    EXPECT_NE(array, copy);
    EXPECT_EQ(copy, colors());
    EXPECT_NE(copy, ArrayFactory().createEnumArray({1, 3}, "Paints", {"Red", "Green", "Red"}));
}

TEST(Enumerations, KnowTheirMembers) {
    EnumArray array = colors();
    EXPECT_TRUE(throwsExactly<vexa::client::UnknownMemberException>(
        [&] { array[0] = "Blue"; }, "Unknown member 'Blue' of the enumeration 'Colors'"));
    EXPECT_TRUE(array[0] == "Red");
    EXPECT_TRUE(throwsExactly<vexa::client::WrongNumberOfNamesException>(
        [] {
            ArrayFactory().createEnumArray({1, 3}, "Colors", {"Red"});
        },
        "1 member names for 3 elements"));
    EnumArray open = ArrayFactory().createEnumArray({2, 1}, "Colors");
    EXPECT_TRUE(open[0] == "") << "nobody has set it";
    open[0] = "Blue";
    open[1] = open[0];
    EXPECT_TRUE(open[1] == "Blue");
    open[1] = Enumeration();
    EXPECT_TRUE(open[1] == "" && open[0] == "Blue");
    EXPECT_THROW(open[1] = std::string("a\0b", 3), vexa::client::UnknownMemberException);
}

TEST(Enumerations, TellTheirClass) {
    const EnumArray array = colors();
    EXPECT_EQ(array.getClassName(), "Colors");
    EnumArray longer = ArrayFactory().createEnumArray({1, 10}, "Colors");
    EXPECT_EQ(longer.getClassName(), "Colors");
    auto cells = ArrayFactory().createArray<Array>({1, 3}, {array, longer, ArrayFactory().createScalar(1.0)});
    const Reference<EnumArray> three = cells[0];
    const Reference<EnumArray> ten = cells[1];
    EXPECT_EQ(three.getClassName(), "Col") << "as many bytes as elements";
    EXPECT_EQ(ten.getClassName(), std::string("Colors\0\0\0\0", 10));
    longer[3] = "Red"; // the copy has a padded name too
    cells[1] = longer;
    EXPECT_EQ(Reference<EnumArray>(cells[1]).getClassName(), std::string("Colors\0\0\0\0", 10));
    EXPECT_THROW(static_cast<void>(Reference<EnumArray>{cells[2]}), TypeMismatchException);
    EXPECT_THROW(EnumArray(Array(cells[2])), InvalidArrayTypeException);
    EXPECT_EQ(EnumArray(cells[0]).getClassName(), "Colors");
}

/// One element whose name the back-end does not know.
class Nameless final : public vexa::testing::BareArray<vexa::data::impl::EnumArrayImpl, ArrayType::ENUM, 1> {
public:
    std::string castToString(std::size_t index, const std::string&) const override {
        return getEnumName(index);
    }
    Enumeration* getElementAddress(std::size_t, const std::string&, bool) override { return nullptr; }
    void setElementValue(std::size_t, const std::string&, Enumeration) override {}
    const Enumeration* getTypedDataPtr() const override { return nullptr; }
    const char* getClassName() const override { return nullptr; }
    const char* getEnumNameAt(std::size_t) const override { return nullptr; }
};

TEST(Enumerations, EndTheProcessWhenTheBackEndCannotTellNames) {
    EnumArray array(new Nameless);
    EXPECT_TRUE(throwsExactly<std::logic_error>([&] { static_cast<void>(Enumeration(array[0])); },
                                                "basic_string::_M_construct null not valid"));
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(static_cast<void>(array[0] == "x"), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT(static_cast<void>(array.getClassName()), testing::KilledBySignal(SIGABRT), "");
}

} // namespace
