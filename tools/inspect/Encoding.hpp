// Encodings of text files: UTF-8 and its checks, Latin-1, and the UTF-16 of string arrays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vexa::inspect {

enum class Encoding { utf8, latin1 };

struct Character {
    std::string_view bytes;
    std::int32_t code; ///< -1 for a byte that belongs to no character of UTF-8
};

/// Takes the first character off a text that is not empty. Allocates nothing.
Character takeCharacter(std::string_view& text) noexcept;

/// Where the first byte stands that belongs to no character of UTF-8; nothing when all do.
std::optional<std::size_t> findInvalidByte(std::string_view text) noexcept;

/// `text` up to its first `most` characters.
std::string_view firstCharacters(std::string_view text, std::size_t most) noexcept;

/// The longest that Latin-1 grows as UTF-8.
inline constexpr std::size_t utf8BytesOfLatin1 = 2;
/// Writes `text`, which is Latin-1, as UTF-8 to `out`, which has room for it; returns the number of bytes
/// written.
std::size_t latin1ToUtf8(std::string_view text, char* out) noexcept;

} // namespace vexa::inspect
