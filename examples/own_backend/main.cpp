// A client of the back-end in doubles.cpp. It knows nothing about it: the library is linked, and registers
// itself.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    TypedArray<double> a = factory.createArray<double>({2, 2}, {1, 2, 3, 4});
    const TypedArray<double> b = a;
    a[0][1] = 30.0;
    std::cout << a << '\n' << b << '\n';
    try {
        factory.createArray<bool>({1, 1});
    } catch (const InvalidArrayTypeException&) {
        std::cout << "no arrays of truth values here\n";
    }
}
