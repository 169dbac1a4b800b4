// Elements of arrays whose kind is known at run time only: comparing, computing, copying. Each function looks
// the kind up once and goes on with the element type.
#include <foundation/vexadata/StructElement.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/UntypedElement.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

namespace foundation::vexadata::detail {

namespace {

template <class T>
Order orderOf(T a, T b) noexcept {
    if (a < b) {
        return Order::LESS;
    }
    if (a > b) {
        return Order::GREATER;
    }
    return a == b ? Order::EQUAL : Order::UNORDERED;
}

Order orderOf(std::int64_t a, std::uint64_t b) noexcept {
    return a < 0 ? Order::LESS : orderOf(static_cast<std::uint64_t>(a), b);
}

Order reversed(Order order) noexcept {
    switch (order) {
    case Order::LESS:
        return Order::GREATER;
    case Order::GREATER:
        return Order::LESS;
    default:
        return order;
    }
}

double realOf(const Number& number) noexcept {
    return number.kind == Number::Kind::REAL     ? number.real
           : number.kind == Number::Kind::SIGNED ? static_cast<double>(number.whole)
                                                 : static_cast<double>(number.natural);
}

/// By value: integers of either sign exactly; when one of the two is a floating-point number, both as
/// doubles.
Order orderOf(const Number& a, const Number& b) noexcept {
    using Kind = Number::Kind;
    if (a.kind == Kind::REAL || b.kind == Kind::REAL) {
        return orderOf(realOf(a), realOf(b));
    }
    if (a.kind == b.kind) {
        return a.kind == Kind::SIGNED ? orderOf(a.whole, b.whole) : orderOf(a.natural, b.natural);
    }
    return a.kind == Kind::SIGNED ? orderOf(a.whole, b.natural) : reversed(orderOf(b.whole, a.natural));
}

template <class T>
T applied(Arithmetic operation, T a, T b) {
    switch (operation) {
    case Arithmetic::ADD:
        return a + b;
    case Arithmetic::SUBTRACT:
        return a - b;
    case Arithmetic::MULTIPLY:
        return a * b;
    default:
        return a / b;
    }
}

/// The nearest `T`; 0 for a NaN.
template <class T>
T nearest(double value) noexcept {
    if constexpr (std::is_floating_point_v<T>) {
        return static_cast<T>(value);
    } else if constexpr (std::is_same_v<T, bool>) {
        return value != 0;
    } else {
        constexpr T least = std::numeric_limits<T>::min();
        constexpr T most = std::numeric_limits<T>::max();
        if (std::isnan(value)) {
            return 0;
        }
        // The largest 64-bit integers are no doubles; converted, they round up to a power of two.
        return value <= static_cast<double>(least)  ? least
               : value >= static_cast<double>(most) ? most
                                                    : static_cast<T>(value);
    }
}

/// The bit pattern of an integer: unsigned arithmetic on it wraps around for either sign.
std::uint64_t bitsOf(const Number& number) noexcept {
    return number.kind == Number::Kind::SIGNED ? static_cast<std::uint64_t>(number.whole) : number.natural;
}

template <class T>
T combined(Arithmetic operation, T element, const Number& number) {
    const Number current(element);
    const bool inDoubles =
        std::is_floating_point_v<T> || number.kind == Number::Kind::REAL || operation == Arithmetic::DIVIDE;
    if (!inDoubles) {
        return static_cast<T>(applied(operation, bitsOf(current), bitsOf(number)));
    }
    if constexpr (std::is_integral_v<T>) { // exact, where doubles would round
        if (number.kind == current.kind && bitsOf(number) != 0 && operation == Arithmetic::DIVIDE) {
            using Limits = std::numeric_limits<T>;
            return current.kind == Number::Kind::UNSIGNED ? static_cast<T>(current.natural / number.natural)
                   : number.whole == -1 && element == Limits::lowest()
                       ? Limits::max()
                       : static_cast<T>(current.whole / number.whole);
        }
    }
    return nearest<T>(applied(operation, realOf(current), realOf(number)));
}

/// Calls `visit` with the tag of a primitive array's elements.
/// @throws TypeMismatchException for other kinds
template <class Visit>
void withNumber(const ElementPosition& element, Visit visit) {
    if (!withPrimitive(element.array()->getType(), visit)) {
        raise<TypeMismatchException>();
    }
}

/// Whether elements `T` are values, not arrays or records.
template <class T>
constexpr bool isValue = !std::is_same_v<T, Array> && !std::is_same_v<T, StructElement>;

/// Calls `visit` with the tag of an array whose elements are values; false, without a call, for other kinds.
template <class Visit>
bool withValue(ArrayType type, Visit visit) {
    return withKind(type, [&](auto tag) {
        using Tag = decltype(tag);
        if constexpr (!Tag::isSparse && !std::is_same_v<Tag, NoElementTag>) {
            if constexpr (isValue<typename Tag::type>) {
                visit(tag);
                return true;
            }
        }
        return false;
    });
}

/// @throws TypeMismatchException when the element is no real number
Number numberAt(const ElementPosition& element) {
    Number found(0);
    withNumber(element, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (isComplexElement<T>) {
            raise<TypeMismatchException>();
        } else {
            found = Number(element.value<T>());
        }
    });
    return found;
}

} // namespace

Order compared(const ElementPosition& element, const Number& number) {
    return orderOf(numberAt(element), number);
}
Order compared(const ElementPosition& a, const ElementPosition& b) {
    return orderOf(numberAt(a), numberAt(b));
}

bool equals(const ElementPosition& element, const Number& number) {
    bool found = false;
    withNumber(element, [&](auto tag) {
        using T = typename decltype(tag)::type;
        const T value = element.value<T>();
        if constexpr (isComplexElement<T>) {
            found = value.imag() == 0 && orderOf(Number(value.real()), number) == Order::EQUAL;
        } else {
            found = orderOf(Number(value), number) == Order::EQUAL;
        }
    });
    return found;
}

bool equals(const ElementPosition& element, std::u16string_view text) {
    requireKind<String>(element);
    return ArrayElementTypedRef<String, true>(element) == text;
}

bool equals(const ElementPosition& element, std::string_view text) {
    if (element.array()->getType() == ArrayType::ENUM) {
        return ArrayElementTypedRef<Enumeration, true>(element) == std::string(text);
    }
    requireKind<String>(element);
    return ArrayElementTypedRef<String, true>(element) == text;
}

bool sameElements(const ElementPosition& a, const ElementPosition& b) {
    const ArrayType type = a.array()->getType();
    bool same = false;
    const bool compared =
        type == b.array()->getType() && withValue(type, [&](auto tag) {
            using T = typename decltype(tag)::type;
            if constexpr (std::is_same_v<T, String>) {
                same = ArrayElementTypedRef<String, true>(a) == ArrayElementTypedRef<String, true>(b);
            } else {
                same = a.value<T>() == b.value<T>();
            }
        });
    return compared ? same : castTo<Array, true>(a.chain()) == castTo<Array, true>(b.chain());
}

void combine(const ElementPosition& element, Arithmetic operation, const Number& number) {
    withNumber(element, [&](auto tag) {
        using T = typename decltype(tag)::type;
        const T value = element.value<T>();
        if constexpr (isComplexElement<T>) {
            const bool scales = operation == Arithmetic::MULTIPLY || operation == Arithmetic::DIVIDE;
            element.setValue<T>({combined(operation, value.real(), number),
                                 scales ? combined(operation, value.imag(), number) : value.imag()});
        } else {
            element.setValue<T>(combined(operation, value, number));
        }
    });
}

void combine(const ElementPosition& element, Arithmetic operation, const ElementPosition& other) {
    const ArrayType type = element.array()->getType();
    bool complex = false;
    withNumber(other, [&](auto tag) {
        using T = typename decltype(tag)::type;
        if constexpr (isComplexElement<T>) {
            complex = true;
            if (type != arrayTypeOf<T>) {
                raise<TypeMismatchException>();
            }
            element.setValue<T>(applied(operation, element.value<T>(), other.value<T>()));
        }
    });
    if (!complex) {
        combine(element, operation, numberAt(other));
    }
}

void storeText(const ElementPosition& element, String text) {
    requireKind<String>(element);
    element.setValue<String>(std::move(text));
}

void storeText(const ElementPosition& element, std::string_view text) {
    if (element.array()->getType() == ArrayType::ENUM) {
        element.setValue<Enumeration>(Enumeration(std::string(text)));
        return;
    }
    requireKind<String>(element);
    element.setValue<String>(widened(text.data(), text.size()));
}

std::u16string presentText(const ElementPosition& element) {
    requireKind<String>(element);
    return ArrayElementTypedRef<String, true>(element);
}

void copyElement(const ElementPosition& from, const ElementPosition& to) {
    const ArrayType type = from.array()->getType();
    if (to.array()->getType() == type && from.fieldName().empty() && to.fieldName().empty()) {
        if (withValue(type, [&](auto tag) {
                using T = typename decltype(tag)::type;
                to.setValue<T>(from.value<T>());
            })) {
            return;
        }
        if (type == ArrayType::STRUCT) {
            storeRecord(to, valuesOf(from));
            return;
        }
    }
    storeArray(to.chain(), castTo<Array, true>(from.chain()));
}

const ArrayImpl& arrayHeldBy(const ElementPosition& element) {
    return elementArray<NotEnoughIndicesProvidedException>(element.chain());
}

} // namespace foundation::vexadata::detail
