// Arrays and their elements as text for people.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ArrayElementTypedRef.hpp>

#include <cstddef>
#include <iosfwd>
#include <string>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

/// How much of an array is written out.
struct PrintOptions {
    int precision = 6; ///< significant digits of numbers; digits before the decimal point are all shown
    std::size_t threshold =
        1000; ///< most elements of which none is left out; inside cells, fields and properties a tenth of it
    std::size_t mostItems = 20; ///< the same for cells, records and objects, which take lines of their own
    std::size_t edge = 3;       ///< how many are shown at each end where some are left out
    std::size_t width =
        100; ///< columns of a line; further columns of a matrix follow below, long texts are cut
    std::size_t depth = 6; ///< most levels of arrays in cells, fields and properties
};

/// What `stream << printed(array, options)` writes. Shares the array, as every handle does.
struct Printed {
    /// What is printed, and how.
    Array array;
    PrintOptions options;
};
inline Printed printed(Array array, const PrintOptions& options = {}) { return {std::move(array), options}; }

/// The array as lines of UTF-8, without a line end after the last. A scalar and a row of characters are
/// written as they are, everything else below a line with dimensions and kind: matrices with aligned columns,
/// pages one after the other, cells, fields and properties indented. Text stands in quotes, a missing string
/// is `<missing>`, an element of an enumeration without member `<none>`; what is left out is `...`.
/// Only reads: never gives a handle a copy of its own. Passes errors of the back-end on; then nothing has
/// been written.
VEXADATA_API std::string toText(const Array& array, const PrintOptions& options = {});

/// An object: one line, and below it the properties of a value object. A handle object is known by its
/// number, an empty handle is written as `<none>`.
VEXADATA_API std::string toText(const Object& object, const PrintOptions& options = {});

/// Writes `toText`, with the stream's precision. The width of the stream is ignored and set to 0, its other
/// settings stay.
VEXADATA_API std::ostream& operator<<(std::ostream& stream, const Array& array);
VEXADATA_API std::ostream& operator<<(std::ostream& stream, const Printed& printed);
VEXADATA_API std::ostream& operator<<(std::ostream& stream, const Object& object);

/// Name of a kind of arrays: "double", "logical", "cell", "sparse double"; "unknown" outside the catalogue.
VEXADATA_API const char* kindName(ArrayType type) noexcept;
/// The dimensions: "3x4".
VEXADATA_API std::string dimensionText(const Array& array);

namespace detail {

/// Writes one element, of an array of any kind.
VEXADATA_API void printElement(std::ostream& stream, const ElementPosition& element);

template <class Ref>
inline constexpr bool isReference = false;
template <class T>
inline constexpr bool isReference<Reference<T>> = true;

} // namespace detail

/// Writes an element: a number as the stream would, except that eight-bit integers are numbers too; a text,
/// unit or member as it is, without quotes; a record by its fields; the array that a cell or field holds as
/// `toText` does.
/// @throws index errors; errors of the back-end
template <class Ref, std::enable_if_t<detail::isElementHandle<Ref> || detail::isReference<Ref>, int> = 0>
std::ostream& operator<<(std::ostream& stream, const Ref& element) {
    detail::printElement(stream, detail::positionOf(element));
    return stream;
}

} // namespace foundation::vexadata
