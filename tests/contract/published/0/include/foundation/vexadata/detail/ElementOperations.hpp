// What can be done to one element of an array whose kind is known at run time only: reading and writing
// across kinds, comparing, arithmetic, texts. Each function is told the position; `UntypedElement` makes them
// the operations of a handle.
#pragma once

#include <foundation/vexadata/detail/ElementHandle.hpp>
#include <foundation/vexadata/detail/Text.hpp>

#include <complex>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata::detail {

/// The element type that a C++ type is read and written as: itself, or the one of equal width for `long
/// long`.
template <class T>
using StoredAs = typename vexa::data::GetReturnType<T>::type;

/// Elements that are values: numbers, logicals, characters, members of enumerations and objects. Texts,
/// records and arrays have forms of their own.
template <class T>
inline constexpr bool isValueElement =
    isElementType<StoredAs<T>> && !std::is_same_v<T, char> && !std::is_same_v<StoredAs<T>, Array> &&
    !std::is_same_v<StoredAs<T>, StructElement> && !std::is_same_v<StoredAs<T>, String>;
template <class T>
inline constexpr bool isRealElement =
    isValueElement<T>&& isPrimitiveElement<StoredAs<T>> && !isComplexElement<StoredAs<T>>;
template <class T>
inline constexpr bool isNumberElement = isRealElement<T> ||
                                        (isValueElement<T> && isComplexElement<StoredAs<T>>);
/// Narrow characters are compared, too; to be read or computed with, an element has to be something else.
template <class T>
inline constexpr bool isComparable = isRealElement<T> || std::is_same_v<T, char>;

/// A real number beside an element of any real kind.
struct Number {
    enum class Kind : std::uint8_t { SIGNED, UNSIGNED, REAL };

    template <class T>
    explicit Number(T value) noexcept {
        if constexpr (std::is_floating_point_v<T>) {
            kind = Kind::REAL;
            real = static_cast<double>(value);
        } else if constexpr (std::is_signed_v<T>) {
            kind = Kind::SIGNED;
            whole = static_cast<std::int64_t>(value);
        } else {
            kind = Kind::UNSIGNED;
            natural = static_cast<std::uint64_t>(value);
        }
    }

    Kind kind;
    union {
        std::int64_t whole;
        std::uint64_t natural;
        double real;
    };
};

/// The handles to single elements.
template <class Ref>
inline constexpr bool isElementHandle = isUntypedElement<Ref>;
template <class T, bool isConst>
inline constexpr bool isElementHandle<ArrayElementTypedRef<T, isConst>> = true;
template <class T>
inline constexpr bool isElementHandle<Reference<T>> = isElementType<T>;

/// The position that a handle to an element refers to.
template <class Ref>
ElementPosition positionOf(const Ref& element) {
    return Access::position(element);
}
template <bool isConst>
ElementPosition positionOf(const HeldElementRef<isConst>& element) {
    return element.kept();
}
template <class T>
ElementPosition positionOf(const Reference<T>& element) {
    return ElementPosition(element.chain());
}

enum class Order : std::uint8_t { LESS, EQUAL, GREATER, UNORDERED };
enum class Arithmetic : std::uint8_t { ADD, SUBTRACT, MULTIPLY, DIVIDE };

// Each throws TypeMismatchException for a kind of array that has no such operation, index errors, and errors
// of the back-end.

/// By value, whatever the two types are; a NaN is unordered.
VEXADATA_API Order compared(const ElementPosition& element, const Number& number);
/// Complex elements too: equal when the imaginary part is 0.
VEXADATA_API bool equals(const ElementPosition& element, const Number& number);
/// String elements, as their own handles compare; narrow text also with the names of members of enumerations.
VEXADATA_API bool equals(const ElementPosition& element, std::u16string_view text);
VEXADATA_API bool equals(const ElementPosition& element, std::string_view text);
/// Two elements of arrays of one kind, or the arrays that two cells hold.
VEXADATA_API bool sameElements(const ElementPosition& a, const ElementPosition& b);

/// Replaces the element by what the operation gives. Beside a floating-point number, or divided by 0, it is
/// computed as a double, and whole elements take the nearest value that they have; whole numbers alone wrap
/// around.
VEXADATA_API void combine(const ElementPosition& element, Arithmetic operation, const Number& number);
/// The same with another element; complex ones with those of their own type.
VEXADATA_API void combine(const ElementPosition& element, Arithmetic operation, const ElementPosition& other);
/// As for a number.
VEXADATA_API Order compared(const ElementPosition& a, const ElementPosition& b);

/// A string element, or by narrow text a member of an enumeration.
/// @throws NonAsciiCharInInputDataException for narrow text for a string with a byte above 127
VEXADATA_API void storeText(const ElementPosition& element, String text);
VEXADATA_API void storeText(const ElementPosition& element, std::string_view text);
/// The text of a string element.
/// @throws std::runtime_error "Missing string value" for a missing one
VEXADATA_API std::u16string presentText(const ElementPosition& element);

/// Copies the element at `from` to the element at `to`: a value between arrays of one primitive kind, the
/// array held between cells and fields.
VEXADATA_API void copyElement(const ElementPosition& from, const ElementPosition& to);

/// The array that a cell or field holds, borrowed.
/// @throws NotEnoughIndicesProvidedException when the element holds none
VEXADATA_API const ArrayImpl& arrayHeldBy(const ElementPosition& element);

/// What `["name"]` gives: a reference to write through, or the array held.
template <bool isConst>
using FieldOf = std::conditional_t<isConst, const Array, Reference<Array>>;
VEXADATA_API const Array fieldOf(const ElementPosition& record, const std::string& fieldName, std::true_type);
VEXADATA_API Reference<Array> fieldOf(const ElementPosition& record, const std::string& fieldName,
                                      std::false_type);
VEXADATA_API void storeRecord(const ElementPosition& position, std::vector<Array> values);

/// @throws TypeMismatchException when the element is not one of an array of elements `T`
template <class T>
void requireKind(const ElementPosition& element) {
    if (!acceptsType<T>(element.array()->getType())) {
        raise<TypeMismatchException>();
    }
}

} // namespace foundation::vexadata::detail
