// UTF-16 text of arrays as UTF-8 on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::vexadata::print {

/// `text` as UTF-8 between two `quote`s. Control characters, halves of surrogate pairs, the quote and the
/// backslash are written as in a C++ literal. Of a text longer than `most` units the beginning is shown, and
/// "..." follows.
std::string quoted(std::u16string_view text, char quote, std::size_t most);

/// Columns that UTF-8 text takes on a terminal: two for wide characters, none for combining ones.
std::size_t displayWidth(std::string_view text) noexcept;

} // namespace foundation::vexadata::print
