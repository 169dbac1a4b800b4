// A back-end over another one: every operation of every interface is passed on and can be overridden. A test
// derives from these to make single operations behave differently. Wrapped arrays, objects and classes are
// unwrapped again when they are handed back to the inner back-end.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/Identifiers.hpp>
#include <foundation/vexadata/Object.hpp>
#include <foundation/vexadata/StructElement.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace support {

namespace fv = foundation::vexadata;
using vexa::data::MemoryLayout;
using vexa::data::detail::ForwardIteratorImpl;
using vexa::data::detail::IteratorImpl;
using vexa::data::detail::ReferenceImpl;
using vexa::data::impl::ArrayFactoryImpl;
using vexa::data::impl::ArrayImpl;
using vexa::data::impl::Buffer;
using vexa::data::impl::ClassInfoImpl;
using vexa::data::impl::EnumArrayImpl;
using vexa::data::impl::ObjectArrayImpl;
using vexa::data::impl::ObjectImpl;
using vexa::data::impl::StringArrayImpl;
using vexa::data::impl::StructArrayImpl;
using vexa::data::impl::TypedArrayImpl;
using VexaPropertyIdentifier = fv::VexaPropertyIdentifier;

/// The one counted reference of a wrapper to what it wraps.
struct ReleaseInner {
    template <class T>
    void operator()(T* object) const noexcept {
        object->release();
    }
};
/// Called before every operation that is passed on, unless it must not throw. May throw. A null function means
/// nothing.
inline void (*beforeOperation)() = nullptr;
/// The same before the queries that must not throw.
inline void (*beforeQuery)() = nullptr;

/// True when the pointer that an operation gives is to be null instead.
inline bool (*giveNull)() = nullptr;

/// What an operation gives: `made`, or null.
template <class T>
T* given(T* made) {
    if (giveNull == nullptr || made == nullptr || !giveNull()) {
        return made;
    }
    if constexpr (std::is_base_of_v<vexa::data::detail::RefCounted, T>) {
        made->release();
    }
    return nullptr;
}
template <class T>
std::shared_ptr<T> given(std::shared_ptr<T> made) {
    return giveNull == nullptr || made == nullptr || !giveNull() ? made : nullptr;
}

template <class T>
class Inner : public std::unique_ptr<T, ReleaseInner> {
public:
    using std::unique_ptr<T, ReleaseInner>::unique_ptr;

    /// For passing an operation on. One that must not throw is called on `*inner`.
    T* operator->() const {
        if (beforeOperation != nullptr) {
            beforeOperation();
        }
        return this->get();
    }
};

/// An iterator. Those that it is compared with must be of this class too.
class ForwardingIterator : public IteratorImpl {
public:
    explicit ForwardingIterator(Inner<IteratorImpl> inner) : inner_(std::move(inner)) {}

    IteratorImpl& wrapped() const noexcept { return *inner_; }

    IteratorImpl* clone() const override { return given(wrapCopy(Inner<IteratorImpl>(inner_->clone()))); }
    void advance(std::int64_t count) override { inner_->advance(count); }
    bool isEqual(const IteratorImpl& other) const override { return inner_->isEqual(below(other)); }
    std::int64_t distanceTo(const IteratorImpl& other) const override {
        return inner_->distanceTo(below(other));
    }
    void decrement() override { inner_->decrement(); }
    void increment() override { inner_->increment(); }
    void reservedOp9() override { inner_->reservedOp9(); }
    ReferenceImpl* createReference() override { return given(inner_->createReference()); }
    /// Not failed before: whoever is asked owns the chain already.
    void saveReference(ReferenceImpl* chain) override { (*inner_).saveReference(chain); }
    void reservedOp12() override { inner_->reservedOp12(); }
    void* getElementAddress() override { return given(inner_->getElementAddress()); }

protected:
    static const IteratorImpl& below(const IteratorImpl& other) {
        return *static_cast<const ForwardingIterator&>(other).inner_;
    }
    virtual IteratorImpl* wrapCopy(Inner<IteratorImpl> copy) const {
        return new ForwardingIterator(std::move(copy));
    }

private:
    Inner<IteratorImpl> inner_;
};

/// What all wrappers of arrays have beside their interface.
class ArrayWrapper {
public:
    virtual ArrayImpl& wrapped() const noexcept = 0;

    /// The array below a wrapper, or the array itself.
    static const ArrayImpl* below(const ArrayImpl* array) noexcept {
        const auto* wrapper = dynamic_cast<const ArrayWrapper*>(array);
        return wrapper == nullptr ? array : &wrapper->wrapped();
    }
    static ArrayImpl* below(ArrayImpl* array) noexcept {
        return const_cast<ArrayImpl*>(below(static_cast<const ArrayImpl*>(array)));
    }

protected:
    ~ArrayWrapper() = default;
};

/// Operations 1 to 35. A class that derives from this says in `wrapCopy` what its copies are.
template <class Interface>
class ForwardingArrayBase : public Interface, public ArrayWrapper {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingArrayBase(Inner<ArrayImpl> inner) : inner_(std::move(inner)) {}

    ArrayImpl& wrapped() const noexcept override { return *inner_; }

    ArrayImpl* sharedCopy() const override { return given(wrapCopy(Inner<ArrayImpl>(inner_->sharedCopy()))); }
    void* reservedOp1() override { return given(inner_->reservedOp1()); }
    void* reservedOp2() override { return given(inner_->reservedOp2()); }
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        return given(inner_->beginIterator(unused, writable));
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        return given(inner_->endIterator(unused, writable));
    }
    void reservedOp5() override { inner_->reservedOp5(); }
    void* reservedOp6() override { return given(inner_->reservedOp6()); }
    void reservedOp7() override { inner_->reservedOp7(); }
    void reservedOp8() override { inner_->reservedOp8(); }
    fv::ArrayType getType() const override { return asked().getType(); }
    MemoryLayout getMemoryLayout() const override { return asked().getMemoryLayout(); }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                          bool forWrite) override {
        return given(inner_->createElementReference(index, fieldName, forWrite));
    }
    ReferenceImpl* forwardingOp(std::size_t index, const std::string& fieldName) override {
        return given(inner_->forwardingOp(index, fieldName));
    }
    const std::vector<std::size_t>& getDimensions() const override { return asked().getDimensions(); }
    std::size_t getNumberOfElements() const override { return asked().getNumberOfElements(); }
    std::size_t reservedOp10() const override { return inner_->reservedOp10(); }
    void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) override {
        inner_->assignElementArray(index, fieldName, ArrayWrapper::below(array));
    }
    std::string castToString(std::size_t index, const std::string& fieldName) const override {
        return inner_->castToString(index, fieldName);
    }
    void setString(std::size_t index, const std::string& fieldName, std::string value) override {
        inner_->setString(index, fieldName, std::move(value));
    }
    void setElementWords(std::size_t index, std::uint64_t first, std::uint64_t second) override {
        inner_->setElementWords(index, first, second);
    }
    void setElementOpB() override { inner_->setElementOpB(); }
    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override {
        inner_->getStringElement(index, text, length);
    }
    const std::size_t* getJc() const override { return given(inner_->getJc()); }
    const std::size_t* getIr() const override { return given(inner_->getIr()); }
    std::size_t getRows() const override { return inner_->getRows(); }
    std::size_t getCols() const override { return inner_->getCols(); }
    std::size_t getNumberOfNonZeroElements() const override { return inner_->getNumberOfNonZeroElements(); }
    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override { return inner_->getIndex(k); }
    bool isEmpty() const override { return asked().isEmpty(); }
    std::uint64_t getArrayID() const override { return asked().getArrayID(); }
    void unshare() override { inner_->unshare(); }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        inner_->copyOutBuffer(data, deleter);
    }
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        inner_->releaseBuffer(data, deleter);
    }
    const void* getUntypedDataPtr() const override { return given(inner_->getUntypedDataPtr()); }
    bool isEqual(const ArrayImpl* other) const override {
        return asked().isEqual(ArrayWrapper::below(other));
    }

protected:
    /// The inner array, for a query.
    const ArrayImpl& asked() const {
        if (beforeQuery != nullptr) {
            beforeQuery();
        }
        return *inner_;
    }
    /// A wrapper of this kind around a copy of the inner array.
    virtual ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const = 0;
    /// The inner array, for an operation that is passed on.
    ArrayImpl& passOn() const { return *inner_.operator->(); }
    /// Goes on around another array.
    void rewrap(Inner<ArrayImpl> inner) { inner_ = std::move(inner); }

private:
    Inner<ArrayImpl> inner_;
};

/// Sparse arrays, which add no operation.
class ForwardingSparse : public ForwardingArrayBase<ArrayImpl> {
public:
    using ForwardingArrayBase::ForwardingArrayBase;

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingSparse(std::move(copy));
    }
};

/// Operations 36 to 40 of an interface that continues TypedArrayImpl<T>.
template <class T, class Interface = TypedArrayImpl<T>>
class ForwardingTypedBase : public ForwardingArrayBase<Interface> {
public:
    using ForwardingArrayBase<Interface>::ForwardingArrayBase;

    void reservedOp36() override { typed().reservedOp36(); }
    void reservedOp37() override { typed().reservedOp37(); }
    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override {
        return given(typed().getElementAddress(index, fieldName, forWrite));
    }
    const T* getTypedDataPtr() const override { return given(std::as_const(typed()).getTypedDataPtr()); }

protected:
    Interface& typed() const { return static_cast<Interface&>(this->passOn()); }
};

/// Iterators whose chains lead into the wrapper, for elements that are handed out as references.
template <class Base>
class ForwardingOverReferences : public Base {
    using Iterator = vexa::data::detail::NonPrimitiveIteratorImpl<vexa::data::impl::MatchingDataOrder>;

public:
    using Base::Base;

    IteratorImpl* beginIterator(void*, bool) override { return new Iterator(this, 0); }
    IteratorImpl* endIterator(void*, bool) override {
        return new Iterator(this, this->wrapped().getNumberOfElements());
    }
};

/// Numeric, logical and character arrays.
template <class T>
class ForwardingNumbers : public ForwardingTypedBase<T> {
public:
    using ForwardingTypedBase<T>::ForwardingTypedBase;

    void setElementValue(std::size_t index, const std::string& fieldName, T value) override {
        this->typed().setElementValue(index, fieldName, value);
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingNumbers(std::move(copy));
    }
};

class ForwardingCells : public ForwardingOverReferences<ForwardingTypedBase<fv::Array>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName, fv::Array value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override { return new ForwardingCells(std::move(copy)); }
};

class ForwardingStrings : public ForwardingOverReferences<ForwardingTypedBase<fv::String, StringArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setStringElement(std::size_t index, const std::string& fieldName, fv::String value) override {
        typed().setStringElement(index, fieldName, std::move(value));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingStrings(std::move(copy));
    }
};

class ForwardingEnums : public ForwardingOverReferences<ForwardingTypedBase<fv::Enumeration, EnumArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName, fv::Enumeration value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }
    const char* getClassName() const override { return given(typed().getClassName()); }
    void reservedOp42() override { typed().reservedOp42(); }
    const char* getEnumNameAt(std::size_t index) const override {
        return given(typed().getEnumNameAt(index));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override { return new ForwardingEnums(std::move(copy)); }
};

class ForwardingStructs
    : public ForwardingOverReferences<ForwardingTypedBase<fv::StructElement, StructArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName, fv::StructElement value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }
    ForwardIteratorImpl* fieldNamesBegin() override { return given(typed().fieldNamesBegin()); }
    ForwardIteratorImpl* fieldNamesEnd() override { return given(typed().fieldNamesEnd()); }
    std::size_t getNumFields() const override { return typed().getNumFields(); }
    void reservedOp44() override { typed().reservedOp44(); }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        return given(typed().createFieldValuesIterator(index, atEnd));
    }
    void reservedOp46() override { typed().reservedOp46(); }
    ArrayImpl* getField(std::size_t index, const std::string& fieldName) const override {
        return given(typed().getField(index, fieldName));
    }
    void setFieldValues(std::size_t index, std::vector<fv::Array> values) override {
        typed().setFieldValues(index, std::move(values));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingStructs(std::move(copy));
    }
};

/// An object. `wrap` makes copies of it wrappers too.
class ForwardingObject : public ObjectImpl {
public:
    explicit ForwardingObject(Inner<ObjectImpl> inner) : inner_(std::move(inner)) {}

    ObjectImpl& wrapped() const noexcept { return *inner_; }
    static ObjectImpl* below(ObjectImpl* object) noexcept {
        auto* wrapper = dynamic_cast<ForwardingObject*>(object);
        return wrapper == nullptr ? object : &wrapper->wrapped();
    }

    ObjectImpl* sharedCopy() const override {
        return given(wrapCopy(Inner<ObjectImpl>(inner_->sharedCopy())));
    }
    const char* getEnumerationName() const override { return given(inner_->getEnumerationName()); }
    fv::ClassInfo getClassInfo() const override { return inner_->getClassInfo(); }
    std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier id) const override {
        return given(inner_->getProperty(std::move(id)));
    }
    ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) override {
        return given(inner_->getPropertyReference(std::move(id)));
    }
    ForwardIteratorImpl* begin() override { return given(inner_->begin()); }
    ForwardIteratorImpl* end() override { return given(inner_->end()); }
    ForwardIteratorImpl* cbegin() const override { return given(std::as_const(*inner_).cbegin()); }
    ForwardIteratorImpl* cend() const override { return given(std::as_const(*inner_).cend()); }
    void reservedOp12() override { inner_->reservedOp12(); }
    void reservedOp13() override { inner_->reservedOp13(); }
    void reservedOp14() override { inner_->reservedOp14(); }
    void reservedOp15() override { inner_->reservedOp15(); }
    bool hasProperty(const VexaPropertyIdentifier& id) const override { return inner_->hasProperty(id); }
    std::size_t numOfProperties() const override { return inner_->numOfProperties(); }
    std::vector<std::string> getExternalRepresentationPropertyNames() const override {
        return inner_->getExternalRepresentationPropertyNames();
    }

protected:
    ObjectImpl& passOn() const { return *inner_.operator->(); }
    virtual ObjectImpl* wrapCopy(Inner<ObjectImpl> copy) const {
        return new ForwardingObject(std::move(copy));
    }

private:
    Inner<ObjectImpl> inner_;
};

/// An object with reference semantics, over one that has the second interface too.
class ForwardingHandleObject : public ForwardingObject, public vexa::data::impl::HandleObjectRefImpl {
public:
    using ForwardingObject::ForwardingObject;

    void reservedOp0() override { handle().reservedOp0(); }
    vexa::data::impl::ZVMID getZVMID() const override { return handle().getZVMID(); }
    long getId() const override { return handle().getId(); }
    void addReference() const override { handle().addReference(); }

protected:
    ObjectImpl* wrapCopy(Inner<ObjectImpl> copy) const override {
        return new ForwardingHandleObject(std::move(copy));
    }

private:
    HandleObjectRefImpl& handle() const { return dynamic_cast<HandleObjectRefImpl&>(passOn()); }
};

class ForwardingObjects
    : public ForwardingOverReferences<ForwardingTypedBase<fv::HandleObjectRef, ObjectArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName,
                         fv::HandleObjectRef value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }
    fv::ClassInfo getClassInfo() const override { return typed().getClassInfo(); }
    bool isHeterogeneous() const override { return typed().isHeterogeneous(); }
    fv::Array getArrayProperty(VexaPropertyIdentifier id) const override {
        return typed().getArrayProperty(std::move(id));
    }
    ReferenceImpl* getArrayPropertyReference(VexaPropertyIdentifier id) override {
        return given(typed().getArrayPropertyReference(std::move(id)));
    }
    ForwardIteratorImpl* beginArrayProp() override { return given(typed().beginArrayProp()); }
    ForwardIteratorImpl* endArrayProp() override { return given(typed().endArrayProp()); }
    ForwardIteratorImpl* cbeginArrayProp() const override {
        return given(std::as_const(typed()).cbeginArrayProp());
    }
    ForwardIteratorImpl* cendArrayProp() const override {
        return given(std::as_const(typed()).cendArrayProp());
    }
    bool hasArrayProperty(const VexaPropertyIdentifier& id) const override {
        return typed().hasArrayProperty(id);
    }
    std::size_t numOfArrayProperties() const override { return typed().numOfArrayProperties(); }
    void reservedOp51() override { typed().reservedOp51(); }
    void reservedOp52() override { typed().reservedOp52(); }
    void reservedOp53() override { typed().reservedOp53(); }
    void reservedOp54() override { typed().reservedOp54(); }
    std::vector<std::size_t> getExternalDimensions() const override {
        return typed().getExternalDimensions();
    }
    bool isExternalDimensionsSet() const override { return typed().isExternalDimensionsSet(); }
    std::vector<std::string> getExternalRepresentationArrayPropertyNames() const override {
        return typed().getExternalRepresentationArrayPropertyNames();
    }
    fv::Array getElementProperty(std::size_t index, VexaPropertyIdentifier id) const override {
        return typed().getElementProperty(index, std::move(id));
    }
    void setElementObject(std::size_t index, ObjectImpl* object) override {
        typed().setElementObject(index, ForwardingObject::below(object));
    }
    ObjectImpl* getElementObject(std::size_t index) const override {
        return given(typed().getElementObject(index));
    }
    void reservedOp61() override { typed().reservedOp61(); }
    void reservedOp62() override { typed().reservedOp62(); }
    void reservedOp63() override { typed().reservedOp63(); }
    void reservedOp64() override { typed().reservedOp64(); }
    void reservedOp65() override { typed().reservedOp65(); }
    ForwardIteratorImpl* beginElementProperties(std::size_t index) override {
        return given(typed().beginElementProperties(index));
    }
    ForwardIteratorImpl* endElementProperties(std::size_t index) override {
        return given(typed().endElementProperties(index));
    }
    bool isEqualArrayProperties(const ArrayImpl* other) const override {
        return typed().isEqualArrayProperties(ArrayWrapper::below(other));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingObjects(std::move(copy));
    }
};

class ForwardingClass : public ClassInfoImpl {
public:
    explicit ForwardingClass(Inner<ClassInfoImpl> inner) : inner_(std::move(inner)) {}

    ClassInfoImpl& wrapped() const noexcept { return *inner_; }
    static ClassInfoImpl* below(ClassInfoImpl* description) noexcept {
        auto* wrapper = dynamic_cast<ForwardingClass*>(description);
        return wrapper == nullptr ? description : &wrapper->wrapped();
    }

    void reservedOp3() override { inner_->reservedOp3(); }
    std::shared_ptr<vexa::data::impl::VexaClassIdentifierImpl> getClassIdentifier() const override {
        return given(inner_->getClassIdentifier());
    }
    ForwardIteratorImpl* beginProperties() const override { return given(inner_->beginProperties()); }
    ForwardIteratorImpl* endProperties() const override { return given(inner_->endProperties()); }
    ForwardIteratorImpl* beginArrayProperties() const override {
        return given(inner_->beginArrayProperties());
    }
    ForwardIteratorImpl* endArrayProperties() const override { return given(inner_->endArrayProperties()); }
    ForwardIteratorImpl* beginSuperclasses() const override { return given(inner_->beginSuperclasses()); }
    ForwardIteratorImpl* endSuperclasses() const override { return given(inner_->endSuperclasses()); }
    std::size_t getNumberOfProperties() const override { return inner_->getNumberOfProperties(); }
    std::size_t getNumberOfArrayProperties() const override { return inner_->getNumberOfArrayProperties(); }
    void reservedOp13() override { inner_->reservedOp13(); }
    void updateVexaPropertyIdentifiersClassInfo(fv::ClassInfo& classInfo) override {
        inner_->updateVexaPropertyIdentifiersClassInfo(classInfo);
    }

private:
    Inner<ClassInfoImpl> inner_;
};

} // namespace support
