#include "Kinds.hpp"

#include <array>
#include <cstddef>

namespace vexa::check {

std::string_view nameOf(ArrayType type) {
    static constexpr std::array<std::string_view, 33> names{
        "unknown",        "logical",        "char",
        "string",         "double",         "single",
        "int8",           "uint8",          "int16",
        "uint16",         "int32",          "uint32",
        "int64",          "uint64",         "complex-double",
        "complex-single", "complex-int8",   "complex-uint8",
        "complex-int16",  "complex-uint16", "complex-int32",
        "complex-uint32", "complex-int64",  "complex-uint64",
        "cell",           "struct",         "object",
        "value-object",   "handle-object",  "enum",
        "sparse-logical", "sparse-double",  "sparse-complex-double"};
    const auto value = static_cast<std::size_t>(type);
    return value < names.size() ? names[value] : "no type";
}

} // namespace vexa::check
