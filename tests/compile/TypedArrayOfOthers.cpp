// refused: T of TypedArray<T> must be an element type
#include <foundation/vexadata/TypedArray.hpp>

#ifdef REFUSED
using Element = long long; // another type than std::int64_t, which is `long`
#else
using Element = std::int64_t;
#endif

void snippet(const foundation::vexadata::Array& array) {
    foundation::vexadata::TypedArray<Element> typed(array);
}
