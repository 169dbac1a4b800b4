// One column of the file while it is being read.
#pragma once

#include "Cell.hpp"
#include "NumberBuffer.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace vexa::inspect {

/// Settles its kind as the cells come:
/// - nothing but missing cells: `undecided`;
/// - true and false, with or without missing cells: `logical`;
/// - numbers, with or without missing cells: `number`; decimal points beside decimal commas contradict each
///   other;
/// - everything else, from the first cell that contradicts: `text`. Its cells are counted, not kept.
class Column {
public:
    enum class Kind { undecided, logical, number, text };

    Column(std::string name, bool decimalComma, MemoryBudget& budget);

    /// Throws what NumberBuffer::push throws.
    void add(std::string_view cell);

    const std::string& name() const noexcept { return name_; }
    Kind kind() const noexcept { return kind_; }
    std::size_t missing() const noexcept { return missing_; }

    /// One value a cell, NaN where it is missing, 1 and 0 for true and false; empty when the kind is `text`.
    NumberBuffer& values() noexcept { return values_; }

private:
    bool agrees(const Cell& cell) const noexcept;
    void becomeText() noexcept;

    std::string name_;
    NumberBuffer values_;
    std::size_t missing_ = 0;
    Kind kind_ = Kind::undecided;
    DecimalMark mark_ = DecimalMark::none;
    bool decimalComma_;
};

} // namespace vexa::inspect
