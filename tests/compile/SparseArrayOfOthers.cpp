// refused: T of SparseArray<T> must be bool, double or std::complex<double>
#include <foundation/vexadata/SparseArray.hpp>

#ifdef REFUSED
using Element = float;
#else
using Element = double;
#endif

void snippet(const foundation::vexadata::Array& array) {
    foundation::vexadata::SparseArray<Element> sparse(array);
}
