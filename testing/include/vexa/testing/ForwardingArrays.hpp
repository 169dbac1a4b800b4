// Doubles of arrays: every operation is passed on to an array of another back-end, and can be overridden.
// Reserved operations, which nobody calls, are not. Another array that an operation takes is unwrapped before
// it is handed on, if it is a double. A class that derives from one of these overrides `wrapCopy` too if its
// copies shall be of its own class.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/StructElement.hpp>
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>
#include <vexa/testing/ForwardingIterators.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vexa::testing {

using vexa::data::MemoryLayout;
using vexa::data::impl::ArrayImpl;
using vexa::data::impl::EnumArrayImpl;
using vexa::data::impl::StringArrayImpl;
using vexa::data::impl::StructArrayImpl;
using vexa::data::impl::TypedArrayImpl;

/// The operations that every array has. `Interface` is ArrayImpl or an interface that continues it.
template <class Interface>
class ForwardingArrayBase : public Interface, public Double<ArrayImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingArrayBase(Inner<ArrayImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : Double<ArrayImpl>(std::move(inner), std::move(hook)) {}

    ArrayImpl* sharedCopy() const override {
        return given(wrapCopy(Inner<ArrayImpl>(passOn("sharedCopy").sharedCopy())));
    }
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        if (writable) {
            prepareWrite();
        }
        return given(passOn("beginIterator", unused != nullptr, writable).beginIterator(unused, writable));
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        if (writable) {
            prepareWrite();
        }
        return given(passOn("endIterator", unused != nullptr, writable).endIterator(unused, writable));
    }
    fv::ArrayType getType() const override { return ask("getType").getType(); }
    MemoryLayout getMemoryLayout() const override { return ask("getMemoryLayout").getMemoryLayout(); }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                          bool forWrite) override {
        return given(passOn("createElementReference", index, fieldName, forWrite)
                         .createElementReference(index, fieldName, forWrite));
    }
    ReferenceImpl* forwardingOp(std::size_t index, const std::string& fieldName) override {
        return given(passOn("forwardingOp", index, fieldName).forwardingOp(index, fieldName));
    }
    const std::vector<std::size_t>& getDimensions() const override {
        return ask("getDimensions").getDimensions();
    }
    std::size_t getNumberOfElements() const override {
        return ask("getNumberOfElements").getNumberOfElements();
    }
    void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) override {
        passOn("assignElementArray", index, fieldName).assignElementArray(index, fieldName, below(array));
    }
    std::string castToString(std::size_t index, const std::string& fieldName) const override {
        return passOn("castToString", index, fieldName).castToString(index, fieldName);
    }
    void setString(std::size_t index, const std::string& fieldName, std::string value) override {
        passOn("setString", index, fieldName, value).setString(index, fieldName, std::move(value));
    }
    void setElementWords(std::size_t index, std::uint64_t first, std::uint64_t second) override {
        passOn("setElementWords", index, first, second).setElementWords(index, first, second);
    }
    void setElementOpB() override { passOn("setElementOpB").setElementOpB(); }
    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override {
        passOn("getStringElement", index).getStringElement(index, text, length);
    }
    const std::size_t* getJc() const override { return given(passOn("getJc").getJc()); }
    const std::size_t* getIr() const override { return given(passOn("getIr").getIr()); }
    std::size_t getRows() const override { return passOn("getRows").getRows(); }
    std::size_t getCols() const override { return passOn("getCols").getCols(); }
    std::size_t getNumberOfNonZeroElements() const override {
        return passOn("getNumberOfNonZeroElements").getNumberOfNonZeroElements();
    }
    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override {
        return passOn("getIndex", k).getIndex(k);
    }
    bool isEmpty() const override { return ask("isEmpty").isEmpty(); }
    std::uint64_t getArrayID() const override { return ask("getArrayID").getArrayID(); }
    void unshare() override {
        prepareWrite();
        passOn("unshare").unshare();
    }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        passOn("copyOutBuffer").copyOutBuffer(data, deleter);
    }
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        prepareWrite();
        passOn("releaseBuffer").releaseBuffer(data, deleter);
    }
    const void* getUntypedDataPtr() const override {
        return given(passOn("getUntypedDataPtr").getUntypedDataPtr());
    }
    bool isEqual(const ArrayImpl* other) const override { return ask("isEqual").isEqual(below(other)); }

protected:
    /// Before every way to write. The double of an array that was stored into another one still wraps that
    /// array, which must not change any more; so this separates the two.
    virtual void prepareWrite() { separate(); }
    /// What `sharedCopy` gives around a copy of the inner array.
    virtual ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const = 0;
};

/// Sparse arrays, which add no operation.
class ForwardingSparse : public ForwardingArrayBase<ArrayImpl> {
public:
    using ForwardingArrayBase::ForwardingArrayBase;

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingSparse(std::move(copy), hook());
    }
};

/// The address of an element and of the first one, of an interface that continues TypedArrayImpl<T>.
template <class T, class Interface = TypedArrayImpl<T>>
class ForwardingTypedBase : public ForwardingArrayBase<Interface> {
public:
    using ForwardingArrayBase<Interface>::ForwardingArrayBase;

    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override {
        return this->given(typed("getElementAddress", index, fieldName, forWrite)
                               .getElementAddress(index, fieldName, forWrite));
    }
    const T* getTypedDataPtr() const override {
        return this->given(std::as_const(typed("getTypedDataPtr")).getTypedDataPtr());
    }

protected:
    /// What is wrapped, for an operation of `Interface` that is passed on.
    template <class... Arguments>
    Interface& typed(const char* name, const Arguments&... arguments) const {
        return static_cast<Interface&>(this->passOn(name, arguments...));
    }
};

/// Iterators whose chains lead into the wrapper, for elements that are handed out as references. The inner
/// array is not asked.
template <class Base>
class ForwardingOverReferences : public Base {
    using Iterator = vexa::data::detail::NonPrimitiveIteratorImpl<vexa::data::impl::MatchingDataOrder>;

public:
    using Base::Base;

    IteratorImpl* beginIterator(void*, bool writable) override { return iterator(0, writable); }
    IteratorImpl* endIterator(void*, bool writable) override {
        return iterator(this->wrapped().getNumberOfElements(), writable);
    }

private:
    IteratorImpl* iterator(std::size_t index, bool writable) {
        if (writable) {
            this->prepareWrite();
        }
        return new Iterator(this, index);
    }
};

/// Numeric, logical and character arrays.
template <class T>
class ForwardingNumbers : public ForwardingTypedBase<T> {
public:
    using ForwardingTypedBase<T>::ForwardingTypedBase;

    void setElementValue(std::size_t index, const std::string& fieldName, T value) override {
        this->typed("setElementValue", index, fieldName, value).setElementValue(index, fieldName, value);
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingNumbers(std::move(copy), this->hook());
    }
};

/// Cell arrays.
class ForwardingCells : public ForwardingOverReferences<ForwardingTypedBase<fv::Array>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName, fv::Array value) override {
        typed("setElementValue", index, fieldName).setElementValue(index, fieldName, std::move(value));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingCells(std::move(copy), hook());
    }
};

/// String arrays.
class ForwardingStrings : public ForwardingOverReferences<ForwardingTypedBase<fv::String, StringArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setStringElement(std::size_t index, const std::string& fieldName, fv::String value) override {
        typed("setStringElement", index, fieldName).setStringElement(index, fieldName, std::move(value));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingStrings(std::move(copy), hook());
    }
};

/// Enumeration arrays.
class ForwardingEnums : public ForwardingOverReferences<ForwardingTypedBase<fv::Enumeration, EnumArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName, fv::Enumeration value) override {
        typed("setElementValue", index, fieldName).setElementValue(index, fieldName, std::move(value));
    }
    const char* getClassName() const override { return given(typed("getClassName").getClassName()); }
    const char* getEnumNameAt(std::size_t index) const override {
        return given(typed("getEnumNameAt", index).getEnumNameAt(index));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingEnums(std::move(copy), hook());
    }
};

/// Struct arrays.
class ForwardingStructs
    : public ForwardingOverReferences<ForwardingTypedBase<fv::StructElement, StructArrayImpl>> {
public:
    using ForwardingOverReferences::ForwardingOverReferences;

    void setElementValue(std::size_t index, const std::string& fieldName, fv::StructElement value) override {
        typed("setElementValue", index, fieldName).setElementValue(index, fieldName, std::move(value));
    }
    ForwardIteratorImpl* fieldNamesBegin() override {
        return given(typed("fieldNamesBegin").fieldNamesBegin());
    }
    ForwardIteratorImpl* fieldNamesEnd() override { return given(typed("fieldNamesEnd").fieldNamesEnd()); }
    std::size_t getNumFields() const override { return typed("getNumFields").getNumFields(); }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        return given(
            typed("createFieldValuesIterator", index, atEnd).createFieldValuesIterator(index, atEnd));
    }
    ArrayImpl* getField(std::size_t index, const std::string& fieldName) const override {
        return given(typed("getField", index, fieldName).getField(index, fieldName));
    }
    void setFieldValues(std::size_t index, std::vector<fv::Array> values) override {
        typed("setFieldValues", index).setFieldValues(index, std::move(values));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingStructs(std::move(copy), hook());
    }
};

} // namespace vexa::testing
