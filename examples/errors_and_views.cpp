// Misuse gets an exception of its own class; inner loops use a view.
#include <foundation/vexadata/VexaData.hpp>

#include <cstddef>
#include <iostream>

using namespace foundation::vexadata;

namespace {

/// Sum over the main diagonal.
double trace(const TypedArray<double>& matrix) {
    const auto view = readOnlyView(matrix);
    double sum = 0;
    for (std::size_t k = 0; k < view.extent(0) && k < view.extent(1); ++k) {
        sum += view(k, k);
    }
    return sum;
}

} // namespace

int main() {
    ArrayFactory factory;
    auto matrix = factory.createArray<double>({100, 100});
    {
        auto view = writableView(matrix);
        for (std::size_t j = 0; j < view.extent(1); ++j) {
            for (std::size_t i = 0; i < view.extent(0); ++i) {
                view(i, j) = i == j ? 2.0 : 0.0;
            }
        }
    }
    std::cout << "trace " << trace(matrix) << '\n';

    try {
        matrix[100][0] = 1.0;
    } catch (const EArrayIndexOutOfRange& error) {
        std::cout << error.what() << '\n';
    }
    try {
        const Array untyped = matrix;
        const TypedArray<bool> flags = untyped;
    } catch (const Exception& error) { // not a std::exception, deliberately
        std::cout << error.what() << '\n';
    }
}
