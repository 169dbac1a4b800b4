// An interface that is declared with the names alone, and defined and called with the library's headers.
#include <foundation/vexadata/Forward.hpp>

namespace {

using namespace foundation::vexadata;

TypedArray<double> doubled(const TypedArray<double>& numbers);
Array numbersOf(const StructArray& records);

} // namespace

#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

namespace {

TypedArray<double> doubled(const TypedArray<double>& numbers) {
    TypedArray<double> result = numbers;
    for (double& number : result) {
        number *= 2;
    }
    return result;
}

Array numbersOf(const StructArray& records) { return records[0]["numbers"]; }

TEST(Forward, DeclaresInterfacesWithoutDefinitions) {
    ArrayFactory factory;
    StructArray records = factory.createStructArray({1, 1}, {"numbers"});
    records[0]["numbers"] = doubled(factory.createArray<double>({1, 2}, {1, 2}));
    EXPECT_EQ(numbersOf(records), factory.createArray<double>({1, 2}, {2, 4}));
}

} // namespace
