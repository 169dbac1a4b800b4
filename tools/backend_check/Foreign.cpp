#include "Foreign.hpp"

#include "Samples.hpp"

#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/StructElement.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/Identity.hpp>
#include <vexa/testing/ForwardingObjects.hpp>

#include <memory>

namespace vexa::check {

namespace {

/// What all kinds of array have.
template <class Interface>
class Foreign : public Interface {
public:
    explicit Foreign(Owned<ArrayImpl> inner) : inner_(std::move(inner)) {}

    ArrayImpl* sharedCopy() const override {
        return foreign(Owned<ArrayImpl>(inner_->sharedCopy())).detach();
    }
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        return inner_->beginIterator(unused, writable);
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        return inner_->endIterator(unused, writable);
    }
    ArrayType getType() const override { return inner_->getType(); }
    data::MemoryLayout getMemoryLayout() const override { return inner_->getMemoryLayout(); }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                          bool forWrite) override {
        return inner_->createElementReference(index, fieldName, forWrite);
    }
    const Dimensions& getDimensions() const override { return inner_->getDimensions(); }
    std::size_t getNumberOfElements() const override { return inner_->getNumberOfElements(); }
    void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) override {
        inner_->assignElementArray(index, fieldName, array);
    }
    std::string castToString(std::size_t index, const std::string& fieldName) const override {
        return inner_->castToString(index, fieldName);
    }
    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override {
        inner_->getStringElement(index, text, length);
    }
    const std::size_t* getJc() const override { return inner_->getJc(); }
    const std::size_t* getIr() const override { return inner_->getIr(); }
    std::size_t getRows() const override { return inner_->getRows(); }
    std::size_t getCols() const override { return inner_->getCols(); }
    std::size_t getNumberOfNonZeroElements() const override { return inner_->getNumberOfNonZeroElements(); }
    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override { return inner_->getIndex(k); }
    bool isEmpty() const override { return inner_->isEmpty(); }
    std::uint64_t getArrayID() const override { return inner_->getArrayID(); }
    void unshare() override { inner_->unshare(); }
    bool isEqual(const ArrayImpl* other) const override { return inner_->isEqual(other); }

protected:
    ArrayImpl& inner() const noexcept { return *inner_; }

private:
    Owned<ArrayImpl> inner_;
};

template <class T, class Interface = TypedArrayImpl<T>>
class ForeignTyped : public Foreign<Interface> {
public:
    using Foreign<Interface>::Foreign;
    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override {
        return typed().getElementAddress(index, fieldName, forWrite);
    }
    /// Null without elements, which is an array's right.
    const T* getTypedDataPtr() const override {
        return this->isEmpty() ? nullptr : typed().getTypedDataPtr();
    }

protected:
    Interface& typed() const { return dynamic_cast<Interface&>(this->inner()); }
};

template <class T, class Interface = TypedArrayImpl<T>>
class ForeignElements final : public ForeignTyped<T, Interface> {
public:
    using ForeignTyped<T, Interface>::ForeignTyped;
    void setElementValue(std::size_t index, const std::string& fieldName, T value) override {
        this->typed().setElementValue(index, fieldName, std::move(value));
    }
};

class ForeignStrings final : public ForeignTyped<fv::String, StringArrayImpl> {
public:
    using ForeignTyped::ForeignTyped;
    void setStringElement(std::size_t index, const std::string& fieldName, fv::String value) override {
        typed().setStringElement(index, fieldName, std::move(value));
    }
};

class ForeignEnums final : public ForeignTyped<fv::Enumeration, EnumArrayImpl> {
public:
    using ForeignTyped::ForeignTyped;
    void setElementValue(std::size_t index, const std::string& fieldName, fv::Enumeration value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }
    const char* getClassName() const override { return typed().getClassName(); }
    const char* getEnumNameAt(std::size_t index) const override { return typed().getEnumNameAt(index); }
};

class ForeignStructs final : public ForeignTyped<fv::StructElement, StructArrayImpl> {
public:
    using ForeignTyped::ForeignTyped;
    void setElementValue(std::size_t index, const std::string& fieldName, fv::StructElement value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }
    data::detail::ForwardIteratorImpl* fieldNamesBegin() override { return typed().fieldNamesBegin(); }
    data::detail::ForwardIteratorImpl* fieldNamesEnd() override { return typed().fieldNamesEnd(); }
    std::size_t getNumFields() const override { return typed().getNumFields(); }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        return typed().createFieldValuesIterator(index, atEnd);
    }
    ArrayImpl* getField(std::size_t index, const std::string& fieldName) const override {
        return typed().getField(index, fieldName);
    }
    void setFieldValues(std::size_t index, std::vector<fv::Array> values) override {
        typed().setFieldValues(index, std::move(values));
    }
};

class ForeignObjects final : public ForeignTyped<fv::HandleObjectRef, ObjectArrayImpl> {
    using Iterator = data::detail::ForwardIteratorImpl*;
    using Identifier = fv::VexaPropertyIdentifier;

public:
    using ForeignTyped::ForeignTyped;
    void setElementValue(std::size_t index, const std::string& fieldName,
                         fv::HandleObjectRef value) override {
        typed().setElementValue(index, fieldName, std::move(value));
    }
    fv::ClassInfo getClassInfo() const override { return typed().getClassInfo(); }
    bool isHeterogeneous() const override { return typed().isHeterogeneous(); }
    fv::Array getArrayProperty(Identifier id) const override {
        return typed().getArrayProperty(std::move(id));
    }
    ReferenceImpl* getArrayPropertyReference(Identifier id) override {
        return typed().getArrayPropertyReference(std::move(id));
    }
    Iterator beginArrayProp() override { return typed().beginArrayProp(); }
    Iterator endArrayProp() override { return typed().endArrayProp(); }
    Iterator cbeginArrayProp() const override { return typed().cbeginArrayProp(); }
    Iterator cendArrayProp() const override { return typed().cendArrayProp(); }
    bool hasArrayProperty(const Identifier& id) const override { return typed().hasArrayProperty(id); }
    std::size_t numOfArrayProperties() const override { return typed().numOfArrayProperties(); }
    Dimensions getExternalDimensions() const override { return typed().getExternalDimensions(); }
    bool isExternalDimensionsSet() const override { return typed().isExternalDimensionsSet(); }
    std::vector<std::string> getExternalRepresentationArrayPropertyNames() const override {
        return typed().getExternalRepresentationArrayPropertyNames();
    }
    fv::Array getElementProperty(std::size_t index, Identifier id) const override {
        return typed().getElementProperty(index, std::move(id));
    }
    void setElementObject(std::size_t index, ObjectImpl* object) override {
        typed().setElementObject(index, object);
    }
    ObjectImpl* getElementObject(std::size_t index) const override { return typed().getElementObject(index); }
    Iterator beginElementProperties(std::size_t index) override {
        return typed().beginElementProperties(index);
    }
    Iterator endElementProperties(std::size_t index) override { return typed().endElementProperties(index); }
    bool isEqualArrayProperties(const ArrayImpl* other) const override {
        return typed().isEqualArrayProperties(other);
    }
};

class ForeignSparse final : public Foreign<ArrayImpl> {
public:
    using Foreign::Foreign;
};

class SharingNumber final : public TypedArrayImpl<double> {
public:
    explicit SharingNumber(std::shared_ptr<double> value) : value_(std::move(value)) {}

    ArrayImpl* sharedCopy() const override { return new SharingNumber(value_); }
    IteratorImpl* beginIterator(void*, bool writable) override { return iteratorAt(0, writable); }
    IteratorImpl* endIterator(void*, bool writable) override { return iteratorAt(1, writable); }
    ArrayType getType() const override { return ArrayType::DOUBLE; }
    data::MemoryLayout getMemoryLayout() const override { return data::MemoryLayout::COLUMN_MAJOR; }
    ReferenceImpl* createElementReference(std::size_t, const std::string&, bool) override { return nullptr; }
    const Dimensions& getDimensions() const override {
        static const Dimensions scalar{1, 1};
        return scalar;
    }
    std::size_t getNumberOfElements() const override { return 1; }
    bool isEmpty() const override { return false; }
    std::uint64_t getArrayID() const override { return identity_.get(); }
    void unshare() override {
        if (value_.use_count() > 1) value_ = std::make_shared<double>(*value_);
    }
    bool isEqual(const ArrayImpl* other) const override {
        return *value_ == *dynamic_cast<const TypedArrayImpl<double>&>(*other).getTypedDataPtr();
    }
    double* getElementAddress(std::size_t, const std::string&, bool) override { return value_.get(); }
    void setElementValue(std::size_t, const std::string&, double value) override { *value_ = value; }
    const double* getTypedDataPtr() const override { return value_.get(); }

private:
    IteratorImpl* iteratorAt(std::size_t position, bool writable) {
        if (writable) unshare();
        return new data::detail::ContiguousIteratorImpl<double>(value_.get() + position);
    }

    std::shared_ptr<double> value_;
    data::detail::Identity identity_;
};

/// The class for the arrays of a tag; void for no kind.
template <class Tag>
struct ForeignClass {
    using type = void;
};
template <class T>
struct ForeignClass<fv::detail::ElementTag<T>> {
    using type = ForeignElements<T>;
};
template <>
struct ForeignClass<fv::detail::ElementTag<fv::String>> {
    using type = ForeignStrings;
};
template <>
struct ForeignClass<fv::detail::ElementTag<fv::Enumeration>> {
    using type = ForeignEnums;
};
template <>
struct ForeignClass<fv::detail::ElementTag<fv::StructElement>> {
    using type = ForeignStructs;
};
template <>
struct ForeignClass<fv::detail::ElementTag<fv::ValueObject>> {
    using type = ForeignObjects;
};
template <>
struct ForeignClass<fv::detail::ElementTag<fv::HandleObjectRef>> {
    using type = ForeignObjects;
};
template <class T>
struct ForeignClass<fv::detail::SparseTag<T>> {
    using type = ForeignSparse;
};

} // namespace

Owned<ArrayImpl> foreign(Owned<ArrayImpl> array) {
    return fv::detail::withKind(array->getType(), [&](auto tag) -> Owned<ArrayImpl> {
        using Class = typename ForeignClass<decltype(tag)>::type;
        if constexpr (std::is_void_v<Class>) {
            return std::move(array);
        } else {
            return Owned<ArrayImpl>(new Class(std::move(array)));
        }
    });
}

Owned<ObjectImpl> foreignObject(Owned<ObjectImpl> object) {
    using namespace testing;
    const bool handle = dynamic_cast<data::impl::HandleObjectRefImpl*>(object.get()) != nullptr;
    Inner<ObjectImpl> inner(object.detach());
    return Owned<ObjectImpl>(handle ? new ForwardingHandleObject(std::move(inner))
                                    : new ForwardingObject(std::move(inner)));
}

Owned<ArrayImpl> sharingNumbers(double value) {
    return Owned<ArrayImpl>(new SharingNumber(std::make_shared<double>(value)));
}

Owned<ArrayImpl> emptyArray() {
    const fv::Array handle;
    return share(*fv::detail::Access::impl(handle));
}

} // namespace vexa::check
