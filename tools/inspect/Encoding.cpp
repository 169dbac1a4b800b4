#include "Encoding.hpp"

#include <utf8proc.h>

#include <algorithm>
#include <cstring>

namespace vexa::inspect {

namespace {

/// How many bytes at the beginning are ASCII, in steps of eight: what follows need not be.
std::size_t asciiBytes(std::string_view text) noexcept {
    std::size_t k = 0;
    for (std::uint64_t word = 0; k + sizeof word <= text.size(); k += sizeof word) {
        std::memcpy(&word, text.data() + k, sizeof word);
        if ((word & 0x8080808080808080U) != 0) break;
    }
    return k;
}

} // namespace

Character takeCharacter(std::string_view& text) noexcept {
    std::int32_t code = -1;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto length = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &code);
    const std::string_view taken = text.substr(0, length > 0 ? static_cast<std::size_t>(length) : 1);
    text.remove_prefix(taken.size());
    return {taken, length > 0 ? code : -1};
}

std::optional<std::size_t> findInvalidByte(std::string_view text) noexcept {
    std::size_t k = asciiBytes(text);
    while (k < text.size()) {
        if (text[k] >= 0) {
            ++k;
            continue;
        }
        std::string_view rest = text.substr(k);
        const Character character = takeCharacter(rest);
        if (character.code < 0) return k;
        k += character.bytes.size();
    }
    return std::nullopt;
}

std::string_view firstCharacters(std::string_view text, std::size_t most) noexcept {
    std::string_view rest = text;
    for (std::size_t k = 0; k < most && !rest.empty(); ++k)
        takeCharacter(rest);
    return text.substr(0, text.size() - rest.size());
}

std::size_t latin1ToUtf8(std::string_view text, char* out) noexcept {
    const char* start = out;
    for (const char c : text)
        out += utf8proc_encode_char(static_cast<unsigned char>(c), reinterpret_cast<utf8proc_uint8_t*>(out));
    return static_cast<std::size_t>(out - start);
}

} // namespace vexa::inspect
