#include "FieldNames.hpp"

#include <vexa/client/Exception.hpp>

#include <algorithm>
#include <utility>

namespace vexa::client {

namespace {

bool isLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isFieldName(const std::string& name) noexcept {
    return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), [](char c) {
        return isLetter(c) || (c >= '0' && c <= '9') || c == '_';
    });
}

} // namespace

FieldNames::FieldNames(std::vector<std::string> names) : names_(std::move(names)) {
    std::size_t buckets = 2;
    while (buckets < 2 * names_.size()) {
        buckets *= 2;
    }
    buckets_.assign(buckets, none);
    mask_ = buckets - 1;
    for (std::size_t position = 0; position < names_.size(); ++position) {
        const std::string& name = names_[position];
        if (!isFieldName(name)) {
            throw InvalidFieldNameException(name, "is no identifier");
        }
        std::size_t bucket = hashOf(name) & mask_;
        while (buckets_[bucket] != none) {
            if (names_[buckets_[bucket]] == name) {
                throw InvalidFieldNameException(name, "comes twice");
            }
            bucket = (bucket + 1) & mask_;
        }
        buckets_[bucket] = position;
    }
}

void FieldNames::reportUnknown(const std::string& name) { throw UnknownFieldException(name); }

} // namespace vexa::client
