// The means of the numbers in a table that is read row by row.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>

#include <fstream>
#include <iostream>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::client::fromVector;
using vexa::data::MemoryLayout;

int main() {
    std::ifstream file("data/seattle-weather.csv");
    const std::vector<std::string> names{"precipitation", "temp_max", "temp_min", "wind"};
    std::vector<double> numbers; // four a row, between a date and a word
    std::string line;
    std::getline(file, line); // the names
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        std::string field;
        std::getline(fields, field, ',');
        for (std::size_t k = 0; k < names.size() && std::getline(fields, field, ','); ++k) {
            numbers.push_back(std::stod(field));
        }
    }

    // The vector becomes the array, without a copy.
    const std::size_t rows = numbers.size() / names.size();
    const TypedArray<double> table =
        fromVector({rows, names.size()}, std::move(numbers), MemoryLayout::ROW_MAJOR);

    const auto view = readOnlyView(table);
    for (std::size_t j = 0; j < view.extent(1); ++j) {
        const auto column = view.column(j);
        std::cout << names[j] << ' ' << std::accumulate(column.begin(), column.end(), 0.0) / double(rows)
                  << '\n';
    }
}
