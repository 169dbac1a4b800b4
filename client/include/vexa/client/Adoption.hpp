// Arrays over memory that somebody else keeps alive, and the way back to a vector: nothing is copied. The
// arrays are those of the embedded back-end, whichever back-end is registered.
#pragma once

#include <foundation/vexadata/TypedArray.hpp>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace vexa::client {

/// An array of the primitive kind `type` over the elements at `data`, in the order of `layout`, as many as
/// the dimensions say; one entry n means n by 1, none 1 by 1. `owner` keeps them alive and is let go with the
/// last handle that shares the array, on the thread that drops it, or when this throws. Writes through the
/// only handle of the array go to `data`; one of several handles gets a copy first, as with any array. The
/// buffer of such an array, when it is released, is a copy.
/// @throws MustBePrimitiveTypeException; NumberOfElementsExceedsMaximumException; InvalidBufferException when
/// `data` is null although there are elements, or not aligned for them, or for another layout; std::bad_alloc
VEXADATA_API foundation::vexadata::Array adopt(std::vector<std::size_t> dims,
                                               foundation::vexadata::ArrayType type, void* data,
                                               std::shared_ptr<void> owner,
                                               data::MemoryLayout layout = data::MemoryLayout::COLUMN_MAJOR);
/// The same over elements that must not be written, of a file or of another library's results: the first
/// write gives the array storage of its own. Iterators that were made before go on to show the old values;
/// `owner` is let go with the array.
/// Single elements of it are read through the interface of back-ends, more slowly than those of other arrays.
/// @throws as `adopt`
VEXADATA_API foundation::vexadata::Array adoptReadOnly(
    std::vector<std::size_t> dims, foundation::vexadata::ArrayType type, const void* data,
    std::shared_ptr<const void> owner, data::MemoryLayout layout = data::MemoryLayout::COLUMN_MAJOR);

/// The two for elements of a type that is known.
template <class T>
foundation::vexadata::TypedArray<T> adopt(std::vector<std::size_t> dims, T* data, std::shared_ptr<void> owner,
                                          data::MemoryLayout layout = data::MemoryLayout::COLUMN_MAJOR) {
    return adopt(std::move(dims), foundation::vexadata::detail::arrayTypeOf<T>, static_cast<void*>(data),
                 std::move(owner), layout);
}
template <class T>
foundation::vexadata::TypedArray<T> adoptReadOnly(
    std::vector<std::size_t> dims, const T* data, std::shared_ptr<const void> owner,
    data::MemoryLayout layout = data::MemoryLayout::COLUMN_MAJOR) {
    return adoptReadOnly(std::move(dims), foundation::vexadata::detail::arrayTypeOf<T>,
                         static_cast<const void*>(data), std::move(owner), layout);
}

namespace detail {

/// Frees an adopted vector; finding it tells that the owner of an array is a vector.
template <class T>
struct DeleteVector {
    void operator()(std::vector<T>* values) const noexcept { delete values; }
};

/// Who keeps the elements alive of an array that no other handle shares; null for all other arrays.
VEXADATA_API std::shared_ptr<void> ownerOf(const foundation::vexadata::Array& array);

/// @throws InvalidBufferException unless there are `count` elements
VEXADATA_API void requireCount(const std::vector<std::size_t>& dims, std::size_t count);

} // namespace detail

/// An array over the elements of a vector, which is moved into it.
/// @throws as `adopt`; InvalidBufferException when the vector has more or fewer elements than the dimensions
/// say. The values are lost then.
template <class T>
foundation::vexadata::TypedArray<T> fromVector(std::vector<std::size_t> dims, std::vector<T> values,
                                               data::MemoryLayout layout = data::MemoryLayout::COLUMN_MAJOR) {
    static_assert(!std::is_same_v<T, bool>, "the elements of std::vector<bool> lie in no array");
    detail::requireCount(dims, values.size());
    auto owner =
        std::shared_ptr<std::vector<T>>(new std::vector<T>(std::move(values)), detail::DeleteVector<T>());
    T* const data = owner->data();
    return adopt<T>(std::move(dims), data, std::move(owner), layout);
}

/// The elements of an array as a vector of values, in storage order: strings that may be missing, records as
/// `StructValue`. Hand the array over with `std::move`: when it came from a vector and nobody else shares it,
/// that vector is moved out; otherwise the elements are copied.
/// @throws std::bad_alloc
template <class T>
auto toVector(foundation::vexadata::TypedArray<T> array) {
    using Value = typename foundation::vexadata::detail::ElementValue<T>::type;
    const std::shared_ptr<void> owner = detail::ownerOf(array);
    if (owner.use_count() == 2 && std::get_deleter<detail::DeleteVector<T>>(owner) != nullptr) {
        return std::move(*static_cast<std::vector<Value>*>(owner.get()));
    }
    std::vector<Value> values;
    values.reserve(array.getNumberOfElements());
    for (const auto& element : std::as_const(array)) {
        Value value =
            element; // a missing string too, which a vector's own constructor would ask for its text
        values.push_back(std::move(value));
    }
    return values;
}

} // namespace vexa::client
