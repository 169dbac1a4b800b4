// Columns of few distinct words.
#pragma once

#include "TextBuffer.hpp"

#include <cstddef>
#include <string>

namespace vexa::inspect {

/// The most words that a column of categories has.
inline constexpr std::size_t mostCategories = 20;
/// The longest of them.
inline constexpr std::size_t longestCategory = 63;

/// True when the texts repeat a few words: at most `mostCategories` distinct ones, each three times on the
/// average at least, all of printable ASCII and at most `longestCategory` long.
bool areCategories(const TextBuffer& texts);

struct WordCount {
    std::string word;
    std::size_t count;
};

} // namespace vexa::inspect
