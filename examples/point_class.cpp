// A class with value semantics: copies part when one of them is written.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>

using namespace foundation::vexadata;

namespace {

double number(const ValueObject& object, const char* property) {
    const TypedArray<double> scalar = object[VexaPropertyIdentifier(property)];
    return scalar[0];
}

void print(const char* title, const ValueObject& point) {
    std::cout << title << " (" << number(point, "x") << ", " << number(point, "y") << ")\n";
}

} // namespace

int main() {
    ArrayFactory factory;
    const ClassInfo pointClass = factory.createClassInfo("Point", {"x", "y"}, {"unit"});
    ValueObject a = factory.createValueObject(pointClass);
    a["x"] = factory.createScalar(1.0);
    a["y"] = factory.createScalar(2.0);

    ValueObject b = a; // the same object until one of them is written
    std::cout << (a == b ? "equal" : "different") << '\n';
    b["x"][0] = 10.0;
    print("a", a);
    print("b", b);
    std::cout << (a == b ? "equal" : "different") << '\n';

    // In an array too, objects are values. The array has a property of its own.
    ValueObjectArray points = factory.createValueObjectArray({1, 2}, pointClass);
    points[0] = a;
    points[1] = b;
    points["unit"] = factory.createCharArray("m");
    ValueObject out = points[1];
    out["y"][0] = 20.0;
    print("out", out);
    for (const auto& point : std::as_const(points)) {
        print("in the array", point);
    }
    std::cout << CharArray(std::as_const(points)["unit"]).toAscii() << '\n';

    try {
        points[0] = factory.createValueObject(factory.createClassInfo("Circle", {"radius"}));
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
    try {
        a["z"] = factory.createScalar(3.0);
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
}
