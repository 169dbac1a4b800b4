// Class descriptions, value objects, arrays of them.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Ranges.hpp"
#include "Samples.hpp"

#include <vexa/data/impl/IdentifierImpl.hpp>

#include <array>
#include <memory>
#include <utility>

namespace vexa::check {

namespace {

using data::detail::ForwardIteratorImpl;
using data::detail::RefCounted;
using data::impl::PropertyImpl;
using Texts = std::vector<std::string>;
using Identifiers = std::vector<fv::VexaPropertyIdentifier>;

template <class T>
T& typed(RefCounted& object) {
    auto* found = dynamic_cast<T*>(&object);
    expect(found != nullptr, "get of an iterator returns an object of another type");
    return *found;
}

std::string nameOfIdentifier(RefCounted& object) {
    return typed<data::impl::VexaPropertyIdentifierImpl>(object).propertyName();
}
std::string nameOfClass(RefCounted& object) {
    const auto identifier = typed<ClassInfoImpl>(object).getClassIdentifier();
    expect(identifier != nullptr, "getClassIdentifier returns null");
    return identifier->name();
}
std::string nameOfProperty(RefCounted& object) {
    const auto* identifier = typed<PropertyImpl>(object).getIdentifier();
    expect(identifier != nullptr, "getIdentifier of a property returns null");
    return identifier->getPropertyName();
}

Owned<ClassInfoImpl> newClass(const Backend& backend, const std::string& name, const Texts& properties,
                              const Texts& arrayProperties = {},
                              const std::vector<fv::ClassInfo>& above = {}) {
    const auto identifiers = [](const Texts& names) {
        Identifiers made;
        for (const std::string& one : names)
            made.push_back(property(one));
        return made;
    };
    return adopt(backend.factory().createClassInfoImpl(fv::VexaClassIdentifier(name), identifiers(properties),
                                                       identifiers(arrayProperties), above),
                 "createClassInfoImpl");
}

// --- classes

/// With properties of all numbers, and names that look alike, several classes at once.
void describesClasses(Backend& backend) {
    Texts many;
    for (int k = 0; k < 100; ++k)
        many.push_back("property" + std::to_string(k * 7 % 100));
    const std::vector<std::pair<Texts, Texts>> lists{{{"x", "y"}, {"unit"}},
                                                     {{}, {}},
                                                     {{"b", "a", "B", "aa"}, {"a", "b", "c"}},
                                                     {many, {"x"}},
                                                     {{}, many}};
    std::vector<Owned<ClassInfoImpl>> classes;
    for (std::size_t k = 0; k < lists.size(); ++k)
        classes.push_back(
            newClass(backend, "Class" + std::to_string(k % 3), lists[k].first, lists[k].second));
    for (std::size_t k = 0; k < lists.size(); ++k) {
        ClassInfoImpl& one = *classes[k];
        expectEqual("the name of a class", nameOfClass(one), "Class" + std::to_string(k % 3));
        expectEqual("getNumberOfProperties", one.getNumberOfProperties(), lists[k].first.size());
        expectEqual("getNumberOfArrayProperties", one.getNumberOfArrayProperties(), lists[k].second.size());
        expectSequence({"the properties of a class", [&] { return one.beginProperties(); },
                        [&] { return one.endProperties(); }, &nameOfIdentifier},
                       lists[k].first);
        expectSequence({"the array properties of a class", [&] { return one.beginArrayProperties(); },
                        [&] { return one.endArrayProperties(); }, &nameOfIdentifier},
                       lists[k].second);
        expectSequence({"the superclasses of a class without any", [&] { return one.beginSuperclasses(); },
                        [&] { return one.endSuperclasses(); }, &nameOfClass},
                       {});
        expectOneReference("a class description after walks over it", one);
    }
}

void describesSuperclasses(Backend& backend) {
    std::vector<fv::ClassInfo> above;
    for (const char* name : {"Point", "Coloured", "Named"})
        above.emplace_back(newClass(backend, name, {std::string("of") + name}).detach());
    auto below = newClass(backend, "Pixel", {"depth"}, {}, above);
    expectSequence({"the superclasses of a class", [&] { return below->beginSuperclasses(); },
                    [&] { return below->endSuperclasses(); }, &nameOfClass},
                   {"Point", "Coloured", "Named"});
    above.clear();
    expectSequence({"the superclasses of a class that nobody else holds",
                    [&] { return below->beginSuperclasses(); }, [&] { return below->endSuperclasses(); },
                    &nameOfClass},
                   {"Point", "Coloured", "Named"});
}

void balanceOfClasses(Backend& backend) {
    const auto above = newClass(backend, "Above", {"x"});
    {
        const fv::ClassInfo info(share(*above).detach());
        const auto below = newClass(backend, "Below", {"y"}, {}, {info});
        const auto end = adopt(below->endSuperclasses(), "endSuperclasses");
        for (const auto here = adopt(below->beginSuperclasses(), "beginSuperclasses");
             !here->equal(end.get()); here->increment())
            adopt(here->get(), "get");
    }
    expectOneReference("a class description after its subclass is gone", *above);
    if (!backend.offers("value-object")) return;
    {
        const auto object =
            adopt(backend.factory().createValueObjectImpl(above.get()), "createValueObjectImpl");
        object->getClassInfo();
        const auto copy = adopt(object->sharedCopy(), "sharedCopy of an object");
        copy->getClassInfo();
    }
    expectOneReference("a class description after its objects are gone", *above);
    if (!backend.offers("object-array")) return;
    {
        const auto array = adopt(backend.factory().createValueObjectArrayImpl({1, 2}, above.get()),
                                 "createValueObjectArrayImpl");
        asObjects(*array).getClassInfo();
        adopt(array->sharedCopy(), "sharedCopy");
    }
    expectOneReference("a class description after its object arrays are gone", *above);
}

/// Making a handle links the identifiers to it.
void linksIdentifiers(Backend& backend) {
    const fv::ClassInfo info(pointClass(backend).detach());
    ClassInfoImpl& description = *fv::detail::Access::impl(info);
    const auto expectLinked = [](ForwardIteratorImpl* begin, ForwardIteratorImpl* last,
                                 const std::string& what) {
        const auto here = adopt(begin, "begin");
        const auto end = adopt(last, "end");
        for (; !here->equal(end.get()); here->increment())
            expectEqual("getClassName of " + what + " after updateVexaPropertyIdentifiersClassInfo",
                        fv::VexaPropertyIdentifier(here->get()).getClassName(), "Point");
    };
    expectLinked(description.beginProperties(), description.endProperties(), "a property identifier");
    expectLinked(description.beginArrayProperties(), description.endArrayProperties(),
                 "the identifier of an array property");
}

// --- objects

double valueOf(const ObjectImpl& object, const std::string& name) {
    const std::shared_ptr<ArrayImpl> value = object.getProperty(property(name));
    expect(value != nullptr, "getProperty(" + show(name) + ") returns null");
    return scalarValue(*value);
}

void expectPoint(const std::string& what, const fv::ClassInfo& info) {
    expectEqual(what, info.getClassIdentifier().getString(), "Point");
    expectEqual("the number of properties of " + what, info.getNumberOfProperties(), 2);
    expectEqual("the number of array properties of " + what, info.getNumberOfArrayProperties(), 1);
}

/// Each by its name, of an object and of an array, whatever the others are called.
void namesAlike(Backend& backend) {
    Texts many;
    for (int k = 0; k < 100; ++k)
        many.push_back("aPropertyWithALongNameOfManyThatAreAlike" + std::to_string(k * 7 % 100));
    for (const Texts& names : {Texts{"b", "a", "B", "aa", "ab", "a1", "a_"}, many}) {
        const auto description = newClass(backend, "Alike", names, names);
        const auto object =
            adopt(backend.factory().createValueObjectImpl(description.get()), "createValueObjectImpl");
        const auto array =
            backend.offers("object-array")
                ? adopt(backend.factory().createValueObjectArrayImpl({1, 1}, description.get()),
                        "createValueObjectArrayImpl")
                : nullptr;
        for (std::size_t k = 0; k < names.size(); ++k) {
            const auto value = scalar(backend, static_cast<double>(k));
            setProperty(*object, names[k], *value);
            if (array != nullptr)
                adopt(asObjects(*array).getArrayPropertyReference(property(names[k])),
                      "getArrayPropertyReference")
                    ->setArray(value.get());
        }
        if (array != nullptr) asObjects(*array).setElementObject(0, object.get());
        for (std::size_t k = 0; k < names.size(); ++k) {
            const std::string of = " of " + show(names[k]) + " among " + show(names.size());
            const auto wanted = static_cast<double>(k);
            const auto value = [&](const fv::Array& one) {
                return scalarValue(*fv::detail::Access::impl(one));
            };
            expectEqual("getProperty" + of, scalarValue(*object->getProperty(property(names[k]))), wanted);
            expectEqual("hasProperty" + of, object->hasProperty(property(names[k])), true);
            for (const std::string& other :
                 {names[k] + "_", names[k].substr(1), std::string("A").append(names[k], 1)})
                expectEqual("hasProperty of " + show(other), object->hasProperty(property(other)),
                            std::find(names.begin(), names.end(), other) != names.end());
            if (array == nullptr) continue;
            expectEqual("getElementProperty" + of,
                        value(asObjects(*array).getElementProperty(0, property(names[k]))), wanted);
            expectEqual("getArrayProperty" + of,
                        value(asObjects(*array).getArrayProperty(property(names[k]))), wanted);
        }
    }
}

void properties(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    expectEqual("numOfProperties", point->numOfProperties(), 2);
    for (const char* name : {"x", "y"})
        expectEqual("hasProperty of one that is there", point->hasProperty(property(name)), true);
    for (const char* name : {"z", "", "X", "xx", "unit"}) {
        expectEqual("hasProperty of one that is not there", point->hasProperty(property(name)), false);
        expectThrows("getProperty of one that is not there", [&] { point->getProperty(property(name)); });
        expectThrows("getPropertyReference of one that is not there",
                     [&] { Owned<ReferenceImpl>(point->getPropertyReference(property(name))); });
    }
    fv::VexaPropertyIdentifier moved("x");
    const fv::VexaPropertyIdentifier taken = std::move(moved);
    expectEqual("hasProperty of an identifier that was moved from", point->hasProperty(moved), false);
    expectThrows("getProperty of an identifier that was moved from", [&] { point->getProperty(moved); });
    expectEqual("hasProperty of the one that was moved to", point->hasProperty(taken), true);
    expectEqual("property x", valueOf(*point, "x"), 1.0);
    expectEqual("property y", valueOf(*point, "y"), 2.0);
    expectEqual("getExternalRepresentationPropertyNames", point->getExternalRepresentationPropertyNames(),
                {"x", "y"});
    expectPoint("the class of an object", point->getClassInfo());
    const auto fresh =
        adopt(backend.factory().createValueObjectImpl(pointClass(backend).get()), "createValueObjectImpl");
    expect(fresh->getProperty(property("x")) != nullptr, "getProperty of a new object returns null");
}

using Walk = ForwardIteratorImpl* (ClassInfoImpl::*)() const;

/// The identifiers between two iterators of a class, as handles have them.
Identifiers identifiersOf(const ClassInfoImpl& description, Walk begin, Walk last) {
    Identifiers ids;
    const auto end = adopt((description.*last)(), "end");
    for (const auto here = adopt((description.*begin)(), "begin"); !here->equal(end.get()); here->increment())
        ids.emplace_back(here->get());
    return ids;
}
Identifiers propertiesOf(const ClassInfoImpl& description) {
    return identifiersOf(description, &ClassInfoImpl::beginProperties, &ClassInfoImpl::endProperties);
}
Identifiers arrayPropertiesOf(const ClassInfoImpl& description) {
    return identifiersOf(description, &ClassInfoImpl::beginArrayProperties,
                         &ClassInfoImpl::endArrayProperties);
}

/// A family of classes: superclasses with namesakes, a class that redefines one, one that is reached in two ways.
std::vector<std::pair<std::string, Owned<ClassInfoImpl>>> familyOfClasses(const Backend& backend) {
    const Texts xy{"x", "y"};
    std::vector<std::pair<std::string, Owned<ClassInfoImpl>>> all;
    const auto add = [&](const char* name, const Texts& own, const std::vector<std::size_t>& above) {
        std::vector<fv::ClassInfo> infos;
        for (const std::size_t k : above)
            infos.emplace_back(share(*all[k].second).detach());
        auto made = newClass(backend, name, own, own, infos);
        all.emplace_back(name, std::move(made));
    };
    add("Point", xy, {});
    add("Pixel", xy, {});
    add("Dot", {"y", "z"}, {0, 1});        // two of each name, and a third y
    add("Mark", {"w"}, {0});               // names of one superclass only
    add("Stamp", {}, {2, 3});              // Point twice
    add("Label", {"text", "x", "a"}, {3}); // redefines x
    return all;
}

/// Each means the property that it names, whoever made it: those of the class, the like with the same names, those of a
/// superclass.
void expectEachItsOwn(const std::string& what, const Identifiers& ids,
                      const std::function<std::string(const fv::VexaPropertyIdentifier&)>& valueAt,
                      const std::function<bool(const fv::VexaPropertyIdentifier&)>& has,
                      const std::vector<std::pair<std::string, Identifiers>>& ofSuperclasses) {
    const auto qualifierOf = [](const fv::VexaPropertyIdentifier& id) {
        return fv::detail::Access::impl(id)->className();
    };
    for (std::size_t k = 0; k < ids.size(); ++k) {
        const std::string wanted = "1x1 double [" + show(k) + "]";
        const std::string name = ids[k].getPropertyName();
        const auto expectFound = [&](const fv::VexaPropertyIdentifier& id, const std::string& how) {
            const std::string of = " of " + what + ", of " + ids[k].getExternalPropertyName() + how;
            expectEqual("the property" + of, valueAt(id), wanted);
            expectEqual("whether the property" + of + " is there", has(id), true);
        };
        expectFound(ids[k], ", which its class names");
        const bool alone = std::count_if(ids.begin(), ids.end(), [&](const auto& other) {
                               return other.getPropertyName() == name;
                           }) == 1;
        if (alone) expectFound(property(name), " by its name alone, which no other has");
        const std::string qualifier = qualifierOf(ids[k]);
        if (!qualifier.empty())
            expectFound(fv::VexaPropertyIdentifier(qualifier, name),
                        " by the names of its class and its own");
        for (const auto& [superclass, theirs] : ofSuperclasses)
            for (const auto& id : theirs)
                if (id.getPropertyName() == name && qualifierOf(id).empty() && qualifier == superclass)
                    expectFound(id, ", which the superclass " + superclass + " names");
        expectEqual("whether the property Nowhere." + name + " of " + what + " is there",
                    has(fv::VexaPropertyIdentifier("Nowhere", name)), false);
        expectThrows("the property Nowhere." + name + " of " + what,
                     [&] { valueAt(fv::VexaPropertyIdentifier("Nowhere", name)); });
    }
}

/// A subclass names the properties of all its superclasses, or of none.
void expectAllOrNone(const std::string& what, const Identifiers& ids, const Identifiers& above,
                     const std::string& superclass) {
    std::size_t found = 0;
    for (const auto& wanted : above)
        for (const auto& id : ids)
            if (id.getPropertyName() == wanted.getPropertyName() &&
                fv::detail::Access::impl(id)->className() ==
                    (fv::detail::Access::impl(wanted)->className().empty()
                         ? superclass
                         : fv::detail::Access::impl(wanted)->className())) {
                ++found;
                break;
            }
    expect(found == 0 || found == above.size(), what + " names " + show(found) + " of the " +
                                                    show(above.size()) + " properties of its superclass " +
                                                    superclass);
}

void inheritedProperties(Backend& backend) {
    auto classes = familyOfClasses(backend);
    std::vector<std::pair<std::string, Identifiers>> named, namedOfArrays;
    std::vector<fv::ClassInfo> infos; // which link their identifiers
    for (const auto& [name, description] : classes) {
        infos.emplace_back(share(*description).detach());
        named.emplace_back(name, propertiesOf(*description));
        namedOfArrays.emplace_back(name, arrayPropertiesOf(*description));
    }
    const std::vector<std::vector<std::size_t>> above{{}, {}, {0, 1}, {0}, {2, 3}, {3}};
    for (std::size_t k = 0; k < classes.size(); ++k) {
        const std::string& name = classes[k].first;
        for (const std::size_t one : above[k]) {
            expectAllOrNone("the class " + name, named[k].second, named[one].second, named[one].first);
            expectAllOrNone("the class " + name + " for its arrays", namedOfArrays[k].second,
                            namedOfArrays[one].second, named[one].first);
        }
        const auto object =
            adopt(backend.factory().createValueObjectImpl(classes[k].second.get()), "createValueObjectImpl");
        const Identifiers& ids = named[k].second;
        expectEqual("numOfProperties of an object of " + name, object->numOfProperties(), ids.size());
        for (std::size_t n = 0; n < ids.size(); ++n)
            adopt(object->getPropertyReference(ids[n]), "getPropertyReference")
                ->setArray(scalar(backend, static_cast<double>(n)).get());
        expectEachItsOwn(
            "an object of " + name, ids, [&](const auto& id) { return shownArray(*object->getProperty(id)); },
            [&](const auto& id) { return object->hasProperty(id); }, named);
        if (!backend.offers("object-array")) continue;
        const auto array =
            adopt(backend.factory().createValueObjectArrayImpl({1, 1}, classes[k].second.get()),
                  "createValueObjectArrayImpl");
        ObjectArrayImpl& objects = asObjects(*array);
        const Identifiers& ofArray = namedOfArrays[k].second;
        expectEqual("numOfArrayProperties of an array of " + name, objects.numOfArrayProperties(),
                    ofArray.size());
        for (std::size_t n = 0; n < ofArray.size(); ++n)
            adopt(objects.getArrayPropertyReference(ofArray[n]), "getArrayPropertyReference")
                ->setArray(scalar(backend, static_cast<double>(n)).get());
        expectEachItsOwn(
            "an array of " + name, ofArray,
            [&](const auto& id) {
                const fv::Array value = objects.getArrayProperty(id);
                return shownArray(*fv::detail::Access::impl(value));
            },
            [&](const auto& id) { return objects.hasArrayProperty(id); }, namedOfArrays);
    }
}

/// Two superclasses of each class, both below the same two: as many ways to the top as 2 to the power of the steps.
void superclassesInManyWays(Backend& backend) {
    std::vector<fv::ClassInfo> above;
    for (std::size_t step = 0; step < 60; ++step) {
        std::vector<fv::ClassInfo> next;
        for (const char* side : {"Left", "Right"})
            next.emplace_back(newClass(backend, std::string(side).append(std::to_string(step)),
                                       {std::string("p").append(std::to_string(step))}, {}, above)
                                  .detach());
        above = std::move(next);
    }
    const auto last = newClass(backend, "Last", {"own"}, {}, above);
    expectEqual("the name of a class below many", nameOfClass(*last), "Last");
    const auto object = adopt(backend.factory().createValueObjectImpl(last.get()), "createValueObjectImpl");
    setProperty(*object, "own", *scalar(backend, 5));
    expectEqual("the own property of an object of a class below many", valueOf(*object, "own"), 5.0);
}

/// Every letter and digit, in every place of a name that counts its letters in words.
void namesOfAllLetters(Backend& backend) {
    Texts names;
    for (const char* range : {"az", "AZ"})
        for (char letter = range[0]; letter <= range[1]; ++letter) {
            names.emplace_back(1, letter);
            names.push_back(std::string("n").append(1, letter));
        }
    for (char digit = '0'; digit <= '9'; ++digit)
        names.push_back(std::string("n").append(1, digit));
    names.emplace_back("n_");
    names.emplace_back("n_n9Z");
    const auto description = newClass(backend, "Letters", names, names);
    const auto object =
        adopt(backend.factory().createValueObjectImpl(description.get()), "createValueObjectImpl");
    for (std::size_t k = 0; k < names.size(); ++k)
        setProperty(*object, names[k], *scalar(backend, static_cast<double>(k)));
    for (std::size_t k = 0; k < names.size(); ++k)
        expectEqual("property " + names[k], valueOf(*object, names[k]), static_cast<double>(k));
}

/// Values of all kinds, of other back-ends too, stored and replaced one by one.
void storesValues(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    const auto other = foreign(scalar(backend, 7));
    setProperty(*point, "x", *other);
    expectEqual("an object with a value of another back-end", shownObject(*point),
                "x=1x1 double [7], y=1x1 double [2]");
    setProperty(*point, "y", *emptyArray());
    expectEqual("an object with an empty value", shownObject(*point), "x=1x1 double [7], y=empty");
    setProperty(*point, "x", *backend.zeros<double>({2, 2}));
    expectEqual("an object with another value", shownObject(*point), "x=2x2 double [0, 0, 0, 0], y=empty");
    expectOneReference("an array of another back-end that was replaced in a property", *other);
    const auto first = adopt(point->getPropertyReference(property("x")), "getPropertyReference");
    const auto second = adopt(point->getPropertyReference(property("y")), "getPropertyReference");
    expectOneReference("a reference to a property", *first);
    first->setArray(scalar(backend, 3).get());
    second->setArray(scalar(backend, 4).get());
    expectEqual("an object after writes through two references", shownObject(*point),
                "x=1x1 double [3], y=1x1 double [4]");
    for (const auto& [chain, wanted] : {std::pair{first.get(), 3.0}, {second.get(), 4.0}}) {
        ArrayImpl* value = chain->getElementArray(false);
        expect(value != nullptr && scalarValue(*value) == wanted,
               "the reference to a property gives another array");
    }
}

void propertyIterators(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    expectSequence({"the properties of an object", [&] { return point->begin(); },
                    [&] { return point->end(); }, &nameOfProperty},
                   {"x", "y"});
    expectSequence({"the properties of a constant object", [&] { return point->cbegin(); },
                    [&] { return point->cend(); }, &nameOfProperty},
                   {"x", "y"});
    const auto here = adopt(point->begin(), "begin");
    const auto first = adopt(here->get(), "get of an iterator");
    here->increment();
    const auto second = adopt(here->get(), "get of an iterator");
    const auto* identifier = typed<PropertyImpl>(*first).getIdentifier();
    expectEqual("getValue of the first property", scalarValue(*typed<PropertyImpl>(*first).getValue()), 1.0);
    expectEqual("getValue of the second property", scalarValue(*typed<PropertyImpl>(*second).getValue()),
                2.0);
    adopt(typed<PropertyImpl>(*second).getReference(), "getReference")->setArray(scalar(backend, 5).get());
    adopt(typed<PropertyImpl>(*first).getReference(), "getReference")->setArray(scalar(backend, 6).get());
    expectEqual("an object after writes through its properties", shownObject(*point),
                "x=1x1 double [6], y=1x1 double [5]");
    expectEqual("getValue of the first property after a write",
                scalarValue(*typed<PropertyImpl>(*first).getValue()), 6.0);
    expectEqual("an identifier that a property lent", identifier->getPropertyName(), "x");
    expectOneReference("an object after walks over its properties", *point);
}

/// Each property alone, on either side, through references and iterators.
void copiesOfObjects(Backend& backend) {
    for (const bool writeCopy : {false, true})
        for (const char* name : {"x", "y"})
            for (const bool byIterator : {false, true}) {
                auto point = newPoint(backend, 1, 2);
                auto copy = adopt(point->sharedCopy(), "sharedCopy of an object");
                expectOneReference("a copy of an object", *copy);
                const std::string before = shownObject(*point);
                expectEqual("a copy of an object", shownObject(*copy), before);
                expectEqual("the class of a copy", copy->getClassInfo().getClassIdentifier().getString(),
                            "Point");
                ObjectImpl& written = writeCopy ? *copy : *point;
                if (byIterator) {
                    const auto here = adopt(written.begin(), "begin");
                    if (*name == 'y') here->increment();
                    const auto one = adopt(here->get(), "get");
                    const auto chain = adopt(typed<PropertyImpl>(*one).getReference(), "getReference");
                    write(asNumbers<double>(*chain->getElementArray(true)), 0, 10.0);
                } else
                    setProperty(written, name, *scalar(backend, 10));
                const std::string after =
                    " after a write to property " + std::string(name) + " of the other one";
                expectEqual("an object" + after, shownObject(writeCopy ? *point : *copy), before);
                expectEqual("property " + std::string(name) + " that was written", valueOf(written, name),
                            10.0);
                (writeCopy ? point : copy).reset();
                expectEqual("property " + std::string(name) + " with the other object gone",
                            valueOf(written, name), 10.0);
            }
}

void balanceOfProperties(Backend& backend) {
    const auto held = scalar(backend, 1);
    auto point = newPoint(backend, 1, 2);
    setProperty(*point, "x", *held);
    const std::uint64_t before = held->referenceCount();
    for (int k = 0; k < 3; ++k)
        point->getProperty(property("x"));
    const auto here = adopt(point->begin(), "begin");
    typed<PropertyImpl>(*adopt(here->get(), "get")).getValue();
    adopt(typed<PropertyImpl>(*adopt(here->get(), "get")).getReference(), "getReference")
        ->getElementArray(false);
    adopt(point->getPropertyReference(property("x")), "getPropertyReference")->getElementArray(false);
    expectEqual("the reference count of an array in a property, which grows with reading,",
                held->referenceCount(), before);
    {
        const std::shared_ptr<ArrayImpl> value = point->getProperty(property("x"));
        setProperty(*point, "x", *scalar(backend, 3));
        expectEqual("a value that getProperty gave, after the property was replaced", scalarValue(*value),
                    1.0);
    }
    expectOneReference("an array that was replaced in its property", *held);
    setProperty(*point, "x", *held);
    auto copy = adopt(point->sharedCopy(), "sharedCopy of an object");
    point.reset();
    expectEqual("property x of the copy of an object that is gone", valueOf(*copy, "x"), 1.0);
    copy.reset();
    expectOneReference("an array after the objects that held it have gone", *held);
}

void membersOfEnumerations(Backend& backend) {
    for (const std::string& member : {std::string("Red"), std::string("G"), std::string(100, 'm')}) {
        const auto object = adopt(backend.factory().createEnumerationObjectImpl("Colors", member),
                                  "createEnumerationObjectImpl");
        const auto second = adopt(backend.factory().createEnumerationObjectImpl("Sizes", "Small"),
                                  "createEnumerationObjectImpl");
        const auto third = adopt(backend.factory().createEnumerationObjectImpl("Colours", member),
                                 "createEnumerationObjectImpl");
        expectEqual("the class of a member that is called as one of another class",
                    third->getClassInfo().getClassIdentifier().getString(), "Colours");
        const auto copy = adopt(object->sharedCopy(), "sharedCopy of an enumeration object");
        const char* name = object->getEnumerationName();
        const char* other = second->getEnumerationName();
        const char* ofCopy = copy->getEnumerationName();
        expect(name != nullptr && other != nullptr && ofCopy != nullptr, "getEnumerationName returns null");
        expectEqual("getEnumerationName", std::string(name), member);
        expectEqual("getEnumerationName of another object", std::string(other), "Small");
        expectEqual("getEnumerationName of a copy", std::string(ofCopy), member);
        expectEqual("the class of an enumeration object",
                    object->getClassInfo().getClassIdentifier().getString(), "Colors");
        expectEqual("the class of another one", second->getClassInfo().getClassIdentifier().getString(),
                    "Sizes");
    }
}

// --- references to properties, in objects and in arrays of them

using Reference = std::function<Owned<ReferenceImpl>()>;

/// A chain leads into a cell array that holds the value: before and after it is replaced, whatever its kind.
void expectElementOfCells(const Backend& backend, const std::string& operation, const Reference& reference) {
    const std::string what = "the array of what " + operation + " returns";
    const auto other = foreign(scalar(backend, 7));
    const auto wide = backend.zeros<double>({2, 3});
    for (ArrayImpl* value :
         {static_cast<ArrayImpl*>(nullptr), other.get(), static_cast<ArrayImpl*>(wide.get())}) {
        if (value != nullptr) reference()->setArray(value);
        const auto chain = reference();
        ArrayImpl* array = chain->getArrayImpl();
        expect(array != nullptr, what + " is null");
        expectEqual("getType of " + what, array->getType(), ArrayType::CELL);
        expect(array->getArrayID() != 0, "getArrayID of " + what + " is 0");
        expectEqual("distanceTo from begin to end of " + what, beginOf(*array)->distanceTo(*endOf(*array)),
                    static_cast<std::int64_t>(array->getNumberOfElements()));
        expectEqual("isEmpty of " + what, array->isEmpty(), false);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy of " + what);
        expectEqual("isEqual of " + what + " and its copy", array->isEqual(copy.get()), true);
        ArrayImpl* held = chain->getElementArray(false);
        expect(held != nullptr, "getElementArray of what " + operation + " returns is null");
        if (value != nullptr)
            expectEqual("getElementArray of what " + operation + " returns", shownArray(*held),
                        shownArray(*value));
    }
}

void referencesToProperties(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    for (const std::size_t k : {0U, 1U}) {
        expectElementOfCells(backend, "getPropertyReference", [&] {
            return adopt(point->getPropertyReference(property(k == 0 ? "x" : "y")), "getPropertyReference");
        });
        expectElementOfCells(backend, "getReference of a property", [&] {
            const auto here = adopt(point->begin(), "begin");
            if (k == 1) here->increment();
            const auto one = adopt(here->get(), "get of an iterator");
            return adopt(typed<PropertyImpl>(*one).getReference(), "getReference of a property");
        });
    }
}

/// Each property that the walk passes refuses each way to write to it.
void expectRefusals(const Backend& backend, const std::string& operation,
                    const std::function<ForwardIteratorImpl*()>& begin,
                    const std::function<ForwardIteratorImpl*()>& last) {
    const auto value = scalar(backend, 5);
    const auto end = adopt(last(), "end");
    for (const auto here = adopt(begin(), operation); !here->equal(end.get()); here->increment()) {
        const auto one = adopt(here->get(), "get of an iterator");
        const auto chain = adopt(typed<PropertyImpl>(*one).getReference(), "getReference of a property");
        const auto refused = [&](const char* way, const std::function<void()>& write) {
            const std::string what = way + (" through getReference of a property from " + operation);
            expectThrows<fv::CantAssignArrayToThisArrayException>(what, "CantAssignArrayToThisArrayException",
                                                                  write);
        };
        refused("setArray", [&] { chain->setArray(value.get()); });
        refused("prepareForWrite", [&] { chain->prepareForWrite(); });
        refused("getElementArray for writing", [&] { chain->getElementArray(true); });
        refused("createReference for writing", [&] { chain->createReference(true, false); });
        ArrayImpl& cell = *chain->getArrayImpl();
        refused("unshare of the array", [&] { cell.unshare(); });
        refused("createElementReference for writing",
                [&] { Owned<ReferenceImpl>(cell.createElementReference(0, {}, true)); });
        refused("assignElementArray", [&] { cell.assignElementArray(0, {}, value.get()); });
        const std::string held = shownArray(*typed<PropertyImpl>(*one).getValue());
        const std::string of = " through getReference of a property from " + operation;
        expectEqual("getElementArray for reading" + of, shownArray(*chain->getElementArray(false)), held);
        expectEqual("createElementReference for reading" + of, shownElementArray(cell, 0, {}), held);
    }
    expectOneReference("an array whose storing was refused", *value);
}

void readOnlyWalks(Backend& backend) {
    auto point = newPoint(backend, 1, 2);
    for (const char* which : {"an object", "a copy of an object"}) {
        expectRefusals(
            backend, "cbegin", [&] { return std::as_const(*point).cbegin(); },
            [&] { return std::as_const(*point).cend(); });
        expectEqual(which + std::string(" after writes that were refused"), shownObject(*point),
                    "x=1x1 double [1], y=1x1 double [2]");
        point = adopt(point->sharedCopy(), "sharedCopy of an object");
    }
}

// --- arrays

Owned<ArrayImpl> points(const Backend& backend, const Dimensions& dimensions = {1, 2}) {
    const auto description = pointClass(backend);
    return adopt(backend.factory().createValueObjectArrayImpl(dimensions, description.get()),
                 "createValueObjectArrayImpl");
}

void balanceOfObjects(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    auto array = points(backend);
    for (const bool byValue : {false, true}) {
        if (byValue)
            asObjects(*array).setElementValue(0, {}, fv::HandleObjectRef(share(*point).detach()));
        else
            asObjects(*array).setElementObject(0, point.get());
        const auto object = adopt(asObjects(*array).getElementObject(0), "getElementObject");
        expectEqual("property y of the object that was stored", valueOf(*object, "y"), 2.0);
        const std::uint64_t count = object->referenceCount();
        adopt(asObjects(*array).getElementObject(0), "getElementObject");
        asObjects(*array).getElementProperty(0, property("x"));
        asObjects(*array).getElementAddress(0, {}, false);
        expect(object->referenceCount() == count,
               "the reference count of an object grows with each getElementObject");
    }
    asObjects(*array).setElementObject(0, point.get());
    asObjects(*array).setElementObject(1, point.get());
    asObjects(*array).setElementObject(0, newPoint(backend, 3, 4).get());
    auto copy = adopt(array->sharedCopy(), "sharedCopy");
    array.reset();
    expectEqual("an object in the copy of an array that is gone",
                shownObject(*adopt(asObjects(*copy).getElementObject(1), "getElementObject")),
                "x=1x1 double [1], y=1x1 double [2]");
    copy.reset();
    expectOneReference("an object after the array that held it has gone", *point);
}

void arrayDescribesItself(Backend& backend) {
    eachSubject(backend, [](Subject& subject) {
        if (subject.model.sample().name == "object-array")
            expectPoint("the class of a " + subject.what, asObjects(*subject.array).getClassInfo());
    });
    for (const Dimensions& dimensions : {Dimensions{1, 2}, {0, 0}, {2, 3}}) {
        const auto array = points(backend, dimensions);
        const ObjectArrayImpl& objects = asObjects(*array);
        expectPoint("the class of an object array", objects.getClassInfo());
        for (std::size_t k = 0; k < array->getNumberOfElements(); ++k)
            if (const Owned<ObjectImpl> object(objects.getElementObject(k)); object != nullptr)
                expectPoint("the class of a new element", object->getClassInfo());
        expectEqual("isHeterogeneous of an array of one class", objects.isHeterogeneous(), false);
        expectEqual("isExternalDimensionsSet of a new array", objects.isExternalDimensionsSet(), false);
        expectEqual("getExternalRepresentationArrayPropertyNames",
                    objects.getExternalRepresentationArrayPropertyNames(), {"unit"});
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        expectEqual("the class of a copy of an object array",
                    asObjects(*copy).getClassInfo().getClassIdentifier().getString(), "Point");
    }
}

/// Arrays that were made without a class take objects of any.
void classesMixed(Backend& backend) {
    const auto array = backend.array(ArrayType::VALUE_OBJECT, {1, 3});
    ObjectArrayImpl& objects = asObjects(*array);
    for (std::size_t k = 0; k < 3; ++k) {
        expect(Owned<ObjectImpl>(objects.getElementObject(k)) == nullptr,
               "getElementObject of an element that holds no object is not null");
        expectSequence({"the properties of an element that holds no object",
                        [&] { return objects.beginElementProperties(k); },
                        [&] { return objects.endElementProperties(k); }, &nameOfProperty},
                       {});
    }
    const auto pixel = newClass(backend, "Pixel", {"depth"});
    objects.setElementObject(0, newPoint(backend, 1, 2).get());
    objects.setElementObject(1, newPoint(backend, 3, 4).get());
    expectEqual("isHeterogeneous of an array with objects of one class", objects.isHeterogeneous(), false);
    expectEqual("the class of an array with objects of one class",
                objects.getClassInfo().getClassIdentifier().getString(), "Point");
    objects.setElementObject(
        2, adopt(backend.factory().createValueObjectImpl(pixel.get()), "createValueObjectImpl").get());
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    for (ArrayImpl* one : {array.get(), copy.get()}) {
        expectEqual("isHeterogeneous of an array with objects of two classes",
                    asObjects(*one).isHeterogeneous(), true);
        asObjects(*one).setElementObject(2, newPoint(backend, 5, 6).get());
        expectEqual("isHeterogeneous after the one of another class is replaced",
                    asObjects(*one).isHeterogeneous(), false);
    }
    expectEqual("the object at element 1",
                shownObject(*adopt(objects.getElementObject(1), "getElementObject")),
                "x=1x1 double [3], y=1x1 double [4]");
}

/// Elements that hold no object, an object, members of enumerations: each is equal to the like alone.
void elementsCompared(Backend& backend) {
    std::vector<std::pair<std::string, std::function<Owned<ObjectImpl>()>>> elements{
        {"no object", [] { return Owned<ObjectImpl>(); }},
        {"an object", [&] { return newPoint(backend, 1, 2); }}};
    for (const auto& [name, member] : {std::pair{"Colors", "Red"}, {"Colors", "Green"}, {"Colours", "Red"}})
        if (backend.offers("enumeration-object"))
            elements.emplace_back(
                std::string(name).append(".").append(member), [&backend, name = name, member = member] {
                    return adopt(backend.factory().createEnumerationObjectImpl(name, member),
                                 "createEnumerationObjectImpl");
                });
    const auto ofClass = [&](const char* name, const Texts& names) {
        elements.emplace_back(std::string("a ") + name, [&backend, name, names] {
            auto object = adopt(backend.factory().createValueObjectImpl(newClass(backend, name, names).get()),
                                "createValueObjectImpl");
            for (std::size_t k = 0; k < names.size(); ++k)
                setProperty(*object, names[k], *scalar(backend, static_cast<double>(k + 1)));
            return object;
        });
    };
    ofClass("Pixel", {"depth"});
    ofClass("Voxel", {"x", "y", "z"});
    ofClass("Nothing", {});
    if (backend.offers("handle-object"))
        for (const auto engine : std::array<unsigned char, 2>{1, 2})
            for (const long id : {3L, 4L})
                elements.emplace_back(
                    "object " + show(id) + " of engine " + show(engine), [&backend, engine, id] {
                        return adopt(backend.factory().createHandleObjectRefImpl({{0, engine}}, id),
                                     "createHandleObjectRefImpl");
                    });
    const auto arrayOf = [&](const auto& element, bool ofAnother = false) {
        auto array = backend.array(ArrayType::VALUE_OBJECT, {1, 2});
        if (Owned<ObjectImpl> object = element()) {
            if (ofAnother) object = foreignObject(std::move(object));
            asObjects(*array).setElementObject(1, object.get());
        }
        return array;
    };
    for (const auto& [what, element] : elements)
        for (const auto& [otherwise, other] : elements) {
            const std::string of = "isEqual of arrays that hold " + what + " and " + otherwise;
            backend.step(of);
            expectEqual(of, arrayOf(element)->isEqual(arrayOf(other).get()), what == otherwise);
            expectEqual(of + ", the second array of another back-end",
                        arrayOf(element)->isEqual(foreign(arrayOf(other)).get()), what == otherwise);
            expectEqual(of + ", the second object of another back-end",
                        arrayOf(element)->isEqual(arrayOf(other, true).get()), what == otherwise);
            expectEqual(of + ", the first object of another back-end",
                        arrayOf(element, true)->isEqual(arrayOf(other).get()), what == otherwise);
        }
}

/// It answers, with an error or a value.
void propertyOfNoObject(Backend& backend) {
    const auto array = backend.array(ArrayType::VALUE_OBJECT, {1, 2});
    backend.step("getElementProperty of an element that holds no object");
    try {
        asObjects(*array).getElementProperty(1, property("x"));
    } catch (...) {}
    expectOneReference("an object array that was asked for a property of no object", *array);
}

/// An array that was made for a class refuses others, or says that it has them.
void objectsOfAnotherClass(Backend& backend) {
    const auto pixel = newClass(backend, "Pixel", {"depth"});
    for (const bool byValue : {false, true}) {
        const auto array = points(backend);
        const auto object =
            adopt(backend.factory().createValueObjectImpl(pixel.get()), "createValueObjectImpl");
        asObjects(*array).setElementObject(0, newPoint(backend, 1, 2).get());
        try {
            if (byValue)
                asObjects(*array).setElementValue(1, {}, fv::HandleObjectRef(share(*object).detach()));
            else
                asObjects(*array).setElementObject(1, object.get());
        } catch (...) {
            expectOneReference("an object that was refused", *object);
            continue;
        }
        expectEqual("isHeterogeneous of an array that took an object of another class",
                    asObjects(*array).isHeterogeneous(), true);
    }
}

/// Read and walked by element, with the objects of several elements held at once.
void elementsOfArrays(Backend& backend) {
    const auto array = points(backend, {2, 3});
    ObjectArrayImpl& objects = asObjects(*array);
    for (std::size_t k = 0; k < 6; ++k)
        objects.setElementObject(
            k, newPoint(backend, static_cast<double>(k), static_cast<double>(10 * k)).get());
    std::vector<Owned<ObjectImpl>> held;
    for (std::size_t k = 0; k < 6; ++k)
        held.push_back(adopt(objects.getElementObject(k), "getElementObject"));
    for (std::size_t k = 0; k < 6; ++k) {
        const auto value = static_cast<double>(k);
        const std::string wanted =
            "x=1x1 double [" + show(value) + "], y=1x1 double [" + show(10 * value) + "]";
        expectEqual("the object at element " + show(k) + ", held with all others", shownObject(*held[k]),
                    wanted);
        const fv::HandleObjectRef* address = objects.getElementAddress(k, {}, false);
        if (address != nullptr)
            expectEqual("the object at getElementAddress(" + show(k) + ")",
                        shownObject(*fv::detail::Access::impl(*address)), wanted);
        fv::Array y = objects.getElementProperty(k, property("y"));
        expectEqual("getElementProperty(" + show(k) + ", y)", scalarValue(*fv::detail::Access::impl(y)),
                    10 * value);
        expectThrows("getElementProperty of one that is not there",
                     [&] { objects.getElementProperty(k, property("z")); });
    }
    held.clear();
    const fv::HandleObjectRef* first = objects.getTypedDataPtr();
    expect(first != nullptr &&
               scalarValue(*fv::detail::Access::impl(first[5])->getProperty(property("x"))) == 5,
           "getTypedDataPtr()[5] is not the object at element 5");
    for (const std::size_t k : {0U, 5U})
        expectSequence({"the properties of element " + show(k),
                        [&] { return objects.beginElementProperties(k); },
                        [&] { return objects.endElementProperties(k); }, &nameOfProperty},
                       {"x", "y"});
    for (std::size_t k = 0; k < 6; ++k) {
        const auto here = adopt(objects.beginElementProperties(k), "beginElementProperties");
        for (const double wanted : {static_cast<double>(k), static_cast<double>(10 * k)}) {
            const auto one = adopt(here->get(), "get of an iterator");
            expectEqual("getValue of a property of element " + show(k),
                        scalarValue(*typed<PropertyImpl>(*one).getValue()), wanted);
            here->increment();
        }
    }
}

/// One object in several elements, and held by somebody else: a write through one element's properties
/// changes that one.
void sharedObjects(Backend& backend) {
    const bool byScalar = backend.offers("object-scalar");
    for (std::size_t written = 0; written < (byScalar ? 5U : 4U); ++written) {
        if (written > 2) { // an array of one
            const auto point = newPoint(backend, 1, 2);
            const auto one = written == 4 ? adopt(backend.factory().createValueObjectScalarImpl(point.get()),
                                                  "createValueObjectScalarImpl")
                                          : points(backend, {1, 1});
            asObjects(*one).setElementObject(0, point.get());
            const auto here = adopt(asObjects(*one).beginElementProperties(0), "beginElementProperties");
            const auto first = adopt(here->get(), "get");
            adopt(typed<PropertyImpl>(*first).getReference(), "getReference")
                ->setArray(scalar(backend, 9).get());
            expectEqual("an object after a write through the one element that holds it too",
                        shownObject(*point), "x=1x1 double [1], y=1x1 double [2]");
            continue;
        }
        const auto array = points(backend, {1, 3});
        ObjectArrayImpl& objects = asObjects(*array);
        const auto point = newPoint(backend, 1, 2);
        for (std::size_t k = 0; k < 3; ++k)
            objects.setElementObject(k, point.get());
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        const auto here = adopt(objects.beginElementProperties(written), "beginElementProperties");
        const auto one = adopt(here->get(), "get");
        const auto chain = adopt(typed<PropertyImpl>(*one).getReference(), "getReference");
        write(asNumbers<double>(*chain->getElementArray(true)), 0, 9.0);
        Contents wanted(3, "x=1x1 double [1], y=1x1 double [2]");
        expectContents("a copy after a write through the properties of an element", *copy, wanted);
        expectEqual("an object after a write through an element that holds it too", shownObject(*point),
                    wanted[0]);
        wanted[written] = "x=1x1 double [9], y=1x1 double [2]";
        expectContents("an object array of which one object was written", *array, wanted);
    }
}

void arrayProperties(Backend& backend) {
    const auto description = newClass(backend, "Track", {"x"}, {"unit", "label"});
    const auto make = [&] {
        return adopt(backend.factory().createValueObjectArrayImpl({1, 2}, description.get()),
                     "createValueObjectArrayImpl");
    };
    const auto array = make();
    ObjectArrayImpl& objects = asObjects(*array);
    const auto valueAt = [](ArrayImpl& one, const char* name) {
        fv::Array value = asObjects(one).getArrayProperty(property(name));
        return shownArray(*fv::detail::Access::impl(value));
    };
    expectEqual("numOfArrayProperties", objects.numOfArrayProperties(), 2);
    for (const char* name : {"unit", "label"})
        expectEqual("hasArrayProperty of one that is there", objects.hasArrayProperty(property(name)), true);
    for (const char* name : {"x", "units", ""}) {
        expectEqual("hasArrayProperty of one that is not there", objects.hasArrayProperty(property(name)),
                    false);
        expectThrows("getArrayProperty of one that is not there",
                     [&] { objects.getArrayProperty(property(name)); });
        expectThrows("getArrayPropertyReference of one that is not there",
                     [&] { Owned<ReferenceImpl>(objects.getArrayPropertyReference(property(name))); });
    }
    const auto set = [&](ArrayImpl& one, const char* name, double value) {
        adopt(asObjects(one).getArrayPropertyReference(property(name)), "getArrayPropertyReference")
            ->setArray(scalar(backend, value).get());
    };
    set(*array, "unit", 8);
    set(*array, "label", 9);
    expectEqual("getArrayProperty(unit) after a write", valueAt(*array, "unit"), "1x1 double [8]");
    expectEqual("getArrayProperty(label) after a write", valueAt(*array, "label"), "1x1 double [9]");
    expectSequence({"the array properties", [&] { return objects.beginArrayProp(); },
                    [&] { return objects.endArrayProp(); }, &nameOfProperty},
                   {"unit", "label"});
    expectSequence({"the array properties of a constant array", [&] { return objects.cbeginArrayProp(); },
                    [&] { return objects.cendArrayProp(); }, &nameOfProperty},
                   {"unit", "label"});
    expectEqual("getExternalRepresentationArrayPropertyNames",
                objects.getExternalRepresentationArrayPropertyNames(), {"unit", "label"});
    for (const char* name : {"unit", "label"}) {
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        expect(objects.isEqualArrayProperties(copy.get()) &&
                   asObjects(*copy).isEqualArrayProperties(array.get()),
               "isEqualArrayProperties of those of a copy is false");
        set(*copy, name, 90);
        expectEqual("an array property after a write to a copy", valueAt(*array, name),
                    *name == 'u' ? "1x1 double [8]" : "1x1 double [9]");
        expectEqual("an array property of a copy after a write", valueAt(*copy, name), "1x1 double [90]");
        expect(!objects.isEqualArrayProperties(copy.get()) &&
                   !asObjects(*copy).isEqualArrayProperties(array.get()),
               "isEqualArrayProperties of different ones is true");
    }
    const auto other = make();
    expect(!objects.isEqualArrayProperties(other.get()), "isEqualArrayProperties of different ones is true");
    set(*other, "unit", 8);
    set(*other, "label", 9);
    expect(objects.isEqualArrayProperties(other.get()), "isEqualArrayProperties of equal ones is false");
}

void referencesToArrayProperties(Backend& backend) {
    const auto array = points(backend);
    ObjectArrayImpl& objects = asObjects(*array);
    expectElementOfCells(backend, "getArrayPropertyReference", [&] {
        return adopt(objects.getArrayPropertyReference(property("unit")), "getArrayPropertyReference");
    });
    expectElementOfCells(backend, "getReference of an array property", [&] {
        const auto one =
            adopt(adopt(objects.beginArrayProp(), "beginArrayProp")->get(), "get of an iterator");
        return adopt(typed<PropertyImpl>(*one).getReference(), "getReference of an array property");
    });
}

void readOnlyWalksOfArrays(Backend& backend) {
    const auto array = points(backend);
    const ObjectArrayImpl& objects = asObjects(*array);
    expectRefusals(
        backend, "cbeginArrayProp", [&] { return objects.cbeginArrayProp(); },
        [&] { return objects.cendArrayProp(); });
}

/// Handles of object arrays compare without a test of dimensions before. New objects and one object
/// everywhere: the dimensions alone differ, in the number of elements, in their order, in the number of
/// dimensions.
void otherDimensions(Backend& backend) {
    const std::vector<Dimensions> shapes{{1, 2}, {1, 3}, {2, 1}, {2, 3}, {3, 2}, {1, 2, 3}, {0, 0}, {0, 3}};
    const auto point = newPoint(backend, 1, 2);
    for (const bool set : {false, true}) {
        std::vector<Owned<ArrayImpl>> arrays;
        for (const Dimensions& shape : shapes) {
            arrays.push_back(points(backend, shape));
            for (std::size_t k = 0; set && k < arrays.back()->getNumberOfElements(); ++k)
                asObjects(*arrays.back()).setElementObject(k, point.get());
        }
        for (const auto& a : arrays)
            for (const auto& b : arrays) {
                if (a == b) continue;
                const std::string of = " of " + show(a->getDimensions()) + " and " +
                                       show(b->getDimensions()) + " arrays of " +
                                       (set ? "one object" : "new objects");
                backend.step("isEqualArrayProperties" + of);
                asObjects(*a).isEqualArrayProperties(b.get());
                backend.step("isEqual" + of);
                expectEqual("isEqual" + of, a->isEqual(b.get()), false);
            }
    }
}

void scalars(Backend& backend) {
    const auto point = newPoint(backend, 1, 2);
    const fv::ClassInfo info = point->getClassInfo();
    const std::uint64_t count = fv::detail::Access::impl(info)->referenceCount();
    auto array =
        adopt(backend.factory().createValueObjectScalarImpl(point.get()), "createValueObjectScalarImpl");
    expectContents("an array of one object", *array, {"x=1x1 double [1], y=1x1 double [2]"});
    expectEqual("the class of an array of one object",
                asObjects(*array).getClassInfo().getClassIdentifier().getString(), "Point");
    expectEqual("hasArrayProperty of an array of one object",
                asObjects(*array).hasArrayProperty(property("unit")), true);
    expectEqual("numOfArrayProperties of an array of one object", asObjects(*array).numOfArrayProperties(),
                1);
    expectEqual("isHeterogeneous of an array of one object", asObjects(*array).isHeterogeneous(), false);
    auto copy = adopt(array->sharedCopy(), "sharedCopy");
    asObjects(*copy).setElementObject(0, newPoint(backend, 3, 4).get());
    expectContents("an array of one object after a write to its copy", *array,
                   {"x=1x1 double [1], y=1x1 double [2]"});
    copy.reset();
    array.reset();
    expectOneReference("an object after the array of it is gone", *point);
    expectEqual("the reference count of its class then", fv::detail::Access::impl(info)->referenceCount(),
                count);
    backend.step("createValueObjectScalarImpl of no object");
    array = adopt(backend.factory().createValueObjectScalarImpl(nullptr), "createValueObjectScalarImpl");
    expect(Owned<ObjectImpl>(asObjects(*array).getElementObject(0)) == nullptr,
           "getElementObject of an array of no object is not null");
}

} // namespace

void addObjectChecks(Checks& checks) {
    Family objects(checks, "objects");
    const Texts object{"value-object", "class", "double"};
    const Texts array{"object-array", "value-object", "class", "double"};
    const Texts classless{"new-value-object", "object-array", "value-object", "class", "double"};
    const std::string walks =
        "iterators are new ones, with one reference for the caller (slots 7 to 10 of objects)";
    objects.add("classes name their properties",
                "iterators over the identifiers of a class (slots 3 to 7, 10, 11 of classes)", {"class"},
                describesClasses);
    objects.add("classes name their superclasses", "iterators over the superclasses (slots 8, 9 of classes)",
                {"class"}, describesSuperclasses);
    objects.add("classes are retained and released",
                "what is passed is borrowed (slots 12 to 15 of the factory)", {"class"}, balanceOfClasses);
    objects.add("identifiers are linked to the class",
                "calls updateClassInfo on every property identifier held (slot 13 of classes)", {"class"},
                linksIdentifiers);
    objects.add("properties are read and written",
                "an unknown property is the back-end's to report (slots 4 to 6, 15 to 17 of objects)", object,
                properties);
    objects.add("properties by their names",
                "the value of a property, by its whole name (slots 5, 6, 15 of objects; slots 44, 45, 59)",
                object, namesAlike);
    objects.add(
        "properties of superclasses",
        "the value of a property, by the identifier that its class gives (slot 3 of classes; slots 5, 6 of objects)",
        object, inheritedProperties);
    objects.add("superclasses in many ways",
                "classes with superclasses (slot 12 of the factory; slots 8, 9 of classes)", object,
                superclassesInManyWays);
    objects.add("names of all letters", "the value of a property, by its whole name (slots 5, 6 of objects)",
                object, namesOfAllLetters);
    objects.add("elements without object",
                "what an element without object answers is the back-end's choice: but it answers (slot 59)",
                classless, propertyOfNoObject);
    objects.add("objects of another class", "isHeterogeneous: elements of different classes (slots 43, 60)",
                array, objectsOfAnotherClass);
    objects.add("properties hold arrays of all kinds",
                "a writable reference to a property (slot 6 of objects)", object, storesValues);
    objects.add("properties in their order", walks, object, propertyIterators);
    objects.add("copies of objects are independent",
                "sharedCopy gives an independent copy (slot 2 of objects)", object, copiesOfObjects);
    objects.add("values are retained and released", "the value of a property, shared (slot 5 of objects)",
                object, balanceOfProperties);
    objects.add(
        "enumeration objects name their member",
        "the name is NUL-terminated and lives as long as the object (slot 3 of objects; slot 17 of the factory)",
        {"enumeration-object"}, membersOfEnumerations);
    objects.add("objects are retained and released",
                "getElementObject gives one reference, setElementObject borrows (slots 60, 61)", array,
                balanceOfObjects);
    objects.add("arrays describe their class",
                "class, classes mixed, external dimensions and names (slots 42, 43, 56 to 58)", array,
                arrayDescribesItself);
    objects.add("arrays of mixed classes", "isHeterogeneous: elements of different classes (slot 43)",
                classless, classesMixed);
    objects.add("elements tell arrays apart", "isEqual is element-wise equality (slot 36)", classless,
                elementsCompared);
    objects.add("elements of object arrays", "properties and objects by element (slots 39, 59 to 61, 67, 68)",
                array, elementsOfArrays);
    objects.add("objects in several elements",
                "by a write to a property, the object is the element's alone (slot 67)", array,
                sharedObjects);
    objects.add("properties of the array",
                "array properties, their iterators, their equality (slots 44 to 51, 58, 69)", array,
                arrayProperties);
    objects.add("references to properties lead into a cell array",
                "a chain to the value's element of a cell array (slot 6 of objects)", object,
                referencesToProperties);
    objects.add("references to array properties do too",
                "a chain to the value's element of a cell array (slot 45)", array,
                referencesToArrayProperties);
    objects.add(
        "read-only walks refuse writes",
        "what properties from cbegin refer to throws CantAssignArrayToThisArrayException when written (objects, "
        "10, 11)",
        object, readOnlyWalks);
    objects.add("read-only walks of array properties do too",
                "what properties from cbeginArrayProp refer to throws when written, too (slots 48, 49)",
                array, readOnlyWalksOfArrays);
    objects.add("arrays of other dimensions are unequal",
                "isEqual of object arrays is asked about arrays with any dimensions (slot 36)", array,
                otherDimensions);
    objects.add("arrays of one object", "an array of the object, which is borrowed (slot 14 of the factory)",
                {"object-scalar", "value-object", "class", "double"}, scalars);
}

} // namespace vexa::check
