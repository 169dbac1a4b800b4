#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <iostream>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    TypedArray<double> a = factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6}); // column by column
    TypedArray<double> b = a;                                                       // shares the elements ...
    b[1][2] = 60.0; // ... until one of the two is written
    std::transform(a.begin(), a.end(), a.begin(), [](double x) { return x * x; });
    std::cout << a[1][2] << ' ' << b[1][2] << ' ' << (a == b ? "equal" : "different") << '\n';
}
