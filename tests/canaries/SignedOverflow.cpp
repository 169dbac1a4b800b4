// Goes beyond the largest element.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <iostream>
#include <limits>

int main() {
    foundation::vexadata::ArrayFactory factory;
    const auto array = factory.createScalar(std::numeric_limits<std::int32_t>::max());
    std::cout << array[0] + 1 << '\n';
}
