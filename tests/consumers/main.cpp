#include <foundation/vexadata/VexaData.hpp>

#include <iostream>

int main() {
    foundation::vexadata::ArrayFactory factory;
    auto a = factory.createArray<double>({2, 3});
    a[1][2] = 5.0;
    std::cout << a.getNumberOfElements() << " elements, the last is " << static_cast<double>(a[1][2]) << "\n";
}
