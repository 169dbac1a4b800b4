#include "StringArray.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace vexa::client {

StringArray::StringArray(Dimensions dimensions)
    : ColumnMajorArray(std::move(dimensions)), entries_(allocatable<Entry>(getNumberOfElements())) {
    showPositions(getDimensions());
}
StringArray::StringArray(const StringArray& other)
    : ColumnMajorArray(other), entries_(other.entries_), longTexts_(other.longTexts_), gaps_(other.gaps_) {
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
    const Entry& entry = entries_[index];
    if (entry.state == 0) {
        text = nullptr;
        length = 0;
        return;
    }
    text = entry.isLong() ? longTexts_.data() + startOf(entry) : entry.units;
    length = entry.length();
}

void StringArray::setStringElement(std::size_t index, const std::string&, Element value) {
    const Entry fresh = entryFor(value, longTexts_.size());
    if (fresh.isLong()) {
        longTexts_.insert(longTexts_.end(), value->begin(), value->end());
    }
    const Entry old = std::exchange(entries_[index], fresh);
    if (old.isLong()) {
        gaps_ += old.length();
        // Closing the gaps visits all entries, so that there must be more gaps than these.
        if (gaps_ > longTexts_.size() / 2 && gaps_ > entries_.size()) {
            closeGaps();
        }
    }
}

bool StringArray::isEqual(const ArrayImpl* other) const {
    for (std::size_t k = 0; k < entries_.size(); ++k) {
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

/// An entry for a text; a long one begins at `start` of the block.
StringArray::Entry StringArray::entryFor(const Element& value, std::size_t start) {
    Entry entry;
    if (!value) {
        return entry;
    }
    if (value->size() >= std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    entry.state = static_cast<std::uint32_t>(value->size() + 1);
    if (entry.isLong()) {
        std::memcpy(entry.units, &start, sizeof start);
    } else {
        std::copy(value->begin(), value->end(), entry.units);
    }
    return entry;
}

std::size_t StringArray::startOf(const Entry& entry) noexcept {
    std::size_t start = 0;
    std::memcpy(&start, entry.units, sizeof start);
    return start;
}

/// Without memory the gaps stay for the next time.
void StringArray::closeGaps() {
    std::vector<char16_t> dense;
    try {
        dense.reserve(longTexts_.size() - gaps_);
    } catch (const std::bad_alloc&) {
        return;
    }
    for (Entry& entry : entries_) {
        if (entry.isLong()) {
            const auto first = longTexts_.begin() + static_cast<std::ptrdiff_t>(startOf(entry));
            const std::size_t start = dense.size();
            dense.insert(dense.end(), first, first + static_cast<std::ptrdiff_t>(entry.length()));
            std::memcpy(entry.units, &start, sizeof start);
        }
    }
    longTexts_ = std::move(dense);
    gaps_ = 0;
}

} // namespace vexa::client
