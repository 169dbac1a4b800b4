#include "Column.hpp"

#include <limits>
#include <utility>

namespace vexa::inspect {

Column::Column(std::string name, bool decimalComma, Texts texts, MemoryBudget& budget)
    : name_(std::move(name)),
      values_(budget),
      texts_(budget),
      decimalComma_(decimalComma),
      keepsTexts_(texts == Texts::fromTheStart) {}

void Column::add(std::string_view text) {
    if (kind_ == Kind::text) {
        keepText(text);
        if (isMissing(text)) ++missing_;
        return;
    }
    const Cell cell = parseCell(text, decimalComma_);
    if (cell.kind == CellKind::missing) {
        keepText(text);
        values_.push(std::numeric_limits<double>::quiet_NaN());
        ++missing_;
    } else if (!agrees(cell)) {
        becomeText();
        keepText(text);
    } else {
        keepText(text);
        values_.push(cell.value);
        kind_ = cell.kind == CellKind::number ? Kind::number : Kind::logical;
        if (cell.mark != DecimalMark::none) mark_ = cell.mark;
    }
}

bool Column::agrees(const Cell& cell) const noexcept {
    switch (cell.kind) {
    case CellKind::logical:
        return kind_ == Kind::undecided || kind_ == Kind::logical;
    case CellKind::number:
        if (kind_ == Kind::logical) return false;
        return cell.mark == DecimalMark::none || mark_ == DecimalMark::none || cell.mark == mark_;
    default:
        return false;
    }
}

void Column::becomeText() {
    if (!keepsTexts_ && kind_ != Kind::undecided) {
        lostTexts_ = true;
    } else if (!keepsTexts_) { // all cells so far are missing
        keepsTexts_ = true;
        for (std::size_t k = 0; k < missing_; ++k)
            texts_.pushMissing();
    }
    values_.clear();
    kind_ = Kind::text;
}

void Column::keepText(std::string_view text) {
    if (!keepsTexts_ || lostTexts_) return;
    if (isMissing(text))
        texts_.pushMissing();
    else
        texts_.push(text);
}

} // namespace vexa::inspect
