// A nested configuration: records in records, a list of anything, read and changed in place, and printed.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>

using namespace foundation::vexadata;

int main() {
    const ArrayFactory factory;
    StructArray limits = factory.createStructArray({1, 1}, {"depth", "rate"});
    limits[0]["depth"] = factory.createScalar(std::int32_t(6));
    limits[0]["rate"] = factory.createScalar(0.25);

    StructArray config = factory.createStructArray({1, 1}, {"name", "limits", "hosts", "extra"});
    config[0]["name"] = factory.createCharArray("worker");
    config[0]["limits"] = limits;
    config[0]["hosts"] = factory.createArray<String>({1, 2}, {"alpha", "beta"});
    config[0]["extra"] =
        factory.createArray<Array>({1, 2}, {factory.createScalar(true), factory.createArray<double>({1, 3})});

    const StructArray before = config; // shares everything until it is changed
    config[0]["limits"][0]["depth"][0] = 8;
    config[0]["hosts"][1] = "gamma";

    const int depth = config[0]["limits"][0]["depth"][0];
    const int depthBefore = before[0]["limits"][0]["depth"][0];
    std::cout << "depth " << depthBefore << ", then " << depth << '\n' << config << '\n';
}
