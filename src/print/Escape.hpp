// Characters that are not written to a terminal as they are. vexa-inspect uses this too: it allocates
// nothing, so that a message about exhausted memory can be escaped as well.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace foundation::vexadata::print {

/// A few bytes of UTF-8.
class ShortText {
public:
    constexpr void put(char32_t byte) noexcept { bytes_[size_++] = static_cast<char>(byte); }
    constexpr std::string_view view() const noexcept { return {bytes_.data(), size_}; }

private:
    std::array<char, 12> bytes_{};
    std::size_t size_ = 0;
};

constexpr ShortText asUtf8(char32_t code) noexcept {
    ShortText text;
    const auto follow = [&](int shift) { text.put(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        text.put(code);
    } else if (code < 0x800) {
        text.put(0xC0 | (code >> 6));
        follow(0);
    } else if (code < 0x10000) {
        text.put(0xE0 | (code >> 12));
        follow(6);
        follow(0);
    } else {
        text.put(0xF0 | (code >> 18));
        follow(12);
        follow(6);
        follow(0);
    }
    return text;
}

/// `letter` after a backslash, and `code` with so many hexadecimal digits.
constexpr ShortText asNumber(char32_t letter, char32_t code, int digits) noexcept {
    ShortText text;
    text.put(U'\\');
    text.put(letter);
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        text.put(static_cast<char32_t>("0123456789abcdef"[(code >> shift) & 0xF]));
    }
    return text;
}

/// Control characters, characters that change the direction of text, characters without width, and unpaired
/// surrogates.
constexpr bool isInvisible(char32_t code) noexcept {
    const auto between = [code](char32_t first, char32_t last) { return code >= first && code <= last; };
    return code < 0x20 || between(0x7F, 0x9F) || code == 0xAD || code == 0x61C || code == 0x180E ||
           between(0x200B, 0x200F) || between(0x2028, 0x202E) || between(0x2060, 0x206F) ||
           between(0xD800, 0xDFFF) || code == 0xFEFF || between(0xFFF9, 0xFFFB) || between(0xE0000, 0xE007F);
}

/// The character as it is, or as in a C++ literal when it is invisible.
constexpr ShortText escaped(char32_t code) noexcept {
    if (!isInvisible(code)) {
        return asUtf8(code);
    }
    switch (code) {
    case U'\n':
        return asNumber(U'n', 0, 0);
    case U'\t':
        return asNumber(U't', 0, 0);
    default:
        return code < 0x10000 ? asNumber(U'u', code, 4) : asNumber(U'U', code, 8);
    }
}

/// A byte that belongs to no character: "\xe9".
constexpr ShortText escapedByte(char byte) noexcept {
    return asNumber(U'x', static_cast<unsigned char>(byte), 2);
}

} // namespace foundation::vexadata::print
