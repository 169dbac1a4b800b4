// The interfaces of arrays, of all kinds.
#include "Table.hpp"

#include <vexa/data/impl/ArrayImpl.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/data/impl/InPlaceStructImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <complex>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace vexa::data;
using namespace vexa::data::detail;
using namespace vexa::data::impl;
using Text = std::optional<std::u16string>;

template struct Interface<ArrayImpl, 16, afterDestructor + 36>;
template struct Operation<afterDestructor + 1, ArrayImpl*() const, &ArrayImpl::sharedCopy>;
template struct Operation<afterDestructor + 2, void*(), &ArrayImpl::reservedOp1>;
template struct Operation<afterDestructor + 3, void*(), &ArrayImpl::reservedOp2>;
template struct Operation<afterDestructor + 4, IteratorImpl*(void*, bool), &ArrayImpl::beginIterator>;
template struct Operation<afterDestructor + 5, IteratorImpl*(void*, bool), &ArrayImpl::endIterator>;
template struct Operation<afterDestructor + 6, void(), &ArrayImpl::reservedOp5>;
template struct Operation<afterDestructor + 7, void*(), &ArrayImpl::reservedOp6>;
template struct Operation<afterDestructor + 8, void(), &ArrayImpl::reservedOp7>;
template struct Operation<afterDestructor + 9, void(), &ArrayImpl::reservedOp8>;
template struct Operation<afterDestructor + 10, ArrayType() const, &ArrayImpl::getType>;
template struct Operation<afterDestructor + 11, MemoryLayout() const, &ArrayImpl::getMemoryLayout>;
template struct Operation<afterDestructor + 12, ReferenceImpl*(std::size_t, const std::string&, bool),
                          &ArrayImpl::createElementReference>;
template struct Operation<afterDestructor + 13, ReferenceImpl*(std::size_t, const std::string&),
                          &ArrayImpl::forwardingOp>;
template struct Operation<afterDestructor + 14, const std::vector<std::size_t>&() const,
                          &ArrayImpl::getDimensions>;
template struct Operation<afterDestructor + 15, std::size_t() const, &ArrayImpl::getNumberOfElements>;
template struct Operation<afterDestructor + 16, std::size_t() const, &ArrayImpl::reservedOp10>;
template struct Operation<afterDestructor + 17, void(std::size_t, const std::string&, ArrayImpl*),
                          &ArrayImpl::assignElementArray>;
template struct Operation<afterDestructor + 18, std::string(std::size_t, const std::string&) const,
                          &ArrayImpl::castToString>;
template struct Operation<afterDestructor + 19, void(std::size_t, const std::string&, std::string),
                          &ArrayImpl::setString>;
template struct Operation<afterDestructor + 20, void(std::size_t, std::uint64_t, std::uint64_t),
                          &ArrayImpl::setElementWords>;
template struct Operation<afterDestructor + 21, void(), &ArrayImpl::setElementOpB>;
template struct Operation<afterDestructor + 22, void(std::size_t, const char16_t*&, std::size_t&) const,
                          &ArrayImpl::getStringElement>;
template struct Operation<afterDestructor + 23, const std::size_t*() const, &ArrayImpl::getJc>;
template struct Operation<afterDestructor + 24, const std::size_t*() const, &ArrayImpl::getIr>;
template struct Operation<afterDestructor + 25, std::size_t() const, &ArrayImpl::getRows>;
template struct Operation<afterDestructor + 26, std::size_t() const, &ArrayImpl::getCols>;
template struct Operation<afterDestructor + 27, std::size_t() const, &ArrayImpl::getNumberOfNonZeroElements>;
template struct Operation<afterDestructor + 28, std::pair<std::size_t, std::size_t>(std::size_t) const,
                          &ArrayImpl::getIndex>;
template struct Operation<afterDestructor + 29, bool() const, &ArrayImpl::isEmpty>;
template struct Operation<afterDestructor + 30, std::uint64_t() const, &ArrayImpl::getArrayID>;
template struct Operation<afterDestructor + 31, void(), &ArrayImpl::unshare>;
template struct Operation<afterDestructor + 32, void(void*&, void (*&)(void*)) const,
                          &ArrayImpl::copyOutBuffer>;
template struct Operation<afterDestructor + 33, void(void*&, void (*&)(void*)), &ArrayImpl::releaseBuffer>;
template struct Operation<afterDestructor + 34, const void*() const, &ArrayImpl::getUntypedDataPtr>;
template struct Operation<afterDestructor + 35, bool(const ArrayImpl*) const, &ArrayImpl::isEqual>;
static_assert(sizeof(EmptyArrayImpl) == 16);

#define VEXADATA_ELEMENT(T) template struct Interface<TypedArrayImpl<T>, 16, afterDestructor + 41>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
template struct Interface<TypedArrayImpl<Array>, 16, afterDestructor + 41>;
template struct Operation<afterDestructor + 36, void(), &TypedArrayImpl<double>::reservedOp36>;
template struct Operation<afterDestructor + 37, void(), &TypedArrayImpl<double>::reservedOp37>;
template struct Operation<afterDestructor + 38, double*(std::size_t, const std::string&, bool),
                          &TypedArrayImpl<double>::getElementAddress>;
template struct Operation<afterDestructor + 39, void(std::size_t, const std::string&, double),
                          &TypedArrayImpl<double>::setElementValue>;
template struct Operation<afterDestructor + 40, const double*() const,
                          &TypedArrayImpl<double>::getTypedDataPtr>;

template struct Interface<StringArrayImpl, 16, afterDestructor + 41>;
template struct Operation<afterDestructor + 36, void(), &TypedArrayImpl<Text>::reservedOp36>;
template struct Operation<afterDestructor + 37, void(), &TypedArrayImpl<Text>::reservedOp37>;
template struct Operation<afterDestructor + 38, Text*(std::size_t, const std::string&, bool),
                          &TypedArrayImpl<Text>::getElementAddress>;
template struct Operation<afterDestructor + 39, void(std::size_t, const std::string&, Text),
                          &TypedArrayImpl<Text>::setStringElement>;
template struct Operation<afterDestructor + 40, const Text*() const, &TypedArrayImpl<Text>::getTypedDataPtr>;

template struct Interface<StructArrayImpl, 16, afterDestructor + 49>;
template struct Interface<InPlaceStructImpl, 32, afterDestructor + 50>;
template struct Operation<afterDestructor + 49, ArrayImpl* const*(std::size_t, const std::string&) const,
                          &InPlaceStructImpl::getFieldPlace>;
template struct Operation<afterDestructor + 41, ForwardIteratorImpl*(), &StructArrayImpl::fieldNamesBegin>;
template struct Operation<afterDestructor + 42, ForwardIteratorImpl*(), &StructArrayImpl::fieldNamesEnd>;
template struct Operation<afterDestructor + 43, std::size_t() const, &StructArrayImpl::getNumFields>;
template struct Operation<afterDestructor + 44, void(), &StructArrayImpl::reservedOp44>;
template struct Operation<afterDestructor + 45, IteratorImpl*(std::size_t, bool),
                          &StructArrayImpl::createFieldValuesIterator>;
template struct Operation<afterDestructor + 46, void(), &StructArrayImpl::reservedOp46>;
template struct Operation<afterDestructor + 47, ArrayImpl*(std::size_t, const std::string&) const,
                          &StructArrayImpl::getField>;
template struct Operation<afterDestructor + 48, void(std::size_t, std::vector<Array>),
                          &StructArrayImpl::setFieldValues>;

template struct Interface<EnumArrayImpl, 16, afterDestructor + 44>;
template struct Operation<afterDestructor + 41, const char*() const, &EnumArrayImpl::getClassName>;
template struct Operation<afterDestructor + 42, void(), &EnumArrayImpl::reservedOp42>;
template struct Operation<afterDestructor + 43, const char*(std::size_t) const,
                          &EnumArrayImpl::getEnumNameAt>;

template struct Interface<ObjectArrayImpl, 16, afterDestructor + 69>;
template struct Operation<afterDestructor + 41, ClassInfo() const, &ObjectArrayImpl::getClassInfo>;
template struct Operation<afterDestructor + 42, bool() const, &ObjectArrayImpl::isHeterogeneous>;
template struct Operation<afterDestructor + 43, Array(VexaPropertyIdentifier) const,
                          &ObjectArrayImpl::getArrayProperty>;
template struct Operation<afterDestructor + 44, ReferenceImpl*(VexaPropertyIdentifier),
                          &ObjectArrayImpl::getArrayPropertyReference>;
template struct Operation<afterDestructor + 45, ForwardIteratorImpl*(), &ObjectArrayImpl::beginArrayProp>;
template struct Operation<afterDestructor + 46, ForwardIteratorImpl*(), &ObjectArrayImpl::endArrayProp>;
template struct Operation<afterDestructor + 47, ForwardIteratorImpl*() const,
                          &ObjectArrayImpl::cbeginArrayProp>;
template struct Operation<afterDestructor + 48, ForwardIteratorImpl*() const,
                          &ObjectArrayImpl::cendArrayProp>;
template struct Operation<afterDestructor + 49, bool(const VexaPropertyIdentifier&) const,
                          &ObjectArrayImpl::hasArrayProperty>;
template struct Operation<afterDestructor + 50, std::size_t() const, &ObjectArrayImpl::numOfArrayProperties>;
template struct Operation<afterDestructor + 51, void(), &ObjectArrayImpl::reservedOp51>;
template struct Operation<afterDestructor + 52, void(), &ObjectArrayImpl::reservedOp52>;
template struct Operation<afterDestructor + 53, void(), &ObjectArrayImpl::reservedOp53>;
template struct Operation<afterDestructor + 54, void(), &ObjectArrayImpl::reservedOp54>;
template struct Operation<afterDestructor + 55, std::vector<std::size_t>() const,
                          &ObjectArrayImpl::getExternalDimensions>;
template struct Operation<afterDestructor + 56, bool() const, &ObjectArrayImpl::isExternalDimensionsSet>;
template struct Operation<afterDestructor + 57, std::vector<std::string>() const,
                          &ObjectArrayImpl::getExternalRepresentationArrayPropertyNames>;
template struct Operation<afterDestructor + 58, Array(std::size_t, VexaPropertyIdentifier) const,
                          &ObjectArrayImpl::getElementProperty>;
template struct Operation<afterDestructor + 59, void(std::size_t, ObjectImpl*),
                          &ObjectArrayImpl::setElementObject>;
template struct Operation<afterDestructor + 60, ObjectImpl*(std::size_t) const,
                          &ObjectArrayImpl::getElementObject>;
template struct Operation<afterDestructor + 61, void(), &ObjectArrayImpl::reservedOp61>;
template struct Operation<afterDestructor + 62, void(), &ObjectArrayImpl::reservedOp62>;
template struct Operation<afterDestructor + 63, void(), &ObjectArrayImpl::reservedOp63>;
template struct Operation<afterDestructor + 64, void(), &ObjectArrayImpl::reservedOp64>;
template struct Operation<afterDestructor + 65, void(), &ObjectArrayImpl::reservedOp65>;
template struct Operation<afterDestructor + 66, ForwardIteratorImpl*(std::size_t),
                          &ObjectArrayImpl::beginElementProperties>;
template struct Operation<afterDestructor + 67, ForwardIteratorImpl*(std::size_t),
                          &ObjectArrayImpl::endElementProperties>;
template struct Operation<afterDestructor + 68, bool(const ArrayImpl*) const,
                          &ObjectArrayImpl::isEqualArrayProperties>;

} // namespace contract
