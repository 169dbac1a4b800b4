// Between narrow text and UTF-16: ASCII only in both directions, anything else throws.
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/detail/Text.hpp>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace foundation::vexadata::detail {

namespace {

constexpr char16_t aboveAscii = 0xFF80;

template <class Unit>
std::basic_string<Unit> copyOf(const Unit* text, std::size_t length) {
    if (length == 0) {
        return {};
    }
    requireText(text);
    return std::basic_string<Unit>(text, length);
}

} // namespace

// libstdc++ threw this for a null pointer, and clients rely on class and text. Tested here, since today's
// versions differ.
void requireText(const void* text) {
    if (text == nullptr) {
        throw std::logic_error("basic_string::_M_construct null not valid");
    }
}

char16_t widened(char unit) {
    if (static_cast<unsigned char>(unit) > 127) {
        raise<NonAsciiCharInInputDataException>();
    }
    return static_cast<char16_t>(unit);
}

std::u16string widened(const char* text, std::size_t length) {
    std::u16string wide(length, u'\0');
    std::transform(text, text + length, wide.begin(), [](char unit) { return widened(unit); });
    return wide;
}

std::u16string widened(const char* text) {
    requireText(text);
    return widened(text, std::strlen(text));
}

std::u16string copied(const char16_t* text, std::size_t length) { return copyOf(text, length); }
std::string copied(const char* text, std::size_t length) { return copyOf(text, length); }
std::string copied(const char* text) {
    requireText(text);
    return copyOf(text, std::strlen(text));
}

std::size_t firstNonAscii(const char16_t* text, std::size_t length) noexcept {
    std::size_t k = 0;
    while (k + 4 <= length && ((text[k] | text[k + 1] | text[k + 2] | text[k + 3]) & aboveAscii) == 0) {
        k += 4;
    }
    while (k < length && (text[k] & aboveAscii) == 0) {
        ++k;
    }
    return k;
}

std::string narrowed(const char16_t* text, std::size_t length) {
    if (firstNonAscii(text, length) != length) {
        raise<NonAsciiCharInRequestedAsciiOutputException>();
    }
    std::string narrow(length, '\0');
    std::transform(text, text + length, narrow.begin(),
                   [](char16_t unit) { return static_cast<char>(unit); });
    return narrow;
}

} // namespace foundation::vexadata::detail
