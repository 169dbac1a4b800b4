// A sparse matrix from triplets in any order.
#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <iostream>
#include <vector>

using namespace foundation::vexadata;

namespace {

/// The factory takes buffers over; a list is copied into one.
template <class T>
buffer_ptr<T> bufferOf(ArrayFactory& factory, const std::vector<T>& values) {
    auto buffer = factory.createBuffer<T>(values.size());
    std::copy(values.begin(), values.end(), buffer.get());
    return buffer;
}

void print(const SparseArray<double>& matrix) {
    for (auto it = matrix.begin(); it != matrix.end(); ++it) {
        const auto [row, column] = matrix.getIndex(it);
        std::cout << '(' << row << ", " << column << ") " << *it << '\n';
    }
}

} // namespace

int main() {
    ArrayFactory factory;
    // (2, 0) comes twice and is summed; the zero at (1, 1) is dropped.
    const std::vector<double> values{7.0, 2.0, 0.0, 3.0, 1.0};
    const std::vector<std::size_t> rows{0, 2, 1, 2, 1};
    const std::vector<std::size_t> columns{1, 0, 1, 0, 3};
    SparseArray<double> matrix =
        factory.createSparseArray<double>({3, 4}, values.size(), bufferOf(factory, values),
                                          bufferOf(factory, rows), bufferOf(factory, columns));
    std::cout << matrix.getNumberOfNonZeroElements() << " of " << matrix.getNumberOfElements() << '\n';
    print(matrix);

    const SparseArray<double> before = matrix;
    for (double& value : matrix) { // gets a copy of its own first
        value *= 10;
    }
    std::cout << "scaled, " << (before == matrix ? "equal" : "different") << '\n';
    print(matrix);

    // The fastest walk goes through the compressed columns.
    double total = 0;
    const double* value = &*before.begin();
    for (std::size_t column = 0; column < before.getCols(); ++column) {
        for (std::size_t k = before.getJc()[column]; k < before.getJc()[column + 1]; ++k) {
            total += value[k];
        }
    }
    std::cout << "total " << total << '\n';
}
