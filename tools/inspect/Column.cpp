#include "Column.hpp"

#include <cmath>
#include <limits>
#include <utility>

namespace vexa::inspect {

namespace {

constexpr std::uint64_t largestInt64 = std::numeric_limits<std::int64_t>::max();

/// Whether the double nearest to an integer, of 64 bits that are unsigned or not, is that integer.
bool isExactly(double value, std::int64_t integer, bool isUnsigned) noexcept {
    const double limit = isUnsigned ? 0x1p64 : 0x1p63; // where the conversion back would overflow
    if (value >= limit) return false;
    return isUnsigned ? static_cast<std::uint64_t>(value) == static_cast<std::uint64_t>(integer)
                      : static_cast<std::int64_t>(value) == integer;
}

} // namespace

Column::Column(std::string name, bool decimalComma, Texts texts, MemoryBudget& budget)
    : name_(std::move(name)),
      values_(budget),
      integers_(budget),
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
    if (cell.kind != CellKind::missing && !agrees(cell)) becomeText();
    keepText(text);
    if (cell.kind == CellKind::missing) {
        if (isInteger()) becomeDoubles();
        values_.push(std::numeric_limits<double>::quiet_NaN());
        whole_ = false;
        ++missing_;
    } else if (kind_ != Kind::text && cell.kind == CellKind::logical) {
        values_.push(cell.number.value);
        kind_ = Kind::logical;
    } else if (kind_ != Kind::text) {
        addNumber(cell.number);
        if (cell.mark != DecimalMark::none) mark_ = cell.mark;
    }
}

void Column::addNumber(const Number& number) {
    const double size = std::fabs(number.value);
    whole_ = whole_ && (number.big || (size <= exactWhole && size == std::floor(size)));
    negative_ = negative_ || number.value < 0;
    if (isInteger() && !fitsIntegers(number)) becomeDoubles();
    if (!isInteger() && number.big && fitsIntegers(number)) becomeIntegers();
    if (!isInteger()) {
        values_.push(number.value);
        whole_ = whole_ && !number.big; // no kind of integers holds it beside the others
        losses_.count(number.loss);
        kind_ = Kind::number;
        return;
    }
    const std::uint64_t magnitude = number.big ? number.big->magnitude : static_cast<std::uint64_t>(size);
    integers_.push(static_cast<std::int64_t>(number.value < 0 ? 0 - magnitude : magnitude));
    if (magnitude > largestInt64 && !negative_) kind_ = Kind::uint64;
}

/// Whether one kind of integers holds the number and all before it.
bool Column::fitsIntegers(const Number& number) const noexcept {
    if (!whole_) return false;
    const std::uint64_t magnitude = number.big ? number.big->magnitude : 0;
    if (!negative_) return true;
    return kind_ != Kind::uint64 && magnitude <= largestInt64 + (number.value < 0 ? 1U : 0U);
}

/// All values so far are whole and held exactly.
void Column::becomeIntegers() {
    for (std::size_t k = 0; k < values_.size(); ++k)
        integers_.push(static_cast<std::int64_t>(values_[k]));
    values_.clear();
    kind_ = Kind::int64;
}

void Column::becomeDoubles() {
    for (std::size_t k = 0; k < integers_.size(); ++k) {
        const std::int64_t integer = integers_[k];
        const bool natural = kind_ == Kind::uint64;
        const auto bits = static_cast<std::uint64_t>(integer);
        const double value = natural ? static_cast<double>(bits) : static_cast<double>(integer);
        values_.push(value);
        if (!isExactly(value, integer, natural)) losses_.count(Loss::rounded);
    }
    integers_.clear();
    whole_ = false;
    kind_ = Kind::number;
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
    integers_.clear();
    losses_ = {};
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
