// Names of fields for columns of other libraries, whose names may be any text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vexa::interop {

/// A name for each text, all different: what is no ASCII letter or digit becomes an underscore, an `x` comes
/// before what does not begin with a letter, at most 63 of the bytes are taken, and a number follows where names
/// would be equal. So `avg(temp)` becomes `avg_temp_`.
inline std::vector<std::string> fieldNames(const std::vector<std::string>& texts) {
    constexpr std::size_t longest = 63;
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    std::unordered_map<std::string, std::size_t> taken; // and the number that is tried next behind each
    std::vector<std::string> names;
    for (const std::string& text : texts) {
        std::string name(text.empty() || !isLetter(text.front()) ? 1 : 0, 'x');
        for (const char c : std::string_view(text).substr(0, longest)) {
            name += isLetter(c) || isDigit(c) ? c : '_';
        }
        const std::string stem = name;
        while (!taken.try_emplace(name, 2).second) {
            name = stem + "_" + std::to_string(taken[stem]++);
        }
        names.push_back(name);
    }
    return names;
}

} // namespace vexa::interop
