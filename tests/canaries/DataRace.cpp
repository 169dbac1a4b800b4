// Writes through one handle on two threads at once, which handles do not allow.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <thread>

int main() {
    foundation::vexadata::ArrayFactory factory;
    auto array = factory.createArray<double>({10, 1});
    const auto write = [&array] {
        for (int k = 0; k < 1000; ++k) {
            array[3] = k;
        }
    };
    std::thread other(write);
    write();
    other.join();
}
