#include "Cell.hpp"

#include "Memory.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <system_error>

namespace vexa::inspect {

namespace {

constexpr std::array<std::string_view, 7> missingWords{"na", "nan", "-nan", "+nan", "n/a", "#n/a", "null"};

std::string_view trim(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    while (!text.empty() && blanks.find(text.front()) != std::string_view::npos)
        text.remove_prefix(1);
    while (!text.empty() && blanks.find(text.back()) != std::string_view::npos)
        text.remove_suffix(1);
    return text;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// `word` is in lower case.
bool sameWord(std::string_view text, std::string_view word) {
    return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                      [](char a, char b) { return lower(a) == b; });
}

/// from_chars does not tell overflow from underflow; strtod does. What is too small may still be a subnormal
/// number.
Number beyondRange(std::string_view text) {
    const double value = std::strtod(std::string(text).c_str(), nullptr);
    return {value, std::isinf(value) ? Loss::overflowed : value == 0 ? Loss::underflowed : Loss::none, {}};
}

Cell numberCell(const Number& number, DecimalMark mark) { return {CellKind::number, number, mark}; }

/// The digits of a whole number that is written without exponent, and with zeros alone behind its point;
/// empty for others.
std::string_view wholeDigits(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    if (text.find_first_not_of('0', point + (point < text.size() ? 1 : 0)) != std::string_view::npos)
        return {};
    text = text.substr(0, point);
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return text.find_first_not_of("0123456789") == std::string_view::npos ? text : std::string_view();
}

/// `value` is finite, whole and not small.
bool hasDigits(double value, std::string_view digits) {
    std::array<char, 320> exact{};
    const auto end = std::to_chars(exact.data(), exact.data() + exact.size(), std::fabs(value),
                                   std::chars_format::fixed, 0)
                         .ptr;
    return digits == std::string_view(exact.data(), static_cast<std::size_t>(end - exact.data()));
}

/// Of large numbers: whether the double is the number that is written, and which one that is.
Number examine(double value, std::string_view text) {
    Number number{value, Loss::none, std::nullopt};
    if (!(std::fabs(value) >= exactWhole) || std::isinf(value)) return number;
    const std::string_view digits = wholeDigits(text);
    if (digits.empty()) return number;
    if (!hasDigits(value, digits)) number.loss = Loss::rounded;
    const auto magnitude = parseWhole(digits);
    if (magnitude && *magnitude > static_cast<std::uint64_t>(exactWhole))
        number.big = BigWhole{value < 0, *magnitude};
    return number;
}

/// A number where the decimal mark may be a comma, but not both.
Cell parseWithComma(std::string_view text) {
    const std::size_t comma = text.find(',');
    const bool point = text.find('.') != std::string_view::npos;
    if (comma == std::string_view::npos || point) return {};
    std::string pointed(text);
    pointed[comma] = '.';
    const auto value = parseNumber(pointed);
    return value ? numberCell(*value, DecimalMark::comma) : Cell{};
}

} // namespace

std::optional<Number> parseNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) return std::nullopt;
    return error == std::errc::result_out_of_range ? beyondRange(text) : examine(value, text);
}

bool isMissing(std::string_view text) {
    text = trim(text);
    if (text.empty()) return true;
    return text.size() <= 4 && std::any_of(missingWords.begin(), missingWords.end(),
                                           [&](std::string_view word) { return sameWord(text, word); });
}

Cell parseCell(std::string_view text, bool decimalComma) {
    text = trim(text);
    const auto number = parseNumber(text);
    if (number && !std::isnan(number->value)) {
        const bool point = decimalComma && text.find('.') != std::string_view::npos;
        return numberCell(*number, point ? DecimalMark::point : DecimalMark::none);
    }
    if (isMissing(text)) return {CellKind::missing, {}};
    if (sameWord(text, "true")) return {CellKind::logical, {1}};
    if (sameWord(text, "false")) return {CellKind::logical, {0}};
    return decimalComma ? parseWithComma(text) : Cell{};
}

} // namespace vexa::inspect
