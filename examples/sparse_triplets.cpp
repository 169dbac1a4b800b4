// A sparse matrix from triplets in any order.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>
#include <tuple>
#include <vector>

using namespace foundation::vexadata;

namespace {

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
    const std::vector<std::tuple<int, int, double>> triplets{
        {0, 1, 7.0}, {2, 0, 2.0}, {1, 1, 0.0}, {2, 0, 3.0}, {1, 3, 1.0}};
    SparseArray<double> matrix = factory.createSparseArray<double>({3, 4}, triplets);
    std::cout << matrix.getNumberOfNonZeroElements() << " of " << matrix.getNumberOfElements() << '\n';
    print(matrix);
    std::cout << "(1, 3) is " << matrix(1, 3) << ", (1, 2) is " << matrix(1, 2) << '\n';

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
