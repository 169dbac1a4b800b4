// Records with fields of different kinds, read and written by name.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    StructArray cities = factory.createStructArray({1, 3}, {"name", "population", "capital", "districts"});
    const char* names[] = {"Oslo", "Bergen", "Lillehammer"};
    const double populations[] = {709037, 291940, 28560};
    for (std::size_t i = 0; i < 3; ++i) {
        cities[i]["name"] = factory.createCharArray(names[i]);
        cities[i]["population"] = factory.createScalar(populations[i]);
        cities[i]["capital"] = factory.createScalar(i == 0);
    }
    cities[0]["districts"] = factory.createArray<String>({1, 2}, {u"Frogner", u"Grorud"});

    const StructArray before = cities; // shares every field until one is written
    cities[1]["population"][0] = 294029.0;

    for (const auto& city : before) {
        const CharArray name = city["name"];
        const double population = city["population"][0];
        const bool capital = city["capital"][0];
        std::cout << name.toAscii() << ", " << population << (capital ? ", capital" : "")
                  << (city["districts"].isEmpty() ? "" : ", with districts") << '\n';
    }
    const double corrected = cities[1]["population"][0];
    std::cout << "corrected: " << corrected << '\n';

    std::cout << "fields:";
    for (const VexaFieldIdentifier& field : cities.getFieldNames()) {
        std::cout << ' ' << field.getString();
    }
    std::cout << '\n';

    try {
        cities[2] = {factory.createCharArray("one value for four fields")};
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
    try {
        const Array mayor = before[0]["mayor"];
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
}
