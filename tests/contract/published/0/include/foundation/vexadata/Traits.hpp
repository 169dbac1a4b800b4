// What is known about element types at compile time.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Forward.hpp>

#include <complex>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace vexa::data {

/// Element type of the array that is made for a value of type `T`: `T` itself for element types.
template <class T>
struct GetReturnType {
    using type = T;
};
// This platform's 64-bit integers are `long`; `long long` is another type of the same width.
template <>
struct GetReturnType<long long> {
    using type = std::int64_t;
};
template <>
struct GetReturnType<unsigned long long> {
    using type = std::uint64_t;
};
template <>
struct GetReturnType<std::complex<long long>> {
    using type = std::complex<std::int64_t>;
};
template <>
struct GetReturnType<std::complex<unsigned long long>> {
    using type = std::complex<std::uint64_t>;
};
template <>
struct GetReturnType<char> {
    using type = char16_t;
};
// Text makes string elements.
template <>
struct GetReturnType<const char*> {
    using type = optional<std::u16string>;
};
template <>
struct GetReturnType<std::string> {
    using type = optional<std::u16string>;
};
template <>
struct GetReturnType<std::string_view> {
    using type = optional<std::u16string>;
};
template <>
struct GetReturnType<std::u16string_view> {
    using type = optional<std::u16string>;
};
template <>
struct GetReturnType<const char16_t*> {
    using type = optional<std::u16string>;
};
template <>
struct GetReturnType<std::u16string> {
    using type = optional<std::u16string>;
};

} // namespace vexa::data

namespace foundation::vexadata {

/// A text that may be missing: the element of string arrays.
using String = vexa::data::optional<std::u16string>;

namespace detail {

/// The kind of the arrays with elements of type `T`; UNKNOWN for a type that is no element type.
template <class T>
inline constexpr ArrayType arrayTypeOf = ArrayType::UNKNOWN;
template <>
inline constexpr ArrayType arrayTypeOf<bool> = ArrayType::LOGICAL;
template <>
inline constexpr ArrayType arrayTypeOf<char16_t> = ArrayType::CHAR;
template <>
inline constexpr ArrayType arrayTypeOf<String> = ArrayType::STRING;
template <>
inline constexpr ArrayType arrayTypeOf<double> = ArrayType::DOUBLE;
template <>
inline constexpr ArrayType arrayTypeOf<float> = ArrayType::SINGLE;
template <>
inline constexpr ArrayType arrayTypeOf<std::int8_t> = ArrayType::INT8;
template <>
inline constexpr ArrayType arrayTypeOf<std::uint8_t> = ArrayType::UINT8;
template <>
inline constexpr ArrayType arrayTypeOf<std::int16_t> = ArrayType::INT16;
template <>
inline constexpr ArrayType arrayTypeOf<std::uint16_t> = ArrayType::UINT16;
template <>
inline constexpr ArrayType arrayTypeOf<std::int32_t> = ArrayType::INT32;
template <>
inline constexpr ArrayType arrayTypeOf<std::uint32_t> = ArrayType::UINT32;
template <>
inline constexpr ArrayType arrayTypeOf<std::int64_t> = ArrayType::INT64;
template <>
inline constexpr ArrayType arrayTypeOf<std::uint64_t> = ArrayType::UINT64;
template <>
inline constexpr ArrayType arrayTypeOf<Array> = ArrayType::CELL;
template <>
inline constexpr ArrayType arrayTypeOf<StructElement> = ArrayType::STRUCT;
template <>
inline constexpr ArrayType arrayTypeOf<ValueObject> = ArrayType::VALUE_OBJECT;
template <>
inline constexpr ArrayType arrayTypeOf<HandleObjectRef> = ArrayType::HANDLE_OBJECT_REF;
template <>
inline constexpr ArrayType arrayTypeOf<Enumeration> = ArrayType::ENUM;

/// The kind of complex arrays with parts of the kind `part`, ten further on; UNKNOWN when those are no
/// numbers.
constexpr ArrayType complexTypeOf(ArrayType part) noexcept {
    const bool isNumber = part >= ArrayType::DOUBLE && part <= ArrayType::UINT64;
    return isNumber ? static_cast<ArrayType>(static_cast<std::int32_t>(part) + 10) : ArrayType::UNKNOWN;
}
template <class T>
inline constexpr ArrayType arrayTypeOf<std::complex<T>> = complexTypeOf(arrayTypeOf<T>);

/// The kind of the sparse arrays with elements of type `T`.
template <class T>
inline constexpr ArrayType sparseTypeOf = ArrayType::UNKNOWN;
template <>
inline constexpr ArrayType sparseTypeOf<bool> = ArrayType::SPARSE_LOGICAL;
template <>
inline constexpr ArrayType sparseTypeOf<double> = ArrayType::SPARSE_DOUBLE;
template <>
inline constexpr ArrayType sparseTypeOf<std::complex<double>> = ArrayType::SPARSE_COMPLEX_DOUBLE;

template <class T>
inline constexpr bool isElementType = arrayTypeOf<T> != ArrayType::UNKNOWN;

template <class T>
inline constexpr bool isPrimitiveElement = isPrimitive(arrayTypeOf<T>);

template <class T>
inline constexpr bool isComplexElement = false;
template <class T>
inline constexpr bool isComplexElement<std::complex<T>> = true;

/// Whether `T` is a unit of narrow text, whose values above 127 are no characters.
template <class T>
inline constexpr bool isNarrowUnit = std::is_same_v<T, char>;
#ifdef __cpp_char8_t
template <>
inline constexpr bool isNarrowUnit<char8_t> = true;
#endif

/// Whether `T` is a number, logical or text of the language, and no array.
template <class T>
inline constexpr bool isPlainValue =
    std::is_arithmetic_v<T> || std::is_convertible_v<const T&, std::string_view> ||
    std::is_convertible_v<const T&, std::u16string_view>;

/// True when an array of kind `type` can be handled as one of elements `T`. The three object kinds are one
/// here.
template <class T>
constexpr bool acceptsType(ArrayType type) noexcept {
    if constexpr (std::is_same_v<T, ValueObject> || std::is_same_v<T, HandleObjectRef>) {
        return static_cast<std::uint32_t>(type) - 26U < 3U;
    } else {
        return isElementType<T> && type == arrayTypeOf<T>;
    }
}

/// The handle that `operator[]` of an array of `T` returns.
template <class T, bool isConst>
struct ElementRef {
    using type = ArrayElementTypedRef<T, isConst>;
};
template <bool isConst>
struct ElementRef<Array, isConst> {
    using type = ArrayElementRef<isConst>;
};
template <class T, bool isConst>
using ElementRefOf = typename ElementRef<T, isConst>::type;

/// What algorithms keep of an element that they have moved away: a record is no value by itself.
template <class T>
struct ElementValue {
    using type = T;
};
template <>
struct ElementValue<StructElement> {
    using type = StructValue;
};

/// True for the references that may stand for an array: array handles are constructed and assigned from
/// these. Elements of typed arrays other than cells hold none.
template <class T>
inline constexpr bool isArrayReference = false;
template <class T>
inline constexpr bool isArrayReference<Reference<T>> = !isElementType<T> || std::is_same_v<T, Array>;
template <bool isConst>
inline constexpr bool isArrayReference<ArrayElementRef<isConst>> = true;
template <bool isConst>
inline constexpr bool isArrayReference<HeldElementRef<isConst>> = true;

} // namespace detail

} // namespace foundation::vexadata
