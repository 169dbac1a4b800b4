// Arrays of primitive elements: object, dimensions and few elements in one block, many elements in a block of
// their own or one that was handed over. What each member means stands in DenseArrayImpl.hpp.
#include <foundation/vexadata/Traits.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/ElementMemory.hpp>
#include <vexa/data/detail/Equality.hpp>
#include <vexa/data/detail/IndexRules.hpp>
#include <vexa/data/impl/DenseArrayImpl.hpp>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace vexa::data::impl {

using data::detail::elementCount;

namespace {

using Dimensions = std::vector<std::size_t>;

/// One vector of dimensions for each small shape, up to 8 by 8, which all arrays of that shape share: a
/// scalar then needs no vector of its own. Made when the library is loaded and never destroyed.
class SharedDimensions {
public:
    SharedDimensions() {
        for (std::size_t k = 0; k < shapes; ++k) {
            dimensions_[k] = {k / extents, k % extents};
        }
    }
    /// Null for other shapes.
    const Dimensions* find(const Dimensions& wanted) const noexcept {
        return wanted.size() == 2 ? find(wanted[0], wanted[1]) : nullptr;
    }
    const Dimensions* find(std::size_t rows, std::size_t columns) const noexcept {
        return rows < extents && columns < extents ? &dimensions_[rows * extents + columns] : nullptr;
    }
    const Dimensions& ofNothing() const noexcept { return dimensions_[0]; }

private:
    static constexpr std::size_t extents = 9; // 0 to 8
    static constexpr std::size_t shapes = extents * extents;
    Dimensions dimensions_[shapes];
};
const SharedDimensions& sharedDimensions = *new SharedDimensions;

/// Bits of `dimensions_`: row-major; the owner of the elements follows in their place.
constexpr std::uintptr_t rowMajorBit = 1;
constexpr std::uintptr_t ownerBit = 2;
using Owner = std::shared_ptr<void>;

template <class T>
bool isSmall(std::size_t count) noexcept {
    constexpr std::size_t smallBytes = 1024;
    return count <= smallBytes / sizeof(T);
}

/// Out of line, because g++ replaces a `memset` of few bytes by `rep stos`, which takes longer than the call.
[[gnu::noinline]] void clearBytes(void* bytes, std::size_t size) noexcept { std::memset(bytes, 0, size); }

void copyBytes(void* to, const void* from, std::size_t size) {
    if (size != 0) {
        std::memcpy(to, from, size);
    }
}

} // namespace

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::zeros(Dimensions&& dimensions) {
    const std::size_t count = elementCount(dimensions);
    if (isSmall<T>(count)) {
        auto* array = make(std::move(dimensions), count * sizeof(T));
        clearBytes(array->inPlace_.data, count * sizeof(T));
        return array;
    }
    Buffer<void> storage(data::detail::allocateZeros(count, sizeof(T)), &data::detail::freeElements);
    return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::zeros(std::size_t rows, std::size_t columns) {
    if (const Dimensions* shared = sharedDimensions.find(rows, columns)) {
        const std::size_t size = rows * columns * sizeof(T);
        auto* array = new (TrailingBytes{size}) DenseArrayImpl(*shared);
        clearBytes(array->inPlace_.data, size);
        return array;
    }
    return zeros(Dimensions{rows, columns});
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::adopt(Dimensions&& dimensions, Buffer<void> storage,
                                            MemoryLayout layout) {
    auto* array = make(std::move(dimensions), 0);
    if (storage != nullptr) {
        array->deleter_ = storage.get_deleter();
        array->inPlace_.data = static_cast<T*>(storage.release());
    }
    if (layout != MemoryLayout::COLUMN_MAJOR) {
        array->setLayout(layout);
        array->noteShape();
    }
    return array;
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::adopt(Dimensions&& dimensions, T* data, Owner owner,
                                            MemoryLayout layout) {
    auto* array = make(std::move(dimensions), sizeof(Owner));
    new (array->trailing()) Owner(std::move(owner));
    array->inPlace_.data = data;
    array->setLayout(layout);
    array->dimensions_ |= ownerBit;
    array->noteShape();
    return array;
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::withData(Dimensions&& dimensions, const void* source,
                                               std::size_t count) {
    DenseArrayImpl* array = uninitialised(std::move(dimensions));
    const std::size_t copied = std::min(count, array->count());
    T* data = array->inPlace_.data;
    copyBytes(data, source, copied * sizeof(T));
    std::fill(data + copied, data + array->count(), T());
    return array;
}

template <class T>
DenseArrayImpl<T>::~DenseArrayImpl() {
    if (deleter_ != nullptr) {
        deleter_(inPlace_.data);
    }
    dropOwner();
    if (ownsDimensions()) {
        ownDimensions().~Dimensions();
    }
}

template <class T>
ArrayImpl* DenseArrayImpl<T>::sharedCopy() const {
    const std::size_t size = count() * sizeof(T);
    const bool shares = !ownsDimensions() && isSmall<T>(count());
    DenseArrayImpl* copy = shares ? new (TrailingBytes{size}) DenseArrayImpl(dimensions())
                                  : uninitialised(Dimensions(dimensions()));
    if (layout() != MemoryLayout::COLUMN_MAJOR) {
        copy->setLayout(layout());
        copy->noteShape();
    }
    copyBytes(copy->inPlace_.data, inPlace_.data, size);
    return copy;
}
template <class T>
data::detail::IteratorImpl* DenseArrayImpl<T>::beginIterator(void*, bool) {
    return new data::detail::ContiguousIteratorImpl<T>(inPlace_.data);
}
template <class T>
data::detail::IteratorImpl* DenseArrayImpl<T>::endIterator(void*, bool) {
    return new data::detail::ContiguousIteratorImpl<T>(inPlace_.data + count());
}
template <class T>
ArrayType DenseArrayImpl<T>::getType() const {
    return foundation::vexadata::detail::arrayTypeOf<T>;
}
template <class T>
MemoryLayout DenseArrayImpl<T>::getMemoryLayout() const {
    return layout();
}
template <class T>
data::detail::ReferenceImpl* DenseArrayImpl<T>::createElementReference(std::size_t, const std::string&,
                                                                       bool) {
    return nullptr;
}
template <class T>
const Dimensions& DenseArrayImpl<T>::getDimensions() const {
    return dimensions();
}
template <class T>
std::size_t DenseArrayImpl<T>::getNumberOfElements() const {
    return count();
}
template <class T>
bool DenseArrayImpl<T>::isEmpty() const {
    return count() == 0;
}
template <class T>
std::uint64_t DenseArrayImpl<T>::getArrayID() const {
    return identity_.get();
}
template <class T>
void DenseArrayImpl<T>::unshare() {}

template <class T>
void DenseArrayImpl<T>::copyOutBuffer(void*& data, void (*&deleter)(void*)) const {
    void* copy = data::detail::allocateElements(count(), sizeof(T));
    copyBytes(copy, inPlace_.data, count() * sizeof(T));
    data = copy;
    deleter = &data::detail::freeElements;
}
template <class T>
void DenseArrayImpl<T>::releaseBuffer(void*& data, void (*&deleter)(void*)) {
    if (ownsDimensions()) {
        ownDimensions().reserve(2);
    }
    if (deleter_ == nullptr) {
        copyOutBuffer(data, deleter);
    } else {
        data = inPlace_.data;
        deleter = deleter_;
    }
    dropOwner();
    if (ownsDimensions()) {
        ownDimensions().assign(2, 0);
    } else {
        dimensions_ = reinterpret_cast<std::uintptr_t>(&sharedDimensions.ofNothing());
    }
    deleter_ = nullptr;
    inPlace_.data = trailing();
    noteShape();
    identity_.reset();
}
template <class T>
const void* DenseArrayImpl<T>::getUntypedDataPtr() const {
    return getTypedDataPtr();
}
template <class T>
bool DenseArrayImpl<T>::isEqual(const ArrayImpl* other) const {
    return data::detail::equalElements<T>(*this, static_cast<const TypedArrayImpl<T>&>(*other));
}
template <class T>
T* DenseArrayImpl<T>::getElementAddress(std::size_t index, const std::string&, bool) {
    return inPlace_.data + index;
}
template <class T>
void DenseArrayImpl<T>::setElementValue(std::size_t index, const std::string&, T value) {
    inPlace_.data[index] = value;
}
template <class T>
const T* DenseArrayImpl<T>::getTypedDataPtr() const {
    return isEmpty() ? nullptr : inPlace_.data;
}

template <class T>
std::shared_ptr<void> DenseArrayImpl<T>::owner() const {
    return hasOwner() ? *static_cast<const Owner*>(behind()) : nullptr;
}

/// With dimensions of `sharedDimensions`; the elements follow the object.
template <class T>
DenseArrayImpl<T>::DenseArrayImpl(const Dimensions& shared) noexcept
    : dimensions_(reinterpret_cast<std::uintptr_t>(&shared)) {
    inPlace_.data = reinterpret_cast<T*>(this + 1);
    noteShape();
}
/// The dimensions follow the object, and the elements them.
template <class T>
DenseArrayImpl<T>::DenseArrayImpl(Dimensions&& dimensions) noexcept
    : dimensions_(reinterpret_cast<std::uintptr_t>(new (this + 1) Dimensions(std::move(dimensions)))) {
    inPlace_.data = reinterpret_cast<T*>(&ownDimensions() + 1);
    noteShape();
}

/// Column-major; `trailing` bytes for elements follow in the same block.
template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::make(Dimensions&& dimensions, std::size_t trailing) {
    if (const Dimensions* shared = sharedDimensions.find(dimensions)) {
        return new (TrailingBytes{trailing}) DenseArrayImpl(*shared);
    }
    return new (TrailingBytes{sizeof(Dimensions) + trailing}) DenseArrayImpl(std::move(dimensions));
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::uninitialised(Dimensions&& dimensions) {
    const std::size_t count = elementCount(dimensions);
    if (isSmall<T>(count)) {
        return make(std::move(dimensions), count * sizeof(T));
    }
    Buffer<void> storage(data::detail::allocateElements(count, sizeof(T)), &data::detail::freeElements);
    return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
}

template <class T>
const Dimensions& DenseArrayImpl<T>::dimensions() const noexcept {
    return *reinterpret_cast<const Dimensions*>(dimensions_ & ~(rowMajorBit | ownerBit));
}
template <class T>
MemoryLayout DenseArrayImpl<T>::layout() const noexcept {
    return (dimensions_ & rowMajorBit) != 0 ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR;
}
template <class T>
void DenseArrayImpl<T>::setLayout(MemoryLayout layout) noexcept {
    dimensions_ = (dimensions_ & ~rowMajorBit) | (layout == MemoryLayout::ROW_MAJOR ? rowMajorBit : 0);
}
template <class T>
std::size_t DenseArrayImpl<T>::count() const noexcept {
    return inPlace_.rows != 0 ? inPlace_.rows * inPlace_.columns : elementCount(dimensions());
}
template <class T>
bool DenseArrayImpl<T>::ownsDimensions() const noexcept {
    return static_cast<const void*>(&dimensions()) == this + 1;
}
template <class T>
Dimensions& DenseArrayImpl<T>::ownDimensions() noexcept {
    return *std::launder(reinterpret_cast<Dimensions*>(this + 1));
}
/// What follows the object and its dimensions.
template <class T>
const void* DenseArrayImpl<T>::behind() const noexcept {
    return ownsDimensions() ? static_cast<const void*>(&dimensions() + 1) : this + 1;
}
template <class T>
T* DenseArrayImpl<T>::trailing() noexcept {
    return static_cast<T*>(const_cast<void*>(behind()));
}
template <class T>
bool DenseArrayImpl<T>::hasOwner() const noexcept {
    return (dimensions_ & ownerBit) != 0;
}
template <class T>
void DenseArrayImpl<T>::dropOwner() noexcept {
    if (hasOwner()) {
        static_cast<Owner*>(const_cast<void*>(behind()))->~Owner();
        dimensions_ &= ~ownerBit;
    }
}
/// Must follow every change of dimensions or layout: handles reach elements by rows and columns of
/// `inPlace_`, and only when these are not 0.
template <class T>
void DenseArrayImpl<T>::noteShape() noexcept {
    const Dimensions& now = dimensions();
    const bool reachable =
        now.size() == 2 && now[0] != 0 && now[1] != 0 && layout() == MemoryLayout::COLUMN_MAJOR;
    inPlace_.rows = reachable ? now[0] : 0;
    inPlace_.columns = reachable ? now[1] : 0;
}

#define VEXADATA_ELEMENT(T) template class DenseArrayImpl<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>

} // namespace vexa::data::impl
