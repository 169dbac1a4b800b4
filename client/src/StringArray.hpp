// String arrays.
#pragma once

#include "ColumnMajorArray.hpp"

#include <vexa/data/impl/InPlaceArrayImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexa::client {

/// Texts in column-major order. Each element takes 16 bytes, which hold texts of up to six units; longer ones
/// lie one after another in a block of the whole array. Overwritten ones leave gaps there, which are closed
/// when they make up half of it and more units than the array has elements.
class StringArray final
    : public ColumnMajorArray<data::impl::InPlaceArrayImpl<data::impl::StringArrayImpl, const void>> {
public:
    /// Every element is missing.
    explicit StringArray(Dimensions dimensions);
    ~StringArray() override;

    ArrayImpl* sharedCopy() const override;
    ArrayType getType() const override;
    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override;
    /// A missing element equals no element, not even a missing one, as when single elements are compared.
    bool isEqual(const ArrayImpl* other) const override;
    Element* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    void setStringElement(std::size_t index, const std::string& fieldName, Element value) override;
    const Element* getTypedDataPtr() const override;

private:
    static constexpr std::size_t inPlaceUnits = 6;

    struct Entry {
        std::uint32_t state = 0; ///< 0 for a missing text, otherwise its length + 1
        char16_t units[inPlaceUnits] = {};

        std::size_t length() const noexcept { return state - 1; }
        bool isLong() const noexcept { return state > inPlaceUnits + 1; }
    };

    StringArray(const StringArray&);

    static Entry entryFor(const Element& value, std::size_t start);
    static std::size_t startOf(const Entry& entry) noexcept;
    void closeGaps();

    std::vector<Entry> entries_;
    std::vector<char16_t> longTexts_;
    std::size_t gaps_ = 0; // units of longTexts_ that no entry refers to
};

} // namespace vexa::client
