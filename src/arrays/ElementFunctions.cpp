// Explicit instantiations of the function templates over index chains, one in the library for all clients.
#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/ValueObjectArray.hpp>

namespace foundation::vexadata::detail {

using Chain = std::shared_ptr<ReferenceImpl>;

#define VEXADATA_ELEMENT(T)                                                                                  \
    template T getValue<T>(Chain);                                                                           \
    template void setTypedElement<T>(Chain, T);
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
template Enumeration getValue<Enumeration>(Chain);
template ValueObject getValue<ValueObject>(Chain);
template void setTypedElement<Enumeration>(Chain, Enumeration);
template void setTypedElement<String>(Chain, String);

#define VEXADATA_ELEMENT(T)                                                                                  \
    template void validateReference<T>(Chain, bool);                                                         \
    template TypedArray<T> castTo<TypedArray<T>, false>(Chain);                                              \
    template TypedArray<T> castTo<TypedArray<T>, true>(Chain);
#include <foundation/vexadata/detail/ElementTypes.inc>

template Array castTo<Array, false>(Chain);
template Array castTo<Array, true>(Chain);
template CharArray castTo<CharArray, false>(Chain);
template CharArray castTo<CharArray, true>(Chain);
template StructArray castTo<StructArray, false>(Chain);
template StructArray castTo<StructArray, true>(Chain);
template EnumArray castTo<EnumArray, false>(Chain);
template EnumArray castTo<EnumArray, true>(Chain);
template ValueObjectArray castTo<ValueObjectArray, false>(Chain);
template ValueObjectArray castTo<ValueObjectArray, true>(Chain);

} // namespace foundation::vexadata::detail
