#include "../core/ByType.hpp"

#include <foundation/vexadata/StructElement.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/UntypedElement.hpp>

#include <cmath>
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

/// By value: whole numbers of either sign exactly, anything beside a floating-point number as one.
Order orderOf(const Number& a, const Number& b) noexcept {
    using Kind = Number::Kind;
    const auto asReal = [](const Number& n) {
        return n.kind == Kind::REAL     ? n.real
               : n.kind == Kind::SIGNED ? static_cast<double>(n.whole)
                                        : static_cast<double>(n.natural);
    };
    if (a.kind == Kind::REAL || b.kind == Kind::REAL) {
        return orderOf(asReal(a), asReal(b));
    }
    if (a.kind == b.kind) {
        return a.kind == Kind::SIGNED ? orderOf(a.whole, b.whole) : orderOf(a.natural, b.natural);
    }
    return a.kind == Kind::SIGNED ? orderOf(a.whole, b.natural) : reversed(orderOf(b.whole, a.natural));
}

template <class T>
T as(const Number& number) noexcept {
    switch (number.kind) {
    case Number::Kind::SIGNED:
        return static_cast<T>(number.whole);
    case Number::Kind::UNSIGNED:
        return static_cast<T>(number.natural);
    default:
        return static_cast<T>(number.real);
    }
}

template <class T>
T applied(Arithmetic operation, T current, T value) {
    switch (operation) {
    case Arithmetic::ADD:
        return static_cast<T>(current + value);
    case Arithmetic::SUBTRACT:
        return static_cast<T>(current - value);
    case Arithmetic::MULTIPLY:
        return static_cast<T>(current * value);
    default:
        return static_cast<T>(current / value);
    }
}

/// Calls `visit(T())` with the element type of a primitive array.
/// @throws TypeMismatchException for other kinds
template <class Visit>
void withNumber(const ElementPosition& element, Visit visit) {
    if (!withPrimitive(element.array()->getType(), visit)) {
        raise<TypeMismatchException>();
    }
}

/// Calls `visit(T())` with the element type of an array whose elements are values, not arrays or records; false, without a
/// call, for other kinds.
template <class Visit>
bool withValue(ArrayType type, Visit visit) {
    switch (type) {
    case ArrayType::STRING:
        visit(String());
        return true;
    case ArrayType::ENUM:
        visit(Enumeration());
        return true;
    case ArrayType::OBJECT:
    case ArrayType::VALUE_OBJECT:
        visit(ValueObject());
        return true;
    case ArrayType::HANDLE_OBJECT_REF:
        visit(HandleObjectRef());
        return true;
    default:
        return withPrimitive(type, visit);
    }
}

} // namespace

Order compared(const ElementPosition& element, const Number& number) {
    Order found = Order::UNORDERED;
    withNumber(element, [&](auto zero) {
        using T = decltype(zero);
        if constexpr (isComplexElement<T>) {
            raise<TypeMismatchException>();
        } else {
            found = orderOf(Number(element.value<T>()), number);
        }
    });
    return found;
}

bool equals(const ElementPosition& element, const Number& number) {
    bool found = false;
    withNumber(element, [&](auto zero) {
        using T = decltype(zero);
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
        type == b.array()->getType() && withValue(type, [&](auto zero) {
            using T = decltype(zero);
            if constexpr (std::is_same_v<T, String>) {
                same = ArrayElementTypedRef<String, true>(a) == ArrayElementTypedRef<String, true>(b);
            } else {
                same = a.value<T>() == b.value<T>();
            }
        });
    return compared ? same : castTo<Array, true>(a.chain()) == castTo<Array, true>(b.chain());
}

void combine(const ElementPosition& element, Arithmetic operation, const Number& number) {
    withNumber(element, [&](auto zero) {
        using T = decltype(zero);
        if constexpr (isComplexElement<T>) {
            using Part = typename T::value_type;
            element.setValue<T>(applied(operation, element.value<T>(), T(as<Part>(number))));
        } else {
            element.setValue<T>(applied(operation, element.value<T>(), as<T>(number)));
        }
    });
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
        if (withValue(type, [&](auto zero) {
                using T = decltype(zero);
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
