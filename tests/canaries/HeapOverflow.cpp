// Reads the element behind the last one.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <iostream>

int main() {
    foundation::vexadata::ArrayFactory factory;
    const auto array = factory.createArray<double>({1000, 1});
    std::cout << *array.end() << '\n';
}
