// refused: T is not an element type of arrays
#include <foundation/vexadata/BufferAccess.hpp>

#ifdef REFUSED
using Element = unsigned long long;
#else
using Element = std::uint64_t;
#endif

void snippet(const foundation::vexadata::Array& array) {
    foundation::vexadata::getReadOnlyElements<Element>(array);
}
