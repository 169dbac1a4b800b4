// A function over arrays of any kind: how many of the values in it are missing, at whatever depth.
#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <limits>
#include <type_traits>

using namespace foundation::vexadata;

namespace {

std::size_t missingIn(const Array& array);

/// One function for each kind that can miss something, one for all others.
struct CountMissing {
    template <class T, std::enable_if_t<std::is_floating_point_v<T>, int> = 0>
    std::size_t operator()(const TypedArray<T>& numbers) const {
        return static_cast<std::size_t>(
            std::count_if(numbers.begin(), numbers.end(), [](T value) { return std::isnan(value); }));
    }
    std::size_t operator()(const TypedArray<String>& strings) const {
        return static_cast<std::size_t>(std::count_if(
            strings.begin(), strings.end(), [](const auto& element) { return !element.has_value(); }));
    }
    std::size_t operator()(const TypedArray<Array>& cells) const {
        std::size_t count = 0;
        for (const auto& cell : cells) {
            count += missingIn(cell);
        }
        return count;
    }
    std::size_t operator()(const StructArray& records) const {
        std::size_t count = 0;
        for (const auto& record : records) {
            for (const Array& value : record) {
                count += missingIn(value);
            }
        }
        return count;
    }
    std::size_t operator()(const Array&) const { return 0; }
};

std::size_t missingIn(const Array& array) {
    return array.getType() == ArrayType::UNKNOWN ? 0 : visit(array, CountMissing());
}

} // namespace

int main() {
    const ArrayFactory factory;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TypedArray<String> names = factory.createArray<String>({1, 3}); // all missing
    names[0] = "Oslo";
    StructArray records = factory.createStructArray({1, 2}, {"name", "heat"});
    records[0]["heat"] = factory.createArray<double>({1, 3}, {1.5, nan, 2.5});
    records[1]["name"] = names;

    std::cout << "numbers " << missingIn(factory.createArray<float>({2, 1}, {float(nan), 1})) << '\n'
              << "integers " << missingIn(factory.createArray<std::int16_t>({2, 1})) << '\n'
              << "strings " << missingIn(names) << '\n'
              << "records " << missingIn(records) << '\n'
              << "cells " << missingIn(factory.createArray<Array>({1, 3}, {records, names, records})) << '\n';
}
