// Columns of few distinct words.
#pragma once

#include "TextBuffer.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

/// The most words that a column of categories has.
inline constexpr std::size_t mostCategories = 20;

/// True when the texts repeat a few words: at most `mostCategories` distinct ones, each three times on the
/// average at least, all of printable ASCII.
bool areCategories(const TextBuffer& texts);

struct WordCount {
    std::string word;
    std::size_t count;
};

/// How often each word occurs, the most frequent first, equally frequent ones in alphabetical order.
std::vector<WordCount> countWords(const std::vector<std::string>& words);

} // namespace vexa::inspect
