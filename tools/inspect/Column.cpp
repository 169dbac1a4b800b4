#include "Column.hpp"

#include <limits>
#include <utility>

namespace vexa::inspect {

Column::Column(std::string name, bool decimalComma, MemoryBudget& budget)
    : name_(std::move(name)), values_(budget), decimalComma_(decimalComma) {}

void Column::add(std::string_view text) {
    if (kind_ == Kind::text) {
        if (isMissing(text)) ++missing_;
        return;
    }
    const Cell cell = parseCell(text, decimalComma_);
    if (cell.kind == CellKind::missing) {
        values_.push(std::numeric_limits<double>::quiet_NaN());
        ++missing_;
    } else if (!agrees(cell)) {
        becomeText();
    } else {
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

void Column::becomeText() noexcept {
    values_.clear();
    kind_ = Kind::text;
}

} // namespace vexa::inspect
