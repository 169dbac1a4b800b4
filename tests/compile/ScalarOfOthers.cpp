// refused: T of TypedArray<T> must be an element type
#include <foundation/vexadata/ArrayFactory.hpp>

#ifdef REFUSED
using Part = long double;
#else
using Part = long long;
#endif

void snippet(const foundation::vexadata::ArrayFactory& factory) {
    factory.createScalar(std::complex<Part>(1, 2));
}
