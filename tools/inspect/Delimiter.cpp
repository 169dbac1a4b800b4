#include "Delimiter.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace vexa::inspect {

namespace {

constexpr std::string_view candidates = ",;\t";
constexpr std::size_t linesToCompare = 10;

using Counts = std::array<std::size_t, candidates.size()>;

/// How often each candidate stands outside quotes, for each of the first lines.
std::vector<Counts> countByLine(std::string_view head) {
    std::vector<Counts> lines;
    Counts counts{};
    bool quoted = false;
    bool blank = true;
    auto endLine = [&] {
        if (!blank) lines.push_back(std::exchange(counts, {}));
        blank = true;
    };
    for (const char c : head) {
        if (lines.size() == linesToCompare) return lines;
        if (!quoted && (c == '\n' || c == '\r')) {
            endLine();
            continue;
        }
        blank = false;
        if (c == '"') quoted = !quoted;
        const std::size_t candidate = candidates.find(c);
        if (!quoted && candidate != std::string_view::npos) ++counts[candidate];
    }
    endLine();
    return lines;
}

} // namespace

char detectDelimiter(std::string_view head) {
    const std::vector<Counts> lines = countByLine(head);
    char best = ',';
    std::pair<std::ptrdiff_t, std::size_t> bestScore{0, 0};
    for (std::size_t k = 0; k < candidates.size() && !lines.empty(); ++k) {
        const std::size_t inHeader = lines.front()[k];
        if (inHeader == 0) continue;
        const auto agreeing = std::count_if(lines.begin(), lines.end(),
                                            [&](const Counts& counts) { return counts[k] == inHeader; });
        const std::pair score{agreeing, inHeader};
        if (score > bestScore) {
            bestScore = score;
            best = candidates[k];
        }
    }
    return best;
}

} // namespace vexa::inspect
