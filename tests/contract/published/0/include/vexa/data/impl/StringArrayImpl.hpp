// The interface of string array back-ends. Elements are read through slot 23 of ArrayImpl and stored through
// slot 40; it adds no operation of its own.
#pragma once

#include <vexa/data/impl/TypedArrayImpl.hpp>

namespace vexa::data::impl {

/// An array of UTF-16 texts, each of which may be missing.
class VEXADATA_API StringArrayImpl : public TypedArrayImpl<vexa::data::optional<std::u16string>> {
public:
    ~StringArrayImpl() override;

    /// Begin and end (slots 5 and 6): positions 0 and the number of elements.
    detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    /// Slot 19. The text narrowed; empty for a missing element.
    /// @throws NonAsciiCharInRequestedAsciiOutputException for a unit above 127
    std::string castToString(std::size_t index, const std::string& fieldName) const override;
    /// Slot 20. Widens each byte with its sign, without a test for ASCII, and stores the text.
    void setString(std::size_t index, const std::string& fieldName, std::string value) override;

protected:
    StringArrayImpl() noexcept = default;
    StringArrayImpl(const StringArrayImpl&) noexcept = default;
};

} // namespace vexa::data::impl
