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
#include <initializer_list>

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

struct Row {
    const char* name;
    int number;
    int slot;
};

void expectSlots(int offset, std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(row.slot, row.number + offset) << row.name;
    }
}

TEST(Slots, ArrayImpl) {
    using I = vexa::data::impl::ArrayImpl;
    expectSlots(afterDestructor, {{"sharedCopy", 1, slotOf(&I::sharedCopy)},
                                  {"reservedOp1", 2, slotOf(&I::reservedOp1)},
                                  {"reservedOp2", 3, slotOf(&I::reservedOp2)},
                                  {"beginIterator", 4, slotOf(&I::beginIterator)},
                                  {"endIterator", 5, slotOf(&I::endIterator)},
                                  {"reservedOp5", 6, slotOf(&I::reservedOp5)},
                                  {"reservedOp6", 7, slotOf(&I::reservedOp6)},
                                  {"reservedOp7", 8, slotOf(&I::reservedOp7)},
                                  {"reservedOp8", 9, slotOf(&I::reservedOp8)},
                                  {"getType", 10, slotOf(&I::getType)},
                                  {"getMemoryLayout", 11, slotOf(&I::getMemoryLayout)},
                                  {"createElementReference", 12, slotOf(&I::createElementReference)},
                                  {"forwardingOp", 13, slotOf(&I::forwardingOp)},
                                  {"getDimensions", 14, slotOf(&I::getDimensions)},
                                  {"getNumberOfElements", 15, slotOf(&I::getNumberOfElements)},
                                  {"reservedOp10", 16, slotOf(&I::reservedOp10)},
                                  {"assignElementArray", 17, slotOf(&I::assignElementArray)},
                                  {"castToString", 18, slotOf(&I::castToString)},
                                  {"setString", 19, slotOf(&I::setString)},
                                  {"setElementWords", 20, slotOf(&I::setElementWords)},
                                  {"setElementOpB", 21, slotOf(&I::setElementOpB)},
                                  {"getStringElement", 22, slotOf(&I::getStringElement)},
                                  {"getJc", 23, slotOf(&I::getJc)},
                                  {"getIr", 24, slotOf(&I::getIr)},
                                  {"getRows", 25, slotOf(&I::getRows)},
                                  {"getCols", 26, slotOf(&I::getCols)},
                                  {"getNumberOfNonZeroElements", 27, slotOf(&I::getNumberOfNonZeroElements)},
                                  {"getIndex", 28, slotOf(&I::getIndex)},
                                  {"isEmpty", 29, slotOf(&I::isEmpty)},
                                  {"getArrayID", 30, slotOf(&I::getArrayID)},
                                  {"unshare", 31, slotOf(&I::unshare)},
                                  {"copyOutBuffer", 32, slotOf(&I::copyOutBuffer)},
                                  {"releaseBuffer", 33, slotOf(&I::releaseBuffer)},
                                  {"getUntypedDataPtr", 34, slotOf(&I::getUntypedDataPtr)},
                                  {"isEqual", 35, slotOf(&I::isEqual)}});
}

TEST(Slots, TypedArrayImpl) {
    using I = vexa::data::impl::TypedArrayImpl<double>;
    expectSlots(afterDestructor, {{"reservedOp36", 36, slotOf(&I::reservedOp36)},
                                  {"reservedOp37", 37, slotOf(&I::reservedOp37)},
                                  {"getElementAddress", 38, slotOf(&I::getElementAddress)},
                                  {"setElementValue", 39, slotOf(&I::setElementValue)},
                                  {"getTypedDataPtr", 40, slotOf(&I::getTypedDataPtr)}});
}

TEST(Slots, StringArrayImpl) {
    using I = vexa::data::impl::StringArrayImpl;
    expectSlots(afterDestructor, {{"castToString", 18, slotOf(&I::castToString)},
                                  {"setString", 19, slotOf(&I::setString)},
                                  {"getElementAddress", 38, slotOf(&I::getElementAddress)},
                                  {"setStringElement", 39, slotOf(&I::setStringElement)},
                                  {"getTypedDataPtr", 40, slotOf(&I::getTypedDataPtr)}});
}

TEST(Slots, StructArrayImpl) {
    using I = vexa::data::impl::StructArrayImpl;
    expectSlots(afterDestructor, {{"beginIterator", 4, slotOf(&I::beginIterator)},
                                  {"endIterator", 5, slotOf(&I::endIterator)},
                                  {"fieldNamesBegin", 41, slotOf(&I::fieldNamesBegin)},
                                  {"fieldNamesEnd", 42, slotOf(&I::fieldNamesEnd)},
                                  {"getNumFields", 43, slotOf(&I::getNumFields)},
                                  {"reservedOp44", 44, slotOf(&I::reservedOp44)},
                                  {"createFieldValuesIterator", 45, slotOf(&I::createFieldValuesIterator)},
                                  {"reservedOp46", 46, slotOf(&I::reservedOp46)},
                                  {"getField", 47, slotOf(&I::getField)},
                                  {"setFieldValues", 48, slotOf(&I::setFieldValues)}});
}

TEST(Slots, EnumArrayImpl) {
    using I = vexa::data::impl::EnumArrayImpl;
    expectSlots(afterDestructor, {{"getClassName", 41, slotOf(&I::getClassName)},
                                  {"reservedOp42", 42, slotOf(&I::reservedOp42)},
                                  {"getEnumNameAt", 43, slotOf(&I::getEnumNameAt)}});
}

TEST(Slots, ObjectArrayImpl) {
    using I = vexa::data::impl::ObjectArrayImpl;
    expectSlots(afterDestructor, {{"getElementAddress", 38, slotOf(&I::getElementAddress)},
                                  {"setElementValue", 39, slotOf(&I::setElementValue)},
                                  {"getClassInfo", 41, slotOf(&I::getClassInfo)},
                                  {"isHeterogeneous", 42, slotOf(&I::isHeterogeneous)},
                                  {"getArrayProperty", 43, slotOf(&I::getArrayProperty)},
                                  {"getArrayPropertyReference", 44, slotOf(&I::getArrayPropertyReference)},
                                  {"beginArrayProp", 45, slotOf(&I::beginArrayProp)},
                                  {"endArrayProp", 46, slotOf(&I::endArrayProp)},
                                  {"cbeginArrayProp", 47, slotOf(&I::cbeginArrayProp)},
                                  {"cendArrayProp", 48, slotOf(&I::cendArrayProp)},
                                  {"hasArrayProperty", 49, slotOf(&I::hasArrayProperty)},
                                  {"numOfArrayProperties", 50, slotOf(&I::numOfArrayProperties)},
                                  {"getExternalDimensions", 55, slotOf(&I::getExternalDimensions)},
                                  {"isExternalDimensionsSet", 56, slotOf(&I::isExternalDimensionsSet)},
                                  {"getExternalRepresentationArrayPropertyNames", 57,
                                   slotOf(&I::getExternalRepresentationArrayPropertyNames)},
                                  {"getElementProperty", 58, slotOf(&I::getElementProperty)},
                                  {"setElementObject", 59, slotOf(&I::setElementObject)},
                                  {"getElementObject", 60, slotOf(&I::getElementObject)},
                                  {"beginElementProperties", 66, slotOf(&I::beginElementProperties)},
                                  {"endElementProperties", 67, slotOf(&I::endElementProperties)},
                                  {"isEqualArrayProperties", 68, slotOf(&I::isEqualArrayProperties)}});
}

TEST(Slots, ArrayFactoryImpl) {
    using I = vexa::data::impl::ArrayFactoryImpl;
    expectSlots(afterDestructor,
                {{"createArrayImpl", 1, slotOf(&I::createArrayImpl)},
                 {"createSparseLogicalImpl", 2, slotOf(&I::createSparseLogicalImpl)},
                 {"createSparseDoubleImpl", 3, slotOf(&I::createSparseDoubleImpl)},
                 {"createSparseComplexDoubleImpl", 4, slotOf(&I::createSparseComplexDoubleImpl)},
                 {"createVexaSparseLogicalImpl", 5, slotOf(&I::createVexaSparseLogicalImpl)},
                 {"createVexaSparseDoubleImpl", 6, slotOf(&I::createVexaSparseDoubleImpl)},
                 {"createVexaSparseComplexDoubleImpl", 7, slotOf(&I::createVexaSparseComplexDoubleImpl)},
                 {"reservedOp8", 8, slotOf(&I::reservedOp8)},
                 {"createArrayWithDataImpl", 9, slotOf(&I::createArrayWithDataImpl)},
                 {"createStructArrayImpl", 10, slotOf(&I::createStructArrayImpl)},
                 {"createClassInfoImpl", 11, slotOf(&I::createClassInfoImpl)},
                 {"createValueObjectImpl", 12, slotOf(&I::createValueObjectImpl)},
                 {"createValueObjectScalarImpl", 13, slotOf(&I::createValueObjectScalarImpl)},
                 {"createValueObjectArrayImpl", 14, slotOf(&I::createValueObjectArrayImpl)},
                 {"createHandleObjectRefImpl", 15, slotOf(&I::createHandleObjectRefImpl)},
                 {"createEnumerationObjectImpl", 16, slotOf(&I::createEnumerationObjectImpl)},
                 {"reservedOp17", 17, slotOf(&I::reservedOp17)},
                 {"reservedOp18", 18, slotOf(&I::reservedOp18)},
                 {"reservedOp19", 19, slotOf(&I::reservedOp19)},
                 {"createEnumArrayImpl", 20, slotOf(&I::createEnumArrayImpl)},
                 {"reservedOp21", 21, slotOf(&I::reservedOp21)},
                 {"reservedOp22", 22, slotOf(&I::reservedOp22)},
                 {"createBufferImpl", 23, slotOf(&I::createBufferImpl)},
                 {"createUntypedBufferImpl", 24, slotOf(&I::createUntypedBufferImpl)},
                 {"createArrayFromBufferImpl", 25, slotOf(&I::createArrayFromBufferImpl)}});
}

TEST(Slots, PropertyImpl) {
    using I = vexa::data::impl::PropertyImpl;
    expectSlots(afterDestructor, {{"getIdentifier", 1, slotOf(&I::getIdentifier)},
                                  {"getValue", 2, slotOf(&I::getValue)},
                                  {"getReference", 3, slotOf(&I::getReference)}});
}

TEST(Slots, VariableInfoImplData) {
    using I = vexa::data::detail::VariableInfoImplData;
    expectSlots(afterDestructor, {{"getName", 1, slotOf(&I::getName)},
                                  {"setStatus", 2, slotOf(&I::setStatus)},
                                  {"setValue", 3, slotOf(&I::setValue)},
                                  {"getStatus", 4, slotOf(&I::getStatus)},
                                  {"getValue", 5, slotOf(&I::getValue)}});
}

TEST(Slots, ReferenceImpl) {
    using I = vexa::data::detail::ReferenceImpl;
    expectSlots(countingDestructor, {{"getArrayImpl", 3, slotOf(&I::getArrayImpl)},
                                     {"getElementArray", 4, slotOf(&I::getElementArray)},
                                     {"createReference", 5, slotOf(&I::createReference)},
                                     {"prepareForWrite", 6, slotOf(&I::prepareForWrite)},
                                     {"getElementArrayForCopy", 7, slotOf(&I::getElementArrayForCopy)},
                                     {"getLinearIndex", 8, slotOf(&I::getLinearIndex)},
                                     {"setArray", 9, slotOf(&I::setArray)},
                                     {"getString", 10, slotOf(&I::getString)},
                                     {"setString", 11, slotOf(&I::setString)},
                                     {"setWords", 12, slotOf(&I::setWords)},
                                     {"getElementArrayID", 13, slotOf(&I::getElementArrayID)}});
}

TEST(Slots, IteratorImpl) {
    using I = vexa::data::detail::IteratorImpl;
    expectSlots(countingDestructor, {{"clone", 3, slotOf(&I::clone)},
                                     {"advance", 4, slotOf(&I::advance)},
                                     {"isEqual", 5, slotOf(&I::isEqual)},
                                     {"distanceTo", 6, slotOf(&I::distanceTo)},
                                     {"decrement", 7, slotOf(&I::decrement)},
                                     {"increment", 8, slotOf(&I::increment)},
                                     {"reservedOp9", 9, slotOf(&I::reservedOp9)},
                                     {"createReference", 10, slotOf(&I::createReference)},
                                     {"saveReference", 11, slotOf(&I::saveReference)},
                                     {"reservedOp12", 12, slotOf(&I::reservedOp12)},
                                     {"getElementAddress", 13, slotOf(&I::getElementAddress)}});
}

TEST(Slots, ForwardIteratorImpl) {
    using I = vexa::data::detail::ForwardIteratorImpl;
    expectSlots(countingDestructor, {{"clone", 3, slotOf(&I::clone)},
                                     {"get", 4, slotOf(&I::get)},
                                     {"equal", 5, slotOf(&I::equal)},
                                     {"increment", 6, slotOf(&I::increment)}});
}

TEST(Slots, ClassInfoImpl) {
    using I = vexa::data::impl::ClassInfoImpl;
    expectSlots(
        countingDestructor,
        {{"reservedOp3", 3, slotOf(&I::reservedOp3)},
         {"getClassIdentifier", 4, slotOf(&I::getClassIdentifier)},
         {"beginProperties", 5, slotOf(&I::beginProperties)},
         {"endProperties", 6, slotOf(&I::endProperties)},
         {"beginArrayProperties", 7, slotOf(&I::beginArrayProperties)},
         {"endArrayProperties", 8, slotOf(&I::endArrayProperties)},
         {"beginSuperclasses", 9, slotOf(&I::beginSuperclasses)},
         {"endSuperclasses", 10, slotOf(&I::endSuperclasses)},
         {"getNumberOfProperties", 11, slotOf(&I::getNumberOfProperties)},
         {"getNumberOfArrayProperties", 12, slotOf(&I::getNumberOfArrayProperties)},
         {"reservedOp13", 13, slotOf(&I::reservedOp13)},
         {"updateVexaPropertyIdentifiersClassInfo", 14, slotOf(&I::updateVexaPropertyIdentifiersClassInfo)}});
}

TEST(Slots, ObjectImpl) {
    using I = vexa::data::impl::ObjectImpl;
    expectSlots(countingDestructor, {{"sharedCopy", 3, slotOf(&I::sharedCopy)},
                                     {"getEnumerationName", 4, slotOf(&I::getEnumerationName)},
                                     {"getClassInfo", 5, slotOf(&I::getClassInfo)},
                                     {"getProperty", 6, slotOf(&I::getProperty)},
                                     {"getPropertyReference", 7, slotOf(&I::getPropertyReference)},
                                     {"begin", 8, slotOf(&I::begin)},
                                     {"end", 9, slotOf(&I::end)},
                                     {"cbegin", 10, slotOf(&I::cbegin)},
                                     {"cend", 11, slotOf(&I::cend)},
                                     {"reservedOp12", 12, slotOf(&I::reservedOp12)},
                                     {"reservedOp13", 13, slotOf(&I::reservedOp13)},
                                     {"reservedOp14", 14, slotOf(&I::reservedOp14)},
                                     {"reservedOp15", 15, slotOf(&I::reservedOp15)},
                                     {"hasProperty", 16, slotOf(&I::hasProperty)},
                                     {"numOfProperties", 17, slotOf(&I::numOfProperties)},
                                     {"getExternalRepresentationPropertyNames", 18,
                                      slotOf(&I::getExternalRepresentationPropertyNames)}});
}

TEST(Slots, IVariableInfo) {
    using I = foundation::vexadata::IVariableInfo;
    expectSlots(countingDestructor,
                {{"getStatus", 3, slotOf(&I::getStatus)}, {"getValue", 4, slotOf(&I::getValue)}});
}

TEST(Slots, ICustomWorkspace) {
    using I = foundation::vexadata::ICustomWorkspace;
    expectSlots(countingDestructor, {{"getVariable", 3, slotOf(&I::getVariable)},
                                     {"getVariables", 4, slotOf(&I::getVariables)},
                                     {"setVariables", 5, slotOf(&I::setVariables)},
                                     {"clearVariable", 6, slotOf(&I::clearVariable)},
                                     {"getVariableNames", 7, slotOf(&I::getVariableNames)}});
}

TEST(Slots, HandleObjectRefImpl) {
    using I = vexa::data::impl::HandleObjectRefImpl;
    expectSlots(afterUnusedOne, {{"getZVMID", 1, slotOf(&I::getZVMID)},
                                 {"getId", 2, slotOf(&I::getId)},
                                 {"addReference", 3, slotOf(&I::addReference)}});
}

TEST(Slots, Exception) {
    using I = foundation::vexadata::Exception;
    expectSlots(beforeDestructor, {{"what", 1, slotOf(&I::what)}});
}

TEST(Slots, EArrayInvalidHandleRef) {
    using I = foundation::vexadata::EArrayInvalidHandleRef;
    expectSlots(afterDestructor, {{"what", 1, slotOf(&I::what)}});
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
