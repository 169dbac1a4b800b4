// Dense arrays of primitive elements.
#pragma once

#include "Allocation.hpp"
#include "Equality.hpp"
#include "Identity.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace vexa::client {

using Dimensions = std::vector<std::size_t>;
using data::impl::ArrayImpl;
using data::impl::Buffer;
using foundation::vexadata::ArrayType;

inline std::size_t elementCount(const Dimensions& dimensions) noexcept {
    std::size_t product = 1;
    for (const std::size_t extent : dimensions) {
        product *= extent;
    }
    return product;
}

/// `count`, when a vector of `T` can hold so many. More are out of memory like any others.
/// @throws std::bad_alloc
template <class T>
std::size_t allocatable(std::size_t count) {
    if (count > std::vector<T>().max_size()) {
        throw std::bad_alloc();
    }
    return count;
}

/// Owns contiguous storage alone: two arrays never share it, since an iterator or a pointer that may write can outlive
/// any bookkeeping about who looks at it. Sharing happens between handles of one array. Elements of small arrays follow
/// the object in the same block; others lie in a buffer with a function that frees it.
template <class T>
class DenseArray final : public data::impl::TypedArrayImpl<T> {
public:
    static DenseArray* zeros(Dimensions dimensions) {
        const std::size_t count = elementCount(dimensions);
        if (isSmall(count)) {
            auto* array = new (TrailingBytes{count * sizeof(T)}) DenseArray(std::move(dimensions), count);
            std::memset(static_cast<void*>(array->data_), 0, count * sizeof(T));
            return array;
        }
        Buffer<void> storage(allocateZeros(count, sizeof(T)), &freeElements);
        return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
    }

    /// Over a buffer that holds as many elements as the dimensions say.
    static DenseArray* adopt(Dimensions dimensions, Buffer<void> storage, MemoryLayout layout) {
        auto* array = new (TrailingBytes{0}) DenseArray(std::move(dimensions), 0);
        array->count_ = elementCount(array->dimensions_);
        array->layout_ = layout;
        if (storage != nullptr) {
            array->deleter_ = storage.get_deleter();
            array->data_ = static_cast<T*>(storage.release());
        }
        return array;
    }

    /// With copies of `count` elements, in column-major order: of as many as there is room for, zeros for the rest.
    static DenseArray* withData(Dimensions dimensions, const void* source, std::size_t count) {
        DenseArray* array = uninitialised(std::move(dimensions));
        const std::size_t copied = std::min(count, array->count_);
        copyBytes(array->data_, source, copied);
        std::fill(array->data_ + copied, array->data_ + array->count_, T());
        return array;
    }

    ~DenseArray() override { freeStorage(); }

    ArrayImpl* sharedCopy() const override {
        DenseArray* copy = uninitialised(dimensions_);
        copy->layout_ = layout_;
        copyBytes(copy->data_, data_, count_);
        return copy;
    }
    data::detail::IteratorImpl* beginIterator(void*, bool) override {
        return new data::detail::ContiguousIteratorImpl<T>(data_);
    }
    data::detail::IteratorImpl* endIterator(void*, bool) override {
        return new data::detail::ContiguousIteratorImpl<T>(data_ + count_);
    }
    ArrayType getType() const override { return foundation::vexadata::detail::arrayTypeOf<T>; }
    MemoryLayout getMemoryLayout() const override { return layout_; }
    /// Elements are plain values and hold no arrays.
    data::detail::ReferenceImpl* createElementReference(std::size_t, const std::string&, bool) override {
        return nullptr;
    }
    const Dimensions& getDimensions() const override { return dimensions_; }
    std::size_t getNumberOfElements() const override { return count_; }
    bool isEmpty() const override { return count_ == 0; }
    std::uint64_t getArrayID() const override { return identity_.get(); }
    /// The storage is always this object's alone.
    void unshare() override {}

    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        void* copy = allocateElements(count_, sizeof(T));
        copyBytes(copy, data_, count_);
        data = copy;
        deleter = &freeElements;
    }
    /// Leaves a 0-by-0 array of the same kind.
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        dimensions_.reserve(2);
        if (deleter_ == nullptr) {
            copyOutBuffer(data, deleter);
        } else {
            data = data_;
            deleter = deleter_;
        }
        dimensions_.assign(2, 0);
        count_ = 0;
        deleter_ = nullptr;
        data_ = trailing();
        identity_.reset();
    }
    const void* getUntypedDataPtr() const override { return data_; }
    bool isEqual(const ArrayImpl* other) const override {
        return equalElements<T>(*this, static_cast<const data::impl::TypedArrayImpl<T>&>(*other));
    }

    T* getElementAddress(std::size_t index, const std::string&, bool) override { return data_ + index; }
    void setElementValue(std::size_t index, const std::string&, T value) override { data_[index] = value; }
    const T* getTypedDataPtr() const override { return data_; }

    void operator delete(void* block) { ::operator delete(block); }

private:
    struct TrailingBytes {
        std::size_t size;
    };
    static void* operator new(std::size_t size, TrailingBytes trailing) {
        return ::operator new(size + trailing.size);
    }
    static void operator delete(void* block, TrailingBytes) { ::operator delete(block); }

    static constexpr std::size_t smallBytes = 1024;
    static bool isSmall(std::size_t count) noexcept { return count <= smallBytes / sizeof(T); }

    /// `count` elements behind the object.
    DenseArray(Dimensions dimensions, std::size_t count) noexcept
        : dimensions_(std::move(dimensions)), data_(trailing()), count_(count) {}

    static DenseArray* uninitialised(Dimensions dimensions) {
        const std::size_t count = elementCount(dimensions);
        if (isSmall(count)) {
            return new (TrailingBytes{count * sizeof(T)}) DenseArray(std::move(dimensions), count);
        }
        Buffer<void> storage(allocateElements(count, sizeof(T)), &freeElements);
        return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
    }

    static void copyBytes(void* to, const void* from, std::size_t count) {
        if (count != 0) {
            std::memcpy(to, from, count * sizeof(T));
        }
    }
    T* trailing() noexcept { return reinterpret_cast<T*>(this + 1); }
    void freeStorage() noexcept {
        if (deleter_ != nullptr) {
            deleter_(data_);
        }
    }

    Dimensions dimensions_;
    T* data_;
    std::size_t count_;
    void (*deleter_)(void*) = nullptr; // null while the elements follow the object
    MemoryLayout layout_ = MemoryLayout::COLUMN_MAJOR;
    Identity identity_;
};

} // namespace vexa::client
