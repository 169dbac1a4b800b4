#include "CellArray.hpp"

#include "Dimensions.hpp"
#include "Equality.hpp"

#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>

#include <utility>

namespace vexa::client {

using data::detail::ReferenceImpl;
using foundation::vexadata::detail::Access;
using Iterator = data::detail::NonPrimitiveIteratorImpl<data::impl::MatchingDataOrder>;

CellArray::CellArray(std::vector<std::size_t> dimensions)
    : dimensions_(std::move(dimensions)), elements_(allocatable<Array>(elementCount(dimensions_))) {}
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
    return referenceInto(*this, index, forWrite);
}
const std::vector<std::size_t>& CellArray::getDimensions() const { return dimensions_; }
std::size_t CellArray::getNumberOfElements() const { return elements_.size(); }
void CellArray::assignElementArray(std::size_t index, const std::string&, data::impl::ArrayImpl* array) {
    put(index, storable(*array, static_cast<const ArrayImpl*>(this)));
}
bool CellArray::isEmpty() const { return elements_.empty(); }
std::uint64_t CellArray::getArrayID() const { return identity_.get(); }
void CellArray::unshare() {} // the slots are always this object's alone
bool CellArray::isEqual(const data::impl::ArrayImpl* other) const {
    return equalElements<Array>(*this, static_cast<const TypedArrayImpl<Array>&>(*other));
}
Array* CellArray::getElementAddress(std::size_t index, const std::string&, bool) { return &elements_[index]; }
void CellArray::setElementValue(std::size_t index, const std::string&, Array value) {
    put(index, storable(*Access::impl(value), static_cast<const ArrayImpl*>(this)));
}
std::size_t CellArray::numberOfSlots() const noexcept { return elements_.size(); }
data::impl::ArrayImpl& CellArray::heldIn(std::size_t slot) const noexcept {
    return *Access::impl(elements_[slot]);
}
void CellArray::makePrivate(std::size_t slot) { Access::unshare(elements_[slot]); }
void CellArray::put(std::size_t slot, Held array) { elements_[slot] = Array(array.detach()); }
const Array* CellArray::getTypedDataPtr() const { return elements_.data(); }

} // namespace vexa::client
