// The list of field names of a struct array.
#pragma once

#include "NameTable.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::client {

/// Names in their order. Immutable, so that arrays share it.
class FieldNames {
public:
    /// Names are identifiers, and none comes twice.
    /// @throws InvalidFieldNameException
    explicit FieldNames(std::vector<std::string> names);

    std::size_t size() const noexcept { return names_.size(); }
    const std::string& operator[](std::size_t position) const noexcept { return names_[position]; }
    friend bool operator==(const FieldNames& a, const FieldNames& b) noexcept { return a.names_ == b.names_; }

    /// @throws UnknownFieldException
    std::size_t positionOf(const std::string& name) const {
        const std::size_t position = names_.find(name);
        if (position == NameTable::none) {
            reportUnknown(name);
        }
        return position;
    }

private:
    [[noreturn, gnu::cold]] static void reportUnknown(const std::string& name);

    NameTable names_;
};

} // namespace vexa::client
