// What the tables of docs/coming_from.md call by name: every expression there stands here, or in the examples for Eigen.
#include <foundation/vexadata/Layout.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <memory>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::data::MemoryLayout;

namespace {

const ArrayFactory factory;

void arrays() {
    const auto zeros = factory.createArray<double>({2, 3});
    auto a = factory.createArray<double>({2, 3}, {1, 2, 3, 4, 5, 6}, MemoryLayout::ROW_MAJOR);
    std::cout << a.getDimensions()[1] << " of " << a.size() << ", zeros " << (zeros == a) << '\n';
    std::cout << kindName(a.getType()) << ", " << a(1, 2) << ", " << a[1][2] << ", " << *a.data() << '\n';
    std::cout << (a.getMemoryLayout() == MemoryLayout::ROW_MAJOR)
              << (withLayout(a, MemoryLayout::COLUMN_MAJOR) == a) << '\n';

    TypedArray<double> b = a;
    writableView(b)(0, 0) = 9;
    std::cout << "b " << b[0][0] << ", a " << a[0][0] << '\n';
    b = factory.createArrayFromBuffer<double>({3, 2}, b.release(), MemoryLayout::ROW_MAJOR);
    std::cout << b << '\n';
}

void parts() {
    const auto a = factory.createArray<double>({3, 4}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    const auto image = factory.createArray<std::uint8_t>({2, 2, 3});
    const std::size_t i = 1;
    const std::size_t j = 2;
    const std::size_t k = 0;
    std::cout << readOnlyView(a).row(i)(j) << ' ' << readOnlyView(a).column(j)(i) << ' '
              << int(readOnlyView<3>(image).page(k)(0, 0)) << ' ' << readOnlyView(a).transposed()(j, i)
              << '\n';
    std::cout << readOnlyView(a).part(0, 0, 2, 2)(1, 0) << ' ' // rows 0 and 2
              << readOnlyView(a).part(0, 0, 2).part(1, 1, 3)(1, 2) << '\n';
    const auto turned = readOnlyView(a).transposed();
    std::cout << factory.createArray<double>({4, 3}, turned.begin(), turned.end()) << '\n';
}

void numbers() {
    auto a = factory.createArray<double>({2, 2}, {1, 4, 9, 16});
    auto mask = factory.createArray<bool>({2, 2});
    const auto above = [](double x) { return x > 3; };
    std::cout << std::accumulate(a.cbegin(), a.cend(), 0.0) << ' ' << *std::max_element(a.cbegin(), a.cend())
              << ' ' << std::count_if(a.cbegin(), a.cend(), above) << '\n';
    std::transform(a.cbegin(), a.cend(), mask.begin(), above);
    std::transform(a.begin(), a.end(), a.begin(), [](double x) { return std::sqrt(x); });
    std::fill(mask.begin(), mask.end(), true);
    const auto b = a;
    std::cout << a << ' ' << (a == b) << '\n';
}

void memory() {
    std::vector<double> values{1, 2, 3, 4};
    auto a = vexa::client::fromVector({2, 2}, std::move(values));
    values = vexa::client::toVector(std::move(a));
    const std::shared_ptr<void> owner = std::make_shared<std::vector<double>>(std::move(values));
    double* const pointer = static_cast<std::vector<double>*>(owner.get())->data();
    std::cout << vexa::client::adopt({2, 2}, pointer, owner)(1, 1) << '\n';
}

void otherKinds() {
    const auto a = factory.createScalar(3.0);
    const auto text = factory.createCharArray("text");
    auto strings = factory.createArray<String>({1, 2}); // missing until they are set
    strings[0] = "Oslo";
    const auto cells = factory.createArray<Array>({1, 2}, {a, text});
    StructArray records = factory.createStructArray({1, 1}, {"name"});
    records[0]["name"] = text;
    const EnumArray members = factory.createEnumArray({1, 2}, "Colour", {"red", "green"});
    const std::vector<std::tuple<int, int, double>> triplets{{0, 1, 7.0}, {2, 0, 2.0}};
    const auto sparse = factory.createSparseArray<double>({3, 3}, triplets);
    std::cout << strings << '\n'
              << cells << '\n'
              << records << '\n'
              << members << '\n'
              << sparse(2, 0) << ' ' << sparse.getNumberOfNonZeroElements() << '\n';
}

} // namespace

int main() {
    arrays();
    parts();
    numbers();
    memory();
    otherKinds();
}
