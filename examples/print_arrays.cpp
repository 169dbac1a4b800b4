// Arrays of any kind, and their elements, print themselves.
#include <foundation/vexadata/VexaData.hpp>

#include <iomanip>
#include <iostream>
#include <numeric>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    std::cout << factory.createArray<double>({2, 3}, {1, 2.5, -300, 4e-7, 1.0 / 3, 6}) << "\n\n";

    auto names = factory.createArray<String>({1, 2});
    names[0] = "Oslo";
    std::cout << names << '\n' << names[0] << ' ' << names[1] << "\n\n";

    StructArray places = factory.createStructArray({1, 2}, {"name", "temperatures"});
    places[0]["name"] = factory.createCharArray("Oslo");
    places[0]["temperatures"] = factory.createArray<double>({1, 3}, {-4.25, 0.5, 16});
    std::cout << places << '\n' << places[0]["temperatures"] << "\n\n";

    auto large = factory.createArray<std::int32_t>({100, 100});
    std::iota(large.begin(), large.end(), 0);
    std::cout << large << "\n\n";

    PrintOptions options;
    options.precision = 2;
    options.edge = 1;
    options.threshold = 4;
    const auto thirds =
        factory.createArray<double>({4, 2}, {1 / 3., 2 / 3., 1, 4 / 3., 5 / 3., 2, 7 / 3., 8 / 3.});
    std::cout << printed(thirds, options) << '\n' << std::setprecision(3) << thirds[0][0] << '\n';
}
