#include "Text.hpp"

#include <locale.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cwchar>

namespace vexa::inspect {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// While it lives, the functions for wide characters speak UTF-8 on this thread.
class Utf8Locale {
public:
    Utf8Locale() : previous_(::uselocale(utf8())) {}
    ~Utf8Locale() { ::uselocale(previous_); }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

private:
    /// Null, which changes nothing, where the system has no such locale.
    static locale_t utf8() {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t previous_;
};

/// Calls visit(bytes, character) for each character; the character is L'\uFFFD' for a byte that belongs to
/// none.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
    const Utf8Locale locale;
    while (!text.empty()) {
        std::mbstate_t state{};
        wchar_t character = 0;
        std::size_t length = std::mbrtowc(&character, text.data(), text.size(), &state);
        if (length == 0) length = 1; // the NUL character
        if (length > text.size()) {
            length = 1;
            character = L'\uFFFD';
        }
        visit(text.substr(0, length), character);
        text.remove_prefix(length);
    }
}

/// U+2400 + `control`, U+2421 for delete.
std::string pictureOf(wchar_t control) {
    const int offset = control == 0x7F ? 0x21 : static_cast<int>(control);
    return {'\xE2', '\x90', static_cast<char>(0x80 + offset)};
}

} // namespace

std::string formatNumber(double value) {
    if (std::isnan(value)) return "-";
    if (value == 0) return "0";
    const double magnitude = std::floor(std::log10(std::fabs(value))) + 1;
    const int precision = magnitude > 6 && magnitude <= 15 ? static_cast<int>(magnitude) : 6;
    char text[32];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, value, std::chars_format::general, precision);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string counted(std::size_t count, const std::string& noun, const std::string& plural) {
    const std::string many = plural.empty() ? noun + "s" : plural;
    return std::to_string(count) + " " + (count == 1 ? noun : many);
}

std::u16string toUtf16(std::string_view text) {
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; }))
        return std::u16string(text.begin(), text.end());
    std::u16string result;
    forEachCharacter(text, [&](std::string_view, wchar_t character) {
        const auto code = static_cast<char32_t>(character);
        if (code < 0x10000) {
            result += static_cast<char16_t>(code);
        } else {
            result += static_cast<char16_t>(0xD7C0 + (code >> 10));
            result += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
    });
    return result;
}

std::string printable(std::string_view text) {
    std::string result;
    forEachCharacter(text, [&](std::string_view bytes, wchar_t character) {
        if (character < 0x20 || character == 0x7F) {
            result += pictureOf(character);
        } else if (character == L'\uFFFD' || (character >= 0x80 && character < 0xA0)) {
            result += replacement;
        } else {
            result += bytes;
        }
    });
    return result;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    forEachCharacter(text, [&](std::string_view, wchar_t character) {
        const int columns = ::wcwidth(character);
        width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
    });
    return width;
}

} // namespace vexa::inspect
