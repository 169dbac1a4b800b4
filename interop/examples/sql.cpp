// Columns of a text file, queried with SQL where they lie; the result is arrays again.
#include "DuckDb.hpp"

#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace foundation::vexadata;

namespace {

/// A table of the columns date, precipitation, temp_max, temp_min, wind, weather: texts, numbers, and the last of
/// them categories.
StructArray readWeather(const std::string& path) {
    const std::vector<std::string> names{"date", "precipitation", "temp_max", "temp_min", "wind", "weather"};
    std::vector<std::vector<std::string>> texts(names.size());
    std::ifstream file(path);
    std::string line;
    std::getline(file, line); // the names
    while (std::getline(file, line)) {
        std::istringstream cells(line);
        for (auto& column : texts) {
            std::getline(cells, column.emplace_back(), ',');
        }
    }

    const ArrayFactory factory;
    const std::size_t rows = texts[0].size();
    StructArray table = factory.createStructArray({1, 1}, names);
    table[0]["date"] = stringArrayFromUtf8(factory, {rows, 1}, texts[0]);
    for (std::size_t k = 1; k < 5; ++k) {
        std::vector<double> numbers;
        for (const std::string& text : texts[k]) {
            numbers.push_back(std::stod(text));
        }
        table[0][names[k]] = vexa::client::fromVector<double>({rows, 1}, std::move(numbers));
    }
    table[0]["weather"] = factory.createEnumArray({rows, 1}, "weather", texts[5]);
    return table;
}

} // namespace

int main(int argc, char** argv) {
    const StructArray weather = readWeather(argc > 1 ? argv[1] : SAMPLE_DATA);
    DuckDb database;

    // The columns of numbers are read in place; texts and categories are handed over as copies.
    StructArray means = database.query("SELECT weather, avg(temp_max) AS mean, count(*) AS days FROM weather "
                                       "GROUP BY weather ORDER BY mean DESC",
                                       {{"weather", weather}});
    std::cout << means << '\n';

    // The result is arrays like any others.
    TypedArray<double> mean = means[0]["mean"];
    for (double& celsius : mean) {
        celsius = celsius * 9 / 5 + 32;
    }
    std::cout << "in Fahrenheit: " << mean << '\n';

    std::cout << database.query("SELECT date, wind FROM weather WHERE wind >= 9 ORDER BY date",
                                {{"weather", weather}})
              << '\n';
    try {
        database.query("SELECT temperature FROM weather", {{"weather", weather}});
    } catch (const std::runtime_error& error) {
        std::cout << std::string(error.what()).substr(0, 60) << " ...\n";
    }
}
