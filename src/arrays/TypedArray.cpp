// The instances of TypedArray, one for each element type.
#include <foundation/vexadata/TypedArray.hpp>

namespace foundation::vexadata {

#define VEXADATA_ELEMENT(T) template class TypedArray<T>;
#include <foundation/vexadata/detail/ElementTypes.inc>

} // namespace foundation::vexadata
