#include "NameTable.hpp"

#include <algorithm>

namespace vexa::client {

namespace {

bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

} // namespace

bool isIdentifier(const std::string& name) noexcept {
    return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '_';
    });
}

} // namespace vexa::client
