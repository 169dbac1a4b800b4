// refused 1: error
// refused 2: error
// refused 3: error
// refused 4: error
// refused 5: error
// refused 6: error
// refused 7: error
// refused 8: error
// refused 9: error
// Properties: writes that would change nothing but a temporary.
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/ValueObjectArray.hpp>

#include <utility>

using namespace foundation::vexadata;

void ofObjects(ValueObject& object, const ValueObject& constant, const Array& value) {
#if REFUSED == 1 // property of a constant object
    constant["x"] = value;
#else
    object["x"] = value;
#endif
#if REFUSED == 2 // index of an object, as if 0 were a name
    object[0] = value;
#else
    object[static_cast<const char*>("x")] = value;
#endif
}

void ofArrays(ValueObjectArray& array, const ValueObjectArray& constant, const Array& value) {
    ValueObject element = array[0];
#if REFUSED == 3 // property of an element
    array[0]["x"] = value;
#else
    element["x"] = value;
    array[0] = element;
#endif
#if REFUSED == 4 // inside a property of an element
    array[0]["x"][0] = 1.0;
#else
    element["x"][0] = double(constant[0]["x"][0]);
#endif
#if REFUSED == 5 // property of a constant array
    constant["unit"] = value;
#else
    array["unit"] = value;
#endif
}

void whileWalking(ValueObject& object, const ValueObject& constant, const Array& value) {
    Property property = *object.begin();
#if REFUSED == 6 // one property to another
    *object.begin() = *constant.begin();
#else
    *object.begin() = (*constant.begin()).castToArray();
    property = *constant.begin();
#endif
#if REFUSED == 7 // property of a read-only walk
    *constant.begin() = value;
#else
    *object.begin() = value;
#endif
#if REFUSED == 8 // value of a property
    property.castToArray() = value;
#else
    property = value;
#endif
}

void ofRecords(StructArray& array, const StructArray& constant, const Array& value) {
#if REFUSED == 9 // field of a constant record
    constant[0]["f"] = value;
#else
    array[0]["f"] = value;
#endif
}
