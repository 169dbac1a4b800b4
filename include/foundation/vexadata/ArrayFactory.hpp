// Making arrays.
#pragma once

#include <foundation/vexadata/TypedArray.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

using detail::buffer_ptr;

/// Makes every array, over the back-end that is registered when the factory is made. Copies share one back-end factory.
///
/// Dimensions: one entry n means n by 1; otherwise their product must fit in 64 bits, which a zero before a huge entry
/// satisfies. Every creator throws NumberOfElementsExceedsMaximumException when it does not, and passes errors of the
/// back-end on; a buffer handed to a call that fails is freed with its own deleter.
class VEXADATA_API ArrayFactory {
public:
    /// Asks the registered back-end. Without one the factory is empty, and creating with it is undefined: link the
    /// embedded back-end, or load another before.
    ArrayFactory();
    explicit ArrayFactory(std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> impl) noexcept;
    ArrayFactory(const ArrayFactory&) noexcept;
    ArrayFactory(ArrayFactory&&) noexcept;
    ArrayFactory& operator=(const ArrayFactory&) noexcept;
    ArrayFactory& operator=(ArrayFactory&&) noexcept;
    ~ArrayFactory();

    const std::shared_ptr<vexa::data::impl::ArrayFactoryImpl>& getArrayFactoryImpl() const noexcept {
        return impl_;
    }
    std::shared_ptr<vexa::data::impl::ArrayFactoryImpl>& getArrayFactoryImpl() noexcept { return impl_; }

    /// An array of zeros, or of empty elements. The type goes to the back-end unchecked.
    Array createArray(ArrayType type, std::vector<std::size_t> dims);
    template <class T>
    TypedArray<T> createArray(std::vector<std::size_t> dims) {
        static_assert(detail::isElementType<T>, "T is not an element type of arrays");
        return TypedArray<T>(zeros(detail::arrayTypeOf<T>, std::move(dims)));
    }

    /// An array of the listed values in column-major order; a back-end decides what happens when their number is not the
    /// product of the dimensions.
    template <class T>
    TypedArray<T> createArray(std::vector<std::size_t> dims, std::initializer_list<T> values) {
        return createArrayWithData<T>(std::move(dims), values.begin(), values.size());
    }
    /// The same from a pair of iterators over values that convert to `T`.
    template <class T, class It,
              class = std::enable_if_t<!std::is_integral_v<It>,
                                       typename std::iterator_traits<It>::iterator_category>>
    TypedArray<T> createArray(std::vector<std::size_t> dims, It first, It last) {
        static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
        using Category = typename std::iterator_traits<It>::iterator_category;
        if constexpr (std::is_base_of_v<std::forward_iterator_tag, Category>) {
            const auto count = static_cast<std::size_t>(std::distance(first, last));
            buffer_ptr<T> values = createBuffer<T>(count);
            std::transform(first, last, values.get(),
                           [](const auto& value) { return static_cast<T>(value); });
            return createArrayWithData<T>(std::move(dims), values.get(), count);
        } else { // may be walked only once
            using Value = typename std::iterator_traits<It>::value_type;
            const std::vector<Value> values(first, last);
            return createArray<T>(std::move(dims), values.begin(), values.end());
        }
    }
    /// The same from `count` values at `data`, which are copied.
    template <class T>
    TypedArray<T> createArrayWithData(std::vector<std::size_t> dims, const T* data, std::size_t count) {
        static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
        return TypedArray<T>(withData(detail::arrayTypeOf<T>, std::move(dims), data, count));
    }

    /// A 1-by-1 array holding `value`.
    template <class T>
    TypedArray<typename vexa::data::GetReturnType<T>::type> createScalar(T value) {
        using Element = typename vexa::data::GetReturnType<T>::type;
        auto scalar = createArray<Element>({1, 1});
        scalar[0] = static_cast<Element>(std::move(value));
        return scalar;
    }

    /// A buffer for `count` elements, to be filled and handed to `createArrayFromBuffer`.
    /// @throws MustBePrimitiveTypeException
    std::unique_ptr<void, void (*)(void*)> createBuffer(ArrayType type, std::size_t count);
    /// A buffer of `count` bytes.
    std::unique_ptr<void, void (*)(void*)> createBuffer(std::size_t count);
    template <class T>
    buffer_ptr<T> createBuffer(std::size_t count) {
        static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
        auto buffer = typedBuffer(detail::arrayTypeOf<T>, count);
        auto deleter = buffer.get_deleter();
        return buffer_ptr<T>(static_cast<T*>(buffer.release()), deleter);
    }

    /// An array over a buffer, which it takes over without copying. The type goes to the back-end unchecked.
    Array createArrayFromBuffer(std::vector<std::size_t> dims, ArrayType type,
                                std::unique_ptr<void, void (*)(void*)> buffer,
                                vexa::data::MemoryLayout layout = vexa::data::MemoryLayout::COLUMN_MAJOR);
    template <class T>
    TypedArray<T> createArrayFromBuffer(
        std::vector<std::size_t> dims, buffer_ptr<T> buffer,
        vexa::data::MemoryLayout layout = vexa::data::MemoryLayout::COLUMN_MAJOR) {
        static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
        auto deleter = buffer.get_deleter();
        vexa::data::impl::Buffer<void> untyped(buffer.release(), deleter);
        return TypedArray<T>(fromBuffer(std::move(dims), detail::arrayTypeOf<T>, std::move(untyped), layout));
    }

private:
    vexa::data::impl::ArrayImpl* zeros(ArrayType type, std::vector<std::size_t> dims);
    vexa::data::impl::ArrayImpl* withData(ArrayType type, std::vector<std::size_t> dims, const void* data,
                                          std::size_t count);
    vexa::data::impl::ArrayImpl* fromBuffer(std::vector<std::size_t> dims, ArrayType type,
                                            std::unique_ptr<void, void (*)(void*)> buffer,
                                            vexa::data::MemoryLayout layout);
    std::unique_ptr<void, void (*)(void*)> typedBuffer(ArrayType type, std::size_t count);

    std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> impl_;
};

} // namespace foundation::vexadata
