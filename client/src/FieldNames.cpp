// Tests of field names.
#include "FieldNames.hpp"

#include <vexa/client/Exception.hpp>

#include <utility>

namespace vexa::client {

FieldNames::FieldNames(std::vector<std::string> names) : names_(std::move(names)) {
    for (std::size_t position = 0; position < names_.size(); ++position) {
        const std::string& name = names_[position];
        if (!isIdentifier(name)) {
            throw InvalidFieldNameException(name, "is no identifier");
        }
        if (names_.find(name) != position) {
            throw InvalidFieldNameException(name, "comes twice");
        }
    }
}

void FieldNames::reportUnknown(const std::string& name) { throw UnknownFieldException(name); }

} // namespace vexa::client
