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

template struct Interface<ArrayImpl, 16, 37>;
template struct Operation<2, ArrayImpl*() const, &ArrayImpl::sharedCopy>;
template struct Operation<3, void*(), &ArrayImpl::reservedOp1>;
template struct Operation<4, void*(), &ArrayImpl::reservedOp2>;
template struct Operation<5, IteratorImpl*(void*, bool), &ArrayImpl::beginIterator>;
template struct Operation<6, IteratorImpl*(void*, bool), &ArrayImpl::endIterator>;
template struct Operation<7, void(), &ArrayImpl::reservedOp5>;
template struct Operation<8, void*(), &ArrayImpl::reservedOp6>;
template struct Operation<9, void(), &ArrayImpl::reservedOp7>;
template struct Operation<10, void(), &ArrayImpl::reservedOp8>;
template struct Operation<11, ArrayType() const, &ArrayImpl::getType>;
template struct Operation<12, MemoryLayout() const, &ArrayImpl::getMemoryLayout>;
template struct Operation<13, ReferenceImpl*(std::size_t, const std::string&, bool),
                          &ArrayImpl::createElementReference>;
template struct Operation<14, ReferenceImpl*(std::size_t, const std::string&), &ArrayImpl::forwardingOp>;
template struct Operation<15, const std::vector<std::size_t>&() const, &ArrayImpl::getDimensions>;
template struct Operation<16, std::size_t() const, &ArrayImpl::getNumberOfElements>;
template struct Operation<17, std::size_t() const, &ArrayImpl::reservedOp10>;
template struct Operation<18, void(std::size_t, const std::string&, ArrayImpl*),
                          &ArrayImpl::assignElementArray>;
template struct Operation<19, std::string(std::size_t, const std::string&) const, &ArrayImpl::castToString>;
template struct Operation<20, void(std::size_t, const std::string&, std::string), &ArrayImpl::setString>;
template struct Operation<21, void(std::size_t, std::uint64_t, std::uint64_t), &ArrayImpl::setElementWords>;
template struct Operation<22, void(), &ArrayImpl::setElementOpB>;
template struct Operation<23, void(std::size_t, const char16_t*&, std::size_t&) const,
                          &ArrayImpl::getStringElement>;
template struct Operation<24, const std::size_t*() const, &ArrayImpl::getJc>;
template struct Operation<25, const std::size_t*() const, &ArrayImpl::getIr>;
template struct Operation<26, std::size_t() const, &ArrayImpl::getRows>;
template struct Operation<27, std::size_t() const, &ArrayImpl::getCols>;
template struct Operation<28, std::size_t() const, &ArrayImpl::getNumberOfNonZeroElements>;
template struct Operation<29, std::pair<std::size_t, std::size_t>(std::size_t) const, &ArrayImpl::getIndex>;
template struct Operation<30, bool() const, &ArrayImpl::isEmpty>;
template struct Operation<31, std::uint64_t() const, &ArrayImpl::getArrayID>;
template struct Operation<32, void(), &ArrayImpl::unshare>;
template struct Operation<33, void(void*&, void (*&)(void*)) const, &ArrayImpl::copyOutBuffer>;
template struct Operation<34, void(void*&, void (*&)(void*)), &ArrayImpl::releaseBuffer>;
template struct Operation<35, const void*() const, &ArrayImpl::getUntypedDataPtr>;
template struct Operation<36, bool(const ArrayImpl*) const, &ArrayImpl::isEqual>;
static_assert(sizeof(EmptyArrayImpl) == 16);

#define VEXADATA_ELEMENT(T) template struct Interface<TypedArrayImpl<T>, 16, 42>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
template struct Interface<TypedArrayImpl<Array>, 16, 42>;
template struct Operation<37, void(), &TypedArrayImpl<double>::reservedOp36>;
template struct Operation<38, void(), &TypedArrayImpl<double>::reservedOp37>;
template struct Operation<39, double*(std::size_t, const std::string&, bool),
                          &TypedArrayImpl<double>::getElementAddress>;
template struct Operation<40, void(std::size_t, const std::string&, double),
                          &TypedArrayImpl<double>::setElementValue>;
template struct Operation<41, const double*() const, &TypedArrayImpl<double>::getTypedDataPtr>;

template struct Interface<StringArrayImpl, 16, 42>;
template struct Operation<37, void(), &TypedArrayImpl<Text>::reservedOp36>;
template struct Operation<38, void(), &TypedArrayImpl<Text>::reservedOp37>;
template struct Operation<39, Text*(std::size_t, const std::string&, bool),
                          &TypedArrayImpl<Text>::getElementAddress>;
template struct Operation<40, void(std::size_t, const std::string&, Text),
                          &TypedArrayImpl<Text>::setStringElement>;
template struct Operation<41, const Text*() const, &TypedArrayImpl<Text>::getTypedDataPtr>;

template struct Interface<StructArrayImpl, 16, 50>;
template struct Interface<InPlaceStructImpl, 32, 51>;
template struct Operation<50, ArrayImpl* const*(std::size_t, const std::string&) const,
                          &InPlaceStructImpl::getFieldPlace>;
template struct Operation<42, ForwardIteratorImpl*(), &StructArrayImpl::fieldNamesBegin>;
template struct Operation<43, ForwardIteratorImpl*(), &StructArrayImpl::fieldNamesEnd>;
template struct Operation<44, std::size_t() const, &StructArrayImpl::getNumFields>;
template struct Operation<45, void(), &StructArrayImpl::reservedOp44>;
template struct Operation<46, IteratorImpl*(std::size_t, bool), &StructArrayImpl::createFieldValuesIterator>;
template struct Operation<47, void(), &StructArrayImpl::reservedOp46>;
template struct Operation<48, ArrayImpl*(std::size_t, const std::string&) const, &StructArrayImpl::getField>;
template struct Operation<49, void(std::size_t, std::vector<Array>), &StructArrayImpl::setFieldValues>;

template struct Interface<EnumArrayImpl, 16, 45>;
template struct Operation<42, const char*() const, &EnumArrayImpl::getClassName>;
template struct Operation<43, void(), &EnumArrayImpl::reservedOp42>;
template struct Operation<44, const char*(std::size_t) const, &EnumArrayImpl::getEnumNameAt>;

template struct Interface<ObjectArrayImpl, 16, 70>;
template struct Operation<42, ClassInfo() const, &ObjectArrayImpl::getClassInfo>;
template struct Operation<43, bool() const, &ObjectArrayImpl::isHeterogeneous>;
template struct Operation<44, Array(VexaPropertyIdentifier) const, &ObjectArrayImpl::getArrayProperty>;
template struct Operation<45, ReferenceImpl*(VexaPropertyIdentifier),
                          &ObjectArrayImpl::getArrayPropertyReference>;
template struct Operation<46, ForwardIteratorImpl*(), &ObjectArrayImpl::beginArrayProp>;
template struct Operation<47, ForwardIteratorImpl*(), &ObjectArrayImpl::endArrayProp>;
template struct Operation<48, ForwardIteratorImpl*() const, &ObjectArrayImpl::cbeginArrayProp>;
template struct Operation<49, ForwardIteratorImpl*() const, &ObjectArrayImpl::cendArrayProp>;
template struct Operation<50, bool(const VexaPropertyIdentifier&) const, &ObjectArrayImpl::hasArrayProperty>;
template struct Operation<51, std::size_t() const, &ObjectArrayImpl::numOfArrayProperties>;
template struct Operation<52, void(), &ObjectArrayImpl::reservedOp51>;
template struct Operation<53, void(), &ObjectArrayImpl::reservedOp52>;
template struct Operation<54, void(), &ObjectArrayImpl::reservedOp53>;
template struct Operation<55, void(), &ObjectArrayImpl::reservedOp54>;
template struct Operation<56, std::vector<std::size_t>() const, &ObjectArrayImpl::getExternalDimensions>;
template struct Operation<57, bool() const, &ObjectArrayImpl::isExternalDimensionsSet>;
template struct Operation<58, std::vector<std::string>() const,
                          &ObjectArrayImpl::getExternalRepresentationArrayPropertyNames>;
template struct Operation<59, Array(std::size_t, VexaPropertyIdentifier) const,
                          &ObjectArrayImpl::getElementProperty>;
template struct Operation<60, void(std::size_t, ObjectImpl*), &ObjectArrayImpl::setElementObject>;
template struct Operation<61, ObjectImpl*(std::size_t) const, &ObjectArrayImpl::getElementObject>;
template struct Operation<62, void(), &ObjectArrayImpl::reservedOp61>;
template struct Operation<63, void(), &ObjectArrayImpl::reservedOp62>;
template struct Operation<64, void(), &ObjectArrayImpl::reservedOp63>;
template struct Operation<65, void(), &ObjectArrayImpl::reservedOp64>;
template struct Operation<66, void(), &ObjectArrayImpl::reservedOp65>;
template struct Operation<67, ForwardIteratorImpl*(std::size_t), &ObjectArrayImpl::beginElementProperties>;
template struct Operation<68, ForwardIteratorImpl*(std::size_t), &ObjectArrayImpl::endElementProperties>;
template struct Operation<69, bool(const ArrayImpl*) const, &ObjectArrayImpl::isEqualArrayProperties>;

} // namespace contract
