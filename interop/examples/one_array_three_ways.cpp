// One array, without a copy: computed with by Eigen, walked as a std::span, sorted by a function of C.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Eigen.hpp>

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <span>

using namespace foundation::vexadata;
using vexa::interop::writableEigenView;

namespace {

double largest(std::span<const double> values) {
    double result = values.front();
    for (const double value : values) {
        result = value > result ? value : result;
    }
    return result;
}

extern "C" int ascending(const void* a, const void* b) {
    const double x = *static_cast<const double*>(a);
    const double y = *static_cast<const double*>(b);
    return int(x > y) - int(x < y);
}

} // namespace

int main() {
    const ArrayFactory factory;
    TypedArray<double> a = factory.createArray<double>({2, 3}, {3, 1, 2, 6, 5, 4});
    const TypedArray<double> before = a;

    {
        auto matrix = writableEigenView(a); // a gets elements of its own here, once
        matrix.row(0) *= 10;
    } // and is a's alone again
    std::cout << a << '\n';

    const TypedArray<double>& reading = a; // or std::as_const(a): iterators that never copy
    std::cout << "largest " << largest(std::span(reading.begin(), reading.end())) << '\n';

    std::qsort(a.data(), a.size(), sizeof(double), ascending);
    std::cout << a << '\n' << "before " << before[0][0] << ", after " << a[0][0] << '\n';
    return 0;
}
