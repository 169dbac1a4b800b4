// The heat equation on a rod: a sparse matrix of the library times a vector, computed by Eigen over the library's storage.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Eigen.hpp>

#include <cstddef>
#include <iostream>
#include <tuple>
#include <vector>

using namespace foundation::vexadata;
using vexa::interop::eigenView;
using vexa::interop::fromEigen;
using vexa::interop::writableEigenView;

int main() {
    const ArrayFactory factory;
    const std::size_t n = 8;

    // The second difference of neighbouring points: row, column, value.
    std::vector<std::tuple<std::size_t, std::size_t, double>> entries;
    for (std::size_t k = 0; k < n; ++k) {
        entries.emplace_back(k, k, -2.0);
        if (k > 0) {
            entries.emplace_back(k, k - 1, 1.0);
            entries.emplace_back(k - 1, k, 1.0);
        }
    }
    const SparseArray<double> laplacian = factory.createSparseArray<double>({n, n}, entries);

    TypedArray<double> heat = factory.createArray<double>({n, 1});
    heat[3] = 100.0;
    {
        const auto matrix = eigenView(laplacian); // no copy
        auto state = writableEigenView(heat);     // writes go to the array
        for (int step = 0; step < 10; ++step) {
            state += 0.25 * (matrix * state).eval();
        }
    }
    std::cout << heat << '\n';

    const TypedArray<double> product = fromEigen(factory, eigenView(heat) * eigenView(heat).transpose());
    std::cout << product.getDimensions()[0] << " by " << product.getDimensions()[1] << ", trace "
              << eigenView(product).trace() << '\n';
    return 0;
}
