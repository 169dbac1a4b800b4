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

/// Made when the library is loaded and never destroyed.
const Dimensions& dimensionsOfScalars = *new Dimensions{1, 1};
const Dimensions& dimensionsOfNothing = *new Dimensions{0, 0};

/// The bit of `dimensions_` that says row-major.
constexpr std::uintptr_t rowMajorBit = 1;

template <class T>
bool isSmall(std::size_t count) noexcept {
    constexpr std::size_t smallBytes = 1024;
    return count <= smallBytes / sizeof(T);
}

void copyBytes(void* to, const void* from, std::size_t size) {
    if (size != 0) {
        std::memcpy(to, from, size);
    }
}

} // namespace

/// What is in the block of an array besides its members, and where.
template <class T>
struct DenseArrayImpl<T>::Details {
    using Self = DenseArrayImpl;

    /// A scalar has its one element behind the object, another small array its dimensions and then its elements.
    static Self* small(Dimensions&& dimensions, std::size_t count) {
        if (count == 1 && dimensions.size() == 2) {
            Self* scalar = construct(sizeof(T));
            scalar->dimensions_ = reinterpret_cast<std::uintptr_t>(&dimensionsOfScalars);
            scalar->inPlace_ = {1, 1, trailing(*scalar)};
            return scalar;
        }
        return withDimensions(std::move(dimensions), count * sizeof(T));
    }
    /// With uninitialised elements.
    static Self* make(Dimensions&& dimensions) {
        const std::size_t count = elementCount(dimensions);
        if (isSmall<T>(count)) {
            return small(std::move(dimensions), count);
        }
        Buffer<void> storage(data::detail::allocateElements(count, sizeof(T)), &data::detail::freeElements);
        return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
    }
    /// Column-major, with room for so many bytes of elements.
    static Self* withDimensions(Dimensions&& dimensions, std::size_t bytes) {
        Self* array = construct(sizeof(Dimensions) + bytes);
        array->dimensions_ =
            reinterpret_cast<std::uintptr_t>(new (array + 1) Dimensions(std::move(dimensions)));
        array->inPlace_.data = trailing(*array);
        noteShape(*array);
        return array;
    }
    static Self* construct(std::size_t trailingBytes) {
        return ::new (::operator new(sizeof(Self) + trailingBytes)) Self;
    }

    static const Dimensions& dimensions(const Self& array) noexcept {
        return *reinterpret_cast<const Dimensions*>(array.dimensions_ & ~rowMajorBit);
    }
    static MemoryLayout layout(const Self& array) noexcept {
        return (array.dimensions_ & rowMajorBit) != 0 ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR;
    }
    static void setLayout(Self& array, MemoryLayout layout) noexcept {
        array.dimensions_ =
            (array.dimensions_ & ~rowMajorBit) | (layout == MemoryLayout::ROW_MAJOR ? rowMajorBit : 0);
        noteShape(array);
    }
    static std::size_t count(const Self& array) noexcept {
        const data::detail::InPlace<T>& matrix = array.inPlace_;
        return matrix.rows != 0 ? matrix.rows * matrix.columns : elementCount(dimensions(array));
    }
    static bool ownsDimensions(const Self& array) noexcept {
        return &dimensions(array) != &dimensionsOfScalars && &dimensions(array) != &dimensionsOfNothing;
    }
    static Dimensions& ownDimensions(Self& array) noexcept {
        return *std::launder(reinterpret_cast<Dimensions*>(&array + 1));
    }
    static T* trailing(Self& array) noexcept {
        return ownsDimensions(array) ? reinterpret_cast<T*>(&ownDimensions(array) + 1)
                                     : reinterpret_cast<T*>(&array + 1);
    }
    /// After every change of dimensions or layout.
    static void noteShape(Self& array) noexcept {
        const Dimensions& now = dimensions(array);
        const bool reachable =
            now.size() == 2 && layout(array) == MemoryLayout::COLUMN_MAJOR && elementCount(now) != 0;
        array.inPlace_.rows = reachable ? now[0] : 0;
        array.inPlace_.columns = reachable ? now[1] : 0;
    }
};

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::zeros(Dimensions&& dimensions) {
    const std::size_t count = elementCount(dimensions);
    if (isSmall<T>(count)) {
        auto* array = Details::small(std::move(dimensions), count);
        std::memset(static_cast<void*>(array->inPlace_.data), 0, count * sizeof(T));
        return array;
    }
    Buffer<void> storage(data::detail::allocateZeros(count, sizeof(T)), &data::detail::freeElements);
    return adopt(std::move(dimensions), std::move(storage), MemoryLayout::COLUMN_MAJOR);
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::adopt(Dimensions&& dimensions, Buffer<void> storage,
                                            MemoryLayout layout) {
    DenseArrayImpl* array = Details::withDimensions(std::move(dimensions), 0);
    Details::setLayout(*array, layout);
    if (storage != nullptr) {
        array->deleter_ = storage.get_deleter();
        array->inPlace_.data = static_cast<T*>(storage.release());
    }
    return array;
}

template <class T>
DenseArrayImpl<T>* DenseArrayImpl<T>::withData(Dimensions&& dimensions, const void* source,
                                               std::size_t count) {
    DenseArrayImpl* array = Details::make(std::move(dimensions));
    const std::size_t copied = std::min(count, Details::count(*array));
    T* data = array->inPlace_.data;
    copyBytes(data, source, copied * sizeof(T));
    std::fill(data + copied, data + Details::count(*array), T());
    return array;
}

template <class T>
DenseArrayImpl<T>::~DenseArrayImpl() {
    if (deleter_ != nullptr) {
        deleter_(inPlace_.data);
    }
    if (Details::ownsDimensions(*this)) {
        Details::ownDimensions(*this).~Dimensions();
    }
}

template <class T>
ArrayImpl* DenseArrayImpl<T>::sharedCopy() const {
    DenseArrayImpl* copy = Details::make(Dimensions(Details::dimensions(*this)));
    Details::setLayout(*copy, Details::layout(*this));
    copyBytes(copy->inPlace_.data, inPlace_.data, Details::count(*this) * sizeof(T));
    return copy;
}
template <class T>
data::detail::IteratorImpl* DenseArrayImpl<T>::beginIterator(void*, bool) {
    return new data::detail::ContiguousIteratorImpl<T>(inPlace_.data);
}
template <class T>
data::detail::IteratorImpl* DenseArrayImpl<T>::endIterator(void*, bool) {
    return new data::detail::ContiguousIteratorImpl<T>(inPlace_.data + Details::count(*this));
}
template <class T>
ArrayType DenseArrayImpl<T>::getType() const {
    return foundation::vexadata::detail::arrayTypeOf<T>;
}
template <class T>
MemoryLayout DenseArrayImpl<T>::getMemoryLayout() const {
    return Details::layout(*this);
}
template <class T>
data::detail::ReferenceImpl* DenseArrayImpl<T>::createElementReference(std::size_t, const std::string&,
                                                                       bool) {
    return nullptr;
}
template <class T>
const Dimensions& DenseArrayImpl<T>::getDimensions() const {
    return Details::dimensions(*this);
}
template <class T>
std::size_t DenseArrayImpl<T>::getNumberOfElements() const {
    return Details::count(*this);
}
template <class T>
bool DenseArrayImpl<T>::isEmpty() const {
    return Details::count(*this) == 0;
}
template <class T>
std::uint64_t DenseArrayImpl<T>::getArrayID() const {
    return identity_.get();
}
template <class T>
void DenseArrayImpl<T>::unshare() {}

template <class T>
void DenseArrayImpl<T>::copyOutBuffer(void*& data, void (*&deleter)(void*)) const {
    void* copy = data::detail::allocateElements(Details::count(*this), sizeof(T));
    copyBytes(copy, inPlace_.data, Details::count(*this) * sizeof(T));
    data = copy;
    deleter = &data::detail::freeElements;
}
template <class T>
void DenseArrayImpl<T>::releaseBuffer(void*& data, void (*&deleter)(void*)) {
    if (Details::ownsDimensions(*this)) {
        Details::ownDimensions(*this).reserve(2);
    }
    if (deleter_ == nullptr) {
        copyOutBuffer(data, deleter);
    } else {
        data = inPlace_.data;
        deleter = deleter_;
    }
    if (Details::ownsDimensions(*this)) {
        Details::ownDimensions(*this).assign(2, 0);
    } else {
        dimensions_ = reinterpret_cast<std::uintptr_t>(&dimensionsOfNothing);
    }
    deleter_ = nullptr;
    inPlace_.data = Details::trailing(*this);
    Details::noteShape(*this);
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

#define VEXADATA_ELEMENT(T) template class DenseArrayImpl<T>;
#include <foundation/vexadata/PrimitiveTypes.inc>

} // namespace vexa::data::impl
