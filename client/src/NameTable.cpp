// Building the hash table; tests of names.
#include "NameTable.hpp"

#include <vexa/client/Exception.hpp>

#include <algorithm>

namespace vexa::client {

namespace {

bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

} // namespace

bool isIdentifier(const std::string& name) noexcept { return isVariableName(name) && name.front() != '_'; }

bool isVariableName(std::string_view name) noexcept {
    return !name.empty() && !isDigit(name.front()) && std::all_of(name.begin(), name.end(), [](char c) {
        return isLetter(c) || isDigit(c) || c == '_';
    });
}

void requireClassName(const std::string& name) {
    if (name.find('\0') != std::string::npos) {
        throw InvalidClassNameException(name);
    }
}

} // namespace vexa::client
