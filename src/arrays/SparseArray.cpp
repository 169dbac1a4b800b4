// The instances of SparseArray.
#include <foundation/vexadata/SparseArray.hpp>

namespace foundation::vexadata {

template class SparseArray<bool>;
template class SparseArray<double>;
template class SparseArray<std::complex<double>>;

} // namespace foundation::vexadata
