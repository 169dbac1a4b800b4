// What the handles to elements of arrays have in common whose kind is known at run time only:
// `ArrayElementRef`, and `HeldElementRef` one level deeper. They read, write, compare and combine as the
// handles of typed arrays do, and test the kind of the array at each use.
#pragma once

#include <foundation/vexadata/detail/ElementOperations.hpp>

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

/// The operations of the handle `Ref`, which tells the position of its element: `forRead()`, `forWrite()`
/// when it is about to be written, and `kept()` for a handle that stays.
///
/// Every operation throws TypeMismatchException when the array's kind is not the one that it is for, index
/// errors, and errors of the back-end.
template <class Ref, bool isConst>
class UntypedElement {
    template <class T>
    using IfValue = std::enable_if_t<isValueElement<T>, int>;
    template <class T>
    using IfComparable = std::enable_if_t<isComparable<T>, int>;
    template <class T>
    using IfComplex = std::enable_if_t<isComplexElement<T> && isValueElement<T>, int>;
    template <class T>
    using IfNumber = std::enable_if_t<isNumberElement<T>, int>;
    template <class Other>
    using IfElement = std::enable_if_t<isElementHandle<Other>, int>;

public:
    // Queries about the array that the element holds, answered without copying it.
    // @throws NotEnoughIndicesProvidedException when it holds none or lacks indices

    ArrayType getType() const { return held().getType(); }
    std::vector<std::size_t> getDimensions() const { return held().getDimensions(); }
    std::size_t getNumberOfElements() const { return held().getNumberOfElements(); }
    bool isEmpty() const { return held().isEmpty(); }
    std::uint64_t getArrayID() const { return held().getArrayID(); }

    /// The field of the record that the element is: a reference to it, or the array itself when this handle
    /// is read-only.
    FieldOf<isConst> operator[](const std::string& fieldName) const {
        return fieldOf(self().kept(), fieldName, std::bool_constant<isConst>());
    }
    /// The same for a literal or a pointer to text, which would otherwise be taken for an array indexed by
    /// the element.
    template <class Text,
              std::enable_if_t<
                  std::is_convertible_v<const Text&, const char*> && !std::is_null_pointer_v<Text>, int> = 0>
    FieldOf<isConst> operator[](const Text& fieldName) const {
        return (*this)[std::string(fieldName)];
    }

    /// Reads a value; the array must be one of elements `T`.
    template <class T, IfValue<T> = 0>
    VEXADATA_INLINE operator T() const {
        if constexpr (isPrimitiveElement<StoredAs<T>>) {
            if (const auto* element = self().template tryRecognised<StoredAs<T>>()) {
                return static_cast<T>(*element);
            }
        }
        return static_cast<T>(readAsked<StoredAs<T>>(self()));
    }
    /// A string element, missing or not. The two forms keep `String s = a[0]` from going through the text.
    operator String() const { return string(); }
    operator String() { return string(); }
    /// @throws std::runtime_error "Missing string value"
    operator std::u16string() const { return presentText(self().forRead()); }
    /// A record, which stays where it is.
    template <class T, std::enable_if_t<std::is_same_v<T, StructElement>, int> = 0>
    operator T() const {
        ElementPosition position = self().kept();
        requireKind<T>(position);
        position.linearIndex();
        return T(std::move(position));
    }

    /// Writes a value; the array must be one of elements `T`. Everything on the way is made private first.
    template <class T, IfValue<T> = 0>
    VEXADATA_INLINE Ref& operator=(const T& value) {
        static_assert(!isConst, "this reference is read-only: its array is const");
        if constexpr (isPrimitiveElement<StoredAs<T>>) {
            if (auto* element = self().template tryRecognisedForWrite<StoredAs<T>>()) {
                *element = static_cast<StoredAs<T>>(value);
                return self();
            }
        }
        writeAsked<StoredAs<T>>(self(), static_cast<StoredAs<T>>(value));
        return self();
    }
    /// Writes a string element; a `String` without text or `std::nullopt` makes it missing. Narrow text also
    /// writes the member of that name to an enumeration.
    /// @throws NonAsciiCharInInputDataException for narrow text with a byte above 127
    Ref& operator=(String text) { return write(std::move(text)); }
    Ref& operator=(std::nullopt_t) { return write(String()); }
    Ref& operator=(std::u16string text) { return write(String(std::move(text))); }
    Ref& operator=(const char16_t* text) { return write(String(text)); }
    Ref& operator=(const std::string& text) { return write(std::string_view(text)); }
    Ref& operator=(const char* text) { return *this = copied(text); }
    /// Writes a character.
    /// @throws NonAsciiCharInInputDataException for a byte above 127
    Ref& operator=(char unit) { return *this = widened(unit); }
    /// Replaces a record by the values of its fields, in their order.
    /// @throws WrongVectorSizeForStructException when their number differs
    template <class Values, std::enable_if_t<std::is_same_v<Values, std::vector<Array>>, int> = 0>
    Ref& operator=(Values values) {
        requireKind<StructElement>(self().forRead());
        storeRecord(writable(), std::move(values));
        return self();
    }
    /// Stores an array, shared with the handle until one of them is written. Taking any handle type as it is
    /// keeps this apart from the form for values.
    /// @throws CantAssignArrayToThisArrayException when elements hold no arrays
    template <class A, std::enable_if_t<std::is_base_of_v<Array, A>, int> = 0>
    Ref& operator=(const A& array) {
        storeArray(writable().chain(), array);
        return self();
    }
    /// Writes the other element's content; never makes this handle refer elsewhere.
    template <class Other, IfElement<Other> = 0>
    Ref& operator=(const Other& other) {
        return copyFrom(other);
    }

    /// For elements of any real type, by value: whole elements take the nearest value that they have, and
    /// wrap around when both sides are whole. With a complex number, the array must be of its type.
    template <class T, IfNumber<T> = 0>
    Ref& operator+=(const T& value) {
        return combineWith(Arithmetic::ADD, value);
    }
    template <class Other, IfElement<Other> = 0>
    Ref& operator+=(const Other& other) {
        return combineWith(Arithmetic::ADD, other);
    }
    template <class T, IfNumber<T> = 0>
    Ref& operator-=(const T& value) {
        return combineWith(Arithmetic::SUBTRACT, value);
    }
    template <class Other, IfElement<Other> = 0>
    Ref& operator-=(const Other& other) {
        return combineWith(Arithmetic::SUBTRACT, other);
    }
    template <class T, IfNumber<T> = 0>
    Ref& operator*=(const T& value) {
        return combineWith(Arithmetic::MULTIPLY, value);
    }
    template <class Other, IfElement<Other> = 0>
    Ref& operator*=(const Other& other) {
        return combineWith(Arithmetic::MULTIPLY, other);
    }
    template <class T, IfNumber<T> = 0>
    Ref& operator/=(const T& value) {
        return combineWith(Arithmetic::DIVIDE, value);
    }
    template <class Other, IfElement<Other> = 0>
    Ref& operator/=(const Other& other) {
        return combineWith(Arithmetic::DIVIDE, other);
    }

    // Arithmetic: the element is read as a `T`, and the array must be one of these. What the type of the
    // result is has to be known when the program is compiled, the kind of the array is not.

    template <class T, IfNumber<T> = 0>
    friend auto operator+(const Ref& element, const T& value) {
        return static_cast<T>(element) + value;
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator+(const T& value, const Ref& element) {
        return value + static_cast<T>(element);
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator-(const Ref& element, const T& value) {
        return static_cast<T>(element) - value;
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator-(const T& value, const Ref& element) {
        return value - static_cast<T>(element);
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator*(const Ref& element, const T& value) {
        return static_cast<T>(element) * value;
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator*(const T& value, const Ref& element) {
        return value * static_cast<T>(element);
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator/(const Ref& element, const T& value) {
        return static_cast<T>(element) / value;
    }
    template <class T, IfNumber<T> = 0>
    friend auto operator/(const T& value, const Ref& element) {
        return value / static_cast<T>(element);
    }

    template <class T, IfNumber<T> = 0>
    friend T& operator+=(T& value, const Ref& element) {
        return value += static_cast<T>(element);
    }
    template <class T, IfNumber<T> = 0>
    friend T& operator-=(T& value, const Ref& element) {
        return value -= static_cast<T>(element);
    }
    template <class T, IfNumber<T> = 0>
    friend T& operator*=(T& value, const Ref& element) {
        return value *= static_cast<T>(element);
    }
    template <class T, IfNumber<T> = 0>
    friend T& operator/=(T& value, const Ref& element) {
        return value /= static_cast<T>(element);
    }

    // Comparison with a real number, by value, for elements of any real kind; for equality of complex kinds
    // too.

    template <class T, IfComparable<T> = 0>
    friend bool operator==(const Ref& element, const T& value) {
        return equals(place(element), Number(value));
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator==(const T& value, const Ref& element) {
        return element == value;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator!=(const Ref& element, const T& value) {
        return !(element == value);
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator!=(const T& value, const Ref& element) {
        return !(element == value);
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator<(const Ref& element, const T& value) {
        return order(element, value) == Order::LESS;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator<(const T& value, const Ref& element) {
        return element > value;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator>(const Ref& element, const T& value) {
        return order(element, value) == Order::GREATER;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator>(const T& value, const Ref& element) {
        return element < value;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator<=(const Ref& element, const T& value) {
        const Order found = order(element, value);
        return found == Order::LESS || found == Order::EQUAL;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator<=(const T& value, const Ref& element) {
        return element >= value;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator>=(const Ref& element, const T& value) {
        const Order found = order(element, value);
        return found == Order::GREATER || found == Order::EQUAL;
    }
    template <class T, IfComparable<T> = 0>
    friend bool operator>=(const T& value, const Ref& element) {
        return element <= value;
    }

    // Order of two elements, by value.

    template <class Other, IfElement<Other> = 0>
    friend bool operator<(const Ref& element, const Other& other) {
        return compared(place(element), positionOf(other)) == Order::LESS;
    }
    template <class Other, IfElement<Other> = 0>
    friend bool operator>(const Ref& element, const Other& other) {
        return compared(place(element), positionOf(other)) == Order::GREATER;
    }
    template <class Other, IfElement<Other> = 0>
    friend bool operator<=(const Ref& element, const Other& other) {
        const Order found = compared(place(element), positionOf(other));
        return found == Order::LESS || found == Order::EQUAL;
    }
    template <class Other, IfElement<Other> = 0>
    friend bool operator>=(const Ref& element, const Other& other) {
        const Order found = compared(place(element), positionOf(other));
        return found == Order::GREATER || found == Order::EQUAL;
    }

    // Equality with a complex number, for elements of its type.

    template <class T, IfComplex<T> = 0>
    friend bool operator==(const Ref& element, const T& value) {
        return static_cast<T>(element) == value;
    }
    template <class T, IfComplex<T> = 0>
    friend bool operator==(const T& value, const Ref& element) {
        return element == value;
    }
    template <class T, IfComplex<T> = 0>
    friend bool operator!=(const Ref& element, const T& value) {
        return !(element == value);
    }
    template <class T, IfComplex<T> = 0>
    friend bool operator!=(const T& value, const Ref& element) {
        return !(element == value);
    }

    // Equality with text: of string elements, as their own handles compare, and of members of enumerations
    // with their names.

    friend bool operator==(const Ref& element, std::u16string_view text) {
        return equals(place(element), text);
    }
    friend bool operator==(const Ref& element, std::string_view text) { return equals(place(element), text); }
    friend bool operator==(std::u16string_view text, const Ref& element) { return element == text; }
    friend bool operator==(std::string_view text, const Ref& element) { return element == text; }
    friend bool operator!=(const Ref& element, std::u16string_view text) { return !(element == text); }
    friend bool operator!=(const Ref& element, std::string_view text) { return !(element == text); }
    friend bool operator!=(std::u16string_view text, const Ref& element) { return !(element == text); }
    friend bool operator!=(std::string_view text, const Ref& element) { return !(element == text); }

    // Equality with another element, of an array of the same kind; of two that hold arrays, equality of
    // these.

    template <class Other, IfElement<Other> = 0>
    friend bool operator==(const Ref& element, const Other& other) {
        return sameElements(place(element), positionOf(other));
    }
    template <class Other, IfElement<Other> = 0>
    friend bool operator!=(const Ref& element, const Other& other) {
        return !(element == other);
    }
    template <class Other, std::enable_if_t<isElementHandle<Other> && !isUntypedElement<Other>, int> = 0>
    friend bool operator==(const Other& other, const Ref& element) {
        return element == other;
    }
    template <class Other, std::enable_if_t<isElementHandle<Other> && !isUntypedElement<Other>, int> = 0>
    friend bool operator!=(const Other& other, const Ref& element) {
        return !(element == other);
    }

protected:
    ~UntypedElement() = default;
    static decltype(auto) place(const Ref& element) { return element.forRead(); }

    template <class Other>
    Ref& copyFrom(const Other& other) {
        copyElement(positionOf(other), writable());
        return self();
    }

private:
    Ref& self() noexcept { return static_cast<Ref&>(*this); }
    const Ref& self() const noexcept { return static_cast<const Ref&>(*this); }

    decltype(auto) writable() {
        static_assert(!isConst, "this reference is read-only: its array is const");
        return self().forWrite();
    }
    // Elements that are not reached in place. The handle is passed by value: while its address does not
    // escape, its indices stay in registers.
    template <class T>
    [[gnu::noinline]] static T readAsked(Ref element) {
        const auto& position = element.forRead();
        requireKind<T>(position);
        return position.template value<T>();
    }
    template <class T>
    [[gnu::noinline]] static void writeAsked(Ref element, T value) {
        requireKind<T>(element.forRead());
        element.forWrite().template setValue<T>(std::move(value));
    }

    const ArrayImpl& held() const { return arrayHeldBy(self().forRead()); }
    String string() const {
        const auto& position = self().forRead();
        requireKind<String>(position);
        return position.template value<String>();
    }
    template <class Text>
    Ref& write(Text text) {
        storeText(writable(), std::move(text));
        return self();
    }
    template <class T>
    Ref& combineWith(Arithmetic operation, const T& value) {
        if constexpr (isElementHandle<T>) {
            combine(writable(), operation, positionOf(value));
            return self();
        } else if constexpr (isRealElement<T>) {
            combine(writable(), operation, Number(value));
            return self();
        } else {
            const T current = self();
            switch (operation) {
            case Arithmetic::ADD:
                return self() = current + value;
            case Arithmetic::SUBTRACT:
                return self() = current - value;
            case Arithmetic::MULTIPLY:
                return self() = current * value;
            default:
                return self() = current / value;
            }
        }
    }
    template <class T>
    static Order order(const Ref& element, const T& value) {
        return compared(place(element), Number(value));
    }
};

} // namespace foundation::vexadata::detail
