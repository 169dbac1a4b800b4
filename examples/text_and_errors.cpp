// Text as UTF-8, sorted strings, and errors that say which index it was.
#include <foundation/vexadata/Explain.hpp>
#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/VexaData.hpp>

#include <algorithm>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

using namespace foundation::vexadata;

int main() {
    const ArrayFactory factory;
    const std::vector<std::optional<std::string>> cities{"Zürich", std::nullopt, "Århus",
                                                         "Köln",   "Aachen",     "Köln"};
    TypedArray<String> strings = stringArrayFromUtf8(factory, {1, 6}, cities);

    std::sort(strings.begin(), strings.end()); // by code unit; missing ones come first
    std::cout << strings << '\n';
    std::cout << std::count(strings.begin(), strings.end(), u"Köln") << " times Köln\n";
    for (const std::optional<std::string>& text : toUtf8(strings)) {
        std::cout << text.value_or("(nowhere)") << '\n';
    }

    try {
        std::cout << fromUtf8("K\xF6ln").size() << '\n'; // Latin-1
    } catch (const std::range_error& error) {
        std::cout << error.what() << '\n';
    }

    const TypedArray<double> matrix = factory.createArray<double>({3, 4});
    try {
        std::cout << double(matrix[2][4]) << '\n';
    } catch (const Exception& error) {
        std::cout << explain(error, matrix, {2, 4}) << '\n';
    }
    try {
        withStandardErrors([&] { return double(matrix[2][4]); });
    } catch (const std::exception& error) {
        std::cout << error.what() << '\n';
    }

    ValueObject point = factory.createValueObject(factory.createClassInfo("Point", {"x", "y"}));
    point["x"] = factory.createScalar(1.5);
    point["y"] = factory.createScalar(-2.0);
    std::cout << point << '\n';
    return 0;
}
