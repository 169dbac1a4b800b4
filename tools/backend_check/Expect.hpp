// How a check says what it expects.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>

#include <complex>
#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexa::check {

/// A check does not hold.
struct Failure {
    std::string reason;
};

/// The back-end does not make what the check is about.
struct NotOffered {
    std::string reason;
};

/// What the check is about cannot be seen here.
struct NotChecked {
    std::string reason;
};

/// @throws Failure after telling the listener, in case that the back-end does not survive the clearing up
[[noreturn]] void fail(std::string reason);
void listenToFailures(void (*listener)(const std::string& reason));

/// "(FIRST,SECOND)"
std::string inParentheses(const std::string& first, const std::string& second);

/// Values as they stand in a reason.
std::string show(bool value);
std::string show(double value);
std::string show(const std::string& text);
std::string show(const std::u16string& text);
std::string show(const std::vector<std::size_t>& dimensions);
std::string show(const std::vector<std::string>& texts);
std::string show(foundation::vexadata::ArrayType type);
template <class T>
std::string show(T value) requires std::is_integral_v<T> {
    return std::to_string(+value);
}
inline std::string show(float value) { return show(static_cast<double>(value)); }
template <class T>
std::string show(const std::complex<T>& value) {
    return inParentheses(show(value.real()), show(value.imag()));
}
inline std::string show(const std::pair<std::size_t, std::size_t>& position) {
    return inParentheses(show(position.first), show(position.second));
}

inline void expect(bool holds, std::string_view reason) {
    if (!holds) fail(std::string(reason));
}

/// @throws Failure "WHAT is FOUND, expected WANTED"
template <class T>
void expectEqual(std::string_view what, const T& found, const std::type_identity_t<T>& wanted) {
    if (!(found == wanted)) fail(std::string(what) + " is " + show(found) + ", expected " + show(wanted));
}

/// The exception in flight, e.g. `InvalidArrayTypeException ("Invalid Array type")`.
std::string describeException();

/// Runs `operation`, which must throw; anything does.
template <class F>
void expectThrows(std::string_view what, F&& operation) {
    try {
        operation();
    } catch (...) {
        return;
    }
    fail(std::string(what) + " throws nothing");
}

/// Runs `operation`, which must throw an `E`.
template <class E, class F>
void expectThrows(std::string_view what, std::string_view wanted, F&& operation) {
    try {
        operation();
    } catch (const E&) {
        return;
    } catch (...) {
        fail(std::string(what) + " throws " + describeException() + ", expected " + std::string(wanted));
    }
    fail(std::string(what) + " throws nothing, expected " + std::string(wanted));
}

} // namespace vexa::check
