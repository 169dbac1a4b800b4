// What the test with NumPy calls through ctypes.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/DLPack.hpp>

#include <cstring>
#include <numeric>
#include <string>
#include <vector>

using namespace foundation::vexadata;
using vexa::interop::dlpack::DLManagedTensor;

extern "C" {

/// A tensor of counting doubles with these dimensions.
DLManagedTensor* counting(const std::size_t* dims, std::size_t rank) {
    auto array = ArrayFactory().createArray<double>(std::vector<std::size_t>(dims, dims + rank));
    std::iota(array.begin(), array.end(), 0.0);
    return vexa::interop::toDLPack<DLManagedTensor>(array);
}

/// An array of a tensor, for the functions below; null, with the reason in `reason`, where it is refused.
Array* taken(DLManagedTensor* tensor, char* reason, std::size_t size) {
    try {
        return new Array(vexa::interop::fromDLPack(tensor));
    } catch (const std::exception& error) {
        std::strncpy(reason, error.what(), size - 1);
        return nullptr;
    }
}

DLManagedTensor* given(const Array* array) { return vexa::interop::toDLPack<DLManagedTensor>(*array); }

const void* address(const Array* array) {
    const void* data = nullptr;
    detail::withPrimitive(array->getType(), [&](auto tag) {
        data = readOnlyView<8>(TypedArray<typename decltype(tag)::type>(*array)).data();
    });
    return data;
}

/// Writes the first element of an array of doubles.
void writeFirst(Array* array, double value) {
    TypedArray<double> typed = std::move(*array);
    *typed.begin() = value;
    *array = std::move(typed);
}

void drop(Array* array) { delete array; }
}
