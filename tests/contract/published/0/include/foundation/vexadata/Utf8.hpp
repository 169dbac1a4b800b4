// Between the UTF-16 text of arrays and UTF-8. The umbrella header does not include this one.
//
// The strict functions refuse ill-formed text and say where it is; the lossy ones put U+FFFD in its place,
// one for each maximal part of a sequence that began well, as the Unicode Standard (version 15, section 3.9,
// "U+FFFD Substitution of Maximal Subparts") recommends.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/StringElement.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

/// @throws std::range_error "UTF-16 text: unit 3 is half of a surrogate pair", counted from 0
VEXADATA_API std::string toUtf8(std::u16string_view text);
/// Halves of pairs become U+FFFD.
VEXADATA_API std::string toUtf8Lossy(std::u16string_view text);

/// @throws std::range_error "UTF-8 text: byte 3 belongs to no character", counted from 0: also for overlong
/// forms, surrogates and what lies above U+10FFFF
VEXADATA_API std::u16string fromUtf8(std::string_view text);
/// What belongs to no character becomes U+FFFD.
VEXADATA_API std::u16string fromUtf8Lossy(std::string_view text);

/// The text of a string, or nothing for a missing one. Deduced, so that a text is not taken for a string that
/// is there.
/// @throws std::range_error as above; index errors
template <class T, std::enable_if_t<std::is_same_v<T, String>, int> = 0>
std::optional<std::string> toUtf8(const T& text) {
    return text ? std::optional<std::string>(toUtf8(std::u16string_view(*text))) : std::nullopt;
}
inline std::optional<std::string> toUtf8(const VEXAStringReferenceExt& element) {
    return toUtf8(element.value());
}
/// The characters of an array, in storage order, as one text.
/// @throws std::range_error as above
inline std::string toUtf8(const CharArray& characters) {
    return toUtf8(std::u16string_view(characters.toUTF16()));
}
/// All strings of an array, in storage order.
/// @throws std::range_error as above
inline std::vector<std::optional<std::string>> toUtf8(const TypedArray<String>& strings) {
    std::vector<std::optional<std::string>> texts;
    texts.reserve(strings.getNumberOfElements());
    for (const auto& element : strings) {
        texts.push_back(toUtf8(element));
    }
    return texts;
}

/// A row of characters.
/// @throws std::range_error as above
inline CharArray charArrayFromUtf8(const ArrayFactory& factory, std::string_view text) {
    return factory.createCharArray(fromUtf8(text));
}
/// A string array of these dimensions from a range of texts: anything that a `std::string_view` is made of,
/// or optionals of such, of which an empty one gives a missing string. Strings for which there is no text are
/// missing too.
/// @throws std::range_error as above; NumberOfElementsExceedsMaximumException
template <class Texts>
TypedArray<String> stringArrayFromUtf8(const ArrayFactory& factory, std::vector<std::size_t> dims,
                                       const Texts& texts) {
    TypedArray<String> strings = factory.createArray<String>(std::move(dims));
    auto element = strings.begin();
    for (const auto& text : texts) {
        if (element == strings.end()) {
            break;
        }
        if constexpr (std::is_convertible_v<decltype(text), std::string_view>) {
            *element = fromUtf8(text);
        } else if (text) {
            *element = fromUtf8(*text);
        }
        ++element;
    }
    return strings;
}

#ifdef __cpp_char8_t
// The same for text whose type says that it is UTF-8.

inline std::u8string toU8(std::u16string_view text) {
    const std::string bytes = toUtf8(text);
    return std::u8string(bytes.begin(), bytes.end());
}
inline std::u16string fromUtf8(std::u8string_view text) {
    return fromUtf8(std::string_view(reinterpret_cast<const char*>(text.data()), text.size()));
}
#endif

} // namespace foundation::vexadata
