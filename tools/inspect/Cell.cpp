#include "Cell.hpp"

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

/// from_chars does not tell overflow from underflow; strtod does.
double beyondRange(std::string_view text) { return std::strtod(std::string(text).c_str(), nullptr); }

Cell number(double value, DecimalMark mark) { return {CellKind::number, value, mark}; }

/// A number where the decimal mark may be a comma, but not both.
Cell parseWithComma(std::string_view text) {
    const std::size_t comma = text.find(',');
    const bool point = text.find('.') != std::string_view::npos;
    if (comma == std::string_view::npos || point) return {};
    std::string pointed(text);
    pointed[comma] = '.';
    const auto value = parseNumber(pointed);
    return value ? number(*value, DecimalMark::comma) : Cell{};
}

} // namespace

std::optional<double> parseNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) return std::nullopt;
    return error == std::errc::result_out_of_range ? beyondRange(text) : value;
}

bool isMissing(std::string_view text) {
    text = trim(text);
    if (text.empty()) return true;
    return text.size() <= 4 && std::any_of(missingWords.begin(), missingWords.end(),
                                           [&](std::string_view word) { return sameWord(text, word); });
}

Cell parseCell(std::string_view text, bool decimalComma) {
    text = trim(text);
    const auto value = parseNumber(text);
    if (value && !std::isnan(*value)) {
        const bool point = decimalComma && text.find('.') != std::string_view::npos;
        return number(*value, point ? DecimalMark::point : DecimalMark::none);
    }
    if (isMissing(text)) return {CellKind::missing};
    if (sameWord(text, "true")) return {CellKind::logical, 1};
    if (sameWord(text, "false")) return {CellKind::logical, 0};
    return decimalComma ? parseWithComma(text) : Cell{};
}

} // namespace vexa::inspect
