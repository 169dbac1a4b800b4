// Text for people: numbers, and UTF-8 of unknown origin.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa::inspect {

/// At least six significant digits, all digits before the decimal point up to 15, no trailing zeros; "-" for
/// NaN.
std::string formatNumber(double value);

/// "1 row", "2 rows"; with a plural of its own, "2 entries".
std::string counted(std::size_t count, const std::string& noun, const std::string& plural = "");

/// `text` as valid UTF-8 on one line: control characters become their pictures (U+2400 ...), and bytes that
/// are not UTF-8 the replacement character U+FFFD.
std::string printable(std::string_view text);

/// `text`, which should be UTF-8, as UTF-16; U+FFFD for bytes that are not.
std::u16string toUtf16(std::string_view text);

/// Columns that valid UTF-8 text takes on a terminal: 2 for a wide character, 0 for a combining one.
std::size_t displayWidth(std::string_view text);

} // namespace vexa::inspect
