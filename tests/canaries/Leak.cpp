// Adds a reference to an array that nobody drops.
#include <foundation/vexadata/ArrayFactory.hpp>

int main() {
    foundation::vexadata::ArrayFactory factory;
    for (int k = 0; k < 10; ++k) { // a stale register may still point at the last one
        const auto array = factory.createArray<double>({10, 1});
        foundation::vexadata::detail::Access::impl(array)->retain();
    }
}
