// Reserved operations and instances of the typed interfaces.
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <utility>

namespace vexa::data::impl {

template <class T>
void TypedArrayImpl<T>::reservedOp36() {}
template <class T>
void TypedArrayImpl<T>::reservedOp37() {}

TypedArrayImpl<optional<std::u16string>>::~TypedArrayImpl() = default;
void TypedArrayImpl<optional<std::u16string>>::reservedOp36() {}
void TypedArrayImpl<optional<std::u16string>>::reservedOp37() {}
void TypedArrayImpl<optional<std::u16string>>::setElementValue(std::size_t index,
                                                               const std::string& fieldName, Element value) {
    setStringElement(index, fieldName, std::move(value));
}

#define VEXADATA_ELEMENT(T) template class TypedArrayImpl<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
template class TypedArrayImpl<foundation::vexadata::Array>;
template class TypedArrayImpl<foundation::vexadata::StructElement>;
template class TypedArrayImpl<foundation::vexadata::Enumeration>;
template class TypedArrayImpl<foundation::vexadata::HandleObjectRef>;

} // namespace vexa::data::impl
