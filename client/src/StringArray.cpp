#include "StringArray.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace vexa::client {

StringArray::StringArray(Dimensions dimensions)
    : ColumnMajorArray(std::move(dimensions)), slots_(allocatable<Slot>(getNumberOfElements())) {
    showPositions(getDimensions());
}
StringArray::StringArray(const StringArray& other)
    : ColumnMajorArray(other), slots_(other.slots_), longTexts_(other.longTexts_), gaps_(other.gaps_) {
    showPositions(getDimensions());
}
StringArray::~StringArray() = default;

ArrayImpl* StringArray::sharedCopy() const { return new StringArray(*this); }
ArrayType StringArray::getType() const { return ArrayType::STRING; }
StringArray::Element* StringArray::getElementAddress(std::size_t, const std::string&, bool) {
    return nullptr;
}
const StringArray::Element* StringArray::getTypedDataPtr() const { return nullptr; }

void StringArray::getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const {
    const Slot& slot = slots_[index];
    if (slot.state == 0) {
        text = nullptr;
        length = 0;
        return;
    }
    text = slot.isLong() ? longTexts_.data() + startOf(slot) : slot.units;
    length = slot.length();
}

void StringArray::setStringElement(std::size_t index, const std::string&, Element value) {
    const Slot fresh = slotFor(value, longTexts_.size());
    if (fresh.isLong()) {
        longTexts_.insert(longTexts_.end(), value->begin(), value->end());
    }
    const Slot old = std::exchange(slots_[index], fresh);
    if (old.isLong()) {
        gaps_ += old.length();
        // Closing walks all slots: it must be worth that, too.
        if (gaps_ > longTexts_.size() / 2 && gaps_ > slots_.size()) {
            closeGaps();
        }
    }
}

bool StringArray::isEqual(const ArrayImpl* other) const {
    for (std::size_t k = 0; k < slots_.size(); ++k) {
        const char16_t* left = nullptr;
        const char16_t* right = nullptr;
        std::size_t leftLength = 0;
        std::size_t rightLength = 0;
        getStringElement(k, left, leftLength);
        other->getStringElement(k, right, rightLength);
        if (left == nullptr || right == nullptr ||
            std::u16string_view(left, leftLength) != std::u16string_view(right, rightLength)) {
            return false;
        }
    }
    return true;
}

/// A slot for a text; a long one begins at `start` of the block.
StringArray::Slot StringArray::slotFor(const Element& value, std::size_t start) {
    Slot slot;
    if (!value) {
        return slot;
    }
    if (value->size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    slot.state = static_cast<std::uint32_t>(value->size() + 1);
    if (slot.isLong()) {
        std::memcpy(slot.units, &start, sizeof start);
    } else {
        std::copy(value->begin(), value->end(), slot.units);
    }
    return slot;
}

std::size_t StringArray::startOf(const Slot& slot) noexcept {
    std::size_t start = 0;
    std::memcpy(&start, slot.units, sizeof start);
    return start;
}

/// Out of memory leaves the gaps for the next time.
void StringArray::closeGaps() {
    std::vector<char16_t> dense;
    try {
        dense.reserve(longTexts_.size() - gaps_);
    } catch (const std::bad_alloc&) {
        return;
    }
    for (Slot& slot : slots_) {
        if (slot.isLong()) {
            const auto first = longTexts_.begin() + static_cast<std::ptrdiff_t>(startOf(slot));
            const std::size_t start = dense.size();
            dense.insert(dense.end(), first, first + static_cast<std::ptrdiff_t>(slot.length()));
            std::memcpy(slot.units, &start, sizeof start);
        }
    }
    longTexts_ = std::move(dense);
    gaps_ = 0;
}

} // namespace vexa::client
