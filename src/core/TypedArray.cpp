#include <foundation/vexadata/TypedArray.hpp>

namespace foundation::vexadata {

template <class T>
TypedArray<T>::~TypedArray() = default;

#define VEXADATA_ELEMENT(T) template class TypedArray<T>;
#include <foundation/vexadata/ElementTypes.inc>

} // namespace foundation::vexadata
