#include "Words.hpp"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_set>

namespace vexa::inspect {

namespace {

bool isPrintableAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

} // namespace

bool areCategories(const TextBuffer& texts) {
    std::unordered_set<std::string_view> words;
    std::size_t present = 0;
    for (std::size_t k = 0; k < texts.size(); ++k) {
        const auto text = texts[k];
        if (!text) continue;
        ++present;
        if (words.insert(*text).second && (words.size() > mostCategories || !isPrintableAscii(*text)))
            return false;
    }
    return present > 0 && words.size() * 3 <= present;
}

std::vector<WordCount> countWords(const std::vector<std::string>& words) {
    std::map<std::string, std::size_t> counts;
    for (const std::string& word : words)
        ++counts[word];
    std::vector<WordCount> sorted;
    for (const auto& [word, count] : counts)
        sorted.push_back({word, count});
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const WordCount& a, const WordCount& b) { return a.count > b.count; });
    return sorted;
}

} // namespace vexa::inspect
