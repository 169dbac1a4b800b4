// refused: no member named
#include <foundation/vexadata/TypedArray.hpp>

#include <utility>

using namespace foundation::vexadata;

#ifdef REFUSED
void snippet(TypedArray<double>& numbers, Array& anything) { numbers.swap(anything); }
#else
void snippet(TypedArray<double>& numbers, TypedArray<double>& others) { std::swap(numbers, others); }
#endif
