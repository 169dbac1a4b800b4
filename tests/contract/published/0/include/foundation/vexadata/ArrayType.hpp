// The catalogue of array kinds. The numeric values cross the back-end boundary and never change.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <cstdint>
#include <optional>

namespace vexa::data {

/// Order in which the elements of a dense array lie in its storage. Index chains compute positions for the
/// first two; with any other value every element is at position 0.
enum class MemoryLayout : std::int32_t {
    COLUMN_MAJOR = 0, ///< the first index varies fastest
    ROW_MAJOR = 1,    ///< the last index varies fastest
    NONE = 2          ///< no storage: what an empty array reports
};

/// An element that may be missing. Crosses the back-end boundary, so both sides use this one type.
template <class T>
using optional = std::optional<T>;

} // namespace vexa::data

namespace foundation::vexadata {

/// Kind of an array. Primitive kinds are LOGICAL, CHAR and DOUBLE to COMPLEX_UINT64. Within the numeric block
/// each signed type is followed by its unsigned partner; the complex block repeats the order ten further on.
enum class ArrayType : std::int32_t {
    UNKNOWN = 0, ///< what an empty array reports; matches no typed array
    LOGICAL = 1,
    CHAR = 2,   ///< UTF-16 code units; primitive
    STRING = 3, ///< not primitive, although it stands between primitive kinds
    DOUBLE = 4,
    SINGLE = 5,
    INT8 = 6,
    UINT8 = 7,
    INT16 = 8,
    UINT16 = 9,
    INT32 = 10,
    UINT32 = 11,
    INT64 = 12,
    UINT64 = 13,
    COMPLEX_DOUBLE = 14,
    COMPLEX_SINGLE = 15,
    COMPLEX_INT8 = 16,
    COMPLEX_UINT8 = 17,
    COMPLEX_INT16 = 18,
    COMPLEX_UINT16 = 19,
    COMPLEX_INT32 = 20,
    COMPLEX_UINT32 = 21,
    COMPLEX_INT64 = 22,
    COMPLEX_UINT64 = 23,
    CELL = 24,
    STRUCT = 25,
    OBJECT = 26, ///< OBJECT, VALUE_OBJECT and HANDLE_OBJECT_REF are one kind to typed handles
    VALUE_OBJECT = 27,
    HANDLE_OBJECT_REF = 28,
    ENUM = 29,
    SPARSE_LOGICAL = 30,
    SPARSE_DOUBLE = 31,
    SPARSE_COMPLEX_DOUBLE = 32
};

namespace detail {

/// True for LOGICAL, CHAR and DOUBLE to COMPLEX_UINT64. Any value, also one outside the catalogue, may be
/// asked.
constexpr bool isPrimitive(ArrayType type) noexcept {
    constexpr std::uint32_t primitives = 0xFFFFF6U;
    const auto value = static_cast<std::uint32_t>(type);
    return value < 24U && ((primitives >> value) & 1U) != 0U;
}

/// True for the three kinds of sparse arrays.
constexpr bool isSparse(ArrayType type) noexcept {
    return type >= ArrayType::SPARSE_LOGICAL && type <= ArrayType::SPARSE_COMPLEX_DOUBLE;
}

/// Returns when `type` is primitive.
/// @throws MustBePrimitiveTypeException otherwise
VEXADATA_API void typeIsPrimitive(ArrayType type);

} // namespace detail

} // namespace foundation::vexadata
