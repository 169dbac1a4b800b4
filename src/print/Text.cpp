// Quoting, and the width of characters on a terminal.
#include "Text.hpp"

#include "Escape.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace foundation::vexadata::print {

namespace {

bool isHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit < 0xE000; }

/// Takes the first character off `text`; half of a pair stands for itself.
char32_t takeCharacter(std::u16string_view& text) noexcept {
    const char16_t unit = text.front();
    text.remove_prefix(1);
    if (!isHighSurrogate(unit) || text.empty() || !isLowSurrogate(text.front())) {
        return unit;
    }
    const char16_t low = text.front();
    text.remove_prefix(1);
    return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (static_cast<char32_t>(low) - 0xDC00);
}

void appendEscaped(std::string& out, char32_t code, char quote) {
    if (code == static_cast<char32_t>(quote) || code == U'\\') {
        out += '\\';
    }
    out += escaped(code).view();
}

struct Interval {
    char32_t first;
    char32_t last;
};

template <std::size_t count>
bool isIn(const Interval (&intervals)[count], char32_t code) noexcept {
    return std::any_of(std::begin(intervals), std::end(intervals), [code](const Interval& interval) {
        return code >= interval.first && code <= interval.last;
    });
}

constexpr Interval combining[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},
                                  {0x064B, 0x065F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
                                  {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
constexpr Interval wide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                             {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                             {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

/// Takes the first character off text that `asUtf8` wrote.
char32_t takeCharacter(std::string_view& text) noexcept {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t code = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t k = 1; k < length && k < text.size(); ++k) {
        code = code << 6 | (static_cast<unsigned char>(text[k]) & 0x3FU);
    }
    text.remove_prefix(std::min(length, text.size()));
    return code;
}

} // namespace

std::string quoted(std::u16string_view text, char quote, std::size_t most) {
    const bool cut = text.size() > most;
    text = text.substr(0, most);
    if (cut && !text.empty() && isHighSurrogate(text.back())) {
        text.remove_suffix(1);
    }
    std::string out(1, quote);
    while (!text.empty()) {
        appendEscaped(out, takeCharacter(text), quote);
    }
    out += quote;
    return cut ? out + "..." : out;
}

std::size_t displayWidth(std::string_view text) noexcept {
    std::size_t width = 0;
    while (!text.empty()) {
        const char32_t code = takeCharacter(text);
        width += isIn(combining, code) ? 0U : isIn(wide, code) ? 2U : 1U;
    }
    return width;
}

} // namespace foundation::vexadata::print
