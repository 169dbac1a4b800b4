// Work that grows with what is written, not with what lies beside it. Nothing is timed: what was wrong would
// take hours, or more allocations.
#include "support/AllocationCountdown.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

TEST(Load, OverwrittenTextsAreClearedAwayNowAndThen) {
    ArrayFactory factory;
    auto strings = factory.createArray<String>({100'000, 1});
    strings[7] = std::u16string(40, u'a');
    const auto overwrite = [&](std::size_t times) {
        for (std::size_t k = 0; k < times; ++k) {
            strings[7] = std::u16string(20 + k % 40, u'b');
        }
    };
    // An allocation for each text, and few beside them.
    EXPECT_LT(support::countAllocations([&] { overwrite(2'000); }), 2'100U);
    overwrite(20'000);
    EXPECT_EQ(strings[7], std::u16string(59, u'b'));
    EXPECT_FALSE(std::as_const(strings)[8].has_value());
}

TEST(Load, NamesAreFoundHoweverAlikeTheyAre) {
    ArrayFactory factory;
    std::vector<std::string> names;
    std::vector<VexaPropertyIdentifier> properties;
    for (std::size_t k = 0; k < 400'000; ++k) {
        const std::string number = std::to_string(1'000'000 + k);
        names.push_back("channel_" + number + "_temperature");
    }
    StructArray record = factory.createStructArray({1, 1}, names);
    record[0][names[399'998]] = factory.createScalar(1.0);
    EXPECT_EQ(static_cast<double>(record[0][names[399'998]][0]), 1.0);
    const ClassInfo wide = factory.createClassInfo("Wide", {names.begin(), names.end()});
    const ClassInfo wider = factory.createClassInfo("Wider", {}, {}, {wide});
    EXPECT_EQ(wider.getNumberOfProperties(), names.size());
}

TEST(Load, ClassesAreVisitedOnceHoweverManyWaysThereAre) {
    ArrayFactory factory;
    ClassInfo left = factory.createClassInfo("Top", {"x"});
    ClassInfo right = left;
    for (int level = 0; level < 100; ++level) {
        const std::string number = std::to_string(level);
        const ClassInfo next = factory.createClassInfo("Left" + number, {}, {}, {left, right});
        right = factory.createClassInfo("Right" + number, {}, {}, {left, right});
        left = next;
    }
    EXPECT_EQ(left.getNumberOfProperties(), 1U);
    EXPECT_THROW(factory.createClassInfo("Top", {}, {}, {left}), vexa::client::InvalidSuperclassException);
}

TEST(Load, CopiesOfEnumerationsShareTheirNames) {
    ArrayFactory factory;
    std::vector<std::string> names;
    for (std::size_t k = 0; k < 1'000; ++k) {
        names.push_back("a_member_with_a_long_name_" + std::to_string(k));
    }
    const EnumArray closed = factory.createEnumArray({1, 1'000}, "Class", names);
    EnumArray copy = closed;
    EXPECT_LT(support::countAllocations([&] { copy[3] = names[7]; }), 10U);
    EXPECT_EQ(closed[3], names[3]);
    EXPECT_EQ(copy[3], names[7]);
}

TEST(Load, NamesOfClassesHaveNoNul) {
    ArrayFactory factory;
    const std::string name("Co\0lors", 7);
    const std::string said = R"(A class cannot be called 'Co\0lors')";
    using Invalid = vexa::client::InvalidClassNameException;
    EXPECT_TRUE(throwsExactly<Invalid>([&] { factory.createEnumArray({1, 1}, name); }, said));
    EXPECT_TRUE(throwsExactly<Invalid>([&] { factory.createClassInfo(name, {}); }, said));
    EXPECT_TRUE(throwsExactly<Invalid>([&] { factory.createEnumerationObject(name, "red"); }, said));
    EXPECT_TRUE(throwsExactly<vexa::client::UnknownMemberException>(
        [&] { factory.createEnumerationObject("Colors", name); },
        R"(Unknown member 'Co\0lors' of the enumeration 'Colors')"));
}

} // namespace
