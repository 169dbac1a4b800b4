// What the text of one cell means.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vexa::inspect {

enum class CellKind { missing, number, logical, text };

/// Which character was read as the decimal mark of a number.
enum class DecimalMark { none, point, comma };

/// What a double does to a number that it cannot hold: a whole number beyond 2^53 is rounded, others become
/// infinite or 0.
enum class Loss { none, rounded, overflowed, underflowed };

/// A whole number beyond what every double holds exactly.
struct BigWhole {
    bool negative;
    std::uint64_t magnitude;
};

struct Number {
    double value = 0;
    Loss loss = Loss::none;
    std::optional<BigWhole> big = std::nullopt; ///< when its magnitude is above 2^53 and has 64 bits
};

struct Cell {
    CellKind kind = CellKind::text;
    Number number; ///< 1 or 0 for a logical
    DecimalMark mark = DecimalMark::none;
};

/// Every double up to here, and none beyond, is next to the whole numbers on both sides.
inline constexpr double exactWhole = 9007199254740992; // 2^53

/// - missing: nothing, or NA, N/A, #N/A, NaN, null in any case;
/// - logical: true, false in any case;
/// - number: decimal, with an optional sign and exponent, or inf, infinity. Too large becomes infinity, too
///   small 0. With `decimalComma`, "1,5" is a number too. Hexadecimal and grouped digits are text;
/// - text: everything else.
///
/// Blanks around the text count for nothing.
Cell parseCell(std::string_view text, bool decimalComma);

/// The number that the whole text is: decimal, with an optional sign and exponent, or inf, infinity, nan. Too
/// large becomes infinity, too small 0.
std::optional<Number> parseNumber(std::string_view text);

/// Whether parseCell would answer missing; cheaper.
bool isMissing(std::string_view text);

} // namespace vexa::inspect
