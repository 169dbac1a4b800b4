#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <iostream>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    // Six elements, column by column.
    TypedArray<double> a = factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6});
    TypedArray<double> b = a; // shares them with a until one of the two is written
    b[1][2] = 60.0;
    std::transform(a.begin(), a.end(), a.begin(), [](double x) { return x * x; });
    std::cout << a[1][2] << ' ' << b[1][2] << ' ' << (a == b ? "equal" : "different") << '\n';
}
