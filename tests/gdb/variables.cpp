// What the printers for GDB are shown; GDB stops in `stop`.
#include <foundation/vexadata/VexaData.hpp>

#include <complex>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::vexadata;

[[gnu::noinline]] void stop() { asm volatile(""); }

int main() {
    auto numbers = ArrayFactory().createArray<double>({2, 3}, {1, 2.5, 3, 4, 5, 6});
    const Array untyped = ArrayFactory().createArray<std::int8_t>({1, 20});
    const auto byRow = ArrayFactory().createArray<std::int32_t>({2, 3}, {1, 2, 3, 4, 5, 6},
                                                                vexa::data::MemoryLayout::ROW_MAJOR);
    const auto complex = ArrayFactory().createArray<std::complex<float>>({1, 1}, {{1, -2}});
    const auto logical = ArrayFactory().createArray<bool>({1, 2}, {true, false});
    const CharArray text = ArrayFactory().createCharArray("hello");
    const auto strings = ArrayFactory().createArray<String>({1, 3});
    const StructArray records = ArrayFactory().createStructArray({2, 2}, {"x"});
    const auto sparse = ArrayFactory().createSparseArray<double>({3, 3}, std::vector<double>{5},
                                                                 std::vector<int>{1}, std::vector<int>{1});
    const auto none = ArrayFactory().createArray<double>({0, 3});
    const Array nothing;
    auto moved = ArrayFactory().createScalar(1.0);
    const auto taken = std::move(moved);
    const auto element = numbers[1][2];
    const auto rowElement = byRow[1][0];
    const auto partial = byRow[1];
    const auto outside = numbers[7][0];
    const auto anyElement = untyped[3];
    stop();
    (void)element, (void)rowElement, (void)partial, (void)outside, (void)anyElement;
}
