// The dense array that the library offers to back-ends: a factory that returns it need not write one. Handles
// recognise it and read and write its elements without a call.
#pragma once

#include <vexa/data/detail/Identity.hpp>
#include <vexa/data/detail/InPlace.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <complex>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vexa::data::impl {

/// Contiguous elements of a primitive type `T`. Owns its storage alone: two arrays never share it, since an
/// iterator or a pointer that may write can outlive any bookkeeping about who looks at it. Sharing happens
/// between handles of one array. Objects are made by the functions below, each of which returns one reference
/// for the caller.
///
/// The elements of small arrays follow the object in the same block, and before them its dimensions, unless
/// it shares those with all arrays of its shape, as small matrices do. Other elements lie in a buffer with a
/// function that frees it, or belong to somebody whom the array keeps alive.
template <class T>
class VEXADATA_API DenseArrayImpl final : public TypedArrayImpl<T> {
    using Dimensions = std::vector<std::size_t>;

public:
    /// All elements zero, column-major.
    /// @throws std::bad_alloc
    static DenseArrayImpl* zeros(Dimensions&& dimensions);
    /// The same for a matrix.
    static DenseArrayImpl* zeros(std::size_t rows, std::size_t columns);
    /// Over a buffer with as many elements as the dimensions say, in the order of `layout`. Null will do
    /// without elements.
    /// @throws std::bad_alloc after freeing the buffer
    static DenseArrayImpl* adopt(Dimensions&& dimensions, Buffer<void> storage, MemoryLayout layout);
    /// Over elements that `owner` keeps alive, as many as the dimensions say; it is let go when the array is,
    /// or gives its elements away, which are then a copy.
    /// @throws std::bad_alloc
    static DenseArrayImpl* adopt(Dimensions&& dimensions, T* data, std::shared_ptr<void> owner,
                                 MemoryLayout layout);
    /// Copies of the first `count` elements at `source`, column-major: of as many as there is room for, zeros
    /// for the rest.
    /// @throws std::bad_alloc
    static DenseArrayImpl* withData(Dimensions&& dimensions, const void* source, std::size_t count);
    ~DenseArrayImpl() override;

    ArrayImpl* sharedCopy() const override;
    data::detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    data::detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    ArrayType getType() const override;
    MemoryLayout getMemoryLayout() const override;
    /// Null: elements are plain values and hold no arrays.
    data::detail::ReferenceImpl* createElementReference(std::size_t index, const std::string& fieldName,
                                                        bool forWrite) override;
    const Dimensions& getDimensions() const override;
    std::size_t getNumberOfElements() const override;
    bool isEmpty() const override;
    std::uint64_t getArrayID() const override;
    /// Does nothing: the storage is always this object's alone.
    void unshare() override;
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override;
    /// Leaves a 0-by-0 array of the same kind.
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override;
    const void* getUntypedDataPtr() const override;
    bool isEqual(const ArrayImpl* other) const override;
    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    void setElementValue(std::size_t index, const std::string& fieldName, T value) override;
    /// Null when there are no elements.
    const T* getTypedDataPtr() const override;

    /// Who keeps the elements alive when the array does not; null otherwise.
    std::shared_ptr<void> owner() const;

    /// Where handles find the elements.
    const data::detail::InPlace<T>& inPlace() const noexcept { return inPlace_; }

    void operator delete(void* block) { ::operator delete(block); }

private:
    struct TrailingBytes {
        std::size_t size;
    };
    [[gnu::visibility("hidden")]] static void* operator new(std::size_t size, TrailingBytes trailing) {
        return ::operator new(size + trailing.size);
    }
    [[gnu::visibility("hidden")]] static void operator delete(void* block, TrailingBytes) {
        ::operator delete(block);
    }

    // Never called from elsewhere, and not part of what the library publishes.
    [[gnu::visibility("hidden")]] explicit DenseArrayImpl(const Dimensions& shared) noexcept;
    [[gnu::visibility("hidden")]] explicit DenseArrayImpl(Dimensions&& dimensions) noexcept;
    [[gnu::visibility("hidden")]] static DenseArrayImpl* make(Dimensions&& dimensions, std::size_t trailing);
    [[gnu::visibility("hidden")]] static DenseArrayImpl* uninitialised(Dimensions&& dimensions);

    [[gnu::visibility("hidden")]] const Dimensions& dimensions() const noexcept;
    [[gnu::visibility("hidden")]] MemoryLayout layout() const noexcept;
    [[gnu::visibility("hidden")]] void setLayout(MemoryLayout layout) noexcept;
    [[gnu::visibility("hidden")]] std::size_t count() const noexcept;
    [[gnu::visibility("hidden")]] bool ownsDimensions() const noexcept;
    [[gnu::visibility("hidden")]] Dimensions& ownDimensions() noexcept;
    [[gnu::visibility("hidden")]] const void* behind() const noexcept;
    [[gnu::visibility("hidden")]] T* trailing() noexcept;
    [[gnu::visibility("hidden")]] bool hasOwner() const noexcept;
    [[gnu::visibility("hidden")]] void dropOwner() noexcept;
    [[gnu::visibility("hidden")]] void noteShape() noexcept;

    data::detail::InPlace<T> inPlace_; // the first member: clients know its place
    // Where they lie, shared by many arrays or behind the object; one low bit says row-major, one that an
    // owner of the elements follows.
    std::uintptr_t dimensions_;
    void (*deleter_)(void*) = nullptr; // null while the elements follow the object or have an owner
    data::detail::Identity identity_;
};

#define VEXADATA_ELEMENT(T) extern template class VEXADATA_API DenseArrayImpl<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>

} // namespace vexa::data::impl
