// Enumeration arrays.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Enumeration.hpp>

namespace vexa::check {

namespace {

const Contents members{"Red", "Green", "Red", "Blue"};

Owned<ArrayImpl> colours(const Backend& backend, const std::string& className = "Colors") {
    return adopt(backend.factory().createEnumArrayImpl({2, 2}, className, members), "createEnumArrayImpl");
}

/// All names of an array, lent at once.
void namesOfMembers(Backend& backend) {
    eachSubject(backend, {true, true, false, false}, [&](Subject& subject) {
        if (subject.model.sample().name != "enumeration") return;
        const EnumArrayImpl& array = asEnums(*subject.array);
        std::vector<const char*> names;
        for (std::size_t k = 0; k < subject.model.size(); ++k) {
            names.push_back(array.getEnumNameAt(k));
            expect(names.back() != nullptr,
                   "getEnumNameAt(" + show(k) + ") of a " + subject.what + " returns null");
        }
        for (std::size_t k = 0; k < names.size(); ++k) {
            const std::string& wanted = subject.model.contents()[k];
            if (names[k] != wanted)
                expectEqual("getEnumNameAt(" + show(k) + ") of a " + subject.what, std::string(names[k]),
                            wanted);
            if (k < 300)
                expectEqual("castToString(" + show(k) + ") of a " + subject.what, array.castToString(k, {}),
                            wanted);
        }
    });
}

/// A reference to the array copies as many bytes as the array has elements.
void nameOfClass(Backend& backend) {
    for (const std::string& className : {std::string("C"), std::string("AClassName"), std::string(400, 'L')})
        for (const std::size_t count : {0U, 1U, 15U, 16U, 17U, 500U, 70000U}) {
            const auto array =
                adopt(backend.factory().createEnumArrayImpl({1, count}, className, Contents(count, "Red")),
                      "createEnumArrayImpl");
            const auto copy = adopt(array->sharedCopy(), "sharedCopy");
            const auto other =
                adopt(backend.factory().createEnumArrayImpl({1, 1}, "Other", {"Red"}), "createEnumArrayImpl");
            const char* lent = asEnums(*array).getClassName();
            const std::string of = " of an array of " + show(count) + " elements";
            for (ArrayImpl* one : {array.get(), copy.get()}) {
                const char* name = asEnums(*one).getClassName();
                expect(name != nullptr, "getClassName" + of + " returns null");
                expectEqual("getClassName" + of, std::string(name), className);
                std::string bytes(name, count); // a sanitizer sees what is not there
                expectEqual("the number of bytes behind getClassName" + of, bytes.size(), count);
            }
            expectEqual("getClassName of another array", std::string(asEnums(*other).getClassName()),
                        "Other");
            if (count > 0) array->setString(0, {}, "Red");
            expectEqual("getClassName" + of + " that was lent before a write", std::string(lent), className);
        }
}

void writes(Backend& backend) {
    const auto array = colours(backend);
    array->unshare();
    array->setString(1, {}, "Blue");
    expectContents("an enumeration array after setString", *array, {"Red", "Blue", "Red", "Blue"});
    asEnums(*array).setElementValue(3, {}, fv::Enumeration("Green"));
    expectContents("an enumeration array after setElementValue", *array, {"Red", "Blue", "Red", "Green"});
    expect(array->createElementReference(0, {}, false) == nullptr,
           "createElementReference of an enumeration array is not null");
}

/// More members than fit into a byte, or into two.
void manyMembers(Backend& backend) {
    for (const std::size_t count : {255U, 256U, 257U, 300U, 70000U}) {
        Contents names;
        for (std::size_t k = 0; k < count; ++k)
            names.push_back(std::string(1, 'M').append(std::to_string(k * 7 % count)));
        const auto array =
            adopt(backend.factory().createEnumArrayImpl({count, 1}, "Many", names), "createEnumArrayImpl");
        expectContents("an array of " + show(count) + " members", *array, names);
        array->setString(0, {}, names.back());
        names.front() = names.back();
        expectContents("an array of " + show(count) + " members, one of them written", *array, names);
        expectContents("a copy of it", *adopt(array->sharedCopy(), "sharedCopy"), names);
    }
}

void classesDiffer(Backend& backend) {
    const auto array = colours(backend);
    const std::string longName(40, 'L');
    for (const auto& [one, other] : {std::pair<std::string, std::string>{"Colors", "Colours"},
                                     {"Colors", "Color"},
                                     {"Colors", "colors"},
                                     {longName + "a", longName + "b"}}) {
        const auto first = colours(backend, one);
        const auto second = colours(backend, other);
        expect(!first->isEqual(second.get()) && !second->isEqual(first.get()),
               "isEqual of enumeration arrays of the classes " + one + " and " + other + " is true");
    }
    expect(array->isEqual(colours(backend).get()), "isEqual of equal enumeration arrays is false");
}

/// By their names, whatever came first, and whoever else has the same.
void membersDiffer(Backend& backend) {
    const auto arrayOf = [&](const Contents& names) {
        return adopt(backend.factory().createEnumArrayImpl({1, 4}, "Colors", names), "createEnumArrayImpl");
    };
    const auto array = arrayOf({"A", "B", "A", "C"});
    for (const Contents& names : {Contents{"B", "A", "B", "C"}, {"A", "B", "A", "D"}, {"C", "A", "C", "B"}})
        expect(!array->isEqual(arrayOf(names).get()) && !arrayOf(names)->isEqual(array.get()),
               "isEqual of enumeration arrays with the members A, B, A, C and " + show(names) + " is true");
    const auto written = arrayOf({"C", "A", "B", "A"});
    for (const auto& [k, name] : {std::pair<std::size_t, const char*>{0, "A"}, {1, "B"}, {2, "A"}, {3, "C"}})
        written->setString(k, {}, name);
    expect(array->isEqual(written.get()) && written->isEqual(array.get()),
           "isEqual of equal enumeration arrays, one of them written, is false");
}

/// Names that none of four elements has: each is there after its write, or was refused and changed nothing.
void takesNewMembers(ArrayImpl& array, Contents wanted) {
    array.unshare();
    for (std::size_t number = 0; number < 300; ++number) {
        const std::string name = std::string("New").append(std::to_string(number));
        try {
            if (number % 2 == 0)
                array.setString(number % 4, {}, name);
            else
                asEnums(array).setElementValue(number % 4, {}, fv::Enumeration(name));
            wanted[number % 4] = name;
        } catch (...) {}
        expectContents("an enumeration array after writing a member that it did not have", array, wanted);
    }
}

/// No list of members: elements have none until they are written, if they may be.
void withoutMembers(Backend& backend) {
    const auto array =
        adopt(backend.factory().createEnumArrayImpl({2, 2}, "Colors", {}), "createEnumArrayImpl");
    expectEqual("getNumberOfElements of an array without members", array->getNumberOfElements(), 4);
    expectEqual("getClassName of an array without members", std::string(asEnums(*array).getClassName()),
                "Colors");
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    expect(array->isEqual(copy.get()), "isEqual of an array without members and its copy is false");
    std::vector<const char*> lent;
    Contents before;
    for (std::size_t k = 0; k < 4; ++k) {
        lent.push_back(asEnums(*array).getEnumNameAt(k));
        before.emplace_back(lent.back());
    }
    takesNewMembers(*copy, before);
    takesNewMembers(*array, before);
    takesNewMembers(*adopt(array->sharedCopy(), "sharedCopy"), contentsOf(*array));
    const auto third =
        adopt(backend.factory().createEnumArrayImpl({2, 2}, "Colors", {}), "createEnumArrayImpl");
    lent.clear();
    for (std::size_t k = 0; k < 4; ++k)
        lent.push_back(asEnums(*third).getEnumNameAt(k));
    const auto fourth = adopt(third->sharedCopy(), "sharedCopy");
    takesNewMembers(*fourth, before);
    for (std::size_t k = 0; k < 4; ++k)
        expectEqual("a name that an array without members lent before its copy was written",
                    std::string(lent[k]), before[k]);
}

/// An array of members too takes one that it did not have, or refuses it.
void otherMembers(Backend& backend) {
    const auto array = colours(backend);
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    takesNewMembers(*array, {members.begin(), members.end()});
    expectContents("an enumeration array whose copy was given other members", *copy,
                   {members.begin(), members.end()});
}

} // namespace

void addEnumChecks(Checks& checks) {
    Family enums(checks, "enumerations");
    const std::string name =
        "getEnumNameAt is the NUL-terminated name, valid until the array is changed (slots 19, 44)";
    const std::string write = "setString and setElementValue set the member by its name (slots 20, 40)";
    enums.add("names of members", name, {"enumeration"}, namesOfMembers);
    enums.add("name of the class",
              "getClassName is as long as the array lives and holds as many bytes as elements (slot 42)",
              {"enumeration"}, nameOfClass);
    enums.add("members are written by name", write, {"enumeration"}, writes);
    enums.add("many members", name, {"enumeration"}, manyMembers);
    enums.add("members tell arrays apart", "isEqual is element-wise equality (slot 36)", {"enumeration"},
              membersDiffer);
    enums.add("no members",
              "`members` holds the member name of each element, or nothing (slot 21 of the factory)",
              {"enumeration"}, withoutMembers);
    enums.add("other members", write, {"enumeration"}, otherMembers);
    enums.add("classes tell arrays apart", "isEqual is element-wise equality (slot 36)", {"enumeration"},
              classesDiffer);
}

} // namespace vexa::check
