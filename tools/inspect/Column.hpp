// One column of the file while it is being read.
#pragma once

#include "Cell.hpp"
#include "GrowingBuffer.hpp"
#include "Losses.hpp"
#include "TextBuffer.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexa::inspect {

/// Settles its kind as the cells come:
/// - nothing but missing cells: `undecided`;
/// - true and false, with or without missing cells: `logical`;
/// - whole numbers, some beyond 2^53, none missing: `int64` or else `uint64`, if they hold them all;
/// - other numbers, with or without missing cells: `number`; decimal points beside decimal commas contradict
///   each other;
/// - everything else, from the first cell that contradicts: `text`.
///
/// The texts of cells are kept from the first cell of the kind `text` on, unless they are kept from the
/// start.
class Column {
public:
    enum class Kind { undecided, logical, number, int64, uint64, text };
    enum class Texts { whenNeeded, fromTheStart };

    Column(std::string name, bool decimalComma, Texts texts, MemoryBudget& budget);

    /// Throws what GrowingBuffer::push throws.
    void add(std::string_view cell);

    const std::string& name() const noexcept { return name_; }
    Kind kind() const noexcept { return kind_; }
    std::size_t missing() const noexcept { return missing_; }

    /// One value a cell, NaN where it is missing, 1 and 0 for true and false; empty when the kind is another
    /// one.
    GrowingBuffer<double>& values() noexcept { return values_; }
    /// One value a cell when the kind is `int64`; when it is `uint64`, those of the same bits.
    GrowingBuffer<std::int64_t>& integers() noexcept { return integers_; }
    /// What the values lost.
    const Losses& losses() const noexcept { return losses_; }
    /// One text a cell when the kind is `text`, unless `hasLostTexts`.
    TextBuffer& texts() noexcept { return texts_; }
    /// A cell of kind `text` came after others whose texts were not kept: the file has to be read again.
    bool hasLostTexts() const noexcept { return lostTexts_; }

private:
    bool agrees(const Cell& cell) const noexcept;
    void becomeText();
    void addNumber(const Number& number);
    bool isInteger() const noexcept { return kind_ == Kind::int64 || kind_ == Kind::uint64; }
    bool fitsIntegers(const Number& number) const noexcept;
    void becomeIntegers();
    void becomeDoubles();
    void keepText(std::string_view text);

    std::string name_;
    GrowingBuffer<double> values_;
    GrowingBuffer<std::int64_t> integers_;
    TextBuffer texts_;
    Losses losses_;
    std::size_t missing_ = 0;
    Kind kind_ = Kind::undecided;
    DecimalMark mark_ = DecimalMark::none;
    bool decimalComma_;
    bool keepsTexts_;
    bool lostTexts_ = false;
    bool whole_ = true;     // every cell so far is a whole number
    bool negative_ = false; // one of them at least
};

} // namespace vexa::inspect
