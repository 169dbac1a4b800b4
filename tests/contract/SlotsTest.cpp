// The order of virtual operations, written down once and compared with what the compiler lays out. A failure here means
// that back-ends built before cannot be used any more.
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/ICustomWorkspace.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/detail/VariableInfoImplData.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace {

/// Where the numbers of an interface begin: the difference between an operation's number and its slot, which counts from 0
/// and gives two slots to a destructor.
constexpr int afterDestructor = 1;     // number 1 follows the destructor
constexpr int countingDestructor = -1; // numbers 1 and 2 are the destructor
constexpr int afterUnusedOne = 2;      // one unused operation follows the destructor, then number 1
constexpr int beforeDestructor = -1;   // number 1 comes first

/// A pointer to a virtual member holds 1 plus the offset of its slot in the table.
template <class Member>
int slotOf(Member member) {
    static_assert(sizeof member == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &member, sizeof member);
    const bool isVirtual = words[0] % 2 == 1 && words[1] == 0;
    return isVirtual ? static_cast<int>(words[0] / static_cast<std::ptrdiff_t>(sizeof(void*))) : -1;
}

/// Operations that follow each other, the first of them in the slot `first`.
template <class... Members>
void expectRun(int first, Members... members) {
    int expected = first;
    for (const int slot : {slotOf(members)...})
        EXPECT_EQ(slot, expected++) << "operation " << expected - first << " of the run";
}

TEST(Slots, ArrayImpl) {
    using I = vexa::data::impl::ArrayImpl;
    expectRun(1 + afterDestructor, &I::sharedCopy, &I::reservedOp1, &I::reservedOp2, &I::beginIterator,
              &I::endIterator, &I::reservedOp5, &I::reservedOp6, &I::reservedOp7, &I::reservedOp8,
              &I::getType, &I::getMemoryLayout, &I::createElementReference, &I::forwardingOp,
              &I::getDimensions, &I::getNumberOfElements, &I::reservedOp10, &I::assignElementArray,
              &I::castToString, &I::setString, &I::setElementWords, &I::setElementOpB, &I::getStringElement,
              &I::getJc, &I::getIr, &I::getRows, &I::getCols, &I::getNumberOfNonZeroElements, &I::getIndex,
              &I::isEmpty, &I::getArrayID, &I::unshare, &I::copyOutBuffer, &I::releaseBuffer,
              &I::getUntypedDataPtr, &I::isEqual);
}

TEST(Slots, TypedArrayImpl) {
    using I = vexa::data::impl::TypedArrayImpl<double>;
    expectRun(36 + afterDestructor, &I::reservedOp36, &I::reservedOp37, &I::getElementAddress,
              &I::setElementValue, &I::getTypedDataPtr);
}

TEST(Slots, StringArrayImpl) {
    using I = vexa::data::impl::StringArrayImpl;
    expectRun(18 + afterDestructor, &I::castToString, &I::setString);
    expectRun(38 + afterDestructor, &I::getElementAddress, &I::setStringElement, &I::getTypedDataPtr);
}

TEST(Slots, StructArrayImpl) {
    using I = vexa::data::impl::StructArrayImpl;
    expectRun(4 + afterDestructor, &I::beginIterator, &I::endIterator);
    expectRun(41 + afterDestructor, &I::fieldNamesBegin, &I::fieldNamesEnd, &I::getNumFields,
              &I::reservedOp44, &I::createFieldValuesIterator, &I::reservedOp46, &I::getField,
              &I::setFieldValues);
}

TEST(Slots, EnumArrayImpl) {
    using I = vexa::data::impl::EnumArrayImpl;
    expectRun(41 + afterDestructor, &I::getClassName, &I::reservedOp42, &I::getEnumNameAt);
}

TEST(Slots, ObjectArrayImpl) {
    using I = vexa::data::impl::ObjectArrayImpl;
    expectRun(38 + afterDestructor, &I::getElementAddress, &I::setElementValue);
    expectRun(41 + afterDestructor, &I::getClassInfo, &I::isHeterogeneous, &I::getArrayProperty,
              &I::getArrayPropertyReference, &I::beginArrayProp, &I::endArrayProp, &I::cbeginArrayProp,
              &I::cendArrayProp, &I::hasArrayProperty, &I::numOfArrayProperties);
    expectRun(55 + afterDestructor, &I::getExternalDimensions, &I::isExternalDimensionsSet,
              &I::getExternalRepresentationArrayPropertyNames, &I::getElementProperty, &I::setElementObject,
              &I::getElementObject);
    expectRun(66 + afterDestructor, &I::beginElementProperties, &I::endElementProperties,
              &I::isEqualArrayProperties);
}

TEST(Slots, ArrayFactoryImpl) {
    using I = vexa::data::impl::ArrayFactoryImpl;
    expectRun(1 + afterDestructor, &I::createArrayImpl, &I::createSparseLogicalImpl,
              &I::createSparseDoubleImpl, &I::createSparseComplexDoubleImpl, &I::createVexaSparseLogicalImpl,
              &I::createVexaSparseDoubleImpl, &I::createVexaSparseComplexDoubleImpl, &I::reservedOp8,
              &I::createArrayWithDataImpl, &I::createStructArrayImpl, &I::createClassInfoImpl,
              &I::createValueObjectImpl, &I::createValueObjectScalarImpl, &I::createValueObjectArrayImpl,
              &I::createHandleObjectRefImpl, &I::createEnumerationObjectImpl, &I::reservedOp17,
              &I::reservedOp18, &I::reservedOp19, &I::createEnumArrayImpl, &I::reservedOp21, &I::reservedOp22,
              &I::createBufferImpl, &I::createUntypedBufferImpl, &I::createArrayFromBufferImpl);
}

TEST(Slots, PropertyImpl) {
    using I = vexa::data::impl::PropertyImpl;
    expectRun(1 + afterDestructor, &I::getIdentifier, &I::getValue, &I::getReference);
}

TEST(Slots, VariableInfoImplData) {
    using I = vexa::data::detail::VariableInfoImplData;
    expectRun(1 + afterDestructor, &I::getName, &I::setStatus, &I::setValue, &I::getStatus, &I::getValue);
}

TEST(Slots, ReferenceImpl) {
    using I = vexa::data::detail::ReferenceImpl;
    expectRun(3 + countingDestructor, &I::getArrayImpl, &I::getElementArray, &I::createReference,
              &I::prepareForWrite, &I::getElementArrayForCopy, &I::getLinearIndex, &I::setArray,
              &I::getString, &I::setString, &I::setWords, &I::getElementArrayID);
}

TEST(Slots, IteratorImpl) {
    using I = vexa::data::detail::IteratorImpl;
    expectRun(3 + countingDestructor, &I::clone, &I::advance, &I::isEqual, &I::distanceTo, &I::decrement,
              &I::increment, &I::reservedOp9, &I::createReference, &I::saveReference, &I::reservedOp12,
              &I::getElementAddress);
}

TEST(Slots, ForwardIteratorImpl) {
    using I = vexa::data::detail::ForwardIteratorImpl;
    expectRun(3 + countingDestructor, &I::clone, &I::get, &I::equal, &I::increment);
}

TEST(Slots, ClassInfoImpl) {
    using I = vexa::data::impl::ClassInfoImpl;
    expectRun(3 + countingDestructor, &I::reservedOp3, &I::getClassIdentifier, &I::beginProperties,
              &I::endProperties, &I::beginArrayProperties, &I::endArrayProperties, &I::beginSuperclasses,
              &I::endSuperclasses, &I::getNumberOfProperties, &I::getNumberOfArrayProperties,
              &I::reservedOp13, &I::updateVexaPropertyIdentifiersClassInfo);
}

TEST(Slots, ObjectImpl) {
    using I = vexa::data::impl::ObjectImpl;
    expectRun(3 + countingDestructor, &I::sharedCopy, &I::getEnumerationName, &I::getClassInfo,
              &I::getProperty, &I::getPropertyReference, &I::begin, &I::end, &I::cbegin, &I::cend,
              &I::reservedOp12, &I::reservedOp13, &I::reservedOp14, &I::reservedOp15, &I::hasProperty,
              &I::numOfProperties, &I::getExternalRepresentationPropertyNames);
}

TEST(Slots, IVariableInfo) {
    using I = foundation::vexadata::IVariableInfo;
    expectRun(3 + countingDestructor, &I::getStatus, &I::getValue);
}

TEST(Slots, ICustomWorkspace) {
    using I = foundation::vexadata::ICustomWorkspace;
    expectRun(3 + countingDestructor, &I::getVariable, &I::getVariables, &I::setVariables, &I::clearVariable,
              &I::getVariableNames);
}

TEST(Slots, HandleObjectRefImpl) {
    using I = vexa::data::impl::HandleObjectRefImpl;
    expectRun(1 + afterUnusedOne, &I::getZVMID, &I::getId, &I::addReference);
}

TEST(Slots, Exception) {
    using I = foundation::vexadata::Exception;
    expectRun(1 + beforeDestructor, &I::what);
}

TEST(Slots, EArrayInvalidHandleRef) {
    using I = foundation::vexadata::EArrayInvalidHandleRef;
    expectRun(1 + afterDestructor, &I::what);
}

// What a derived interface adds comes right behind the last operation, so that one inserted or dropped at an end shows.
template <class Interface>
struct Extended : Interface {
    virtual void added();
};

TEST(Slots, InterfacesEndWhereTheyDid) {
    using namespace vexa::data;
    EXPECT_EQ(slotOf(&Extended<impl::ArrayImpl>::added), 35 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::TypedArrayImpl<bool>>::added), 40 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::StringArrayImpl>::added), 40 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::StructArrayImpl>::added), 48 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::EnumArrayImpl>::added), 43 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::ObjectArrayImpl>::added), 68 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::ArrayFactoryImpl>::added), 25 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::PropertyImpl>::added), 3 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<detail::VariableInfoImplData>::added), 5 + afterDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<detail::ReferenceImpl>::added), 13 + countingDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<detail::IteratorImpl>::added), 13 + countingDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<detail::ForwardIteratorImpl>::added), 6 + countingDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::ClassInfoImpl>::added), 14 + countingDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::ObjectImpl>::added), 18 + countingDestructor + 1);
    EXPECT_EQ(slotOf(&Extended<impl::HandleObjectRefImpl>::added), 3 + afterUnusedOne + 1);
    EXPECT_EQ(slotOf(&Extended<foundation::vexadata::Exception>::added),
              3); // what and two entries of the destructor
}

} // namespace
