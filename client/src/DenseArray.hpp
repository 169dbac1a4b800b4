// Dense arrays of primitive elements.
#pragma once

#include "Allocation.hpp"
#include "Dimensions.hpp"
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

using data::impl::ArrayImpl;
using data::impl::Buffer;
using foundation::vexadata::ArrayType;

/// Owns contiguous storage alone: two arrays never share it, since an iterator or a pointer that may write can outlive
/// any bookkeeping about who looks at it. Sharing happens between handles of one array. Dimensions, and the elements of small
/// arrays, follow the object in the same block; other elements lie in a buffer with a function that frees it.
template <class T>
class DenseArray final : public data::impl::TypedArrayImpl<T> {
public:
    static DenseArray* zeros(Dimensions dimensions) {
        const std::size_t count = elementCount(dimensions);
        if (isSmall(count)) {
            auto* array = small(std::move(dimensions), count);
            std::memset(static_cast<void*>(array->data_), 0, count * sizeof(T));
            return array;
        }
        Buffer<void> storage(allocateZeros(count, sizeof(T)), &freeElements);
        return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
    }

    /// Over a buffer that holds as many elements as the dimensions say.
    static DenseArray* adopt(Dimensions dimensions, Buffer<void> storage, MemoryLayout layout) {
        auto* array = new (TrailingBytes{sizeof(Dimensions)}) DenseArray(std::move(dimensions));
        array->count_ = elementCount(*array->dimensions_);
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

    ~DenseArray() override {
        if (deleter_ != nullptr) {
            deleter_(data_);
        }
        if (ownsDimensions()) {
            ownDimensions().~Dimensions();
        }
    }

    ArrayImpl* sharedCopy() const override {
        DenseArray* copy = uninitialised(*dimensions_);
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
    const Dimensions& getDimensions() const override { return *dimensions_; }
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
        if (ownsDimensions()) {
            ownDimensions().reserve(2);
        }
        if (deleter_ == nullptr) {
            copyOutBuffer(data, deleter);
        } else {
            data = data_;
            deleter = deleter_;
        }
        if (ownsDimensions()) {
            ownDimensions().assign(2, 0);
        } else {
            dimensions_ = &dimensionsOfNothing;
        }
        count_ = 0;
        deleter_ = nullptr;
        data_ = trailing();
        identity_.reset();
    }
    const void* getUntypedDataPtr() const override { return getTypedDataPtr(); }
    bool isEqual(const ArrayImpl* other) const override {
        return equalElements<T>(*this, static_cast<const data::impl::TypedArrayImpl<T>&>(*other));
    }

    T* getElementAddress(std::size_t index, const std::string&, bool) override { return data_ + index; }
    void setElementValue(std::size_t index, const std::string&, T value) override { data_[index] = value; }
    /// Null when there are no elements.
    const T* getTypedDataPtr() const override { return count_ == 0 ? nullptr : data_; }

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

    /// A scalar; its one element follows.
    DenseArray() noexcept : dimensions_(&dimensionsOfScalars), data_(trailing()), count_(1) {}
    /// No elements yet; the dimensions follow the object, and the elements them.
    explicit DenseArray(Dimensions dimensions) noexcept
        : dimensions_(new (this + 1) Dimensions(std::move(dimensions))), data_(trailing()), count_(0) {}

    static DenseArray* small(Dimensions dimensions, std::size_t count) {
        if (dimensions == dimensionsOfScalars) {
            return new (TrailingBytes{sizeof(T)}) DenseArray;
        }
        const TrailingBytes behind{sizeof(Dimensions) + count * sizeof(T)};
        auto* array = new (behind) DenseArray(std::move(dimensions));
        array->count_ = count;
        return array;
    }

    static DenseArray* uninitialised(Dimensions dimensions) {
        const std::size_t count = elementCount(dimensions);
        if (isSmall(count)) {
            return small(std::move(dimensions), count);
        }
        Buffer<void> storage(allocateElements(count, sizeof(T)), &freeElements);
        return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
    }

    static void copyBytes(void* to, const void* from, std::size_t count) {
        if (count != 0) {
            std::memcpy(to, from, count * sizeof(T));
        }
    }
    bool ownsDimensions() const noexcept {
        return dimensions_ != &dimensionsOfScalars && dimensions_ != &dimensionsOfNothing;
    }
    Dimensions& ownDimensions() noexcept { return *std::launder(reinterpret_cast<Dimensions*>(this + 1)); }
    T* trailing() noexcept {
        return ownsDimensions() ? reinterpret_cast<T*>(&ownDimensions() + 1) : reinterpret_cast<T*>(this + 1);
    }

    const Dimensions* dimensions_; // shared by all scalars, which are many, otherwise behind the object
    T* data_;
    std::size_t count_;
    void (*deleter_)(void*) = nullptr; // null while the elements follow the object
    MemoryLayout layout_ = MemoryLayout::COLUMN_MAJOR;
    Identity identity_;
};

} // namespace vexa::client
