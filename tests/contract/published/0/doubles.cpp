// A back-end of your own, as small as it gets: dense column-major arrays of `double`, written by hand, and
// arrays of `float`, for which the library's own class does. Read it from the end: a back-end registers a
// function that gives a factory, the factory makes arrays, an array answers questions.
//
// Who owns what, in three sentences. Everything that you return as a new object carries one reference, which
// is the caller's. What you are passed as a pointer is borrowed: retain() it to keep it. Never delete an
// object; release() it, and the last release deletes.
#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/ElementMemory.hpp>
#include <vexa/data/detail/Identity.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/DenseArrayImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace {

using foundation::vexadata::ArrayType;
using foundation::vexadata::InvalidArrayTypeException;
using vexa::data::MemoryLayout;
using vexa::data::detail::ContiguousIteratorImpl;
using vexa::data::detail::IteratorImpl;
using vexa::data::detail::ReferenceImpl;
using vexa::data::impl::ArrayFactoryImpl;
using vexa::data::impl::ArrayImpl;
using vexa::data::impl::Buffer;
using vexa::data::impl::DenseArrayImpl;
using vexa::data::impl::TypedArrayImpl;

using Dimensions = ArrayFactoryImpl::Dimensions;

std::size_t countOf(const Dimensions& dimensions) {
    return std::accumulate(dimensions.begin(), dimensions.end(), std::size_t(1), std::multiplies<>());
}

/// Buffers travel with the function that frees them, so that the other side need not know how they were made.
void freeBuffer(void* data) { std::free(data); }

Buffer<void> zeros(std::size_t bytes) {
    Buffer<void> buffer(std::calloc(std::max<std::size_t>(bytes, 1), 1), &freeBuffer);
    if (buffer == nullptr) {
        throw std::bad_alloc(); // your exceptions reach the caller of the handle as they are
    }
    return buffer;
}

/// The library calls no operation that you do not see here, as long as the array is one of numbers: all
/// others have defaults, most of which throw what the caller deserves.
class Doubles final : public TypedArrayImpl<double> {
public:
    Doubles(Dimensions dimensions, Buffer<void> buffer)
        : dimensions_(std::move(dimensions)),
          count_(countOf(dimensions_)),
          buffer_(std::move(buffer)),
          identity_(vexa::data::detail::nextIdentity()) {}

    /// Asked when a handle that shares the array is about to be written. The two must have nothing in common.
    ArrayImpl* sharedCopy() const override {
        Buffer<void> copy = zeros(bytes());
        std::copy_n(data(), count_, static_cast<double*>(copy.get()));
        return new Doubles(dimensions_, std::move(copy));
    }

    // What the array is. These must not throw.
    ArrayType getType() const override { return ArrayType::DOUBLE; }
    MemoryLayout getMemoryLayout() const override { return MemoryLayout::COLUMN_MAJOR; }
    const Dimensions& getDimensions() const override { return dimensions_; }
    std::size_t getNumberOfElements() const override { return count_; }
    bool isEmpty() const override { return count_ == 0; }
    /// Two arrays with one identity are taken for equal without a look inside: never give one twice, nor 0.
    /// All back-ends of a process draw from one counter, so that their arrays can meet.
    std::uint64_t getArrayID() const override { return identity_; }
    /// Asked only about arrays of this type and these dimensions.
    bool isEqual(const ArrayImpl* other) const override {
        const auto& theirs = static_cast<const TypedArrayImpl<double>&>(*other);
        return count_ == 0 || std::equal(data(), data() + count_, theirs.getTypedDataPtr());
    }

    // Elements, by position in the storage. The library has tested the indices; the field name is empty for
    // numbers.
    double* getElementAddress(std::size_t index, const std::string&, bool) override { return data() + index; }
    void setElementValue(std::size_t index, const std::string&, double value) override {
        data()[index] = value;
    }
    /// A number holds no array: nothing to look into.
    ReferenceImpl* createElementReference(std::size_t, const std::string&, bool) override { return nullptr; }
    /// Called before a write through a reference. This array shares its storage with no other, so nothing is
    /// to be done.
    void unshare() override {}

    // Iterators. This one is recognised, and moves at the speed of a pointer. An iterator of your own derives
    // from IteratorImpl.
    IteratorImpl* beginIterator(void*, bool) override { return new ContiguousIteratorImpl<double>(data()); }
    IteratorImpl* endIterator(void*, bool) override {
        return new ContiguousIteratorImpl<double>(data() + count_);
    }

    // The whole storage: lent, copied, given away.
    const double* getTypedDataPtr() const override { return data(); }
    const void* getUntypedDataPtr() const override { return data(); }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        Buffer<void> copy = zeros(bytes());
        std::copy_n(this->data(), count_, static_cast<double*>(copy.get()));
        deleter = copy.get_deleter();
        data = copy.release();
    }
    /// The array is empty afterwards.
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        Buffer<void> rest = zeros(0);
        Dimensions none{0, 0};
        deleter = buffer_.get_deleter();
        data = buffer_.release();
        buffer_ = std::move(rest);
        dimensions_.swap(none);
        count_ = 0;
        identity_ = vexa::data::detail::nextIdentity();
    }

private:
    double* data() const noexcept { return static_cast<double*>(buffer_.get()); }
    std::size_t bytes() const noexcept { return count_ * sizeof(double); }

    Dimensions dimensions_;
    std::size_t count_;
    Buffer<void> buffer_;
    std::uint64_t identity_;
};

/// Positions that are not overridden here throw InvalidArrayTypeException: this back-end does not offer them.
class DoublesFactory final : public ArrayFactoryImpl {
public:
    /// The product of the dimensions has been tested; the bytes have not.
    ArrayImpl* createArrayImpl(ArrayType type, Dimensions dimensions) override {
        if (type == ArrayType::SINGLE) {
            return DenseArrayImpl<float>::zeros(std::move(dimensions));
        }
        requireDouble(type);
        Buffer<void> buffer = zeros(bytesFor(countOf(dimensions)));
        return new Doubles(std::move(dimensions), std::move(buffer));
    }
    /// More values than elements are ignored, fewer leave zeros: that much is a back-end's choice.
    ArrayImpl* createArrayWithDataImpl(ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        if (type == ArrayType::SINGLE) {
            return DenseArrayImpl<float>::withData(std::move(dimensions), data, count);
        }
        requireDouble(type);
        const std::size_t elements = countOf(dimensions);
        Buffer<void> buffer = zeros(bytesFor(elements));
        std::copy_n(static_cast<const double*>(data), std::min(count, elements),
                    static_cast<double*>(buffer.get()));
        return new Doubles(std::move(dimensions), std::move(buffer));
    }
    void createBufferImpl(void*& data, void (*&deleter)(void*), ArrayType type, std::size_t count) override {
        if (type == ArrayType::SINGLE) {
            data = vexa::data::detail::allocateElements(count, sizeof(float));
            deleter = &vexa::data::detail::freeElements;
            return;
        }
        requireDouble(type);
        createUntypedBufferImpl(data, deleter, bytesFor(count));
    }
    void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) override {
        Buffer<void> buffer = zeros(count);
        deleter = buffer.get_deleter();
        data = buffer.release();
    }
    /// The buffer is this function's from the call on. When it throws, the smart pointer frees it.
    ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, ArrayType type, Buffer<void> buffer,
                                         MemoryLayout layout) override {
        if (buffer == nullptr && countOf(dimensions) != 0) {
            throw std::invalid_argument("a buffer without storage");
        }
        if (type == ArrayType::SINGLE && layout != MemoryLayout::NONE) {
            return DenseArrayImpl<float>::adopt(std::move(dimensions), std::move(buffer), layout);
        }
        requireDouble(type);
        if (layout == MemoryLayout::ROW_MAJOR) {
            buffer = byColumns(dimensions, static_cast<const double*>(buffer.get()));
        } else if (layout != MemoryLayout::COLUMN_MAJOR) {
            throw InvalidArrayTypeException();
        }
        return new Doubles(std::move(dimensions), std::move(buffer));
    }

private:
    /// This back-end keeps column-major order only, so it copies what comes in rows; one that keeps both
    /// adopts the buffer and says so in `getMemoryLayout`.
    static Buffer<void> byColumns(const Dimensions& dimensions, const double* rows) {
        const std::size_t count = countOf(dimensions);
        Buffer<void> columns = zeros(count * sizeof(double));
        for (std::size_t k = 0; k < count; ++k) {
            std::size_t rest =
                k; // the indices of element k in column-major order, the first one varying fastest
            std::size_t position = 0;
            for (const std::size_t extent : dimensions) {
                position = position * extent + rest % extent;
                rest /= extent;
            }
            static_cast<double*>(columns.get())[k] = rows[position];
        }
        return columns;
    }
    static void requireDouble(ArrayType type) {
        if (type != ArrayType::DOUBLE) {
            throw InvalidArrayTypeException();
        }
    }
    static std::size_t bytesFor(std::size_t count) {
        if (count > SIZE_MAX / sizeof(double)) {
            throw std::bad_alloc();
        }
        return count * sizeof(double);
    }
};

/// Called whenever a client makes an `ArrayFactory`.
ArrayFactoryImpl* makeFactory() { return new DoublesFactory; }

/// Runs when the library is loaded. One back-end can be registered in each of the two places of a process;
/// `false` would not be enough if another one had come first: that is an exception, which nobody could catch
/// here.
const bool registered = [] {
    try {
        return ArrayFactoryImpl::registerClientFactoryFunction(&makeFactory);
    } catch (const std::exception&) {
        return false;
    }
}();

} // namespace
