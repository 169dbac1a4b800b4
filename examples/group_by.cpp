// Means by category, where some categories are missing.
#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <vector>

using namespace foundation::vexadata;

int main() {
    const ArrayFactory factory;
    const std::vector<std::optional<std::string>> texts{"Köln", "Oslo",       std::nullopt, "Köln",
                                                        "Oslo", std::nullopt, "Århus"};
    const TypedArray<String> cities = stringArrayFromUtf8(factory, {texts.size(), 1}, texts);
    const TypedArray<double> heat = factory.createArray<double>({7, 1}, {21, 14, 3, 25, 16, 5, 18});

    struct Group {
        double sum = 0;
        int count = 0;
    };
    std::map<String, Group> groups; // a missing string is a value: it comes first
    for (std::size_t k = 0; k < cities.size(); ++k) {
        Group& group = groups[cities[k].value()];
        group.sum += heat[k];
        ++group.count;
    }
    for (const auto& [city, group] : groups) {
        std::cout << toUtf8(city).value_or("(missing)") << ": " << group.sum / group.count << '\n';
    }
}
