// refused: T is not a primitive element type
#include <foundation/vexadata/ArrayFactory.hpp>

#ifdef REFUSED
using Element = std::complex<bool>;
#else
using Element = std::complex<std::int8_t>;
#endif

void snippet(const foundation::vexadata::ArrayFactory& factory) { factory.createBuffer<Element>(1); }
