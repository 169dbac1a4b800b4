// Text for people: numbers, and UTF-8 of unknown origin.
#pragma once

#include "Encoding.hpp"

#include <print/Escape.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa::inspect {

/// At least six significant digits, all digits before the decimal point up to 15, no trailing zeros; "-" for
/// NaN.
std::string formatNumber(double value);

/// "1 row", "2 rows"; with a plural of its own, "2 entries".
std::string counted(std::size_t count, const std::string& noun, const std::string& plural = "");

/// The most characters of a name that are shown: as many as of a text in an array.
inline constexpr std::size_t longestName = 100;

/// `text` as valid UTF-8 on one line. What steers a terminal or cannot be seen is written as in a C++
/// literal, and so are bytes that are not UTF-8; backslashes stay as they are. Of more than `most` characters
/// the first ones are shown, and "..." follows.
std::string printable(std::string_view text, std::size_t most = std::string_view::npos);

/// The same, handed on piece by piece without any memory of its own.
template <class Put>
void forEachPrintable(std::string_view text, Put put) {
    while (!text.empty()) {
        const Character character = takeCharacter(text);
        using namespace foundation::vexadata::print;
        put(character.code < 0 ? escapedByte(character.bytes.front())
                               : escaped(static_cast<char32_t>(character.code)));
    }
}

/// Columns that valid UTF-8 text takes on a terminal: 2 for a wide character, 0 for a combining one.
std::size_t displayWidth(std::string_view text);

} // namespace vexa::inspect
