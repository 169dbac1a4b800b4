// Cells hold any array, cells among them. A write copies what is shared on its way, and nothing else.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>

using namespace foundation::vexadata;

namespace {

/// Value 1 of the numbers inside the inner cell.
double inside(const TypedArray<Array>& cells) {
    const TypedArray<Array> inner = cells[0];
    const TypedArray<double> numbers = inner[1];
    return numbers[1];
}

} // namespace

int main() {
    ArrayFactory factory;
    TypedArray<double> numbers = factory.createArray<double>({1, 3}, {1, 2, 3});
    TypedArray<Array> inner = factory.createArray<Array>({1, 2}, {factory.createCharArray("label"), numbers});
    TypedArray<Array> outer = factory.createArray<Array>({2, 1}, {inner, numbers});
    const TypedArray<Array> copy = outer; // nothing is copied yet

    outer[1].held()[2] = 30.0; // number 2 of the array in cell 1
    std::cout << "numbers " << numbers[2] << ", in the cell " << outer[1].held()[2] << '\n';

    outer[0].held()[1].held()[1] = 20.0; // a level at a time for what lies deeper
    std::cout << "inside " << inside(outer) << ", in the copy " << inside(copy) << '\n';

    // The label was never written: all still share the one array.
    const TypedArray<Array> left = outer[0];
    const TypedArray<Array> right = copy[0];
    std::cout << "label " << (left[0].getArrayID() == right[0].getArrayID() ? "shared" : "copied")
              << ", cells " << (left == right ? "equal" : "different") << '\n';

    for (const auto& element : copy) {
        std::cout << element.getNumberOfElements() << " elements of kind " << int(element.getType()) << '\n';
    }
}
