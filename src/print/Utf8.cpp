// UTF-16 and UTF-8, by table 3-7 of the Unicode Standard ("Well-Formed UTF-8 Byte Sequences"). Runs of ASCII
// go 16 bytes at a time.
#include <foundation/vexadata/Utf8.hpp>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace foundation::vexadata {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t none = 0xFFFFFFFF;

struct Character {
    char32_t code;      // `none` when what was taken belongs to no character
    std::size_t length; // of what was taken
};

bool isHigh(char16_t unit) noexcept { return (unit & 0xFC00) == 0xD800; }
bool isLow(char16_t unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

Character firstOf(std::u16string_view text) noexcept {
    const char16_t unit = text.front();
    if (!isHigh(unit) && !isLow(unit)) {
        return {unit, 1};
    }
    if (isLow(unit) || text.size() == 1 || !isLow(text[1])) {
        return {none, 1};
    }
    return {0x10000 + ((static_cast<char32_t>(unit) & 0x3FF) << 10) +
                (static_cast<char32_t>(text[1]) & 0x3FF),
            2};
}

/// What a lead byte says: how many bytes follow, and the range of the first of them.
struct Lead {
    std::size_t following;
    unsigned char least;
    unsigned char most;
};
Lead leadOf(unsigned char byte) noexcept {
    if (byte < 0xC2 || byte > 0xF4) {
        return {0, 0, 0};
    }
    if (byte < 0xE0) {
        return {1, 0x80, 0xBF};
    }
    if (byte < 0xF0) {
        return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
}

Character firstOf(std::string_view text) noexcept {
    const auto byte = static_cast<unsigned char>(text.front());
    if (byte < 0x80) {
        return {byte, 1};
    }
    const Lead lead = leadOf(byte);
    char32_t code = byte & (0x3FU >> lead.following);
    for (std::size_t k = 1; k <= lead.following; ++k) {
        const unsigned char next = k < text.size() ? static_cast<unsigned char>(text[k]) : 0;
        if (next < (k == 1 ? lead.least : 0x80) || next > (k == 1 ? lead.most : 0xBF)) {
            return {none, k};
        }
        code = code << 6 | (next & 0x3FU);
    }
    return {lead.following == 0 ? none : code, lead.following + 1};
}

char* put(char* out, char32_t code) noexcept {
    if (code < 0x80) {
        *out++ = static_cast<char>(code);
        return out;
    }
    const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    *out++ = static_cast<char>((0xFF00U >> (following + 1)) | code >> (6 * following));
    for (int k = following - 1; k >= 0; --k) {
        *out++ = static_cast<char>(0x80U | ((code >> (6 * k)) & 0x3FU));
    }
    return out;
}
char16_t* put(char16_t* out, char32_t code) noexcept {
    if (code < 0x10000) {
        *out++ = static_cast<char16_t>(code);
        return out;
    }
    *out++ = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    return out;
}

/// How many units make 16 bytes.
template <class Unit>
constexpr std::size_t block = 16 / sizeof(Unit);

template <class Unit>
bool isAscii(const Unit* units) noexcept {
    constexpr std::uint64_t above = sizeof(Unit) == 1 ? 0x8080808080808080U : 0xFF80FF80FF80FF80U;
    std::uint64_t words[2];
    std::memcpy(words, units, sizeof words);
    return ((words[0] | words[1]) & above) == 0;
}

/// Converts `text`; `wrong(position)` tells what stands for the place that belongs to no character. Goes
/// through a piece of memory that stays in the cache, since a string cannot be made longer without being
/// filled first.
template <class Out, class Unit, class Wrong>
Out converted(std::basic_string_view<Unit> text, Wrong wrong) {
    constexpr std::size_t most = 2048;
    constexpr std::size_t room = 4 * block<Unit>; // what one step may add
    typename Out::value_type piece[most + room];
    auto* out = piece;
    Out result;
    result.reserve(text.size());
    for (std::size_t k = 0; k < text.size();) {
        const std::size_t left = text.size() - k;
        if (left >= block<Unit> && isAscii(text.data() + k)) {
            for (std::size_t unit = 0; unit < block<Unit>; ++unit) {
                out[unit] = static_cast<typename Out::value_type>(text[k + unit]);
            }
            out += block<Unit>;
            k += block<Unit>;
        } else {
            for (const std::size_t end = k + std::min(left, block<Unit>); k < end;) {
                const Character character = firstOf(text.substr(k));
                out = put(out, character.code == none ? wrong(k) : character.code);
                k += character.length;
            }
        }
        if (out >= piece + most || k >= text.size()) {
            result.append(piece, static_cast<std::size_t>(out - piece));
            out = piece;
        }
    }
    return result;
}

char32_t replaced(std::size_t) noexcept { return replacement; }

} // namespace

std::string toUtf8(std::u16string_view text) {
    return converted<std::string>(text, [](std::size_t k) -> char32_t {
        throw std::range_error("UTF-16 text: unit " + std::to_string(k) + " is half of a surrogate pair");
    });
}
std::string toUtf8Lossy(std::u16string_view text) { return converted<std::string>(text, replaced); }

std::u16string fromUtf8(std::string_view text) {
    return converted<std::u16string>(text, [](std::size_t k) -> char32_t {
        throw std::range_error("UTF-8 text: byte " + std::to_string(k) + " belongs to no character");
    });
}
std::u16string fromUtf8Lossy(std::string_view text) { return converted<std::u16string>(text, replaced); }

} // namespace foundation::vexadata
