// The types of the functions that the library exports, results included, which the names of all but function
// templates leave out. What is virtual stands in the tables of interfaces.
#include "Table.hpp"

#include <foundation/vexadata/InProcessCustomWorkspace.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/data/detail/ElementMemory.hpp>
#include <vexa/data/detail/Identity.hpp>
#include <vexa/data/detail/InPlace.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>

#include <complex>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace foundation::vexadata {

void swap(Reference<Array> a, Reference<Array> b); // a friend, which only its own namespace can name

} // namespace foundation::vexadata

namespace contract {

using namespace foundation::vexadata;
using namespace foundation::vexadata::detail;
using namespace vexa::data::detail;
using foundation::vexadata::detail::ArrayImpl;
using foundation::vexadata::detail::ReferenceImpl;
using vexa::data::MemoryLayout;
using vexa::data::impl::ArrayFactoryImpl;
using vexa::data::impl::EmptyArrayImpl;
using vexa::data::impl::HandleObjectRefImpl;
using NonPrimitiveIterator = NonPrimitiveIteratorImpl<vexa::data::impl::MatchingDataOrder>;
using Sizes = std::vector<std::size_t>;
using Texts = std::vector<std::string>;
using Properties = std::vector<VexaPropertyIdentifier>;
using Chain = std::shared_ptr<ReferenceImpl>;
using Text = std::optional<std::u16string>;
using Status = IVariableInfo::VariableStatus;
template <class T>
using Owned = std::unique_ptr<T, void (*)(void*)>;

template struct Function<void (*)(Chain&, std::size_t), &addIndex>;
template struct Function<void (*)(Chain&, std::string), &addIndex>;
template struct Function<const ArrayImpl& (*)(const ElementPosition&), &arrayHeldBy>;
template struct Function<Array (*)(Chain), &castTo<Array, false>, &castTo<Array, true>>;
template struct Function<CharArray (*)(Chain), &castTo<CharArray, false>, &castTo<CharArray, true>>;
template struct Function<EnumArray (*)(Chain), &castTo<EnumArray, false>, &castTo<EnumArray, true>>;
template struct Function<StructArray (*)(Chain), &castTo<StructArray, false>, &castTo<StructArray, true>>;
template struct Function<ValueObjectArray (*)(Chain), &castTo<ValueObjectArray, false>,
                         &castTo<ValueObjectArray, true>>;
template struct Function<std::string (*)(Chain), &castToString>;
template struct Function<void (*)(const ElementPosition&, Arithmetic, const ElementPosition&), &combine>;
template struct Function<void (*)(const ElementPosition&, Arithmetic, const Number&), &combine>;
template struct Function<Order (*)(const ElementPosition&, const ElementPosition&), &compared>;
template struct Function<Order (*)(const ElementPosition&, const Number&), &compared>;
template struct Function<std::string (*)(const char*), &copied>;
template struct Function<std::string (*)(const char*, std::size_t), &copied>;
template struct Function<std::u16string (*)(const char16_t*, std::size_t), &copied>;
template struct Function<Chain (*)(const Chain&), &copyChain>;
template struct Function<void (*)(const ElementPosition&, const ElementPosition&), &copyElement>;
template struct Function<Chain (*)(const Chain&, std::size_t), &createConstReferenceWithIndex>;
template struct Function<Chain (*)(Chain&, std::size_t), &createReferenceWithIndex<false>,
                         &createReferenceWithIndex<true>>;
template struct Function<void (*)(const ArrayImpl&, std::size_t, std::size_t*, std::size_t*),
                         &describeLayout>;
template struct Function<std::string (*)(const Array&), &dimensionText>;
template struct Function<bool (*)(const ElementPosition&, const Number&), &equals>;
template struct Function<bool (*)(const ElementPosition&, std::string_view), &equals>;
template struct Function<bool (*)(const ElementPosition&, std::u16string_view), &equals>;
template struct Function<bool (*)(const BorrowedText&, std::string_view), &equalsText>;
template struct Function<Reference<Array> (*)(const ElementPosition&, const std::string&, std::false_type),
                         &fieldOf>;
template struct Function<const Array (*)(const ElementPosition&, const std::string&, std::true_type),
                         &fieldOf>;
template struct Function<std::size_t (*)(const char16_t*, std::size_t), &firstNonAscii>;
template struct Function<std::unique_ptr<const void, std::function<void(const void*)>> (*)(Array),
                         &getBufferPtr>;
template struct Function<const HandleObjectRefImpl* (*)(const Object&), &handleObject>;
template struct Function<
    void (*)(), &raise<CanOnlyUseOneStringIndexException>, &raise<CantAssignArrayToThisArrayException>,
    &raise<CantIndexIntoEmptyArrayException>, &raise<EArrayIndexOutOfRange>, &raise<EArrayUnknownDataType>,
    &raise<EInvalidDimensionsInSparseArray>, &raise<InvalidArrayTypeException>,
    &raise<MustBePrimitiveTypeException>, &raise<NonAsciiCharInInputDataException>,
    &raise<NonAsciiCharInRequestedAsciiOutputException>, &raise<NotEnoughIndicesProvidedException>,
    &raise<NumberOfElementsExceedsMaximumException>, &raise<StringIndexMustBeLastException>,
    &raise<TooManyIndicesProvidedException>, &raise<TypeMismatchException>,
    &raise<WrongVectorSizeForStructException>>;
template struct Function<void* (*)(), &holdError>;
template struct Function<void (*)(void*), &rethrowHeldError>;
template struct Function<bool (*)(const Array&), &isSparse>;
template struct Function<std::unique_ptr<IteratorImpl> (*)(ArrayImpl&, bool, bool, const Chain&),
                         &iteratorOf>;
template struct Function<std::u16string (*)(std::string_view), &fromUtf8>;
template struct Function<std::u16string (*)(std::string_view), &fromUtf8Lossy>;
template struct Function<const char* (*)(ArrayType), &kindName>;
template struct Function<bool (*)(const ArrayImpl&, std::size_t, const std::string&), &memberIsNamed>;
template struct Function<std::string (*)(const char16_t*, std::size_t), &narrowed>;
template struct Function<ArrayImpl* (*)(ArrayType), &newEmptyArray>;
template struct Function<std::uint64_t (*)(), &nextIdentity>;
template struct Function<ArrayImpl* (*)(const ElementPosition&), &shareInPlace>;
template struct Function<void* (*)(std::size_t, std::size_t), &allocateElements, &allocateZeros>;
template struct Function<void (*)(void*), &freeElements>;
template struct Function<bool (*)(RecognisedKind, const std::type_info&), &recognise>;
template struct Function<std::atomic<const void*> (*)[3], &recognisedClasses>;
template struct Function<std::atomic<const void*>*, &recognisedFactory>;
template struct Function<bool (*)(const std::type_info&), &recogniseFactory>;
template struct Function<bool (ArrayFactory::*)() const, &ArrayFactory::makesDenseArrays>;
template struct Function<const Array (*)(ElementPosition, const std::string&), &StructElement::askedField>;
template struct Function<Chain (*)(ElementPosition, const std::string&), &chainToField>;
template struct Function<Chain (*)(ArrayImpl*, std::size_t, const std::string&), &chainToField>;
template struct Function<const Array (*)(const ArrayImpl&, std::size_t, const std::string&), &fieldOf>;
template struct Function<ElementPosition (*)(Chain&, std::size_t), &ElementPosition::inside>;
template struct Function<ReferenceImpl& (ElementPosition::*)() const, &ElementPosition::settled>;
template struct Function<const std::string*, &noFieldName>;
template struct Function<std::ostream& (*)(std::ostream&, const Array&), (&operator<<)>;
template struct Function<std::ostream& (*)(std::ostream&, const Object&), (&operator<<)>;
template struct Function<std::ostream& (*)(std::ostream&, const Printed&), (&operator<<)>;
template struct Function<bool (*)(const Array&, const Array&), (&operator==)>;
template struct Function<std::u16string (*)(const ElementPosition&), &presentText>;
template struct Function<void (*)(std::ostream&, const ElementPosition&), &printElement>;
template struct Function<HandleObjectRef (*)(ArrayImpl&, std::size_t, const std::string&),
                         &readElement<HandleObjectRef>>;
template struct Function<ValueObject (*)(ArrayImpl&, std::size_t, const std::string&),
                         &readElement<ValueObject>>;
template struct Function<void (*)(const ReferenceImpl&, const ArrayImpl&), &requireShape>;
template struct Function<void (*)(const void*), &requireText>;
template struct Function<bool (*)(const ElementPosition&, const ElementPosition&), &sameElements>;
template struct Function<bool (*)(const HandleObjectRefImpl*, const HandleObjectRefImpl*), &sameHandleObject>;
template struct Function<void (*)(const Chain&, std::vector<Array>), &setElement>;
template struct Function<void (*)(const Chain&, const Array&), &storeArray>;
template struct Function<void (*)(const ElementPosition&, std::vector<Array>), &storeRecord>;
template struct Function<std::shared_ptr<ArrayImpl> (*)(const StructElement&), &copiedRecord>;
template struct Function<void (*)(const ElementPosition&, Text), &storeText>;
template struct Function<void (*)(const ElementPosition&, std::string_view), &storeText>;
template struct Function<void (*)(Reference<Array>, Reference<Array>), &foundation::vexadata::swap>;
template struct Function<std::string (*)(const Array&, const PrintOptions&), &toText>;
template struct Function<std::string (*)(const Object&, const PrintOptions&), &toText>;
template struct Function<std::u16string (*)(const Array&), &toUTF16>;
template struct Function<std::string (*)(std::u16string_view), &toUtf8>;
template struct Function<std::string (*)(std::u16string_view), &toUtf8Lossy>;
template struct Function<void (*)(ArrayType), &typeIsPrimitive>;
template struct Function<VexaPropertyIdentifier (*)(const VexaPropertyIdentifier&, ClassInfo&),
                         &validateVexaPropertyIdentifier>;
template struct Function<std::vector<Array> (*)(const ElementPosition&), &valuesOf>;
template struct Function<char16_t (*)(char), &widened>;
template struct Function<std::u16string (*)(const char*), &widened>;
template struct Function<std::u16string (*)(const char*, std::size_t), &widened>;
template struct Function<void (*)(ArrayImpl&, std::size_t, const std::string&, HandleObjectRef),
                         &writeElement<HandleObjectRef>>;
template struct Function<void (*)(ArrayImpl&, std::size_t, const std::string&, ValueObject),
                         &writeElement<ValueObject>>;

template struct Function<ArrayFactoryImpl& (ArrayFactory::*)() const, &ArrayFactory::backEnd>;
template struct Function<ArrayImpl* (ArrayFactory::*)(Sizes, std::size_t, Owned<bool[]>, Owned<std::size_t[]>,
                                                      Owned<std::size_t[]>) const,
                         &ArrayFactory::compressed, &ArrayFactory::sparse>;
template struct Function<ArrayImpl* (ArrayFactory::*)(Sizes, std::size_t, Owned<double[]>,
                                                      Owned<std::size_t[]>, Owned<std::size_t[]>) const,
                         &ArrayFactory::compressed, &ArrayFactory::sparse>;
template struct Function<ArrayImpl* (ArrayFactory::*)(Sizes, std::size_t, Owned<std::complex<double>[]>,
                                                      Owned<std::size_t[]>, Owned<std::size_t[]>) const,
                         &ArrayFactory::compressed, &ArrayFactory::sparse>;
template struct Function<Array (ArrayFactory::*)(ArrayType, Sizes) const, &ArrayFactory::createArray>;
template struct Function<Array (ArrayFactory::*)(Sizes, ArrayType, Owned<void>, MemoryLayout) const,
                         &ArrayFactory::createArrayFromBuffer>;
template struct Function<Owned<void> (ArrayFactory::*)(ArrayType, std::size_t) const,
                         &ArrayFactory::createBuffer, &ArrayFactory::typedBuffer>;
template struct Function<Owned<void> (ArrayFactory::*)(std::size_t) const, &ArrayFactory::createBuffer>;
template struct Function<CharArray (ArrayFactory::*)(Sizes) const, &ArrayFactory::createCharArray>;
template struct Function<CharArray (ArrayFactory::*)(std::string) const, &ArrayFactory::createCharArray>;
template struct Function<CharArray (ArrayFactory::*)(std::u16string) const, &ArrayFactory::createCharArray>;
template struct Function<ClassInfo (ArrayFactory::*)(const VexaClassIdentifier&, const Properties&,
                                                     const Properties&, const std::vector<ClassInfo>&) const,
                         &ArrayFactory::createClassInfo>;
template struct Function<EnumArray (ArrayFactory::*)(Sizes, std::string, Texts) const,
                         &ArrayFactory::createEnumArray>;
template struct Function<ValueObject (ArrayFactory::*)(const std::string&, const std::string&) const,
                         &ArrayFactory::createEnumerationObject>;
template struct Function<HandleObjectRef (ArrayFactory::*)(const ZVMID&, long) const,
                         &ArrayFactory::createHandleObjectRef>;
template struct Function<StructArray (ArrayFactory::*)(Sizes, Texts) const, &ArrayFactory::createStructArray>;
template struct Function<ValueObject (ArrayFactory::*)(const ClassInfo&) const,
                         &ArrayFactory::createValueObject>;
template struct Function<ValueObjectArray (ArrayFactory::*)(Sizes, const ClassInfo&) const,
                         &ArrayFactory::createValueObjectArray>;
template struct Function<ValueObjectArray (ArrayFactory::*)(const ValueObject&) const,
                         &ArrayFactory::createValueObjectScalar>;
template struct Function<ArrayImpl* (ArrayFactory::*)(Sizes&&, ArrayType, Owned<void>, MemoryLayout) const,
                         &ArrayFactory::fromBuffer>;
template struct Function < ArrayFactory& (ArrayFactory::*)(ArrayFactory&&), &ArrayFactory::operator=>;
template struct Function < ArrayFactory& (ArrayFactory::*)(const ArrayFactory&), &ArrayFactory::operator=>;
template struct Function<ArrayImpl* (ArrayFactory::*)(ArrayType, Sizes&&, const void*, std::size_t) const,
                         &ArrayFactory::withData>;
template struct Function<ArrayImpl* (ArrayFactory::*)(ArrayType, Sizes&&) const, &ArrayFactory::zeros>;

template struct Function<ArrayFactoryImpl* (*)(), &ArrayFactoryImpl::getDefaultFactory>;
template struct Function<bool (*)(ArrayFactoryImpl* (*)()), &ArrayFactoryImpl::registerClientFactoryFunction,
                         &ArrayFactoryImpl::registerVexaFactoryFunction>;

template struct Function<std::uint64_t (ArrayReferenceExt::*)() const, &ArrayReferenceExt::getArrayID>;
template struct Function<Sizes (ArrayReferenceExt::*)() const, &ArrayReferenceExt::getDimensions>;
template struct Function<std::size_t (ArrayReferenceExt::*)() const, &ArrayReferenceExt::getNumberOfElements>;
template struct Function<ArrayType (ArrayReferenceExt::*)() const, &ArrayReferenceExt::getType>;
template struct Function<bool (ArrayReferenceExt::*)() const, &ArrayReferenceExt::isEmpty>;

template struct Function<std::string (CharArray::*)() const, &CharArray::toAscii>;
template struct Function<std::u16string (CharArray::*)() const, &CharArray::toUTF16>;

template struct Function<std::string (CharArrayExt::*)() const, &CharArrayExt::toAscii>;
template struct Function<std::u16string (CharArrayExt::*)() const, &CharArrayExt::toUTF16>;

template struct Function<Range<ForwardIterator, const VexaPropertyIdentifier> (ClassInfo::*)() const,
                         &ClassInfo::getArrayPropertyIDs, &ClassInfo::getPropertyIDs>;
template struct Function<VexaClassIdentifier (ClassInfo::*)() const, &ClassInfo::getClassIdentifier>;
template struct Function<std::size_t (ClassInfo::*)() const, &ClassInfo::getNumberOfArrayProperties,
                         &ClassInfo::getNumberOfProperties>;
template struct Function<Range<ForwardIterator, const ClassInfo> (ClassInfo::*)() const,
                         &ClassInfo::getSuperclasses>;
template struct Function<void (ClassInfo::*)(), &ClassInfo::updateVexaPropertyIdentifiersClassInfo>;

template struct Function<Status (DefaultVariableInfoImpl::*)(std::size_t) const,
                         &DefaultVariableInfoImpl::getStatus>;
template struct Function<Array (DefaultVariableInfoImpl::*)(std::size_t) const,
                         &DefaultVariableInfoImpl::getValue>;
template struct Function < DefaultVariableInfoImpl& (DefaultVariableInfoImpl::*)(DefaultVariableInfoImpl&&),
    &DefaultVariableInfoImpl::operator=>;
template struct Function<void (DefaultVariableInfoImpl::*)(), &DefaultVariableInfoImpl::ptr2Str>;
template struct Function<void (DefaultVariableInfoImpl::*)(std::size_t, Status),
                         &DefaultVariableInfoImpl::setStatus>;
template struct Function<void (DefaultVariableInfoImpl::*)(std::size_t, Array),
                         &DefaultVariableInfoImpl::setValue>;
template struct Function<std::vector<const char*> (DefaultVariableInfoImpl::*)() const,
                         &DefaultVariableInfoImpl::str2Ptr>;

template struct Function<Chain (ElementPosition::*)() const, &ElementPosition::chain>;
template struct Function<bool (*)(const Sizes&, std::size_t), &ElementPosition::takesFirst>;
template struct Function<void (*)(const Sizes&, std::size_t), &ElementPosition::raiseFirst>;
template struct Function<bool (*)(const ArrayImpl*, const Sizes*, std::uint64_t, std::size_t),
                         &ElementPosition::takesFurther>;
template struct Function<ReferenceImpl* (*)(ElementPosition::Parts, std::size_t),
                         &ElementPosition::longerChain>;
template struct Function<ReferenceImpl& (ElementPosition::*)() const, &ElementPosition::makeChain>;
template struct Function<ElementPosition::Target (*)(ElementPosition::Parts), &ElementPosition::resolve,
                         &ElementPosition::resolveForWrite>;

template struct Function<const std::shared_ptr<ArrayImpl>& (*)(), &EmptyArrayImpl::processWide>;

template struct Function<std::string (EnumArray::*)() const, &EnumArray::getClassName>;

template struct Function<std::string (EnumArrayExt::*)() const, &EnumArrayExt::getClassName>;

template struct Function<void (HandleObjectRef::*)() const, &HandleObjectRef::addReference>;
template struct Function<long (HandleObjectRef::*)() const, &HandleObjectRef::getId>;
template struct Function<ZVMID (HandleObjectRef::*)() const, &HandleObjectRef::getZVMID>;

template struct Function<void (HandleRef::*)() const, &HandleRef::addReference>;

template struct Function<void (HeldPosition::*)(std::size_t), &HeldPosition::appendFurther>;
template struct Function<ElementPosition (HeldPosition::*)() const, &HeldPosition::forRead,
                         &HeldPosition::forWrite, &HeldPosition::kept>;
template struct Function<ElementPosition (HeldPosition::*)(ElementPosition) const,
                         &HeldPosition::withIndices>;

template struct Function<ArrayImpl* (NonPrimitiveIterator::*)() const, &NonPrimitiveIterator::array>;
template struct Function<bool (NonPrimitiveIterator::*)() const, &NonPrimitiveIterator::holdsReference>;
template struct Function<std::uint64_t (NonPrimitiveIterator::*)() const, &NonPrimitiveIterator::position>;

template struct Function<const Array (Property::*)() const, &Property::castToArray>;
template struct Function<VexaPropertyIdentifier (Property::*)() const, &Property::getIdentifier>;
template struct Function < Reference<Array> (Property::*)() const, &Property::operator Reference<Array> >;

template struct Function < Reference<Array>& (Reference<Array>::*)(const Array&),
    &Reference<Array>::operator=>;
template struct Function < Reference<Array>& (Reference<Array>::*)(const Reference<Array>&),
    &Reference<Array>::operator=>;
template struct Function < const Array (Reference<Array>::*)(const std::string&) const,
    &Reference<Array>::operator[]>;

template struct Function<void (ReferenceImpl::*)(std::size_t), &ReferenceImpl::addIndex,
                         &ReferenceImpl::setKnownIndex>;
template struct Function<void (ReferenceImpl::*)(std::string), &ReferenceImpl::addIndex>;
template struct Function<void (ReferenceImpl::*)(Sizes, MemoryLayout), &ReferenceImpl::bind>;
template struct Function<void (ReferenceImpl::*)(), &ReferenceImpl::dropCaches>;

template struct Function<Range<ForwardIterator, const VexaFieldIdentifier> (StructArray::*)() const,
                         &StructArray::getFieldNames>;
template struct Function<std::size_t (StructArray::*)() const, &StructArray::getNumberOfFields>;

template struct Function<Range<ForwardIterator, const VexaFieldIdentifier> (StructArrayExt::*)() const,
                         &StructArrayExt::getFieldNames>;
template struct Function<std::size_t (StructArrayExt::*)() const, &StructArrayExt::getNumberOfFields>;

template struct Function<TypedIterator<const Array> (StructElement::*)() const, &StructElement::cbegin,
                         &StructElement::cend>;
template struct Function<Range<ForwardIterator, const VexaFieldIdentifier> (StructElement::*)() const,
                         &StructElement::getFieldNames>;
template struct Function<std::size_t (StructElement::*)() const, &StructElement::getNumberOfFields>;
template struct Function < const Array (StructElement::*)(const std::string&) const,
    &StructElement::operator[]>;

template struct Function<TypedIterator<Array> (StructRefExt::*)(), &StructRefExt::begin, &StructRefExt::end>;
template struct Function < Reference<Array> (StructRefExt::*)(const std::string&), &StructRefExt::operator[]>;

template struct Function < std::u16string (VEXAStringReferenceExt::*)() const,
    &VEXAStringReferenceExt::operator std::u16string>;
template struct Function<std::string (VEXAStringReferenceExt::*)() const, &VEXAStringReferenceExt::toAscii>;
template struct Function<Text (VEXAStringReferenceExt::*)() const, &VEXAStringReferenceExt::value>;

template struct Function<ForwardIterator<Property> (ValueObject::*)(), &ValueObject::begin,
                         &ValueObject::end>;
template struct Function<ForwardIterator<const Property> (ValueObject::*)() const, &ValueObject::cbegin,
                         &ValueObject::cend>;
template struct Function<ClassInfo (ValueObject::*)() const, &ValueObject::getClassInfo>;
template struct Function<std::string (ValueObject::*)() const, &ValueObject::getEnumerationName>;
template struct Function<Texts (ValueObject::*)() const,
                         &ValueObject::getExternalRepresentationPropertyNames>;
template struct Function<bool (ValueObject::*)(const VexaPropertyIdentifier&) const,
                         &ValueObject::hasProperty>;
template struct Function<std::size_t (ValueObject::*)() const, &ValueObject::numOfProperties>;
template struct Function < bool (ValueObject::*)(const ValueObject&) const, &ValueObject::operator==>;
template struct Function < Reference<Array> (ValueObject::*)(const VexaPropertyIdentifier&),
    &ValueObject::operator[]>;
template struct Function < const Array (ValueObject::*)(const VexaPropertyIdentifier&) const,
    &ValueObject::operator[]>;

template struct Function<ForwardIterator<Property> (ValueObjectArray::*)(), &ValueObjectArray::beginArrayProp,
                         &ValueObjectArray::endArrayProp>;
template struct Function<ForwardIterator<const Property> (ValueObjectArray::*)() const,
                         &ValueObjectArray::cbeginArrayProp, &ValueObjectArray::cendArrayProp>;
template struct Function<ClassInfo (ValueObjectArray::*)() const, &ValueObjectArray::getClassInfo>;
template struct Function<Sizes (ValueObjectArray::*)() const, &ValueObjectArray::getExternalDimensions>;
template struct Function<Texts (ValueObjectArray::*)() const,
                         &ValueObjectArray::getExternalRepresentationArrayPropertyNames>;
template struct Function<bool (ValueObjectArray::*)(const VexaPropertyIdentifier&) const,
                         &ValueObjectArray::hasArrayProperty>;
template struct Function<bool (ValueObjectArray::*)() const, &ValueObjectArray::isExternalDimensionsSet,
                         &ValueObjectArray::isHeterogeneous>;
template struct Function<std::size_t (ValueObjectArray::*)() const, &ValueObjectArray::numOfArrayProperties>;
template struct Function < bool (ValueObjectArray::*)(const ValueObjectArray&) const,
    &ValueObjectArray::operator==>;
template struct Function < Reference<Array> (ValueObjectArray::*)(const VexaPropertyIdentifier&),
    &ValueObjectArray::operator[]>;
template struct Function < const Array (ValueObjectArray::*)(const VexaPropertyIdentifier&) const,
    &ValueObjectArray::operator[]>;

template struct Function < const Array (ValueObjectElement::*)(const VexaPropertyIdentifier&) const,
    &ValueObjectElement::operator[]>;

template struct Function<Texts (ValueObjectRef::*)() const,
                         &ValueObjectRef::getExternalRepresentationPropertyNames>;
template struct Function<const Array (ValueObjectRef::*)(const VexaPropertyIdentifier&, bool) const,
                         &ValueObjectRef::getProp>;

template struct Function<Status (VariableInfo::*)(std::size_t) const, &VariableInfo::getStatus>;
template struct Function<Array (VariableInfo::*)(std::size_t) const, &VariableInfo::getValue>;
template struct Function < VariableInfo& (VariableInfo::*)(const VariableInfo&), &VariableInfo::operator=>;

template struct Function<std::string (VexaClassIdentifier::*)() const, &VexaClassIdentifier::getString>;
template struct Function < bool (VexaClassIdentifier::*)(const VexaClassIdentifier&) const,
    &VexaClassIdentifier::operator==>;

template struct Function<std::string (VexaFieldIdentifier::*)() const, &VexaFieldIdentifier::getString>;
template struct Function < bool (VexaFieldIdentifier::*)(const VexaFieldIdentifier&) const,
    &VexaFieldIdentifier::operator==>;

template struct Function<
    std::string (VexaPropertyIdentifier::*)() const, &VexaPropertyIdentifier::getClassName,
    &VexaPropertyIdentifier::getExternalPropertyName, &VexaPropertyIdentifier::getPropertyName>;
template struct Function<bool (VexaPropertyIdentifier::*)(const VexaPropertyIdentifier&) const,
                         (&VexaPropertyIdentifier::operator<), (&VexaPropertyIdentifier::operator==)>;
template struct Function<void (VexaPropertyIdentifier::*)(ClassInfo&),
                         &VexaPropertyIdentifier::updateClassInfo>;

} // namespace contract
