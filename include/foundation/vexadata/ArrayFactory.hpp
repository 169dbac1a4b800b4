// Making arrays.
#pragma once

#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/ValueObjectArray.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

using detail::buffer_ptr;

namespace detail {

/// A value as an element of type `Element`: narrow text is tested and widened.
template <class Element, class T>
Element elementFrom(T value) {
    if constexpr (std::is_same_v<T, char>) {
        return widened(value);
    } else if constexpr (std::is_same_v<Element, String> && std::is_convertible_v<T, std::string_view>) {
        const std::string_view text = value;
        return widened(text.data(), text.size());
    } else if constexpr (std::is_same_v<Element, String> && std::is_convertible_v<T, String>) {
        return value;
    } else {
        return static_cast<Element>(std::move(value));
    }
}

} // namespace detail

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

    /// An array of the listed values in column-major order; a back-end decides what happens when there are more or fewer
    /// primitive values than elements. Strings and arrays beyond the elements throw EArrayIndexOutOfRange.
    template <class T>
    TypedArray<T> createArray(std::vector<std::size_t> dims, std::initializer_list<T> values) {
        if constexpr (detail::isPrimitiveElement<T>) {
            return createArrayWithData<T>(std::move(dims), values.begin(), values.size());
        } else {
            return filled<T>(std::move(dims), values.begin(), values.end());
        }
    }
    /// The same from a pair of iterators over values that convert to `T`.
    template <class T, class It,
              class = std::enable_if_t<!std::is_integral_v<It>,
                                       typename std::iterator_traits<It>::iterator_category>>
    TypedArray<T> createArray(std::vector<std::size_t> dims, It first, It last) {
        using Category = typename std::iterator_traits<It>::iterator_category;
        if constexpr (!detail::isPrimitiveElement<T>) {
            return filled<T>(std::move(dims), first, last);
        } else if constexpr (std::is_base_of_v<std::forward_iterator_tag, Category>) {
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

    /// A 1-by-1 array holding `value`. Text makes a string array.
    /// @throws NonAsciiCharInInputDataException for narrow text with a byte above 127
    template <class T>
    TypedArray<typename vexa::data::GetReturnType<T>::type> createScalar(T value) {
        using Element = typename vexa::data::GetReturnType<T>::type;
        auto element = detail::elementFrom<Element>(std::move(value));
        auto scalar = createArray<Element>({1, 1});
        scalar[0] = std::move(element);
        return scalar;
    }

    /// A 1-by-n character array with a text of n units.
    CharArray createCharArray(std::u16string text);
    /// @throws NonAsciiCharInInputDataException for a byte above 127
    CharArray createCharArray(std::string text);
    /// A character array of U+0000.
    CharArray createCharArray(std::vector<std::size_t> dims);
    CharArray createCharArray(std::initializer_list<std::size_t> dims) {
        return createCharArray(std::vector<std::size_t>(dims));
    }

    /// An array of records with these fields, each holding an empty array. The back-end judges the names.
    StructArray createStructArray(std::vector<std::size_t> dims, std::vector<std::string> fieldNames);

    /// An array of members of the class `className`, in column-major order; without names, of elements that nobody has set.
    /// The back-end judges the names.
    EnumArray createEnumArray(std::vector<std::size_t> dims, std::string className,
                              std::vector<std::string> members = {});

    /// A sparse matrix from `count` values at `rows[k]`, `columns[k]`, counted from 0, in any order. The
    /// buffers are the back-end's, which may change what is in them. What happens to values at one place, to zeros and to
    /// places outside is its choice.
    /// @throws EInvalidDimensionsInSparseArray for more than two dimensions
    template <class T>
    SparseArray<T> createSparseArray(std::vector<std::size_t> dims, std::size_t count, buffer_ptr<T> values,
                                     buffer_ptr<std::size_t> rows, buffer_ptr<std::size_t> columns) {
        static_assert(detail::sparseTypeOf<T> != ArrayType::UNKNOWN,
                      "T is not an element type of sparse arrays");
        return SparseArray<T>(
            sparse(std::move(dims), count, std::move(values), std::move(rows), std::move(columns)));
    }
    /// A sparse matrix from compressed columns: `count` values and their rows, column by column, and where each column begins
    /// among them, with one entry more than columns.
    /// @throws EInvalidDimensionsInSparseArray for more than two dimensions
    template <class T>
    SparseArray<T> createVEXASparseArray(std::vector<std::size_t> dims, std::size_t count,
                                         buffer_ptr<T> values, buffer_ptr<std::size_t> rows,
                                         buffer_ptr<std::size_t> starts) {
        static_assert(detail::sparseTypeOf<T> != ArrayType::UNKNOWN,
                      "T is not an element type of sparse arrays");
        return SparseArray<T>(
            compressed(std::move(dims), count, std::move(values), std::move(rows), std::move(starts)));
    }

    /// Describes a class by its properties, those of its arrays and its superclasses. The back-end judges them.
    ClassInfo createClassInfo(const VexaClassIdentifier& name,
                              const std::vector<VexaPropertyIdentifier>& properties = {},
                              const std::vector<VexaPropertyIdentifier>& arrayProperties = {},
                              const std::vector<ClassInfo>& superclasses = {});
    ClassInfo createClassInfo(const std::string& name,
                              const std::vector<VexaPropertyIdentifier>& properties = {},
                              const std::vector<VexaPropertyIdentifier>& arrayProperties = {},
                              const std::vector<ClassInfo>& superclasses = {}) {
        return createClassInfo(VexaClassIdentifier(name), properties, arrayProperties, superclasses);
    }
    /// An object of the class, all of whose properties hold empty arrays.
    ValueObject createValueObject(const ClassInfo& classInfo);
    /// A 1-by-1 array of the object, which is shared with it until one of them is written.
    ValueObjectArray createValueObjectScalar(const ValueObject& object);
    /// An array of objects of the class, fresh ones in every element.
    ValueObjectArray createValueObjectArray(std::vector<std::size_t> dims, const ClassInfo& classInfo);
    /// A reference to an object that lives in an engine instance.
    HandleObjectRef createHandleObjectRef(const ZVMID& engine, long id);
    /// A member of an enumeration class as an object.
    ValueObject createEnumerationObject(const std::string& className, const std::string& member);

    /// A buffer for `count` elements, to be filled and handed to `createArrayFromBuffer`. What is in it before is not defined.
    /// @throws MustBePrimitiveTypeException
    std::unique_ptr<void, void (*)(void*)> createBuffer(ArrayType type, std::size_t count);
    /// A buffer of `count` bytes, not filled either.
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

    template <class T, class It>
    TypedArray<T> filled(std::vector<std::size_t> dims, It first, It last) {
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
                                        Places columns);
    vexa::data::impl::ArrayImpl* sparse(Dims dims, std::size_t count, Values<double> values, Places rows,
                                        Places columns);
    vexa::data::impl::ArrayImpl* sparse(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                        Places rows, Places columns);
    vexa::data::impl::ArrayImpl* compressed(Dims dims, std::size_t count, Values<bool> values, Places rows,
                                            Places starts);
    vexa::data::impl::ArrayImpl* compressed(Dims dims, std::size_t count, Values<double> values, Places rows,
                                            Places starts);
    vexa::data::impl::ArrayImpl* compressed(Dims dims, std::size_t count, Values<std::complex<double>> values,
                                            Places rows, Places starts);

    std::shared_ptr<vexa::data::impl::ArrayFactoryImpl> impl_;
};

} // namespace foundation::vexadata
