// How a function is tested over a back-end whose operations are recorded, or fail one after the other, and
// without memory.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/testing/AllocationFunctions.hpp> // in one source of a program alone
#include <vexa/testing/CallLog.hpp>
#include <vexa/testing/FailingBackEnd.hpp>

#include <cstddef>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>

using namespace foundation::vexadata;
using vexa::testing::FailingAllocations;

namespace {

// What is tested: the array that it is given must not change when it fails.
TypedArray<double> withFirst(TypedArray<double> array, double value) {
    array[0][0] = value;
    return array;
}

void record() {
    auto made = vexa::testing::recorded(ArrayFactory().createArray<double>({2, 2}));
    withFirst(made.array, 7.0);
    for (const auto& call : made.log->operations()) {
        std::cout << call << '\n';
    }
}

void failOperations() {
    auto hook = std::make_shared<vexa::testing::FailingHook>();
    ArrayFactory factory = vexa::testing::failingFactory(hook);
    const auto array = factory.createArray<double>({2, 2});
    const auto before = factory.createArray<double>({2, 2});
    std::size_t number = 0;
    do {
        hook->failAt(++number);
        try {
            withFirst(array, 7.0);
        } catch (const std::runtime_error& error) {
            std::cout << "operation " << number << ": " << error.what() << '\n';
        }
        if (array != before) {
            std::cout << "a failure has changed the array\n";
        }
    } while (hook->hasFailed());
}

void failAllocations() {
    const auto array = ArrayFactory().createArray<double>({2, 2});
    withFirst(array, 7.0); // what is made once a process is made here
    std::size_t number = 0;
    std::ptrdiff_t lost = 0;
    bool failed = false;
    do {
        FailingAllocations::start();
        try {
            FailingAllocations::failAt(++number);
            withFirst(array, 7.0);
        } catch (const std::bad_alloc&) {}
        failed = FailingAllocations::fired();
        lost += FailingAllocations::liveBlocks();
        FailingAllocations::stop();
    } while (failed);
    std::cout << lost << " blocks are lost\n";
}

} // namespace

int main() {
    record();
    failOperations();
    failAllocations();
}
