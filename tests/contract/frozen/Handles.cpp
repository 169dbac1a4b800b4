// Sizes of handles: clients build them into their own objects, and back-ends take and give some of them by value.
#include "Table.hpp"

#include <foundation/vexadata/VexaData.hpp>

namespace contract {

using namespace foundation::vexadata;

template struct Interface<Array, 24, 2>;
template struct Interface<Object, 24, 2>;
static_assert(sizeof(TypedArray<double>) == 24 && sizeof(SparseArray<double>) == 24 &&
              sizeof(StructArray) == 24);
static_assert(sizeof(ValueObject) == 24 && sizeof(HandleObjectRef) == 24);
static_assert(sizeof(ClassInfo) == 16 && sizeof(Property) == 16 && sizeof(VexaClassIdentifier) == 16);
static_assert(sizeof(VexaFieldIdentifier) == 16 && sizeof(VexaPropertyIdentifier) == 16);
static_assert(sizeof(ArrayFactory) == 16 && sizeof(Reference<double>) == 16 &&
              sizeof(TypedIterator<double>) == 24);
static_assert(sizeof(ArrayElementTypedRef<std::complex<double>, false>) <= 128 &&
              sizeof(ArrayElementRef<false>) <= 128);

} // namespace contract
