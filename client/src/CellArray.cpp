#include "CellArray.hpp"

#include "DenseArray.hpp"

#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <algorithm>
#include <utility>

namespace vexa::client {

using data::detail::ReferenceImpl;
using foundation::vexadata::detail::Access;
using Iterator = data::detail::NonPrimitiveIteratorImpl<data::impl::MatchingDataOrder>;

namespace {

/// A chain into the array that a slot holds. Before a write it makes that array the slot's alone, even when the chain
/// was made for reading: then it moves to the copy.
class SlotReference final : public ReferenceImpl {
public:
    SlotReference(Array& slot, bool forWrite) : slot_(slot) {
        if (forWrite) {
            Access::unshare(slot_);
        }
        const data::impl::ArrayImpl& held = *Access::impl(slot_);
        bind(held.getDimensions(), held.getMemoryLayout());
    }

    data::impl::ArrayImpl* getArrayImpl() const override { return Access::impl(slot_).get(); }
    void prepareForWrite() override {
        Access::unshare(slot_);
        Access::impl(slot_)->unshare();
    }

private:
    Array& slot_;
};

using Cells = data::impl::TypedArrayImpl<Array>;

const Cells* asCells(const data::impl::ArrayImpl& array) {
    return array.getType() == foundation::vexadata::ArrayType::CELL ? static_cast<const Cells*>(&array)
                                                                    : nullptr;
}

/// True when `target` is `array` or lies in it at any depth.
bool reaches(const data::impl::ArrayImpl& array, const data::impl::ArrayImpl& target) {
    if (&array == &target) {
        return true;
    }
    const Cells* cells = asCells(array);
    if (cells == nullptr) {
        return false;
    }
    const Array* first = cells->getTypedDataPtr();
    return std::any_of(first, first + cells->getNumberOfElements(),
                       [&](const Array& element) { return reaches(*Access::impl(element), target); });
}

/// A copy of `array` that shares no cell array with it, at any depth.
Array separateCopy(const data::impl::ArrayImpl& array) {
    Array copy(array.sharedCopy());
    if (asCells(array) != nullptr) {
        auto& cells = static_cast<Cells&>(*Access::impl(copy));
        for (std::size_t k = 0; k < cells.getNumberOfElements(); ++k) {
            Array* element = cells.getElementAddress(k, std::string(), false);
            if (asCells(*Access::impl(*element)) != nullptr) {
                *element = separateCopy(*Access::impl(*element));
            }
        }
    }
    return copy;
}

} // namespace

CellArray::CellArray(std::vector<std::size_t> dimensions)
    : dimensions_(std::move(dimensions)), elements_(elementCount(dimensions_)) {}
CellArray::CellArray(const CellArray&) = default;
CellArray::~CellArray() = default;

data::impl::ArrayImpl* CellArray::sharedCopy() const { return new CellArray(*this); }
data::detail::IteratorImpl* CellArray::beginIterator(void*, bool) { return new Iterator(this, 0); }
data::detail::IteratorImpl* CellArray::endIterator(void*, bool) {
    return new Iterator(this, elements_.size());
}
foundation::vexadata::ArrayType CellArray::getType() const { return foundation::vexadata::ArrayType::CELL; }
data::MemoryLayout CellArray::getMemoryLayout() const { return data::MemoryLayout::COLUMN_MAJOR; }
ReferenceImpl* CellArray::createElementReference(std::size_t index, const std::string&, bool forWrite) {
    return new SlotReference(elements_[index], forWrite);
}
const std::vector<std::size_t>& CellArray::getDimensions() const { return dimensions_; }
std::size_t CellArray::getNumberOfElements() const { return elements_.size(); }
void CellArray::assignElementArray(std::size_t index, const std::string&, data::impl::ArrayImpl* array) {
    if (reaches(*array, *this)) {
        elements_[index] = separateCopy(*array); // it would own itself otherwise
        return;
    }
    array->retain();
    elements_[index] = Array(array);
}
bool CellArray::isEmpty() const { return elements_.empty(); }
std::uint64_t CellArray::getArrayID() const { return identity_.get(); }
void CellArray::unshare() {} // the slots are always this object's alone
bool CellArray::isEqual(const data::impl::ArrayImpl* other) const {
    return equalElements<Array>(*this, static_cast<const TypedArrayImpl<Array>&>(*other));
}
Array* CellArray::getElementAddress(std::size_t index, const std::string&, bool) { return &elements_[index]; }
void CellArray::setElementValue(std::size_t index, const std::string&, Array value) {
    elements_[index] = std::move(value);
}
const Array* CellArray::getTypedDataPtr() const { return elements_.data(); }

} // namespace vexa::client
