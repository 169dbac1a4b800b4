// What the text of one cell means.
#pragma once

#include <optional>
#include <string_view>

namespace vexa::inspect {

enum class CellKind { missing, number, logical, text };

/// Which character was read as the decimal mark of a number.
enum class DecimalMark { none, point, comma };

struct Cell {
    CellKind kind = CellKind::text;
    double value = 0; ///< of a number; 1 or 0 of a logical
    DecimalMark mark = DecimalMark::none;
};

/// - missing: nothing, or NA, N/A, #N/A, NaN, null in any case;
/// - logical: true, false in any case;
/// - number: decimal, with an optional sign and exponent, or inf, infinity. Too large becomes infinity, too
///   small 0. With `decimalComma`, "1,5" is a number too. Hexadecimal and grouped digits are text;
/// - text: everything else.
///
/// Blanks around the text count for nothing.
Cell parseCell(std::string_view text, bool decimalComma);

/// The number that the whole text is: decimal, with an optional sign and exponent, or inf, infinity, nan. Too large
/// becomes infinity, too small 0.
std::optional<double> parseNumber(std::string_view text);

/// Whether parseCell would answer missing; cheaper.
bool isMissing(std::string_view text);

} // namespace vexa::inspect
