// Back-end objects that pass every call to an inner one and write down what was called. A test derives from
// them to make one operation behave differently.
#pragma once

#include "support/LiveObjects.hpp"

#include <foundation/vexadata/TypedArray.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace support {

/// The calls that objects received, in order, e.g. `setElementValue(3, "", 1.5)`. Shared by an object and its
/// copies.
class CallLog {
public:
    template <class... Args>
    void action(const char* name, const Args&... args) {
        actions_.push_back(render(name, args...));
        all_.push_back(actions_.back());
    }
    void query(const char* name) { all_.push_back(render(name)); }

    /// Calls that reach elements or change something.
    const std::vector<std::string>& actions() const noexcept { return actions_; }
    /// The same with the queries about type, shape and identity between them.
    const std::vector<std::string>& all() const noexcept { return all_; }
    void clear() noexcept {
        actions_.clear();
        all_.clear();
    }
    /// The actions so far, which are then forgotten.
    std::vector<std::string> take() {
        std::vector<std::string> taken = std::move(actions_);
        clear();
        return taken;
    }

private:
    template <class... Args>
    static std::string render(const char* name, const Args&... args) {
        std::ostringstream text;
        text << std::boolalpha << name << '(';
        [[maybe_unused]] const char* separator = "";
        ((text << std::exchange(separator, ", "), write(text, args)), ...);
        text << ')';
        return text.str();
    }
    template <class Arg>
    static void write(std::ostream& out, const Arg& arg) {
        if constexpr (std::is_same_v<Arg, std::string>) {
            out << '"' << arg << '"';
        } else if constexpr (std::is_same_v<Arg, bool> || std::is_floating_point_v<Arg>) {
            out << arg;
        } else if constexpr (std::is_integral_v<Arg>) {
            out << +arg;
        } else if constexpr (requires { arg.real(); }) {
            out << +arg.real() << '+' << +arg.imag() << 'i';
        } else if constexpr (std::is_enum_v<Arg>) {
            out << static_cast<std::int64_t>(arg);
        } else {
            out << "..";
        }
    }

    std::vector<std::string> actions_;
    std::vector<std::string> all_;
};

/// An array of `T` that forwards to an inner array of the same kind. Copies of it record into the same log.
template <class T>
class RecordingArray : public vexa::data::impl::TypedArrayImpl<T>, private LiveObjects::Counted {
    using ArrayImpl = vexa::data::impl::ArrayImpl;
    using IteratorImpl = vexa::data::detail::IteratorImpl;
    using ReferenceImpl = vexa::data::detail::ReferenceImpl;

public:
    RecordingArray(std::shared_ptr<ArrayImpl> inner, std::shared_ptr<CallLog> log)
        : inner_(std::move(inner)), log_(std::move(log)) {}

    ArrayImpl* sharedCopy() const override {
        log_->action("sharedCopy");
        return copyOver(foundation::vexadata::detail::Access::createSharedPtr(inner_->sharedCopy()));
    }
    void* reservedOp1() override { return log_->action("reservedOp1"), inner_->reservedOp1(); }
    void* reservedOp2() override { return log_->action("reservedOp2"), inner_->reservedOp2(); }
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        log_->action("beginIterator", unused != nullptr, writable);
        return inner_->beginIterator(unused, writable);
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        log_->action("endIterator", unused != nullptr, writable);
        return inner_->endIterator(unused, writable);
    }
    void reservedOp5() override { log_->action("reservedOp5"), inner_->reservedOp5(); }
    void* reservedOp6() override { return log_->action("reservedOp6"), inner_->reservedOp6(); }
    void reservedOp7() override { log_->action("reservedOp7"), inner_->reservedOp7(); }
    void reservedOp8() override { log_->action("reservedOp8"), inner_->reservedOp8(); }
    foundation::vexadata::ArrayType getType() const override {
        return log_->query("getType"), inner_->getType();
    }
    vexa::data::MemoryLayout getMemoryLayout() const override {
        return log_->query("getMemoryLayout"), inner_->getMemoryLayout();
    }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                          bool forWrite) override {
        log_->action("createElementReference", index, fieldName, forWrite);
        return inner_->createElementReference(index, fieldName, forWrite);
    }
    ReferenceImpl* forwardingOp(std::size_t index, const std::string& fieldName) override {
        log_->action("forwardingOp", index, fieldName);
        return inner_->forwardingOp(index, fieldName);
    }
    const std::vector<std::size_t>& getDimensions() const override {
        return log_->query("getDimensions"), inner_->getDimensions();
    }
    std::size_t getNumberOfElements() const override {
        return log_->query("getNumberOfElements"), inner_->getNumberOfElements();
    }
    std::size_t reservedOp10() const override { return log_->action("reservedOp10"), inner_->reservedOp10(); }
    void assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) override {
        log_->action("assignElementArray", index, fieldName);
        inner_->assignElementArray(index, fieldName, array);
    }
    std::string castToString(std::size_t index, const std::string& fieldName) const override {
        log_->action("castToString", index, fieldName);
        return inner_->castToString(index, fieldName);
    }
    void setString(std::size_t index, const std::string& fieldName, std::string value) override {
        log_->action("setString", index, fieldName, value);
        inner_->setString(index, fieldName, std::move(value));
    }
    void setElementWords(std::size_t index, std::uint64_t first, std::uint64_t second) override {
        log_->action("setElementWords", index, first, second);
        inner_->setElementWords(index, first, second);
    }
    void setElementOpB() override { log_->action("setElementOpB"), inner_->setElementOpB(); }
    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override {
        log_->action("getStringElement", index);
        inner_->getStringElement(index, text, length);
    }
    const std::size_t* getJc() const override { return log_->action("getJc"), inner_->getJc(); }
    const std::size_t* getIr() const override { return log_->action("getIr"), inner_->getIr(); }
    std::size_t getRows() const override { return log_->action("getRows"), inner_->getRows(); }
    std::size_t getCols() const override { return log_->action("getCols"), inner_->getCols(); }
    std::size_t getNumberOfNonZeroElements() const override {
        return log_->action("getNumberOfNonZeroElements"), inner_->getNumberOfNonZeroElements();
    }
    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override {
        return log_->action("getIndex", k), inner_->getIndex(k);
    }
    bool isEmpty() const override { return log_->query("isEmpty"), inner_->isEmpty(); }
    std::uint64_t getArrayID() const override { return log_->query("getArrayID"), inner_->getArrayID(); }
    void unshare() override { log_->action("unshare"), inner_->unshare(); }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        log_->action("copyOutBuffer");
        inner_->copyOutBuffer(data, deleter);
    }
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        log_->action("releaseBuffer");
        inner_->releaseBuffer(data, deleter);
    }
    const void* getUntypedDataPtr() const override {
        return log_->action("getUntypedDataPtr"), inner_->getUntypedDataPtr();
    }
    bool isEqual(const ArrayImpl* other) const override {
        log_->action("isEqual");
        const auto* recording = dynamic_cast<const RecordingArray*>(other);
        return inner_->isEqual(recording == nullptr ? other : recording->inner_.get());
    }
    void reservedOp36() override { log_->action("reservedOp36"), typedInner().reservedOp36(); }
    void reservedOp37() override { log_->action("reservedOp37"), typedInner().reservedOp37(); }
    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override {
        log_->action("getElementAddress", index, fieldName, forWrite);
        return typedInner().getElementAddress(index, fieldName, forWrite);
    }
    void setElementValue(std::size_t index, const std::string& fieldName, T value) override {
        log_->action("setElementValue", index, fieldName, value);
        typedInner().setElementValue(index, fieldName, std::move(value));
    }
    const T* getTypedDataPtr() const override {
        return log_->action("getTypedDataPtr"), std::as_const(typedInner()).getTypedDataPtr();
    }

    const std::shared_ptr<CallLog>& log() const noexcept { return log_; }
    ArrayImpl& inner() const noexcept { return *inner_; }

protected:
    /// What `sharedCopy` returns over a copy of the inner array. A derived class whose copies shall be of its
    /// own kind overrides this.
    virtual ArrayImpl* copyOver(std::shared_ptr<ArrayImpl> inner) const {
        return new RecordingArray(std::move(inner), log_);
    }

    vexa::data::impl::TypedArrayImpl<T>& typedInner() const {
        return static_cast<vexa::data::impl::TypedArrayImpl<T>&>(*inner_);
    }

private:
    std::shared_ptr<ArrayImpl> inner_;
    std::shared_ptr<CallLog> log_;
};

/// A handle of a recording array, and its log.
template <class T>
struct Recorded {
    foundation::vexadata::TypedArray<T> array;
    std::shared_ptr<CallLog> log;
};

/// Puts a recording array, or a `BackEnd` derived from it, in front of `inner`, which should not be used
/// otherwise.
template <template <class> class BackEnd = RecordingArray, class T>
Recorded<T> recorded(foundation::vexadata::TypedArray<T> inner) {
    auto log = std::make_shared<CallLog>();
    auto* backEnd = new BackEnd<T>(std::move(foundation::vexadata::detail::Access::impl(inner)), log);
    return {foundation::vexadata::TypedArray<T>(backEnd), log};
}

/// A factory that forwards to an inner one and records the positions that are implemented so far: 1, 9, 23 to 25.
class ForwardingFactory : public vexa::data::impl::ArrayFactoryImpl, private LiveObjects::Counted {
    using ArrayImpl = vexa::data::impl::ArrayImpl;
    using ArrayType = foundation::vexadata::ArrayType;
    template <class T>
    using Buffer = vexa::data::impl::Buffer<T>;

public:
    ForwardingFactory(std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> inner, std::shared_ptr<CallLog> log)
        : inner_(std::move(inner)), log_(std::move(log)) {}

    ArrayImpl* createArrayImpl(ArrayType type, Dimensions dimensions) override {
        log_->action("createArrayImpl", type, text(dimensions));
        return inner_->createArrayImpl(type, std::move(dimensions));
    }
    ArrayImpl* createArrayWithDataImpl(ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        log_->action("createArrayWithDataImpl", type, text(dimensions), count);
        return inner_->createArrayWithDataImpl(type, std::move(dimensions), data, count);
    }
    void createBufferImpl(void*& data, void (*&deleter)(void*), ArrayType type, std::size_t count) override {
        log_->action("createBufferImpl", type, count);
        inner_->createBufferImpl(data, deleter, type, count);
    }
    void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) override {
        log_->action("createUntypedBufferImpl", count);
        inner_->createUntypedBufferImpl(data, deleter, count);
    }
    ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, ArrayType type, Buffer<void> buffer,
                                         vexa::data::MemoryLayout layout) override {
        log_->action("createArrayFromBufferImpl", text(dimensions), type, layout);
        return inner_->createArrayFromBufferImpl(std::move(dimensions), type, std::move(buffer), layout);
    }

private:
    static std::string text(const Dimensions& dimensions) {
        std::string joined;
        for (const std::size_t extent : dimensions) {
            joined.append(joined.empty() ? "" : "x").append(std::to_string(extent));
        }
        return joined;
    }

    std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> inner_;
    std::shared_ptr<CallLog> log_;
};

} // namespace support
