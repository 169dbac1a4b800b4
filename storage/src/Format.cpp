#include "Format.hpp"

#include <algorithm>
#include <array>

namespace vexa::storage {

namespace {

// In the order of ArrayType.
constexpr std::array<std::string_view, 33> names{"empty",          "logical",        "char",
                                                 "string",         "double",         "single",
                                                 "int8",           "uint8",          "int16",
                                                 "uint16",         "int32",          "uint32",
                                                 "int64",          "uint64",         "complex double",
                                                 "complex single", "complex int8",   "complex uint8",
                                                 "complex int16",  "complex uint16", "complex int32",
                                                 "complex uint32", "complex int64",  "complex uint64",
                                                 "cell",           "struct",         "object",
                                                 "value object",   "handle object",  "enum",
                                                 "sparse logical", "sparse double",  "sparse complex double"};

constexpr TypedTag unsignedOf(std::uint64_t log) noexcept {
    constexpr std::array<ArrayType, 4> types{ArrayType::UINT8, ArrayType::UINT16, ArrayType::UINT32,
                                             ArrayType::UINT64};
    return {types[log], std::size_t{1} << log};
}
constexpr TypedTag signedOf(std::uint64_t log) noexcept {
    TypedTag tag = unsignedOf(log);
    tag.type = static_cast<ArrayType>(static_cast<std::int32_t>(tag.type) - 1);
    return tag;
}
constexpr TypedTag floatOf(std::uint64_t log) noexcept {
    constexpr std::array<ArrayType, 4> types{ArrayType::SINGLE, ArrayType::SINGLE, ArrayType::DOUBLE,
                                             ArrayType::UNKNOWN}; // nothing here holds 128 bits
    return {types[log], std::size_t{2} << log, false, log == 0};
}

} // namespace

// RFC 8746, section 2.1: 0b010_f_s_e_ll, with f for floating point, s for signed, e for little-endian.
TypedTag typedTag(std::uint64_t number) noexcept {
    if (number < tag::firstTyped || number > tag::lastTyped || number == 76) {
        return {};
    }
    const std::uint64_t log = number & 3U;
    TypedTag result = (number & 16U) != 0  ? floatOf(log)
                      : (number & 8U) != 0 ? signedOf(log)
                                           : unsignedOf(log);
    result.isBigEndian = (number & 4U) == 0 && result.size > 1;
    return result;
}

std::uint64_t tagOf(ArrayType type) noexcept {
    if (type == ArrayType::CHAR) {
        return tag::uint16Typed;
    }
    for (std::uint64_t number = tag::firstTyped; number <= tag::lastTyped; ++number) {
        const TypedTag typed = typedTag(number);
        if (typed.type == partOf(type) && !typed.isBigEndian && !typed.isHalf) {
            return number;
        }
    }
    return 0;
}

std::string_view nameOf(ArrayType type) noexcept {
    const auto place = static_cast<std::size_t>(type);
    return place < names.size() ? names[place] : std::string_view();
}

std::pair<ArrayType, bool> typeNamed(std::string_view name) noexcept {
    const auto* const found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? std::pair(ArrayType::UNKNOWN, false)
                                : std::pair(static_cast<ArrayType>(found - names.begin()), true);
}

} // namespace vexa::storage
