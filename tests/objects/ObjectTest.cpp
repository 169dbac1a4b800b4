// Value objects, arrays of them, and handle objects.
#include "support/AllocationCountdown.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/client/Objects.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;
using support::throwsExactly;

class Objects : public testing::Test {
protected:
    ArrayFactory factory;
    ClassInfo named = factory.createClassInfo("Named", {"name", "x"});
    ClassInfo pointClass = factory.createClassInfo("Point", {"x", "y"}, {"unit"}, {named});

    ValueObject point(double x, double y) {
        ValueObject made = factory.createValueObject(pointClass);
        made["x"] = factory.createScalar(x);
        made["y"] = factory.createScalar(y);
        return made;
    }
    static double number(const Array& scalar) { return TypedArray<double>(scalar)[0]; }
    static double number(const ValueObject& object, const char* id) {
        return number(object[std::string(id)]);
    }
};

TEST_F(Objects, AreCopiedWhenTheyAreWritten) {
    ValueObject a = point(1, 2);
    ValueObject b = a;
    b["x"] = factory.createScalar(5.0);
    EXPECT_EQ(number(a, "x"), 1);
    EXPECT_EQ(number(b, "x"), 5);
    b["y"][0] = 6.0;
    EXPECT_EQ(number(a, "y"), 2);
    EXPECT_EQ(number(b, "y"), 6);
    const Array out = std::as_const(b)["y"];
    b["y"][0] = 7.0;
    EXPECT_EQ(number(out), 6);
    ValueObject c = b;
    const auto* before = detail::Access::impl(c).get();
    static_cast<void>(c["x"].getType());
    EXPECT_NE(detail::Access::impl(c).get(), before) << "the writable way in unshares";
    EXPECT_EQ(support::countAllocations([&] { const ValueObject copy = a; }), 0U);
}

TEST_F(Objects, AreEqualByTheirPropertiesAlone) {
    ValueObject a = point(1, 2);
    ValueObject b = a;
    EXPECT_EQ(a, b);
    b["x"] = factory.createScalar(1.0);
    EXPECT_EQ(a, b);
    b["x"] = factory.createScalar(3.0);
    EXPECT_NE(a, b);
    EXPECT_EQ(ValueObject(), ValueObject());
    EXPECT_NE(a, ValueObject());
    EXPECT_NE(ValueObject(), a);
    // Another class, the properties in another order.
    ValueObject one = factory.createValueObject(factory.createClassInfo("One", {"u", "v"}));
    ValueObject two = factory.createValueObject(factory.createClassInfo("Two", {"v", "u"}));
    EXPECT_EQ(one, two);
    ValueObject less = factory.createValueObject(factory.createClassInfo("Less", {"u"}));
    EXPECT_NE(less, one);
    EXPECT_THROW(static_cast<void>(one == less), vexa::client::UnknownPropertyException)
        << "the back-end's error";
}

TEST_F(Objects, FindPropertiesByPlainAndQualifiedNames) {
    ValueObject a = point(1, 2);
    a["Named.x"] = factory.createScalar(10.0);
    a["name"] = factory.createCharArray("a");
    EXPECT_EQ(number(a, "x"), 1);
    EXPECT_EQ(number(a, "Point.x"), 1);
    EXPECT_EQ(number(a, "Named.x"), 10);
    EXPECT_TRUE(a.hasProperty("name") && a.hasProperty("Named.name") && !a.hasProperty("Point.name"));
    EXPECT_EQ(a.getExternalRepresentationPropertyNames(),
              (std::vector<std::string>{"x", "y", "Named.name", "Named.x"}));
    EXPECT_TRUE(throwsExactly<vexa::client::UnknownPropertyException>(
        [&] { std::as_const(a)["z"]; }, "Unknown property 'z' of the class 'Point'"));
    EXPECT_THROW(a["z"] = Array(), vexa::client::UnknownPropertyException);
    const ClassInfo other = factory.createClassInfo("Other", {"name"});
    const ValueObject both =
        factory.createValueObject(factory.createClassInfo("Both", {}, {}, {named, other}));
    EXPECT_TRUE(throwsExactly<vexa::client::AmbiguousPropertyException>(
        [&] { both["name"]; }, "The class 'Both' inherits several properties 'name'"));
    EXPECT_NO_THROW(both["Other.name"]);
    const auto idOf = [](const ClassInfo& info, int place) {
        return *std::next(info.getPropertyIDs().begin(), place);
    };
    EXPECT_EQ(number(a[idOf(named, 1)]), 10) << "unqualified, but linked to the superclass";
    EXPECT_EQ(number(a[idOf(pointClass, 0)]), 1);
    EXPECT_EQ(CharArray(a[idOf(other, 0)]).toAscii(), "a") << "a class that has nothing to do with it";
    char letters[] = "y";
    const char* pointer = letters;
    EXPECT_EQ(number(a[pointer]) + number(std::as_const(a)[letters]), 4);
    EXPECT_FALSE(factory.createValueObject(factory.createClassInfo("None")).hasProperties());
}

TEST_F(Objects, AreWalkedWithAtMostOneBlockAProperty) {
    ValueObject a = point(1, 2);
    const ValueObject copy = a;
    for (Property property : a) {
        property = factory.createScalar(4.0);
    }
    EXPECT_EQ(number(a, "y"), 4);
    EXPECT_EQ(number(copy, "y"), 2);
    std::vector<std::string> names;
    std::vector<Property> kept;
    for (const Property& property : copy) {
        names.push_back(property.getClassName() + "." + property.getPropertyName());
        kept.push_back(property);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Point.x", "Point.y", "Named.name", "Named.x"}));
    EXPECT_EQ(number(kept[0].castToArray()), 1) << "a property that is kept stays what it was";
    EXPECT_EQ(number(kept[1].castToArray()), 2);
    std::size_t visited = 0;
    const std::size_t blocks = support::countAllocations([&] {
        for (const Property& property : copy) {
            visited += property.castToArray().getNumberOfElements();
        }
    });
    EXPECT_LE(blocks, 4U + 8U) << "one a property, and those of the range";
    EXPECT_EQ(visited, 2U);
}

TEST_F(Objects, AreNotWrittenThroughReadOnlyWalks) {
    const ValueObject constant = point(1, 2);
    ValueObjectArray array = factory.createValueObjectArray({1, 1}, pointClass);
    array["unit"] = factory.createArray<double>({1, 2}, {3, 4});
    const auto expectRefusals = [&](Property property, double value) {
        using Refused = CantAssignArrayToThisArrayException;
        EXPECT_THROW(property = factory.createScalar(9.0), Refused);
        Reference<Array> reference = property;
        EXPECT_THROW(reference = property.castToArray(), Refused);
        EXPECT_THROW(reference[0] = 9.0, Refused);
        Reference<TypedArray<double>> doubles = reference;
        EXPECT_THROW(doubles[0] = 9.0, Refused);
        EXPECT_THROW(doubles.begin(), Refused);
        EXPECT_EQ(*doubles.cbegin(), value);
        EXPECT_EQ(number(property.castToArray()), value);
        EXPECT_EQ(double(std::as_const(reference)[0]), value);
    };
    expectRefusals(*constant.begin(), 1);
    expectRefusals(*std::as_const(array).beginArrayProp(), 3);
    *array.beginArrayProp() = factory.createScalar(5.0);
    EXPECT_EQ(number(std::as_const(array)["unit"]), 5);
}

/// What an operation throws, told by its message.
template <class F>
std::string thrownBy(F operation) {
    try {
        operation();
    } catch (const Exception& error) {
        return error.what();
    }
    return "nothing";
}

TEST_F(Objects, HoldArraysAsCellsDo) {
    TypedArray<Array> cells = factory.createArray<Array>({1, 1});
    ValueObject object = point(1, 2);
    ValueObjectArray array = factory.createValueObjectArray({1, 1}, pointClass);
    const std::vector<Reference<Array>> holders{cells[0], object["x"], array["unit"], *object.begin(),
                                                *array.beginArrayProp()};
    StructArray record = factory.createStructArray({1, 1}, {"f"});
    const EnumArray member = factory.createEnumArray({1, 1}, "Color", {"Red"});
    const auto operations = [&](Reference<Array> held) {
        Array doubles = factory.createArray<double>({1, 2});
        Array records = factory.createStructArray({1, 1}, {"f"});
        Array others = factory.createArray<Array>({1, 1});
        std::vector<std::string> outcomes;
        for (const Array& value : {Array(record), Array(doubles), Array(), Array(member)}) {
            held = value;
            outcomes.push_back(thrownBy([&] { held["f"] = value; }));
            outcomes.push_back(thrownBy([&] { std::as_const(held)["f"]; }));
            outcomes.push_back(thrownBy([&] { doubles[0] = held; }));
            outcomes.push_back(thrownBy([&] { records[0] = held; }));
            outcomes.push_back(thrownBy([&] { others[0] = held; }));
            outcomes.push_back(thrownBy([&] { detail::castToString(held.chain()); }));
            outcomes.push_back(thrownBy([&] { held.chain()->setString("Red"); }));
            outcomes.push_back(thrownBy([&] { held[0][0][0] = 1.0; }));
        }
        return outcomes;
    };
    const auto wanted = operations(holders[0]);
    EXPECT_EQ(wanted.front(), "Data type mismatch");
    for (const Reference<Array>& holder : holders) {
        EXPECT_EQ(operations(holder), wanted);
    }
    EXPECT_TRUE(std::as_const(record)[0]["f"].isEmpty()) << "the client's own record";
}

TEST_F(Objects, CopyWhatTheyShareBeforeItIsWritten) {
    TypedArray<Array> cells = factory.createArray<Array>({1, 1});
    StructArray fields = factory.createStructArray({1, 1}, {"f"});
    ValueObject object = point(1, 2);
    ValueObjectArray array = factory.createValueObjectArray({1, 1}, pointClass);
    const std::vector<Reference<Array>> holders{cells[0],      fields[0]["f"],  object["x"],
                                                array["unit"], *object.begin(), *array.beginArrayProp()};

    const Array numbers = factory.createArray<double>({1, 2}, {1, 2});
    TypedArray<String> strings = factory.createArray<String>({1, 2});
    strings[0] = strings[1] = u"old";
    StructArray records = factory.createStructArray({1, 2}, {"f", "g"});
    records[0]["f"] = numbers;
    const Array nested = factory.createArray<Array>({1, 2}, {numbers, strings});
    const Array points = factory.createValueObjectScalar(point(1, 2));
    // What is held, and how a way into it is kept.
    using Held = Reference<Array>;
    using Write = std::function<void()>;
    using Doubles = Reference<TypedArray<double>>;
    using Records = Reference<StructArray>;
    using Cells = Reference<TypedArray<Array>>;
    const std::tuple<const char*, Array, std::function<Write(Held)>> ways[] = {
        {"index", numbers, [](Held held) { return [held]() mutable { held[1] = 9.0; }; }},
        {"element", numbers, [](Held held) { return [e = held[1]]() mutable { e = 9.0; }; }},
        {"array", numbers, [](Held held) { return [a = Doubles(held)]() mutable { *a.begin() += 1; }; }},
        {"number", numbers, [](Held held) { return [e = Doubles(held)[1]]() mutable { e *= 9.0; }; }},
        {"reference", numbers,
         [](Held held) { return [e = Reference<double>(Doubles(held)[1])]() mutable { e = 9.0; }; }},
        {"string", strings,
         [](Held held) { return [e = Reference<TypedArray<String>>(held)[1]]() mutable { e = u"new"; }; }},
        {"member", factory.createEnumArray({1, 2}, "Color", {"red", "blue"}),
         [](Held held) { return [e = Reference<EnumArray>(held)[1]]() mutable { e = "red"; }; }},
        {"record", records,
         [&](Held held) {
             return [e = Records(held)[1], &numbers]() mutable { e = std::vector<Array>{numbers, numbers}; };
         }},
        {"copied record", records, [](Held held) { return [a = Records(held)]() mutable { a[1] = a[0]; }; }},
        {"field", records,
         [&](Held held) { return [e = Records(held)[1], &numbers]() mutable { e["f"] = numbers; }; }},
        {"inside a field", records,
         [](Held held) { return [e = Records(held)[0]]() mutable { e["f"][1] = 9.0; }; }},
        {"cell", nested,
         [&](Held held) { return [e = Cells(held)[1], &numbers]() mutable { e = numbers; }; }},
        {"inside a cell", nested,
         [](Held held) { return [e = Cells(held)[0].held()]() mutable { e[1] = 9.0; }; }},
        {"object", points,
         [this](Held held) {
             return [this, e = Reference<TypedArray<ValueObject>>(held)[0]]() mutable { e = point(3, 4); };
         }},
    };
    for (const auto& [name, content, keep] : ways) {
        for (Reference<Array> holder : holders) {
            SCOPED_TRACE(name);
            holder = content;
            const Write write = keep(holder);
            const Array shared = holder; // after the way in was formed
            write();
            EXPECT_EQ(shared, content);
            const Array changed = holder;
            EXPECT_NE(changed, content);
        }
    }
}

TEST_F(Objects, AreMembersOfEnumerations) {
    const ValueObject red = factory.createEnumerationObject("Color", "Red");
    EXPECT_EQ(red.getEnumerationName(), "Red");
    EXPECT_EQ(red.getClassInfo().getClassIdentifier().getString(), "Color");
    EXPECT_TRUE(throwsExactly<std::logic_error>([&] { point(1, 2).getEnumerationName(); },
                                                "basic_string::_M_construct null not valid"));
}

TEST_F(Objects, InArraysAreValuesToo) {
    ValueObjectArray array = factory.createValueObjectArray({1, 3}, pointClass);
    const ValueObjectArray copy = array;
    array[0] = point(1, 2);
    ValueObject out = array[0];
    out["x"] = factory.createScalar(9.0);
    EXPECT_EQ(number(array[0]["x"]), 1);
    EXPECT_TRUE(Array(copy[0]["x"]).isEmpty());
    array[1] = out;
    array[2] = array[0];
    Reference<ValueObject> named0 = array[0];
    named0 = std::as_const(array)[1];
    EXPECT_EQ(number(array[0]["x"]), 9);
    EXPECT_EQ(number(array[2]["x"]), 1);
    EXPECT_EQ(number(ValueObjectRef(named0).getProp("y", true)), 2);
    EXPECT_EQ(ValueObjectRef(named0).getExternalRepresentationPropertyNames().size(), 4U);
    double sum = 0;
    for (const auto& each : std::as_const(array)) {
        sum += number(each["x"]);
    }
    EXPECT_EQ(sum, 19);
    EXPECT_TRUE(throwsExactly<vexa::client::WrongClassException>(
        [&] { array[0] = factory.createValueObject(named); },
        "An object of the class 'Named' cannot be in an array of 'Point'"));
    EXPECT_EQ(number(array[0]["x"]), 9);
    EXPECT_FALSE(array.isHeterogeneous());
    EXPECT_THROW(static_cast<void>(ValueObject{array[3]}), EArrayIndexOutOfRange);

    TypedArray<ValueObject> mixed = factory.createArray<ValueObject>({1, 2});
    EXPECT_EQ(ValueObject(mixed[0]), ValueObject());
    mixed[0] = point(1, 2);
    EXPECT_FALSE(ValueObjectArray(mixed).isHeterogeneous());
    mixed[1] = factory.createValueObject(named);
    EXPECT_TRUE(ValueObjectArray(mixed).isHeterogeneous());
    EXPECT_EQ(ValueObject(factory.createValueObjectScalar(out)[0]), out);
    const ArrayFactory another = vexa::testing::forwardingFactory();
    ValueObject foreign = another.createValueObject(another.createClassInfo("Point", {"x", "y"}));
    foreign["y"] = factory.createScalar(4.0);
    EXPECT_EQ(number(factory.createValueObjectScalar(foreign)[0]["y"]), 4) << "of another back-end";
}

TEST_F(Objects, InArraysAreComparedByWhatTheyAre) {
    static_assert(std::is_same_v<decltype(&ValueObject::operator==), decltype(&ValueObject::operator!=)>);
    ValueObjectArray two = factory.createValueObjectArray({1, 2}, pointClass);
    const ValueObjectArray three = factory.createValueObjectArray({1, 3}, pointClass);
    EXPECT_TRUE(two != three && three != two);
    EXPECT_TRUE(two != factory.createValueObjectArray({2, 1}, pointClass));
    two[0] = point(1, 2);
    EXPECT_TRUE(two[0] == point(1, 2) && point(1, 2) == std::as_const(two)[0] && two[0] != two[1]);
    const char* id = "y";
    EXPECT_EQ(number(two[0][id]), 2);

    const auto arrayOf = [&](const char* className, const char* member) {
        return factory.createValueObjectScalar(factory.createEnumerationObject(className, member));
    };
    EXPECT_EQ(arrayOf("Color", "Red"), arrayOf("Color", "Red"));
    EXPECT_NE(arrayOf("Color", "Red"), arrayOf("Color", "Blue"));
    EXPECT_NE(arrayOf("Color", "Red"), arrayOf("Light", "Red"));
    EXPECT_NE(arrayOf("Color", "Red"),
              factory.createValueObjectScalar(factory.createValueObject(factory.createClassInfo("Color"))));

    ValueObjectArray copy = two;
    copy["unit"] = factory.createCharArray("m");
    const Array untyped = copy;
    EXPECT_TRUE(two == untyped && untyped == two && !(two != untyped)) << "which compares elements only";
    EXPECT_TRUE(two != copy && two != Array() && two != TypedArray<ValueObject>(three));
}

TEST_F(Objects, ArraysHavePropertiesAndExternalDimensions) {
    ValueObjectArray a = factory.createValueObjectArray({1, 2}, pointClass);
    ValueObjectArray b = a;
    EXPECT_TRUE(a == b);
    a["unit"] = factory.createCharArray("m");
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(Array(a) == Array(b)) << "which compares elements only";
    EXPECT_EQ(CharArray(std::as_const(a)["unit"]).toAscii(), "m");
    b["unit"] = a["unit"];
    EXPECT_TRUE(a == b);
    b[0] = point(1, 1);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a.hasArrayProperty("unit") && !a.hasArrayProperty("x") && a.hasArrayProperties());
    auto it = a.beginArrayProp();
    EXPECT_EQ((*it).getPropertyName(), "unit");
    EXPECT_EQ(++it, a.endArrayProp());
    EXPECT_EQ(std::as_const(a).cbeginArrayProp() == std::as_const(a).cendArrayProp(), false);
    EXPECT_FALSE(a.isExternalDimensionsSet());
    const ValueObjectArray before = a;
    vexa::client::setExternalDimensions(a, {2, 1});
    EXPECT_EQ(a.getExternalDimensions(), (std::vector<std::size_t>{2, 1}));
    EXPECT_EQ(a.getDimensions(), (std::vector<std::size_t>{1, 2}));
    EXPECT_FALSE(before.isExternalDimensionsSet());
    ArrayFactory other = vexa::testing::forwardingFactory();
    ValueObjectArray foreign = other.createValueObjectArray({1, 2}, other.createClassInfo("Point"));
    EXPECT_THROW(vexa::client::setExternalDimensions(foreign, {2, 1}), InvalidArrayTypeException);
    EXPECT_EQ(a.getExternalRepresentationArrayPropertyNames(), std::vector<std::string>{"unit"});
    EXPECT_EQ(a.getClassInfo().getClassIdentifier().getString(), "Point");
}

TEST_F(Objects, DoNotOwnThemselves) {
    ValueObject a = point(1, 2);
    Reference<Array> x = a["x"]; // made while nobody shares the object
    const ValueObjectArray array = factory.createValueObjectScalar(a);
    x = array;
    const ValueObjectArray inside = std::as_const(a)["x"];
    EXPECT_EQ(number(inside[0]["x"]), 1) << "a copy of what the object was";
    x = factory.createArray<Array>({1, 1}, {array});
    EXPECT_EQ(number(inside[0]["y"]), 2);
}

constexpr ZVMID engine(unsigned char mark) { return {{mark}}; }

TEST_F(Objects, DoNotOwnTheArrayThatTheyAreStoredInto) {
    TypedArray<Array> cells = factory.createArray<Array>({1, 1});
    cells[0] = factory.createValueObjectArray({1, 1}, pointClass);
    Reference<TypedArray<ValueObject>> points = cells[0];
    auto element = points[0];
    ValueObject owner = point(1, 2);
    owner["x"] = cells; // shares the array that the element lies in
    element = owner;    // which the sanitizers would find leaking
    const ValueObject stored = ValueObjectArray(Array(std::as_const(cells)[0]))[0];
    EXPECT_EQ(number(stored, "y"), 2);
    const TypedArray<Array> inner = stored["x"];
    const ValueObject innermost = ValueObjectArray(Array(inner[0]))[0];
    EXPECT_TRUE(std::as_const(innermost)["x"].isEmpty()) << "a copy of what was there before";
}

TEST_F(Objects, WithHandlesAreTheSameOneByEngineAndNumber) {
    const HandleObjectRef a = factory.createHandleObjectRef(engine(1), 7);
    EXPECT_TRUE(a == factory.createHandleObjectRef(engine(1), 7));
    EXPECT_TRUE(a != factory.createHandleObjectRef(engine(2), 7));
    EXPECT_TRUE(a != factory.createHandleObjectRef(engine(1), 8));
    EXPECT_TRUE(a != HandleObjectRef() && HandleObjectRef() == HandleObjectRef());
    EXPECT_EQ(a.getId(), 7);
    EXPECT_EQ(a.getZVMID(), engine(1));
    EXPECT_THROW(HandleObjectRef().getId(), EArrayInvalidHandleRef);

    TypedArray<HandleObjectRef> array = factory.createArray<HandleObjectRef>({2, 2});
    array[1][0] = a;
    const HandleObjectRef out = array[1][0];
    EXPECT_TRUE(out == a);
    EXPECT_TRUE(HandleObjectRef(array[0][0]) == HandleObjectRef());
    const std::size_t before = vexa::client::countOfReferences(engine(1), 7);
    out.addReference();
    HandleRef(Reference<HandleObjectRef>(array[1][0])).addReference();
    EXPECT_EQ(vexa::client::countOfReferences(engine(1), 7), before + 2);
    using vexa::data::detail::ArrayReferenceImpl;
    auto* incomplete = new ArrayReferenceImpl(detail::Access::impl(array).get());
    incomplete->addIndex(std::uint64_t{1});
    EXPECT_THROW(HandleRef(incomplete).addReference(), NotEnoughIndicesProvidedException);
}

} // namespace
