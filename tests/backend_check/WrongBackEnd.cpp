// A back-end that passes everything on to the embedded one, but for the one thing that the environment variable
// VEXADATA_FAULT names. faults.cmake lists the names.

#include "support/ForwardingFactory.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string_view>

namespace {

using namespace support;

bool fault(std::string_view name) {
    static const char* const chosen = std::getenv("VEXADATA_FAULT");
    return chosen != nullptr && name == chosen;
}

template <class T>
T* retained(T* object) {
    object->retain();
    return object;
}

/// An allocation that no compiler leaves out.
void mayThrow() {
    char* volatile block = new char;
    delete block;
}

class WrongIterator : public ForwardingIterator {
public:
    WrongIterator(Inner<IteratorImpl> inner, Inner<IteratorImpl> start)
        : ForwardingIterator(std::move(inner)), start_(std::move(start)) {}

    bool isEqual(const IteratorImpl& other) const override {
        return fault("iterators-never-equal") ? false : ForwardingIterator::isEqual(other);
    }
    std::int64_t distanceTo(const IteratorImpl& other) const override {
        const std::int64_t distance = ForwardingIterator::distanceTo(other);
        return fault("distance-backwards") ? -distance : distance;
    }
    void decrement() override {
        if (!fault("decrement-stays")) ForwardingIterator::decrement();
    }
    void advance(std::int64_t count) override {
        ForwardingIterator::advance(fault("advance-forward-only") ? std::max<std::int64_t>(count, 0) : count);
    }
    void saveReference(ReferenceImpl* chain) override {
        ForwardingIterator::saveReference(fault("saved-chain-leaked") ? retained(chain) : chain);
    }
    void* getElementAddress() override {
        if (fault("iterator-stands-still")) return start_->getElementAddress();
        return ForwardingIterator::getElementAddress();
    }

protected:
    IteratorImpl* wrapCopy(Inner<IteratorImpl> copy) const override {
        Inner<IteratorImpl> start(start_->clone());
        return new WrongIterator(fault("clone-at-begin") ? Inner<IteratorImpl>(start_->clone())
                                                         : std::move(copy),
                                 std::move(start));
    }

private:
    Inner<IteratorImpl> start_;
};

/// What can go wrong with arrays of any kind. `Self` is the class of copies.
template <class Base, class Self>
class Wrong : public Base {
public:
    using Base::Base;

    ArrayImpl* sharedCopy() const override {
        if (fault("copy-shares-storage")) return new Self(Inner<ArrayImpl>(retained(&this->wrapped())));
        if (fault("copy-is-itself")) return retained(const_cast<Wrong*>(this));
        if (fault("copy-loses-memory")) return leakingCopy();
        ArrayImpl* copy = Base::sharedCopy();
        return fault("copy-counted-twice") ? retained(copy) : copy;
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        IteratorImpl* end = Base::endIterator(unused, writable);
        if (fault("iterator-ends-early") && this->wrapped().getNumberOfElements() > 0) end->decrement();
        return end;
    }
    fv::ArrayType getType() const override {
        const fv::ArrayType type = Base::getType();
        return fault("wrong-type") && type == fv::ArrayType::UINT32 ? fv::ArrayType::INT32 : type;
    }
    const std::vector<std::size_t>& getDimensions() const override {
        if (!fault("dimensions-transposed")) return Base::getDimensions();
        transposed_ = Base::getDimensions();
        std::reverse(transposed_.begin(), transposed_.end());
        return transposed_;
    }
    std::size_t getNumberOfElements() const override {
        return Base::getNumberOfElements() + (fault("one-element-too-many") ? 1 : 0);
    }
    bool isEmpty() const override { return fault("never-empty") ? false : Base::isEmpty(); }
    std::uint64_t getArrayID() const override {
        if (fault("crash")) std::raise(SIGSEGV);
        return fault("identity-constant") ? 7 : Base::getArrayID();
    }
    bool isEqual(const ArrayImpl* other) const override {
        if (fault("foreign-exception")) throw 42;
        return !fault("never-equal") && (fault("always-equal") || Base::isEqual(other));
    }
    void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) override {
        if (fault("element-leaked")) array->retain();
        Base::assignElementArray(fault("element-misplaced") ? 0 : index, fieldName, array);
        if (fault("element-not-retained")) array->release();
    }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                          bool forWrite) override {
        ReferenceImpl* chain = Base::createElementReference(index, fieldName, forWrite);
        if (chain == nullptr) return chain;
        if (fault("chain-counted-twice")) return retained(chain);
        return fault("chain-shares") ? loose(chain) : chain;
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override { return new Self(std::move(copy)); }

private:
    /// A chain to the array that the element shares with others, whatever is going to be written.
    static ReferenceImpl* loose(ReferenceImpl* chain) {
        const Inner<ReferenceImpl> owner(chain);
        return new vexa::data::detail::ArrayReferenceImpl(chain->getArrayImpl());
    }
    ArrayImpl* leakingCopy() const {
        char* volatile scratch = new char[8];
        ArrayImpl* copy = Base::sharedCopy(); // loses `scratch` when it throws
        delete[] scratch;
        return copy;
    }

    mutable std::vector<std::size_t> transposed_;
};

template <class T>
class WrongNumbers : public Wrong<ForwardingNumbers<T>, WrongNumbers<T>> {
    using Base = Wrong<ForwardingNumbers<T>, WrongNumbers<T>>;

public:
    using Base::Base;

    IteratorImpl* beginIterator(void* unused, bool writable) override {
        return wrong(Base::beginIterator(unused, writable));
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        return wrong(Base::endIterator(unused, writable));
    }
    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override {
        const std::size_t count = this->wrapped().getNumberOfElements();
        if (fault("shifted-column") && count > 0)
            index = (index + this->wrapped().getDimensions()[0]) % count;
        return Base::getElementAddress(index, fieldName, forWrite);
    }
    void setElementValue(std::size_t index, const std::string& fieldName, T value) override {
        if (fault("write-ignored")) return;
        Base::setElementValue(index, fieldName, value);
        if (fault("write-spills")) Base::setElementValue(0, fieldName, value);
    }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        Base::copyOutBuffer(data, deleter);
        if (!fault("own-storage-handed-out")) return;
        deleter(data);
        data = const_cast<T*>(Base::getTypedDataPtr());
        deleter = [](void*) {};
    }
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        Base::releaseBuffer(data, deleter);
        if (fault("buffer-handed-over-without-deleter")) deleter = nullptr;
    }

private:
    IteratorImpl* wrong(IteratorImpl* made) {
        Inner<IteratorImpl> iterator(made);
        Inner<IteratorImpl> start(Base::beginIterator(nullptr, false));
        return new WrongIterator(std::move(iterator), std::move(start));
    }
};

class WrongCells : public Wrong<ForwardingCells, WrongCells> {
public:
    using Wrong::Wrong;
};

class WrongStrings : public Wrong<ForwardingStrings, WrongStrings> {
public:
    using Wrong::Wrong;

    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override {
        Wrong::getStringElement(index, text, length);
        if (fault("missing-is-empty") && text == nullptr) text = u"";
        if (fault("empty-is-missing") && length == 0) text = nullptr;
        if (fault("text-cut-off")) length = std::min<std::size_t>(length, 100);
    }
    std::string castToString(std::size_t index, const std::string& fieldName) const override {
        const std::string text = Wrong::castToString(index, fieldName);
        return fault("cast-loses-last-letter") ? text.substr(0, text.size() - 1) : text;
    }
    void setString(std::size_t index, const std::string& fieldName, std::string value) override {
        if (!fault("set-string-ignored")) Wrong::setString(index, fieldName, std::move(value));
    }
    void setStringElement(std::size_t index, const std::string& fieldName, fv::String value) override {
        if (fault("half-a-write")) {
            Wrong::setStringElement(index, fieldName, {});
            mayThrow();
        }
        Wrong::setStringElement(index, fieldName, std::move(value));
    }
};

class WrongStructs : public Wrong<ForwardingStructs, WrongStructs> {
public:
    using Wrong::Wrong;

    ArrayImpl* getField(std::size_t index, const std::string& fieldName) const override {
        if (fault("unknown-field-is-empty") && fieldName == "nowhere")
            return new vexa::data::impl::EmptyArrayImpl;
        ArrayImpl* value = Wrong::getField(index, fieldName);
        if (fault("field-not-retained")) value->release();
        return value;
    }
    void setFieldValues(std::size_t index, std::vector<fv::Array> values) override {
        if (fault("record-reversed")) std::reverse(values.begin(), values.end());
        Wrong::setFieldValues(index, std::move(values));
    }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        return Wrong::createFieldValuesIterator(fault("values-of-first-record") ? 0 : index, atEnd);
    }
};

class WrongEnums : public Wrong<ForwardingEnums, WrongEnums> {
public:
    using Wrong::Wrong;

    const char* getEnumNameAt(std::size_t index) const override {
        return Wrong::getEnumNameAt(fault("first-member-only") ? 0 : index);
    }
    std::string castToString(std::size_t index, const std::string& fieldName) const override {
        while (fault("endless-loop"))
            ::usleep(1000);
        return Wrong::castToString(index, fieldName);
    }
    const char* getClassName() const override {
        return fault("class-name-lost") ? "" : Wrong::getClassName();
    }
};

class WrongSparse : public Wrong<ForwardingSparse, WrongSparse> {
public:
    using Wrong::Wrong;

    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override {
        const auto place = Wrong::getIndex(k);
        return fault("index-swapped") ? std::pair(place.second, place.first) : place;
    }
    const std::size_t* getJc() const override {
        return Wrong::getJc() + (fault("column-starts-shifted") ? 1 : 0);
    }
    const std::size_t* getIr() const override {
        if (fault("exits")) ::_exit(0);
        return Wrong::getIr();
    }
    std::size_t getRows() const override {
        return fault("rows-are-columns") ? Wrong::getCols() : Wrong::getRows();
    }
};

class WrongObjects : public Wrong<ForwardingObjects, WrongObjects> {
public:
    using Wrong::Wrong;

    bool isEqual(const ArrayImpl* other) const override {
        if (fault("object-dimensions-ignored") && getDimensions() != other->getDimensions()) return true;
        return Wrong::isEqual(other);
    }
    ObjectImpl* getElementObject(std::size_t index) const override {
        ObjectImpl* object = Wrong::getElementObject(index);
        return fault("object-leaked") && object != nullptr ? retained(object) : object;
    }
};

/// A chain to a property that calls the value the array that it refers into.
class PosingReference : public ReferenceImpl {
public:
    explicit PosingReference(Inner<ReferenceImpl> inner) : inner_(std::move(inner)) { setKnownIndex(0); }

    ArrayImpl* getArrayImpl() const override { return inner_->getElementArray(false); }
    ArrayImpl* getElementArray(bool forWrite) override { return inner_->getElementArray(forWrite); }
    void setArray(ArrayImpl* array) override { inner_->setArray(array); }

private:
    Inner<ReferenceImpl> inner_;
};

class WrongObject : public ForwardingObject {
public:
    using ForwardingObject::ForwardingObject;

    ObjectImpl* sharedCopy() const override {
        if (fault("object-copy-shares")) return new WrongObject(Inner<ObjectImpl>(retained(&wrapped())));
        return ForwardingObject::sharedCopy();
    }
    bool hasProperty(const VexaPropertyIdentifier& id) const override {
        return fault("has-every-property") || ForwardingObject::hasProperty(id);
    }
    std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier id) const override {
        std::shared_ptr<ArrayImpl> value = ForwardingObject::getProperty(std::move(id));
        if (fault("property-leaked")) value->retain();
        return value;
    }
    ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) override {
        ReferenceImpl* chain = ForwardingObject::getPropertyReference(std::move(id));
        return fault("property-poses-as-element") ? new PosingReference(Inner<ReferenceImpl>(chain)) : chain;
    }
    ForwardIteratorImpl* cbegin() const override {
        return fault("read-only-walk-writes") ? wrapped().begin() : ForwardingObject::cbegin();
    }
    ForwardIteratorImpl* cend() const override {
        return fault("read-only-walk-writes") ? wrapped().end() : ForwardingObject::cend();
    }
};

class WrongHandleObject : public ForwardingHandleObject {
public:
    using ForwardingHandleObject::ForwardingHandleObject;
    long getId() const override { return fault("handle-id-lost") ? 0 : ForwardingHandleObject::getId(); }
};

class WrongClass : public ForwardingClass {
public:
    using ForwardingClass::ForwardingClass;
    void updateVexaPropertyIdentifiersClassInfo(fv::ClassInfo& classInfo) override {
        if (!fault("identifiers-not-linked"))
            ForwardingClass::updateVexaPropertyIdentifiersClassInfo(classInfo);
    }
};

struct WrongKinds {
    template <class T>
    using Numbers = WrongNumbers<T>;
    using Cells = WrongCells;
    using Strings = WrongStrings;
    using Structs = WrongStructs;
    using Enums = WrongEnums;
    using Sparse = WrongSparse;
    using Objects = WrongObjects;
    using Object = WrongObject;
    using HandleObject = WrongHandleObject;
    using Class = WrongClass;
};

class WrongFactory : public ForwardingBackEndFactory<WrongKinds> {
    using Base = ForwardingBackEndFactory;

public:
    using Base::Base;

    ArrayImpl* createArrayImpl(fv::ArrayType type, Dimensions dimensions) override {
        ArrayImpl* array = Base::createArrayImpl(type, std::move(dimensions));
        if (fault("starts-at-one") && type == fv::ArrayType::DOUBLE && !array->isEmpty())
            *static_cast<double*>(const_cast<void*>(array->getUntypedDataPtr())) = 1;
        return fault("created-with-two-references") && type == fv::ArrayType::CELL ? retained(array) : array;
    }
    ObjectImpl* createHandleObjectRefImpl(vexa::data::impl::ZVMID engine, long id) override {
        return fault("null-for-a-refusal") ? nullptr : Base::createHandleObjectRefImpl(engine, id);
    }
    /// Rows one after another.
    ArrayImpl* createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        if (!fault("row-major-data") || type != fv::ArrayType::DOUBLE || count != 6)
            return Base::createArrayWithDataImpl(type, std::move(dimensions), data, count);
        const auto* values = static_cast<const double*>(data);
        const double rows[6] = {values[0], values[3], values[1], values[4], values[2], values[5]};
        return Base::createArrayWithDataImpl(type, std::move(dimensions), rows, count);
    }
    ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fieldNames) override {
        if (fault("fields-reversed")) std::reverse(fieldNames.begin(), fieldNames.end());
        return Base::createStructArrayImpl(std::move(dimensions), std::move(fieldNames));
    }
    ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, fv::ArrayType type, Buffer<void> buffer,
                                         MemoryLayout layout) override {
        const auto free = buffer.get_deleter();
        void* memory = buffer.get();
        if (fault("deleter-never-called")) buffer.get_deleter() = [](void*) {};
        if (fault("row-major-ignored")) layout = MemoryLayout::COLUMN_MAJOR;
        if (fault("buffer-lost-without-memory")) {
            void* held = buffer.release();
            mayThrow(); // and then the buffer is lost
            buffer.reset(held);
        }
        if (fault("refused-buffer-kept") && type == fv::ArrayType::CELL) buffer.release();
        ArrayImpl* array =
            Base::createArrayFromBufferImpl(std::move(dimensions), type, std::move(buffer), layout);
        if (fault("deleter-called-twice")) free(memory);
        return array;
    }
};

/// As little as a back-end can be: double arrays and the creators that have to be there.
class DoublesOnlyFactory : public ArrayFactoryImpl {
public:
    explicit DoublesOnlyFactory(Inner<ArrayFactoryImpl> factory) : inner_(std::move(factory)) {}

    ArrayImpl* createArrayImpl(fv::ArrayType type, Dimensions dimensions) override {
        requireDouble(type);
        return inner_->createArrayImpl(type, std::move(dimensions));
    }
    ArrayImpl* createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        requireDouble(type);
        return inner_->createArrayWithDataImpl(type, std::move(dimensions), data, count);
    }
    void createBufferImpl(void*&, void (*&)(void*), fv::ArrayType, std::size_t) override {
        fv::detail::raise<fv::MustBePrimitiveTypeException>();
    }
    void createUntypedBufferImpl(void*&, void (*&)(void*), std::size_t) override { throw "none"; }
    ArrayImpl* createArrayFromBufferImpl(Dimensions, fv::ArrayType, Buffer<void>, MemoryLayout) override {
        fv::detail::raise<fv::MustBePrimitiveTypeException>();
    }

private:
    static void requireDouble(fv::ArrayType type) {
        if (type != fv::ArrayType::DOUBLE) fv::detail::raise<fv::InvalidArrayTypeException>();
    }

    Inner<ArrayFactoryImpl> inner_;
};

ArrayFactoryImpl* inner = nullptr;

ArrayFactoryImpl* wrongFactory() {
    if (fault("doubles-only")) return new DoublesOnlyFactory(Inner<ArrayFactoryImpl>(retained(inner)));
    return new WrongFactory(Inner<ArrayFactoryImpl>(retained(inner)));
}

/// The embedded back-end has registered itself as the client's when this library is loaded; the engine's place goes first.
const bool registered = [] {
    if (fault("crash-on-load")) std::raise(SIGSEGV);
    if (fault("throws-on-load")) throw std::runtime_error("no licence");
    inner = ArrayFactoryImpl::getDefaultFactory();
    return ArrayFactoryImpl::registerVexaFactoryFunction(&wrongFactory);
}();

} // namespace
