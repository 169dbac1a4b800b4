// Identifiers, class information and the links between them.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using detail::Access;
using support::throwsExactly;
using Id = VexaPropertyIdentifier;

TEST(PropertyIdentifiers, SplitAtTheLastDot) {
    const struct {
        const char* text;
        const char* className;
        const char* property;
    } cases[] = {{"Point.x", "Point", "x"},
                 {"pkg.Point.x", "pkg.Point", "x"},
                 {"x", "", "x"},
                 {"Point.", "Point", ""},
                 {".x", "", "x"},
                 {"", "", ""},
                 {"a b", "", "a b"}};
    for (const auto& each : cases) {
        const Id id(each.text);
        EXPECT_EQ(id.getClassName(), each.className) << each.text;
        EXPECT_EQ(id.getPropertyName(), each.property) << each.text;
    }
    const Id verbatim("Point", "a.b");
    EXPECT_EQ(verbatim.getPropertyName(), "a.b");
    EXPECT_EQ(Id(VexaClassIdentifier(std::string("p.C")), "x").getExternalPropertyName(), "p.C.x");
}

TEST(PropertyIdentifiers, CompareAndOrderByPropertyFirst) {
    EXPECT_EQ(Id("A.x"), Id("A", "x"));
    EXPECT_NE(Id("x"), Id("A", "x"));
    EXPECT_LT(Id("B", "a"), Id("A", "b"));
    EXPECT_LT(Id("A", "x"), Id("B", "x"));
    EXPECT_FALSE(Id("A", "x") < Id("A", "x"));
    Id moved("x");
    const Id taken = std::move(moved);
    const Id& gone = moved;
    EXPECT_TRUE(gone < taken && !(taken < gone) && !(gone < gone) && gone == gone && gone != taken);
    EXPECT_EQ(gone.getPropertyName() + gone.getClassName() + gone.getExternalPropertyName(), "");
    const std::unordered_set<Id> set{Id("A.x"), Id("A", "x"), Id("x")};
    EXPECT_EQ(set.size(), 2U);
    VexaClassIdentifier name{std::string("A")};
    VexaFieldIdentifier field("a");
    const std::unordered_set<VexaClassIdentifier> names{name, std::move(name), name};
    const std::unordered_set<VexaFieldIdentifier> fields{field, std::move(field), field};
    const std::unordered_set<Id> ids{taken, gone};
    EXPECT_EQ(names.size() + fields.size() + ids.size(), 6U) << "with ones that were moved from";
    EXPECT_EQ(VexaClassIdentifier(std::string("a.b")), VexaClassIdentifier(std::string("a.b")));
    EXPECT_NE(VexaFieldIdentifier("a"), VexaFieldIdentifier("b"));
}

class Classes : public testing::Test {
protected:
    ArrayFactory factory;
    ClassInfo base = factory.createClassInfo("Base", {"p", "q"}, {"unit"});
    ClassInfo derived = factory.createClassInfo("Derived", {"Derived.p", "r"}, {}, {base});

    static std::string joined(const Range<ForwardIterator, const Id>& ids) {
        std::string text;
        for (const Id& id : ids) {
            text += id.getExternalPropertyName() + " ";
        }
        return text;
    }
    /// Another handle to the same description.
    static ClassInfo again(const ClassInfo& info) {
        Access::impl(info)->retain();
        return ClassInfo(Access::impl(info).get());
    }
};

TEST_F(Classes, ListTheirPropertiesAndWhatTheyInherit) {
    EXPECT_EQ(joined(base.getPropertyIDs()), "p q ");
    EXPECT_EQ(joined(derived.getPropertyIDs()), "p r Base.p Base.q ");
    EXPECT_EQ(joined(derived.getArrayPropertyIDs()), "Base.unit ");
    EXPECT_EQ(derived.getNumberOfProperties(), 4U);
    EXPECT_EQ(derived.getNumberOfArrayProperties(), 1U);
    std::vector<std::string> above;
    for (const ClassInfo& superclass : derived.getSuperclasses()) {
        above.push_back(superclass.getClassIdentifier().getString());
    }
    EXPECT_EQ(above, std::vector<std::string>{"Base"});
    const ClassInfo other = factory.createClassInfo("Other", {"p"}, {}, {base});
    const ClassInfo diamond = factory.createClassInfo("Diamond", {}, {}, {derived, other});
    EXPECT_EQ(joined(diamond.getPropertyIDs()), "Derived.p Derived.r Base.p Base.q Other.p ");
    const ClassInfo none = factory.createClassInfo("None");
    EXPECT_EQ(none.getPropertyIDs().begin(), none.getPropertyIDs().end());
}

TEST_F(Classes, AreWalkedByIndependentIterators) {
    const auto ids = derived.getPropertyIDs();
    auto first = ids.begin();
    auto copy = first;
    ++copy;
    const auto before = copy++;
    EXPECT_EQ(*first, Id("p"));
    EXPECT_EQ(*before, Id("r"));
    EXPECT_EQ(*copy, Id("Base.p"));
    EXPECT_NE(before, copy);
    first = copy;
    EXPECT_EQ(first, copy);
    copy = ids.end();
    EXPECT_NE(first, copy);
}

TEST_F(Classes, RefuseWhatMakesNoClass) {
    using namespace vexa::client;
    EXPECT_TRUE(throwsExactly<InvalidPropertyException>(
        [&] {
            factory.createClassInfo("A", {"x", "y", "A.x"});
        },
        "The property 'x' of the class 'A' comes twice"));
    EXPECT_TRUE(throwsExactly<InvalidPropertyException>(
        [&] { factory.createClassInfo("A", {"B.x"}); },
        "The property 'x' of the class 'A' belongs to the class 'B'"));
    EXPECT_TRUE(
        throwsExactly<InvalidPropertyException>([&] { factory.createClassInfo("A", {}, {"1"}); },
                                                "The property '1' of the class 'A' is no identifier"));
    EXPECT_TRUE(throwsExactly<InvalidSuperclassException>(
        [&] { factory.createClassInfo("Base", {}, {}, {derived}); },
        "The superclass 'Derived' is or has the class 'Base' itself"));
    EXPECT_THROW(factory.createClassInfo("Base", {}, {}, {base}), InvalidSuperclassException);
    std::vector<ClassInfo> above{base};
    std::vector<Id> properties{"x"};
    const ClassInfo kept = std::move(above[0]);
    const Id taken = std::move(properties[0]);
    EXPECT_THROW(factory.createClassInfo("A", {}, {}, above), ForeignClassException) << "moved from";
    EXPECT_THROW(factory.createClassInfo("A", properties), InvalidPropertyException);
    const ClassInfo line = vexa::testing::forwardingFactory().createClassInfo("Line");
    EXPECT_TRUE(throwsExactly<ForeignClassException>([&] { factory.createValueObject(line); },
                                                     "The class 'Line' comes from another back-end"));
    const std::string zero("a\0b", 3);
    EXPECT_TRUE(throwsExactly<InvalidClassNameException>([&] { factory.createClassInfo(zero); },
                                                         "A class cannot be called 'a\\0b'"));
    EXPECT_THROW(factory.createEnumArray({1, 1}, zero), InvalidClassNameException);
    EXPECT_THROW(factory.createEnumerationObject(zero, "sun"), InvalidClassNameException);
    EXPECT_THROW(factory.createEnumerationObject("Sky", zero), UnknownMemberException);
}

TEST_F(Classes, LinkTheirIdentifiersToTheLatestHandle) {
    Id own = *base.getPropertyIDs().begin();
    EXPECT_EQ(own.getClassName(), "Base");
    auto impl = Access::impl(base);
    {
        const ClassInfo other = again(base);
        EXPECT_EQ(own.getClassName(), "Base");
    }
    EXPECT_EQ(own.getClassName(), "") << "the link goes with the handle that it was made for";
    base.updateVexaPropertyIdentifiersClassInfo();
    EXPECT_EQ(own.getClassName(), "Base");

    auto kept = std::make_unique<ClassInfo>(factory.createClassInfo("Short", {"x"}));
    const Id property = *kept->getPropertyIDs().begin();
    auto* description = Access::impl(*kept).get();
    description->retain();
    kept.reset();
    EXPECT_EQ(property.getClassName(), "");
    const ClassInfo revived(description);
    EXPECT_EQ(property.getClassName(), "Short");
}

TEST_F(Classes, DecideHowAPropertyIsShown) {
    Id id("Base.p");
    EXPECT_EQ(id.getExternalPropertyName(), "Base.p");
    id.updateClassInfo(base);
    EXPECT_EQ(id.getExternalPropertyName(), "p");
    id.updateClassInfo(derived);
    EXPECT_EQ(id.getExternalPropertyName(), "Base.p");
    Id plain("p");
    const Id copy = plain;
    plain.updateClassInfo(derived);
    EXPECT_EQ(copy.getClassName(), "Derived") << "copies share the link";
    EXPECT_EQ(copy.getExternalPropertyName(), "p");
    EXPECT_EQ(copy, Id("p")) << "links do not matter";
}

TEST_F(Classes, ResolveIdentifiers) {
    using detail::validateVexaPropertyIdentifier;
    const Id own("Derived.a.b");
    const Id qualified("Derived", "a.b");
    const Id resolved = validateVexaPropertyIdentifier(Id("Derived.p"), derived);
    EXPECT_EQ(resolved, Id("p"));
    EXPECT_EQ(resolved.getClassName(), "Derived");
    EXPECT_EQ(validateVexaPropertyIdentifier(qualified, derived), Id("a", "b")) << "the name is split again";
    EXPECT_EQ(qualified.getPropertyName(), "a.b");
    const Id inherited = validateVexaPropertyIdentifier(Id("Base.p"), derived);
    EXPECT_EQ(inherited.getExternalPropertyName(), "Base.p");
    const Id plain("q");
    validateVexaPropertyIdentifier(plain, derived);
    EXPECT_EQ(plain.getClassName(), "Derived") << "the caller's identifier is linked too";
}

} // namespace
