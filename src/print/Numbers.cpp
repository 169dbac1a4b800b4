// Doubles as text.
#include "Numbers.hpp"

#include <algorithm>
#include <cmath>

namespace foundation::vexadata::print {

namespace {

constexpr int mostDigits = 15; // of a double, that are always right

int digitsBeforePoint(double value) {
    return value == 0 ? 1 : static_cast<int>(std::floor(std::log10(std::fabs(value)))) + 1;
}

} // namespace

std::string numberText(double value, int precision) {
    if (std::isnan(value)) {
        return "NaN";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-Inf" : "Inf";
    }
    const int digits = digitsBeforePoint(value);
    const int wanted = std::clamp(precision, 1, 17);
    char text[40];
    const auto result = std::to_chars(text, text + sizeof text, value, std::chars_format::general,
                                      digits <= mostDigits ? std::max(wanted, digits) : wanted);
    return std::string(text, result.ptr);
}

} // namespace foundation::vexadata::print
