// Handles to elements of string arrays, and their comparison with text and with each other.
#pragma once

#include <foundation/vexadata/ArrayElementRef.hpp>
#include <foundation/vexadata/ArrayElementTypedRef.hpp>
#include <foundation/vexadata/detail/ElementHandle.hpp>
#include <foundation/vexadata/detail/Text.hpp>

#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// The text of a string element, borrowed from its array until that is changed; null for a missing element,
/// whatever length a back-end gives it.
struct BorrowedText {
    const char16_t* text = nullptr;
    std::size_t length = 0;
};

/// The position is passed by value: while its address does not escape, its indices stay in registers.
[[gnu::noinline]] inline BorrowedText askedText(ElementPosition position) {
    BorrowedText found;
    const ArrayImpl* array = position.array();
    array->getStringElement(position.linearIndex(), found.text, found.length);
    return found;
}

/// @throws index errors; errors of the back-end
VEXADATA_INLINE inline BorrowedText textAt(const ElementPosition& position) {
    if (!position.isInPlace()) {
        return askedText(position);
    }
    BorrowedText found;
    const std::size_t index = position.indexInPlace<String>();
    position.array()->getStringElement(index, found.text, found.length);
    return found;
}

/// The string element at `index` of `array` as a value.
inline String stringOf(const ArrayImpl& array, std::size_t index) {
    BorrowedText found;
    array.getStringElement(index, found.text, found.length);
    return found.text == nullptr ? String() : String(std::in_place, found.text, found.length);
}

/// Equality of `length` units. Texts of up to 8 units, which most are, take two overlapping loads from each
/// side instead of a call.
inline bool equalUnits(const char16_t* a, const char16_t* b, std::size_t length) noexcept {
    if (length < 4 || length > 8) {
        return std::memcmp(a, b, length * sizeof(char16_t)) == 0;
    }
    std::uint64_t heads[2];
    std::uint64_t tails[2];
    std::memcpy(&heads[0], a, sizeof heads[0]);
    std::memcpy(&heads[1], b, sizeof heads[1]);
    std::memcpy(&tails[0], a + length - 4, sizeof tails[0]);
    std::memcpy(&tails[1], b + length - 4, sizeof tails[1]);
    return ((heads[0] ^ heads[1]) | (tails[0] ^ tails[1])) == 0;
}

/// A missing element equals an empty text here, deliberately, although two missing elements do not equal each
/// other.
inline bool equalsText(const BorrowedText& element, std::u16string_view text) noexcept {
    return element.length == text.size() &&
           (text.empty() || (element.text != nullptr && equalUnits(element.text, text.data(), text.size())));
}

/// A unit above 127 equals no byte.
VEXADATA_API bool equalsText(const BorrowedText& element, std::string_view text) noexcept;

inline bool equalElements(const BorrowedText& a, const BorrowedText& b) noexcept {
    return a.length == b.length && a.text != nullptr && b.text != nullptr &&
           (a.length == 0 || equalUnits(a.text, b.text, a.length));
}

inline BorrowedText borrowed(const String& text) noexcept {
    return text ? BorrowedText{text->data(), text->size()} : BorrowedText();
}

/// Unit by unit; a missing element comes before every text.
inline bool isBefore(const BorrowedText& a, const BorrowedText& b) noexcept {
    if (a.text == nullptr || b.text == nullptr) {
        return a.text == nullptr && b.text != nullptr;
    }
    return std::u16string_view(a.text, a.length) < std::u16string_view(b.text, b.length);
}

} // namespace detail

/// What every handle to a string element can do: tell whether the element is there, and hand its text out.
class VEXADATA_API VEXAStringReferenceExt {
public:
    /// For `operator[]` of the handles.
    VEXADATA_INLINE explicit VEXAStringReferenceExt(detail::ElementPosition position) noexcept
        : position_(std::move(position)) {}
    explicit VEXAStringReferenceExt(const std::shared_ptr<detail::ReferenceImpl>& chain) noexcept
        : position_(chain) {}
    VEXAStringReferenceExt(const VEXAStringReferenceExt&) = default;
    VEXADATA_INLINE VEXAStringReferenceExt(VEXAStringReferenceExt&& other) noexcept
        : position_(std::move(other.position_)) {}
    VEXAStringReferenceExt& operator=(const VEXAStringReferenceExt&) = default;
    VEXADATA_INLINE ~VEXAStringReferenceExt() {}

    /// False for a missing element.
    /// @throws index errors
    bool has_value() const { return detail::textAt(position_).text != nullptr; }

    /// A copy of the text.
    /// @throws std::runtime_error "Missing string value" for a missing element; index errors
    operator std::u16string() const;

    /// The element as a value, missing or not. Assign this one to a `String` that exists already, as in
    /// `texts[k] = strings[k].value()`: without it the language's optional goes through the text, which a
    /// missing element does not have. So does direct initialisation, `String s(strings[i])`.
    /// @throws index errors
    String value() const;
    /// The same. The two forms keep `String s = strings[i]` from going through the text.
    operator String() const { return value(); }
    operator String() { return value(); }

    /// The text narrowed; empty for a missing element.
    /// @throws NonAsciiCharInRequestedAsciiOutputException for a unit above 127; index errors
    std::string toAscii() const;

protected:
    friend struct detail::Access;
    /// Where the element lies.
    detail::ElementPosition position_;
};

namespace detail {

template <class Ref>
using IfStringRef = std::enable_if_t<std::is_base_of_v<VEXAStringReferenceExt, Ref>, int>;

/// Writing a string element through the handle `Ref`. The array is made private before the index is looked
/// at.
/// @throws index errors; errors of the back-end
template <class Ref>
class WritableString : public VEXAStringReferenceExt {
public:
    using VEXAStringReferenceExt::VEXAStringReferenceExt;
    WritableString(const WritableString&) = default;

    /// `std::nullopt`, or a value without text, makes the element missing.
    Ref& operator=(String value) {
        position_.setValue<String>(std::move(value));
        return static_cast<Ref&>(*this);
    }
    Ref& operator=(std::nullopt_t) { return *this = String(); }
    Ref& operator=(std::u16string text) { return *this = String(std::move(text)); }
    /// @throws std::logic_error for a null pointer
    Ref& operator=(const char16_t* text) {
        requireText(text);
        return *this = std::u16string(text);
    }
    /// @throws NonAsciiCharInInputDataException for a byte above 127
    Ref& operator=(const std::string& text) { return *this = widened(text); }
    /// @throws std::logic_error for a null pointer
    Ref& operator=(const char* text) { return *this = widened(text); }
    /// Writes the other element's value; never makes this handle refer elsewhere.
    WritableString& operator=(const WritableString& other) {
        String value = other;
        *this = std::move(value);
        return *this;
    }
    template <class Other,
              std::enable_if_t<std::is_base_of_v<VEXAStringReferenceExt, Other> || isUntypedElement<Other>,
                               int> = 0>
    Ref& operator=(const Other& other) {
        String value = other;
        return *this = std::move(value);
    }

    /// Exchanges the values. Found by argument alone: `std::swap` by its full name would lose one of them.
    friend void swap(Ref a, Ref b) {
        String value = a.value();
        a = b.value();
        b = std::move(value);
    }

protected:
    ~WritableString() = default;
};

} // namespace detail

/// A read-only string element; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<String, true> : public VEXAStringReferenceExt,
                                           public detail::Indexing<ArrayElementTypedRef<String, true>>,
                                           private detail::NotAssignable {
public:
    using VEXAStringReferenceExt::VEXAStringReferenceExt;
};

/// A string element; validity and indices as for other elements.
template <>
class ArrayElementTypedRef<String, false>
    : public detail::WritableString<ArrayElementTypedRef<String, false>>,
      public detail::Indexing<ArrayElementTypedRef<String, false>> {
public:
    using detail::WritableString<ArrayElementTypedRef<String, false>>::WritableString;
    using detail::WritableString<ArrayElementTypedRef<String, false>>::operator=;
};

/// A string element whose indices were checked when the reference was formed.
template <>
class Reference<String> : public detail::WritableString<Reference<String>> {
public:
    using detail::WritableString<Reference<String>>::WritableString;
    using detail::WritableString<Reference<String>>::operator=;
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    Reference(const ArrayElementTypedRef<String, false>& element)
        : WritableString(detail::completePosition(element)) {}
    /// @throws TypeMismatchException when the array is not one of strings; index errors
    Reference(const ArrayElementRef<false>& element)
        : WritableString(detail::completePosition<String>(element)) {}

    /// The chain of the element.
    std::shared_ptr<detail::ReferenceImpl> chain() const { return position_.chain(); }
};

/// Whether the element has this text; a missing one has the empty text here. Comparisons never throw: what
/// goes wrong while the element is resolved or read counts as "not equal".
template <class Ref, detail::IfStringRef<Ref> = 0>
VEXADATA_INLINE inline bool operator==(const Ref& element, std::u16string_view text) noexcept {
    try {
        return detail::equalsText(detail::textAt(detail::Access::position(element)), text);
    } catch (...) {
        return false;
    }
}
/// Non-ASCII text on either side compares unequal.
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator==(const Ref& element, std::string_view text) noexcept {
    try {
        return detail::equalsText(detail::textAt(detail::Access::position(element)), text);
    } catch (...) {
        return false;
    }
}
/// A missing element equals nothing, not even another missing one.
template <class A, class B, detail::IfStringRef<A> = 0, detail::IfStringRef<B> = 0>
bool operator==(const A& a, const B& b) noexcept {
    try {
        return detail::equalElements(detail::textAt(detail::Access::position(a)),
                                     detail::textAt(detail::Access::position(b)));
    } catch (...) {
        return false;
    }
}

/// As the three above.
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator==(std::u16string_view text, const Ref& element) noexcept {
    return element == text;
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator==(std::string_view text, const Ref& element) noexcept {
    return element == text;
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator!=(const Ref& element, std::u16string_view text) noexcept {
    return !(element == text);
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator!=(const Ref& element, std::string_view text) noexcept {
    return !(element == text);
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator!=(std::u16string_view text, const Ref& element) noexcept {
    return !(element == text);
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator!=(std::string_view text, const Ref& element) noexcept {
    return !(element == text);
}
template <class A, class B, detail::IfStringRef<A> = 0, detail::IfStringRef<B> = 0>
bool operator!=(const A& a, const B& b) noexcept {
    return !(a == b);
}

/// Order of elements, and of elements and values, as sorting needs it: by UTF-16 units, missing elements
/// first and equivalent to each other. Index errors and errors of the back-end pass through.
template <class A, class B, detail::IfStringRef<A> = 0, detail::IfStringRef<B> = 0>
bool operator<(const A& a, const B& b) {
    return detail::isBefore(detail::textAt(detail::Access::position(a)),
                            detail::textAt(detail::Access::position(b)));
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator<(const Ref& element, const String& value) {
    return detail::isBefore(detail::textAt(detail::Access::position(element)), detail::borrowed(value));
}
template <class Ref, detail::IfStringRef<Ref> = 0>
bool operator<(const String& value, const Ref& element) {
    return detail::isBefore(detail::borrowed(value), detail::textAt(detail::Access::position(element)));
}
template <class A, class B, detail::IfStringRef<A> = 0, detail::IfStringRef<B> = 0>
bool operator>(const A& a, const B& b) {
    return b < a;
}
template <class A, class B, detail::IfStringRef<A> = 0, detail::IfStringRef<B> = 0>
bool operator<=(const A& a, const B& b) {
    return !(b < a);
}
template <class A, class B, detail::IfStringRef<A> = 0, detail::IfStringRef<B> = 0>
bool operator>=(const A& a, const B& b) {
    return !(a < b);
}

} // namespace foundation::vexadata
