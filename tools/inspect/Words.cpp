#include "Words.hpp"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace vexa::inspect {

namespace {

bool canBeMember(std::string_view text) {
    return text.size() <= longestCategory &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

} // namespace

bool areCategories(const TextBuffer& texts) {
    std::unordered_set<std::string_view> words;
    std::size_t present = 0;
    for (std::size_t k = 0; k < texts.size(); ++k) {
        const auto text = texts[k];
        if (!text) continue;
        ++present;
        if (words.insert(*text).second && (words.size() > mostCategories || !canBeMember(*text)))
            return false;
    }
    return present > 0 && words.size() * 3 <= present;
}

} // namespace vexa::inspect
