// Which character separates the cells of a text.
#pragma once

#include <string_view>

namespace vexa::inspect {

/// Comma, semicolon or tab: the one that stands in the first line of `head` and as often in most of the lines
/// after it (the first ten lines that are not blank are looked at; quoted text does not count). Comma when
/// none stands in the first line.
char detectDelimiter(std::string_view head);

} // namespace vexa::inspect
