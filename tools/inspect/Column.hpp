// One column of the file while it is being read.
#pragma once

#include "Cell.hpp"
#include "GrowingBuffer.hpp"
#include "TextBuffer.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa::inspect {

/// Settles its kind as the cells come:
/// - nothing but missing cells: `undecided`;
/// - true and false, with or without missing cells: `logical`;
/// - numbers, with or without missing cells: `number`; decimal points beside decimal commas contradict each
///   other;
/// - everything else, from the first cell that contradicts: `text`.
///
/// The texts of cells are kept from the first cell of the kind `text` on, unless they are kept from the start.
class Column {
public:
    enum class Kind { undecided, logical, number, text };
    enum class Texts { whenNeeded, fromTheStart };

    Column(std::string name, bool decimalComma, Texts texts, MemoryBudget& budget);

    /// Throws what GrowingBuffer::push throws.
    void add(std::string_view cell);

    const std::string& name() const noexcept { return name_; }
    Kind kind() const noexcept { return kind_; }
    std::size_t missing() const noexcept { return missing_; }

    /// One value a cell, NaN where it is missing, 1 and 0 for true and false; empty when the kind is `text`.
    GrowingBuffer<double>& values() noexcept { return values_; }
    /// One text a cell when the kind is `text`, unless `hasLostTexts`.
    TextBuffer& texts() noexcept { return texts_; }
    /// A cell of kind `text` came after others whose texts were not kept: the file has to be read again.
    bool hasLostTexts() const noexcept { return lostTexts_; }

private:
    bool agrees(const Cell& cell) const noexcept;
    void becomeText();
    void keepText(std::string_view text);

    std::string name_;
    GrowingBuffer<double> values_;
    TextBuffer texts_;
    std::size_t missing_ = 0;
    Kind kind_ = Kind::undecided;
    DecimalMark mark_ = DecimalMark::none;
    bool decimalComma_;
    bool keepsTexts_;
    bool lostTexts_ = false;
};

} // namespace vexa::inspect
