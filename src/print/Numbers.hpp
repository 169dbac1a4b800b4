// Numbers as text.
#pragma once

#include <charconv>
#include <complex>
#include <string>
#include <type_traits>

namespace foundation::vexadata::print {

/// At most `precision` significant digits, but all digits before the decimal point up to 15; no trailing
/// zeros. "NaN", "Inf", "-Inf".
std::string numberText(double value, int precision);

template <class T>
std::string numberText(const T& value, int precision) {
    if constexpr (std::is_integral_v<T>) {
        return std::to_string(value);
    } else {
        return numberText(static_cast<double>(value), precision);
    }
}

/// "1+2i".
template <class T>
std::string numberText(const std::complex<T>& value, int precision) {
    const std::string imaginary = numberText(value.imag(), precision);
    const bool hasSign = imaginary.front() == '-';
    std::string text = numberText(value.real(), precision);
    text += hasSign ? "" : "+";
    text += imaginary;
    text += 'i';
    return text;
}

} // namespace foundation::vexadata::print
