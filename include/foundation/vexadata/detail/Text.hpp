// Narrow and UTF-16 text. Narrow text of this library is ASCII.
#pragma once

#include <foundation/vexadata/Forward.hpp>

#include <cstddef>
#include <string>

namespace foundation::vexadata::detail {

/// One unit for each byte.
/// @throws NonAsciiCharInInputDataException for a byte above 127
VEXADATA_API std::u16string widened(const char* text, std::size_t length);
inline std::u16string widened(const std::string& text) { return widened(text.data(), text.size()); }
/// Up to its NUL.
/// @throws std::logic_error for a null pointer, as `std::string` does; NonAsciiCharInInputDataException
VEXADATA_API std::u16string widened(const char* text);
VEXADATA_API char16_t widened(char unit);

/// One byte for each unit. The whole text is looked at before anything is made.
/// @throws NonAsciiCharInRequestedAsciiOutputException for a unit above 127
VEXADATA_API std::string narrowed(const char16_t* text, std::size_t length);

/// @throws std::logic_error for a null pointer in place of a text
VEXADATA_API void requireText(const void* text);

/// A copy of a text that a back-end lends.
/// @throws std::logic_error for a null pointer with a length
VEXADATA_API std::u16string copied(const char16_t* text, std::size_t length);
VEXADATA_API std::string copied(const char* text, std::size_t length);
/// Up to its NUL.
/// @throws std::logic_error for a null pointer
VEXADATA_API std::string copied(const char* text);

/// Position of the first unit above 127; `length` when there is none.
VEXADATA_API std::size_t firstNonAscii(const char16_t* text, std::size_t length) noexcept;

} // namespace foundation::vexadata::detail
