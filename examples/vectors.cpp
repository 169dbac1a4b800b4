// A vector moves into an array and out again; nothing is copied on the way.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>

#include <iostream>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::client::adopt;
using vexa::client::fromVector;
using vexa::client::toVector;

int main() {
    std::vector<double> values(6);
    std::iota(values.begin(), values.end(), 1.0);
    const double* const place = values.data();

    TypedArray<double> matrix = fromVector({2, 3}, std::move(values)); // column by column
    matrix[1][2] *= 10;
    std::cout << matrix << '\n';

    // Nobody else shares the array, so that its vector is moved out. Otherwise this would be a copy.
    values = toVector(std::move(matrix));
    std::cout << (values.data() == place ? "the same memory" : "a copy") << ", last " << values.back()
              << '\n';

    // Memory of any other owner: the array keeps the owner alive.
    auto owner = std::make_shared<std::vector<float>>(4, 0.5F);
    const TypedArray<float> borrowed = adopt({4, 1}, owner->data(), owner);
    std::cout << "owners " << owner.use_count() << ", sum "
              << std::accumulate(borrowed.begin(), borrowed.end(), 0.0F) << '\n';
}
