// Class descriptions, value objects, arrays of them, handle objects.

#include "Check.hpp"
#include "Samples.hpp"

#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <memory>
#include <utility>

namespace vexa::check {

namespace {

using data::detail::ForwardIteratorImpl;
using data::detail::ReferenceImpl;
using data::impl::HandleObjectRefImpl;
using data::impl::PropertyImpl;
using Texts = std::vector<std::string>;

template <class T>
Texts namesIn(ForwardIteratorImpl* first, ForwardIteratorImpl* last, std::string (*nameOfObject)(T&)) {
    const auto here = adopt(first, "begin");
    const auto end = adopt(last, "end");
    expectOneReference("a new iterator", *here);
    Texts found;
    for (; !here->equal(end.get()) && found.size() < 100; here->increment()) {
        const auto object = adopt(here->get(), "get of an iterator");
        auto* typed = dynamic_cast<T*>(object.get());
        expect(typed != nullptr, "get of an iterator returns an object of another type");
        found.push_back(nameOfObject(*typed));
    }
    return found;
}

using Identifier = data::impl::VexaPropertyIdentifierImpl;
std::string nameOfIdentifier(Identifier& identifier) { return identifier.propertyName(); }
std::string nameOfClass(ClassInfoImpl& description) { return description.getClassIdentifier()->name(); }
std::string nameOfProperty(PropertyImpl& property) { return property.getIdentifier()->getPropertyName(); }

void describesClasses(Backend& backend) {
    const auto description = pointClass(backend);
    expectEqual("the name of a class", nameOfClass(*description), "Point");
    expectEqual("getNumberOfProperties", description->getNumberOfProperties(), 2);
    expectEqual("getNumberOfArrayProperties", description->getNumberOfArrayProperties(), 1);
    expectEqual("the properties of a class",
                namesIn(description->beginProperties(), description->endProperties(), nameOfIdentifier),
                {"x", "y"});
    expectEqual(
        "the array properties of a class",
        namesIn(description->beginArrayProperties(), description->endArrayProperties(), nameOfIdentifier),
        {"unit"});
}

void describesSuperclasses(Backend& backend) {
    const fv::ClassInfo above(pointClass(backend).release());
    const auto below = adopt(backend.factory().createClassInfoImpl(fv::VexaClassIdentifier("Pixel"),
                                                                   {property("colour")}, {}, {above}),
                             "createClassInfoImpl");
    expectEqual("the superclasses of a class",
                namesIn(below->beginSuperclasses(), below->endSuperclasses(), nameOfClass), {"Point"});
}

/// Making a handle links the identifiers to it.
void linksIdentifiers(Backend& backend) {
    const fv::ClassInfo info(pointClass(backend).release());
    const auto here = adopt(fv::detail::Access::impl(info)->beginProperties(), "beginProperties");
    const fv::VexaPropertyIdentifier identifier(here->get());
    expectEqual("getClassName of a property identifier after updateVexaPropertyIdentifiersClassInfo",
                identifier.getClassName(), "Point");
}

double valueOf(const ObjectImpl& object, const std::string& name) {
    const std::shared_ptr<ArrayImpl> value = object.getProperty(property(name));
    expect(value != nullptr, "getProperty(" + show(name) + ") returns null");
    return scalarValue(*value);
}

void properties(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    expectEqual("numOfProperties", point->numOfProperties(), 2);
    expectEqual("hasProperty of one that is there", point->hasProperty(property("y")), true);
    expectEqual("hasProperty of one that is not there", point->hasProperty(property("z")), false);
    expectEqual("property x", valueOf(*point, "x"), 1.0);
    expectEqual("property y", valueOf(*point, "y"), 2.0);
    expectEqual("getExternalRepresentationPropertyNames", point->getExternalRepresentationPropertyNames(),
                {"x", "y"});
    expectThrows("getProperty of one that is not there", [&] { point->getProperty(property("z")); });
}

void propertyIterators(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    expectEqual("the properties of an object", namesIn(point->begin(), point->end(), nameOfProperty),
                {"x", "y"});
    expectEqual("the properties of a constant object",
                namesIn(point->cbegin(), point->cend(), nameOfProperty), {"x", "y"});
    const auto here = adopt(point->begin(), "begin");
    here->increment();
    const auto object = adopt(here->get(), "get of an iterator");
    auto& second = dynamic_cast<PropertyImpl&>(*object);
    expectEqual("getValue of the second property", scalarValue(*second.getValue()), 2.0);
    adopt(second.getReference(), "getReference")->setArray(scalar(backend, 5).get());
    expectEqual("property y after a write through its reference", valueOf(*point, "y"), 5.0);
}

void copiesOfObjects(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    const auto copy = adopt(point->sharedCopy(), "sharedCopy of an object");
    expectOneReference("a copy of an object", *copy);
    setProperty(*copy, "x", *scalar(backend, 10));
    setProperty(*point, "y", *scalar(backend, 20));
    expectEqual("property x of an object after a write to its copy", valueOf(*point, "x"), 1.0);
    expectEqual("property x of the copy", valueOf(*copy, "x"), 10.0);
    expectEqual("property y of a copy after a write to the original", valueOf(*copy, "y"), 2.0);
}

void balanceOfProperties(Backend& backend) {
    const auto held = scalar(backend, 1);
    auto point = newPoint(backend, 1, 2);
    setProperty(*point, "x", *held);
    for (int k = 0; k < 3; ++k)
        point->getProperty(property("x"));
    expect(held->referenceCount() <= 2, "the reference count of an array in a property grows with reading");
    auto copy = adopt(point->sharedCopy(), "sharedCopy of an object");
    point.reset();
    copy.reset();
    expectOneReference("an array after the objects that held it have gone", *held);
}

Owned<ArrayImpl> points(const Backend& backend, std::size_t columns = 2) {
    const auto description = pointClass(backend);
    return adopt(backend.factory().createValueObjectArrayImpl({1, columns}, description.get()),
                 "createValueObjectArrayImpl");
}

void balanceOfObjects(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    auto array = points(backend);
    asObjects(*array).setElementObject(0, point.get());
    {
        const auto object = adopt(asObjects(*array).getElementObject(0), "getElementObject");
        expectEqual("property y of the object that was stored", valueOf(*object, "y"), 2.0);
        const std::uint64_t count = object->referenceCount();
        adopt(asObjects(*array).getElementObject(0), "getElementObject");
        expect(object->referenceCount() == count,
               "the reference count of an object grows with each getElementObject");
    }
    array.reset();
    expectOneReference("an object after the array that held it has gone", *point);
}

void arrayDescribesItself(Backend& backend) {
    const auto array = points(backend);
    const ObjectArrayImpl& objects = asObjects(*array);
    expectEqual("the class of an object array", objects.getClassInfo().getClassIdentifier().getString(),
                "Point");
    expectEqual("isHeterogeneous of an array of one class", objects.isHeterogeneous(), false);
    expectEqual("isExternalDimensionsSet of a new array", objects.isExternalDimensionsSet(), false);
}

void elementsOfArrays(Backend& backend) {
    const auto array = points(backend);
    ObjectArrayImpl& objects = asObjects(*array);
    objects.setElementObject(1, newPoint(backend, 3, 4).get());
    fv::Array value = objects.getElementProperty(1, property("y"));
    expectEqual("getElementProperty(1, y)", scalarValue(*fv::detail::Access::impl(value)), 4.0);
    expectEqual("the properties of element 1",
                namesIn(objects.beginElementProperties(1), objects.endElementProperties(1), nameOfProperty),
                {"x", "y"});
}

void arrayProperties(Backend& backend) {
    const auto array = points(backend);
    ObjectArrayImpl& objects = asObjects(*array);
    expectEqual("numOfArrayProperties", objects.numOfArrayProperties(), 1);
    expectEqual("hasArrayProperty of one that is there", objects.hasArrayProperty(property("unit")), true);
    expectEqual("hasArrayProperty of one that is not there", objects.hasArrayProperty(property("x")), false);
    adopt(objects.getArrayPropertyReference(property("unit")), "getArrayPropertyReference")
        ->setArray(scalar(backend, 9).get());
    fv::Array value = objects.getArrayProperty(property("unit"));
    expectEqual("getArrayProperty after a write", scalarValue(*fv::detail::Access::impl(value)), 9.0);
    expectEqual("the array properties",
                namesIn(objects.beginArrayProp(), objects.endArrayProp(), nameOfProperty), {"unit"});
    const auto other = points(backend);
    expect(!objects.isEqualArrayProperties(other.get()), "isEqualArrayProperties of different ones is true");
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    expect(objects.isEqualArrayProperties(copy.get()), "isEqualArrayProperties of those of a copy is false");
}

/// Handles of object arrays compare without a test of dimensions before.
void otherDimensions(Backend& backend) {
    const auto two = points(backend, 2);
    const auto three = points(backend, 3);
    for (const auto& [a, b] : {std::pair(two.get(), three.get()), std::pair(three.get(), two.get())}) {
        const auto what = [a = a, b = b](const char* operation) {
            return operation + (" of " + show(a->getDimensions())) + " and " + show(b->getDimensions()) +
                   " arrays of new objects";
        };
        backend.step(what("isEqualArrayProperties"));
        asObjects(*a).isEqualArrayProperties(b);
        backend.step(what("isEqual"));
        expectEqual(what("isEqual"), a->isEqual(b), false);
    }
}

void expectElementOfCells(ReferenceImpl* made, const std::string& operation) {
    const auto chain = adopt(made, operation);
    const ArrayImpl* array = chain->getArrayImpl();
    const std::string what = "the array of what " + operation + " returns";
    expect(array != nullptr, what + " is null");
    expectEqual("getType of " + what, array->getType(), ArrayType::CELL);
    ArrayImpl* held = chain->getElementArray(false);
    expect(held != nullptr && held->getType() == ArrayType::DOUBLE,
           "getElementArray of what " + operation + " returns is not the value of the property");
}
void referencesToProperties(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    expectElementOfCells(point->getPropertyReference(property("x")), "getPropertyReference");
    const auto first = adopt(adopt(point->begin(), "begin")->get(), "get of an iterator");
    expectElementOfCells(dynamic_cast<PropertyImpl&>(*first).getReference(), "getReference of a property");
}
void referencesToArrayProperties(Backend& backend) {
    const auto array = points(backend);
    const auto reference = [&] { return asObjects(*array).getArrayPropertyReference(property("unit")); };
    adopt(reference(), "getArrayPropertyReference")->setArray(scalar(backend, 9).get());
    expectElementOfCells(reference(), "getArrayPropertyReference");
}

void expectRefusal(ForwardIteratorImpl* iterator, const std::string& operation, ArrayImpl& value) {
    const auto object = adopt(adopt(iterator, operation)->get(), "get of an iterator");
    auto& view = dynamic_cast<PropertyImpl&>(*object);
    const auto chain = adopt(view.getReference(), "getReference");
    const std::string through = " through getReference of a property from " + operation;
    expectThrows("setArray" + through, [&] { chain->setArray(&value); });
    expectThrows("prepareForWrite" + through, [&] { chain->prepareForWrite(); });
    expectThrows("getElementArray for writing" + through, [&] { chain->getElementArray(true); });
    expectThrows("createReference for writing" + through, [&] { chain->createReference(true, false); });
}
void readOnlyWalks(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    const auto value = scalar(backend, 5);
    expectRefusal(std::as_const(*point).cbegin(), "cbegin", *value);
    expectEqual("property x after a write that was refused", valueOf(*point, "x"), 1.0);
}
void readOnlyWalksOfArrays(Backend& backend) {
    const auto array = points(backend);
    const auto value = scalar(backend, 5);
    expectRefusal(asObjects(*array).cbeginArrayProp(), "cbeginArrayProp", *value);
}

void scalars(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    const auto array =
        adopt(backend.factory().createValueObjectScalarImpl(point.get()), "createValueObjectScalarImpl");
    expectContents("an array of one object", *array, {"x=1, y=2"});
}

void handles(Backend& backend) {
    const auto object =
        adopt(backend.factory().createHandleObjectRefImpl({{1, 2, 3}}, 7), "createHandleObjectRefImpl");
    const auto expectHandle = [](ObjectImpl& one, const std::string& what) {
        auto* handle = dynamic_cast<HandleObjectRefImpl*>(&one);
        expect(handle != nullptr, what + " has no HandleObjectRefImpl beside its ObjectImpl");
        expectEqual("getId of " + what, handle->getId(), 7);
        expect(handle->getZVMID() == data::impl::ZVMID{{1, 2, 3}}, "getZVMID of " + what + " is another one");
    };
    expectHandle(*object, "a handle object");
    expectHandle(*adopt(object->sharedCopy(), "sharedCopy of a handle object"), "a copy of a handle object");
}

void membersOfEnumerations(Backend& backend) {
    const auto object =
        adopt(backend.factory().createEnumerationObjectImpl("Colors", "Red"), "createEnumerationObjectImpl");
    const char* name = object->getEnumerationName();
    expect(name != nullptr, "getEnumerationName returns null");
    expectEqual("getEnumerationName", std::string(name), "Red");
    expectEqual("the class of an enumeration object", object->getClassInfo().getClassIdentifier().getString(),
                "Colors");
}

} // namespace

void addObjectChecks(Checks& checks) {
    Family objects(checks, "objects");
    const Texts object{"value-object", "class", "double"};
    const Texts array{"object-array", "value-object", "class", "double"};
    objects.add("classes name their properties", {"class"}, describesClasses);
    objects.add("classes name their superclasses", {"class"}, describesSuperclasses);
    objects.add("identifiers are linked to the class", {"class"}, linksIdentifiers);
    objects.add("properties are read and written", object, properties);
    objects.add("properties in their order", object, propertyIterators);
    objects.add("copies of objects are independent", object, copiesOfObjects);
    objects.add("values are retained and released", object, balanceOfProperties);
    objects.add("objects are retained and released", array, balanceOfObjects);
    objects.add("arrays describe their class", array, arrayDescribesItself);
    objects.add("elements of object arrays", array, elementsOfArrays);
    objects.add("properties of the array", array, arrayProperties);
    objects.add("arrays of other dimensions are unequal", array, otherDimensions);
    objects.add("references to properties lead into a cell array", object, referencesToProperties);
    objects.add("references to array properties do too", array, referencesToArrayProperties);
    objects.add("read-only walks refuse writes", object, readOnlyWalks);
    objects.add("read-only walks of array properties do too", array, readOnlyWalksOfArrays);
    objects.add("arrays of one object", {"object-scalar", "value-object", "class", "double"}, scalars);
    objects.add("handle objects name what they denote", {"handle-object"}, handles);
    objects.add("enumeration objects name their member", {"enumeration-object"}, membersOfEnumerations);
}

} // namespace vexa::check
