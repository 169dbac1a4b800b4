// Making arrays.
#pragma once

#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/ValueObjectArray.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/DenseArrayImpl.hpp>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

using detail::buffer_ptr;

namespace detail {

/// Text as a string element; narrow text is tested and widened.
/// @throws NonAsciiCharInInputDataException; std::logic_error for a null pointer
template <class Text>
String stringFrom(Text&& value) {
    if constexpr (std::is_convertible_v<Text, const char*>) {
        return widened(static_cast<const char*>(value));
    } else if constexpr (std::is_convertible_v<Text, std::string_view>) {
        const std::string_view text = value;
        return widened(text.data(), text.size());
    } else if constexpr (std::is_convertible_v<Text, const char16_t*>) {
        requireText(value);
        return std::u16string(value);
    } else if constexpr (std::is_convertible_v<Text, String>) {
        return std::forward<Text>(value);
    } else {
        return static_cast<String>(std::forward<Text>(value));
    }
}

/// A value as an element of type `Element`.
/// @throws NonAsciiCharInInputDataException; std::logic_error for a null pointer in place of a text
template <class Element, class T>
Element elementFrom(T&& value) {
    if constexpr (std::is_same_v<Element, char16_t> && isNarrowUnit<std::decay_t<T>>) {
        return widened(static_cast<char>(value));
    } else if constexpr (std::is_same_v<Element, String>) {
        return stringFrom(std::forward<T>(value));
    } else {
        return static_cast<Element>(std::forward<T>(value));
    }
}

/// Whether values of type `T` are narrow text to arrays of elements `Element`.
template <class Element, class T>
inline constexpr bool isNarrowText = std::is_same_v<Element, String>
                                         ? std::is_convertible_v<T, std::string_view>
                                         : (std::is_same_v<Element, char16_t>&& isNarrowUnit<T>);

/// Number of elements of an array with these dimensions.
/// @throws NumberOfElementsExceedsMaximumException
inline std::size_t elementsOf(const std::vector<std::size_t>& dims) {
    std::size_t product = 1;
    for (const std::size_t extent : dims) {
        if (__builtin_mul_overflow(product, extent, &product)) {
            raise<NumberOfElementsExceedsMaximumException>();
        }
    }
    return product;
}

} // namespace detail

/// Makes every array, over the back-end that is registered when the factory is made. Copies share one
/// back-end factory.
///
/// Dimensions: one entry n means n by 1 and is not tested; otherwise their product must fit in 64 bits, which
/// a zero before a huge entry satisfies. Creators that take dimensions throw
/// NumberOfElementsExceedsMaximumException when it does not. All creators pass errors of the back-end on; a
/// buffer handed to a call that fails is freed with its own deleter.
///
/// Narrow text is ASCII: where characters or strings are made of it, a byte above 127 throws
/// NonAsciiCharInInputDataException, and a null pointer in place of a text throws std::logic_error.
class VEXADATA_API ArrayFactory {
public:
    /// Asks the registered back-end. Without one the factory is empty, and creating with it ends the process
    /// with a word on standard error: link the embedded back-end, or load another before. So does creating
    /// with a factory that was moved from.
    ArrayFactory();
    /// Over the factory of a back-end; null gives an empty one.
    ArrayFactory(std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> impl) noexcept;
    ArrayFactory(const ArrayFactory&) noexcept;
    ArrayFactory(ArrayFactory&&) noexcept;
    ArrayFactory& operator=(const ArrayFactory&) noexcept;
    ArrayFactory& operator=(ArrayFactory&&) noexcept;
    ~ArrayFactory();

    /// The back-end's factory; null when none was registered, or after moving from this factory.
    const std::shared_ptr<vexa::data::impl::ArrayFactoryImpl>& getArrayFactoryImpl() const noexcept {
        return impl_;
    }
    std::shared_ptr<vexa::data::impl::ArrayFactoryImpl>& getArrayFactoryImpl() noexcept { return impl_; }

    /// An array of zeros, or of empty elements. The type goes to the back-end unchecked.
    Array createArray(ArrayType type, std::vector<std::size_t> dims) const;
    template <class T>
    TypedArray<T> createArray(std::vector<std::size_t> dims) const;
    /// The same for dimensions that are listed. Where the back-end uses the library's dense arrays, these are
    /// made without asking it and, small as they often are, without a list in memory.
    template <class T>
    TypedArray<T> createArray(std::initializer_list<std::size_t> dims) const;

    /// An array of the listed values in column-major order; a back-end decides what happens when there are
    /// more or fewer primitive values than elements. Strings and arrays beyond the elements throw
    /// EArrayIndexOutOfRange.
    template <class T>
    TypedArray<T> createArray(std::vector<std::size_t> dims, std::initializer_list<T> values) const;
    /// The same from narrow text, for strings and characters.
    template <class T, class Narrow, std::enable_if_t<detail::isNarrowText<T, Narrow>, int> = 0>
    TypedArray<T> createArray(std::vector<std::size_t> dims, std::initializer_list<Narrow> values) const {
        return createArray<T>(std::move(dims), values.begin(), values.end());
    }
    /// An array of primitive elements from values in the order of `layout`: ROW_MAJOR for those that come row
    /// by row, as in C arrays and text files. Elements for which there is no value are 0, values beyond the
    /// elements are left out.
    template <class T, class It,
              class = std::enable_if_t<!std::is_integral_v<It>,
                                       typename std::iterator_traits<It>::iterator_category>>
    TypedArray<T> createArray(std::vector<std::size_t> dims, It first, It last,
                              vexa::data::MemoryLayout layout) const {
        static_assert(detail::isPrimitiveElement<T>, "only arrays of primitive elements have a layout");
        const std::size_t count = detail::elementsOf(dims);
        buffer_ptr<T> values = createBuffer<T>(count);
        std::size_t k = 0;
        for (; k < count && first != last; ++first) {
            values[k++] = detail::elementFrom<T>(*first);
        }
        std::fill(values.get() + k, values.get() + count, T());
        return createArrayFromBuffer<T>(std::move(dims), std::move(values), layout);
    }
    template <class T>
    TypedArray<T> createArray(std::vector<std::size_t> dims, std::initializer_list<T> values,
                              vexa::data::MemoryLayout layout) const {
        return createArray<T>(std::move(dims), values.begin(), values.end(), layout);
    }
    /// The same from a pair of iterators over values that convert to `T`.
    template <class T, class It,
              class = std::enable_if_t<!std::is_integral_v<It>,
                                       typename std::iterator_traits<It>::iterator_category>>
    TypedArray<T> createArray(std::vector<std::size_t> dims, It first, It last) const {
        using Category = typename std::iterator_traits<It>::iterator_category;
        if constexpr (!detail::isPrimitiveElement<T>) {
            return filled<T>(std::move(dims), first, last);
        } else if constexpr (std::is_base_of_v<std::forward_iterator_tag, Category>) {
            const auto count = static_cast<std::size_t>(std::distance(first, last));
            buffer_ptr<T> values = createBuffer<T>(count);
            std::transform(first, last, values.get(),
                           [](const auto& value) { return detail::elementFrom<T>(value); });
            return createArrayWithData<T>(std::move(dims), values.get(), count);
        } else { // may be walked only once
            using Value = typename std::iterator_traits<It>::value_type;
            const std::vector<Value> values(first, last);
            return createArray<T>(std::move(dims), values.begin(), values.end());
        }
    }
    /// The same from `count` values at `data`, which are copied.
    template <class T>
    TypedArray<T> createArrayWithData(std::vector<std::size_t> dims, const T* data, std::size_t count) const;

    /// A 1-by-1 array holding `value`, which is of an element type or one that is taken as one: text makes a
    /// string array, `char` characters, `long long` and its complex numbers the integers of 64 bits.
    template <class T>
    TypedArray<typename vexa::data::GetReturnType<T>::type> createScalar(T value) const;

    /// A 1-by-n character array with a text of n units.
    CharArray createCharArray(std::u16string text) const;
    CharArray createCharArray(std::string text) const;
    /// A character array of U+0000.
    CharArray createCharArray(std::vector<std::size_t> dims) const;
    CharArray createCharArray(std::initializer_list<std::size_t> dims) const {
        return createCharArray(std::vector<std::size_t>(dims));
    }

    /// An array of records with these fields, each holding an empty array. The back-end judges the names.
    StructArray createStructArray(std::vector<std::size_t> dims, std::vector<std::string> fieldNames) const;

    /// An array of members of the class `className`, in column-major order; without names, of elements that
    /// nobody has set. The back-end judges the names.
    EnumArray createEnumArray(std::vector<std::size_t> dims, std::string className,
                              std::vector<std::string> members = {}) const;

    /// A sparse matrix from `count` values at `rows[k]`, `columns[k]`, counted from 0, in any order. The
    /// buffers are the back-end's, which may change what is in them. What happens to values at one place, to
    /// zeros and to places outside is its choice.
    /// @throws EInvalidDimensionsInSparseArray for more than two dimensions
    template <class T>
    SparseArray<T> createSparseArray(std::vector<std::size_t> dims, std::size_t count, buffer_ptr<T> values,
                                     buffer_ptr<std::size_t> rows, buffer_ptr<std::size_t> columns) const;
    /// The same from ranges, each a vector, an array or a view that can be walked twice and knows its size,
    /// whose values are converted and copied.
    /// @throws std::invalid_argument unless the three are as long as each other
    template <class T, class ValueRange, class RowRange, class ColumnRange>
    SparseArray<T> createSparseArray(std::vector<std::size_t> dims, const ValueRange& values,
                                     const RowRange& rows, const ColumnRange& columns) const;
    /// The same from one range of triplets: each a tuple, or a plain structure, of row, column and value.
    template <class T, class Triplets>
    SparseArray<T> createSparseArray(std::vector<std::size_t> dims, const Triplets& triplets) const;
    /// A sparse matrix from compressed columns: `count` values and their rows, column by column, and where
    /// each column begins among them, with one entry more than columns.
    /// @throws EInvalidDimensionsInSparseArray for more than two dimensions
    template <class T>
    SparseArray<T> createVEXASparseArray(std::vector<std::size_t> dims, std::size_t count,
                                         buffer_ptr<T> values, buffer_ptr<std::size_t> rows,
                                         buffer_ptr<std::size_t> starts) const;

    /// Describes a class by its properties, those of its arrays and its superclasses. The back-end judges
    /// them.
    ClassInfo createClassInfo(const VexaClassIdentifier& name,
                              const std::vector<VexaPropertyIdentifier>& properties = {},
                              const std::vector<VexaPropertyIdentifier>& arrayProperties = {},
                              const std::vector<ClassInfo>& superclasses = {}) const;
    ClassInfo createClassInfo(const std::string& name,
                              const std::vector<VexaPropertyIdentifier>& properties = {},
                              const std::vector<VexaPropertyIdentifier>& arrayProperties = {},
                              const std::vector<ClassInfo>& superclasses = {}) const {
        return createClassInfo(VexaClassIdentifier(name), properties, arrayProperties, superclasses);
    }
    /// An object of the class, all of whose properties hold empty arrays.
    ValueObject createValueObject(const ClassInfo& classInfo) const;
    /// A 1-by-1 array of the object, which is shared with it until one of them is written.
    ValueObjectArray createValueObjectScalar(const ValueObject& object) const;
    /// An array of objects of the class, all of whose properties hold empty arrays.
    ValueObjectArray createValueObjectArray(std::vector<std::size_t> dims, const ClassInfo& classInfo) const;
    /// A reference to an object that lives in an engine instance.
    HandleObjectRef createHandleObjectRef(const ZVMID& engine, long id) const;
    /// A member of an enumeration class as an object.
    ValueObject createEnumerationObject(const std::string& className, const std::string& member) const;

    /// A buffer for `count` elements, to be filled and handed to `createArrayFromBuffer`. What is in it
    /// before is not defined.
    /// @throws MustBePrimitiveTypeException
    std::unique_ptr<void, void (*)(void*)> createBuffer(ArrayType type, std::size_t count) const;
    /// A buffer of `count` bytes, not filled either.
    std::unique_ptr<void, void (*)(void*)> createBuffer(std::size_t count) const;
    /// A buffer for `count` elements of type `T`, not filled.
    template <class T>
    buffer_ptr<T> createBuffer(std::size_t count) const;

    /// An array over a buffer, which it takes over without copying. The type goes to the back-end unchecked.
    Array createArrayFromBuffer(
        std::vector<std::size_t> dims, ArrayType type, std::unique_ptr<void, void (*)(void*)> buffer,
        vexa::data::MemoryLayout layout = vexa::data::MemoryLayout::COLUMN_MAJOR) const;
    template <class T>
    TypedArray<T> createArrayFromBuffer(
        std::vector<std::size_t> dims, buffer_ptr<T> buffer,
        vexa::data::MemoryLayout layout = vexa::data::MemoryLayout::COLUMN_MAJOR) const;

private:
    /// A buffer with the values of a range, converted.
    template <class T, class ValueRange>
    buffer_ptr<T> bufferOf(const ValueRange& values) const {
        buffer_ptr<T> buffer = createBuffer<T>(std::size(values));
        std::transform(std::begin(values), std::end(values), buffer.get(),
                       [](const auto& value) { return static_cast<T>(value); });
        return buffer;
    }
    /// The back-end's factory; without one ends the process.
    vexa::data::impl::ArrayFactoryImpl& backEnd() const;
    /// Whether all primitive arrays of the back-end are the library's dense ones.
    bool makesDenseArrays() const;
    // Dimensions go by reference: each move of a vector that was written just now waits for its stores.
    vexa::data::impl::ArrayImpl* zeros(ArrayType type, std::vector<std::size_t>&& dims) const;
    vexa::data::impl::ArrayImpl* withData(ArrayType type, std::vector<std::size_t>&& dims, const void* data,
                                          std::size_t count) const;
    vexa::data::impl::ArrayImpl* fromBuffer(std::vector<std::size_t>&& dims, ArrayType type,
                                            std::unique_ptr<void, void (*)(void*)> buffer,
                                            vexa::data::MemoryLayout layout) const;
    std::unique_ptr<void, void (*)(void*)> typedBuffer(ArrayType type, std::size_t count) const;

    template <class T, class It>
    TypedArray<T> filled(std::vector<std::size_t> dims, It first, It last) const {
        auto array = createArray<T>(std::move(dims));
        auto element = array.begin();
        const auto end = array.end();
        for (; first != last; ++first, ++element) {
            if (element == end) {
                detail::raise<EArrayIndexOutOfRange>();
            }
            *element = detail::elementFrom<T>(*first);
        }
        return array;
    }

    // One overload for each kind of sparse array.
    template <class T>
    using Values = buffer_ptr<T>;
    using Places = buffer_ptr<std::size_t>;
    using Dims = std::vector<std::size_t>;
    vexa::data::impl::ArrayImpl* sparse(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                        Places columns) const;
    vexa::data::impl::ArrayImpl* sparse(Dims dims, std::size_t count, Values<double> values, Places rows,
                                        Places columns) const;
    vexa::data::impl::ArrayImpl* sparse(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                        Places rows, Places columns) const;
    vexa::data::impl::ArrayImpl* compressed(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                            Places starts) const;
    vexa::data::impl::ArrayImpl* compressed(Dims dims, std::size_t count, Values<double> values, Places rows,
                                            Places starts) const;
    vexa::data::impl::ArrayImpl* compressed(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                            Places rows, Places starts) const;

    std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> impl_;
};

// Each creator is made once for each of its element types, in the library. The definitions are for what is
// left: other values of `createScalar`, lists of other elements, and wrong types, which they refuse.

template <class T>
TypedArray<T> ArrayFactory::createArray(std::vector<std::size_t> dims) const {
    static_assert(detail::isElementType<T>, "T is not an element type of arrays");
    return TypedArray<T>(zeros(detail::arrayTypeOf<T>, std::move(dims)));
}

template <class T>
TypedArray<T> ArrayFactory::createArray(std::initializer_list<std::size_t> dims) const {
    if constexpr (detail::isPrimitiveElement<T>) {
        if (dims.size() == 2 && makesDenseArrays()) {
            const std::size_t rows = dims.begin()[0];
            const std::size_t columns = dims.begin()[1];
            if (((rows | columns) >> 32) == 0) { // their product fits
                return TypedArray<T>(vexa::data::impl::DenseArrayImpl<T>::zeros(rows, columns));
            }
        }
    }
    return createArray<T>(std::vector<std::size_t>(dims));
}

template <class T>
TypedArray<T> ArrayFactory::createArray(std::vector<std::size_t> dims,
                                        std::initializer_list<T> values) const {
    if constexpr (detail::isPrimitiveElement<T>) {
        return createArrayWithData<T>(std::move(dims), values.begin(), values.size());
    } else {
        return filled<T>(std::move(dims), values.begin(), values.end());
    }
}

template <class T>
TypedArray<T> ArrayFactory::createArrayWithData(std::vector<std::size_t> dims, const T* data,
                                                std::size_t count) const {
    static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
    return TypedArray<T>(withData(detail::arrayTypeOf<T>, std::move(dims), data, count));
}

template <class T>
TypedArray<typename vexa::data::GetReturnType<T>::type> ArrayFactory::createScalar(T value) const {
    using Element = typename vexa::data::GetReturnType<T>::type;
    auto element = detail::elementFrom<Element>(std::move(value));
    auto scalar = createArray<Element>({1, 1});
    scalar[0] = std::move(element);
    return scalar;
}

template <class T>
SparseArray<T> ArrayFactory::createSparseArray(std::vector<std::size_t> dims, std::size_t count,
                                               buffer_ptr<T> values, buffer_ptr<std::size_t> rows,
                                               buffer_ptr<std::size_t> columns) const {
    return SparseArray<T>(
        sparse(std::move(dims), count, std::move(values), std::move(rows), std::move(columns)));
}

template <class T, class ValueRange, class RowRange, class ColumnRange>
SparseArray<T> ArrayFactory::createSparseArray(std::vector<std::size_t> dims, const ValueRange& values,
                                               const RowRange& rows, const ColumnRange& columns) const {
    const std::size_t count = std::size(values);
    if (std::size(rows) != count || std::size(columns) != count) {
        throw std::invalid_argument("createSparseArray: as many rows and columns as values are needed");
    }
    return createSparseArray<T>(std::move(dims), count, bufferOf<T>(values), bufferOf<std::size_t>(rows),
                                bufferOf<std::size_t>(columns));
}

template <class T, class Triplets>
SparseArray<T> ArrayFactory::createSparseArray(std::vector<std::size_t> dims,
                                               const Triplets& triplets) const {
    const std::size_t count = std::size(triplets);
    buffer_ptr<T> values = createBuffer<T>(count);
    buffer_ptr<std::size_t> rows = createBuffer<std::size_t>(count);
    buffer_ptr<std::size_t> columns = createBuffer<std::size_t>(count);
    std::size_t k = 0;
    for (const auto& [row, column, value] : triplets) {
        rows[k] = static_cast<std::size_t>(row);
        columns[k] = static_cast<std::size_t>(column);
        values[k++] = static_cast<T>(value);
    }
    return createSparseArray<T>(std::move(dims), count, std::move(values), std::move(rows),
                                std::move(columns));
}

template <class T>
SparseArray<T> ArrayFactory::createVEXASparseArray(std::vector<std::size_t> dims, std::size_t count,
                                                   buffer_ptr<T> values, buffer_ptr<std::size_t> rows,
                                                   buffer_ptr<std::size_t> starts) const {
    return SparseArray<T>(
        compressed(std::move(dims), count, std::move(values), std::move(rows), std::move(starts)));
}

template <class T>
buffer_ptr<T> ArrayFactory::createBuffer(std::size_t count) const {
    static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
    auto buffer = typedBuffer(detail::arrayTypeOf<T>, count);
    auto deleter = buffer.get_deleter();
    return buffer_ptr<T>(static_cast<T*>(buffer.release()), deleter);
}

template <class T>
TypedArray<T> ArrayFactory::createArrayFromBuffer(std::vector<std::size_t> dims, buffer_ptr<T> buffer,
                                                  vexa::data::MemoryLayout layout) const {
    static_assert(detail::isPrimitiveElement<T>, "T is not a primitive element type");
    auto deleter = buffer.get_deleter();
    vexa::data::impl::Buffer<void> untyped(buffer.release(), deleter);
    return TypedArray<T>(fromBuffer(std::move(dims), detail::arrayTypeOf<T>, std::move(untyped), layout));
}

#define VEXADATA_CREATORS extern template
#include <foundation/vexadata/detail/ArrayFactoryInstances.inc>

} // namespace foundation::vexadata
