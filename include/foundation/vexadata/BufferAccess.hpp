// Reading a whole array through one pointer, and walking arrays whose element type is checked on the way.
#pragma once

#include <foundation/vexadata/TypedArray.hpp>

#include <functional>
#include <memory>

namespace foundation::vexadata {

namespace detail {

/// A deleter that frees nothing and holds a handle.
template <class Handle>
struct KeepAlive {
    Handle owner;

    void operator()(const void*) const noexcept {}
};

} // namespace detail

/// The elements of a primitive array in storage order, without a copy. The deleter holds a handle to the
/// array and frees nothing else: the storage lives at least as long as the pointer, and a write through
/// another handle leaves it as it is. Never unshares.
template <class T>
VEXADATA_API std::unique_ptr<const T[], std::function<void(const T*)>> getBufferPtr(TypedArray<T> array) {
    static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements have a buffer");
    const auto& impl = static_cast<const detail::TypedArrayImpl<T>&>(*detail::Access::impl(array));
    const T* data = impl.getTypedDataPtr();
    std::function<void(const T*)> keepAlive = detail::KeepAlive<TypedArray<T>>{std::move(array)};
    return {data, std::move(keepAlive)};
}

/// The same for an array whose kind is known only at run time: logical, character and real numeric arrays.
/// @throws MustBePrimitiveTypeException for the other kinds, complex ones among them
/// @throws EArrayUnknownDataType for empty, OBJECT and sparse arrays
VEXADATA_API std::unique_ptr<const void, std::function<void(const void*)>> getBufferPtr(Array array);

namespace detail {

/// Asks an array for an iterator and lets it keep the chain alive through which the array was reached.
VEXADATA_API std::unique_ptr<vexa::data::detail::IteratorImpl> iteratorOf(
    ArrayImpl& array, bool atEnd, bool writable, const std::shared_ptr<ReferenceImpl>& chain);

template <class T>
void requireElements(ArrayType type) {
    static_assert(isElementType<T>, "T is not an element type of arrays");
    if (!acceptsType<T>(type)) {
        raise<InvalidArrayTypeException>();
    }
}

template <class T>
TypedIterator<T> typedIterator(ArrayImpl& array, bool atEnd, bool writable,
                               const std::shared_ptr<ReferenceImpl>& chain = nullptr) {
    return TypedIterator<T>(iteratorOf(array, atEnd, writable, chain).release());
}

} // namespace detail

/// The elements of an array, which must outlive the range. Never unshares.
/// @throws InvalidArrayTypeException when the array is not one of elements `T`
template <class T>
VEXADATA_API Range<TypedIterator, const T> getReadOnlyElements(const Array& array) {
    detail::requireElements<T>(array.getType());
    auto& impl = *detail::Access::impl(array);
    auto begin = detail::typedIterator<const T>(impl, false, false);
    return {std::move(begin), detail::typedIterator<const T>(impl, true, false)};
}

/// The elements of an array for writing; the array is made private first.
/// @throws InvalidArrayTypeException when the array is not one of elements `T`; std::bad_alloc, the handle
/// unchanged
template <class T>
VEXADATA_API Range<TypedIterator, T> getWritableElements(Array& array) {
    detail::requireElements<T>(array.getType());
    detail::Access::unshare(array);
    auto& impl = *detail::Access::impl(array);
    auto end = detail::typedIterator<T>(impl, true, true);
    return {detail::typedIterator<T>(impl, false, true), std::move(end)};
}

/// The elements of the array that a cell or field holds. The range keeps the reference's chain alive.
/// @throws InvalidArrayTypeException when the array is not one of elements `T`; index errors
template <class T>
VEXADATA_API Range<TypedIterator, const T> getReadOnlyElements(const Reference<Array>& element) {
    detail::requireElements<T>(element.getType());
    const auto& chain = element.chain();
    auto& first = detail::elementArray<NotEnoughIndicesProvidedException>(chain);
    auto begin = detail::typedIterator<const T>(first, false, false, chain);
    auto& second = detail::elementArray<NotEnoughIndicesProvidedException>(chain);
    return {std::move(begin), detail::typedIterator<const T>(second, true, false, chain)};
}

/// The same for writing; everything on the way is made private first.
/// @throws InvalidArrayTypeException when the array is not one of elements `T`; index errors; std::bad_alloc
template <class T>
VEXADATA_API Range<TypedIterator, T> getWritableElements(Reference<Array>& element) {
    detail::requireElements<T>(element.getType());
    const auto& chain = element.chain();
    chain->prepareForWrite();
    auto& array = detail::elementArray<NotEnoughIndicesProvidedException>(chain, true);
    auto begin = detail::typedIterator<T>(array, false, true, chain);
    return {std::move(begin), detail::typedIterator<T>(array, true, true, chain)};
}

/// The same for an element reached by indices.
template <class T, bool isConst>
Range<TypedIterator, const T> getReadOnlyElements(const ArrayElementRef<isConst>& element) {
    return getReadOnlyElements<T>(Reference<Array>(detail::chainOf(element)));
}
template <class T>
Range<TypedIterator, T> getWritableElements(const ArrayElementRef<false>& element) {
    Reference<Array> held(element);
    return getWritableElements<T>(held);
}

#define VEXADATA_ACCESS extern template
#include <foundation/vexadata/detail/BufferAccessInstances.inc>

} // namespace foundation::vexadata
