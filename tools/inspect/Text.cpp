#include "Text.hpp"

#include <utf8proc.h>

#include <charconv>
#include <cmath>

namespace vexa::inspect {

std::string formatNumber(double value) {
    if (std::isnan(value)) return "-";
    if (value == 0) return "0";
    const double magnitude = std::floor(std::log10(std::fabs(value))) + 1;
    const int precision = magnitude > 6 && magnitude <= 15 ? static_cast<int>(magnitude) : 6;
    char text[32];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, precision);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string counted(std::size_t count, const std::string& noun, const std::string& plural) {
    const std::string many = plural.empty() ? noun + "s" : plural;
    return std::to_string(count) + " " + (count == 1 ? noun : many);
}

std::string printable(std::string_view text, std::size_t most) {
    const std::string_view shown = firstCharacters(text, most);
    std::string result;
    forEachPrintable(shown, [&](const auto& piece) { result += piece.view(); });
    return shown.size() < text.size() ? result + "..." : result;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const std::int32_t code = takeCharacter(text).code;
        width += code < 0x80 ? 1U : static_cast<std::size_t>(utf8proc_charwidth(code));
    }
    return width;
}

} // namespace vexa::inspect
