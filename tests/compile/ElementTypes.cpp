// refused 1: T of TypedArray<T> must be an element type
// refused 2: T of SparseArray<T> must be bool, double or std::complex<double>
// refused 3: T of TypedArray<T> must be an element type
// refused 4: T is not a primitive element type
// refused 5: T is not an element type of arrays
// refused 6: no member named
#include <foundation/vexadata/VexaData.hpp>

#include <utility>

using namespace foundation::vexadata;

template <int number, class Right, class Wrong>
using Case = std::conditional_t<REFUSED == number, Wrong, Right>;

void snippets(const ArrayFactory& factory, Array& array, TypedArray<double>& numbers) {
    TypedArray<Case<1, std::int64_t, long long>> typed(array); // std::int64_t is `long`
    SparseArray<Case<2, double, float>> sparse(array);
    factory.createScalar(std::complex<Case<3, long long, long double>>(1, 2));
    factory.createBuffer<std::complex<Case<4, std::int8_t, bool>>>(1);
    getReadOnlyElements<Case<5, std::uint64_t, unsigned long long>>(array);
#if REFUSED == 6
    numbers.swap(array); // which may be of any kind
#endif
    TypedArray<double> others = numbers;
    std::swap(numbers, others);
}
