// Character arrays as text.
#pragma once

#include <foundation/vexadata/ArrayReference.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <memory>
#include <string>
#include <utility>

namespace foundation::vexadata {

/// An array of UTF-16 units that is read as one text: all its elements in storage order, whatever its
/// dimensions.
class VEXADATA_API CharArray : public TypedArray<char16_t> {
public:
    using TypedArray<char16_t>::TypedArray;
    using TypedArray<char16_t>::operator=;
    /// No characters; see TypedArray.
    CharArray() = default;
    /// @throws InvalidArrayTypeException when the array is no character array; a moved argument is emptied
    /// even then
    CharArray(const Array& array) : TypedArray<char16_t>(array) {}
    CharArray(Array&& array) : TypedArray<char16_t>(std::move(array)) {}
    CharArray(const CharArray&) noexcept = default;
    CharArray(CharArray&&) noexcept = default;
    CharArray& operator=(const CharArray&) noexcept = default;
    CharArray& operator=(CharArray&&) noexcept = default;
    ~CharArray() override;

    /// A copy of the text.
    std::u16string toUTF16() const;
    /// The text narrowed.
    /// @throws NonAsciiCharInRequestedAsciiOutputException for a unit above 127
    std::string toAscii() const;
};

/// What a reference to a character array in a cell or field can do besides.
/// @throws TypeMismatchException when something else lies there by now; index errors
class VEXADATA_API CharArrayExt : public ArrayReferenceExt {
public:
    using ArrayReferenceExt::ArrayReferenceExt;

    /// The units of the array, in storage order.
    std::u16string toUTF16() const;
    /// @throws NonAsciiCharInRequestedAsciiOutputException for a unit above 127
    std::string toAscii() const;
};

namespace detail {

extern template VEXADATA_API CharArray castTo<CharArray, false>(std::shared_ptr<ReferenceImpl>);
extern template VEXADATA_API CharArray castTo<CharArray, true>(std::shared_ptr<ReferenceImpl>);

} // namespace detail

/// A cell or field that holds a character array.
template <>
class Reference<CharArray> : public detail::HeldArray<Reference<CharArray>, CharArray, CharArrayExt> {
public:
    using HeldArray::HeldArray;
    using HeldArray::operator=;
};

/// The text of a character array, or of a string array with exactly one element.
/// @throws InvalidArrayTypeException for any other array, string arrays of other dimensions than 1 by 1 among
/// them
/// @throws std::runtime_error "Missing string value"
VEXADATA_API std::u16string toUTF16(const Array& array);

} // namespace foundation::vexadata
