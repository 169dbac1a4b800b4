// Enumeration arrays.

#include "Check.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/Enumeration.hpp>

namespace vexa::check {

namespace {

using Contents = std::vector<std::string>;

const Contents members{"Red", "Green", "Red", "Blue"};

Owned<ArrayImpl> colours(const Backend& backend) {
    return adopt(backend.factory().createEnumArrayImpl({2, 2}, "Colors", members), "createEnumArrayImpl");
}

void namesOfMembers(Backend& backend) {
    const auto array = colours(backend);
    for (std::size_t k = 0; k < 4; ++k) {
        const char* name = asEnums(*array).getEnumNameAt(k);
        expect(name != nullptr, "getEnumNameAt(" + show(k) + ") returns null");
        expectEqual("getEnumNameAt(" + show(k) + ")", std::string(name), members[k]);
        expectEqual("castToString(" + show(k) + ")", array->castToString(k, {}), members[k]);
    }
}

/// A reference to the array copies as many bytes as the array has elements.
void nameOfClass(Backend& backend) {
    const auto array = adopt(backend.factory().createEnumArrayImpl({1, 500}, "C", Contents(500, "Red")),
                             "createEnumArrayImpl");
    const char* name = asEnums(*array).getClassName();
    expect(name != nullptr, "getClassName returns null");
    expectEqual("getClassName", std::string(name), "C");
    expectEqual("the number of bytes behind getClassName", std::string(name, 500).size(), 500);
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    expectEqual("getClassName of a copy", std::string(asEnums(*copy).getClassName()), "C");
}

void writes(Backend& backend) {
    const auto array = colours(backend);
    array->unshare();
    array->setString(1, {}, "Blue");
    expectContents("an enum array after setString", *array, {"Red", "Blue", "Red", "Blue"});
    asEnums(*array).setElementValue(3, {}, fv::Enumeration("Green"));
    expectContents("an enum array after setElementValue", *array, {"Red", "Blue", "Red", "Green"});
}

void classesDiffer(Backend& backend) {
    const auto array = colours(backend);
    const auto other =
        adopt(backend.factory().createEnumArrayImpl({2, 2}, "Colours", members), "createEnumArrayImpl");
    expect(!array->isEqual(other.get()), "isEqual of enum arrays of two classes is true");
}

} // namespace

void addEnumChecks(Checks& checks) {
    Family enums(checks, "enumerations");
    enums.add("names of members", {"enum"}, namesOfMembers);
    enums.add("name of the class", {"enum"}, nameOfClass);
    enums.add("members are written by name", {"enum"}, writes);
    enums.add("classes tell arrays apart", {"enum"}, classesDiffer);
}

} // namespace vexa::check
