#include "CellArray.hpp"

#include "Dimensions.hpp"
#include "Release.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/data/detail/Equality.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>

#include <utility>

namespace vexa::client {

using data::detail::ReferenceImpl;
using foundation::vexadata::detail::Access;
using Iterator = data::detail::NonPrimitiveIteratorImpl<data::impl::MatchingDataOrder>;

CellArray::CellArray(std::vector<std::size_t> dimensions)
    : ColumnMajorArray(std::move(dimensions)), elements_(allocatable<Array>(getNumberOfElements())) {
    showElements(getDimensions(), elements_.data());
}
CellArray::CellArray(const CellArray& other)
    : ColumnMajorArray(other), ArrayHolder(other), Comparable(other), elements_(other.elements_) {
    showElements(getDimensions(), elements_.data());
}
CellArray::~CellArray() {
    if (hasNested()) {
        releaseAll(std::move(elements_));
    }
}

data::impl::ArrayImpl* CellArray::sharedCopy() const { return new CellArray(*this); }
data::detail::IteratorImpl* CellArray::beginIterator(void*, bool) { return new Iterator(this, 0); }
data::detail::IteratorImpl* CellArray::endIterator(void*, bool) {
    return new Iterator(this, elements_.size());
}
foundation::vexadata::ArrayType CellArray::getType() const { return foundation::vexadata::ArrayType::CELL; }
ReferenceImpl* CellArray::createElementReference(std::size_t index, const std::string&, bool forWrite) {
    return referenceInto(*this, index, forWrite);
}
void CellArray::assignElementArray(std::size_t index, const std::string&, data::impl::ArrayImpl* array) {
    put(index, storable(*array, *this));
}
bool CellArray::isEqual(const data::impl::ArrayImpl* other) const { return Comparison::equal(*this, *other); }
Array* CellArray::getElementAddress(std::size_t index, const std::string&, bool) { return &elements_[index]; }
void CellArray::setElementValue(std::size_t index, const std::string&, Array value) {
    put(index, storable(*Access::impl(value), *this));
}
std::size_t CellArray::numberOfPlaces() const noexcept { return elements_.size(); }
data::impl::ArrayImpl& CellArray::heldIn(std::size_t place) const noexcept {
    return *Access::impl(elements_[place]);
}
bool CellArray::isShared(std::size_t place) const noexcept {
    return !Access::isPrivate(Access::impl(elements_[place]));
}
void CellArray::replace(std::size_t place, Held array) { elements_[place] = Array(array.detach()); }
bool CellArray::equalsIn(Comparison& comparison, const data::impl::ArrayImpl& other) const {
    const auto* right = foundation::vexadata::detail::dynamicCast<const CellArray>(&other);
    return right != nullptr
               ? comparison.equalPlaces(*this, *right)
               : data::detail::equalElements<Array>(*this, static_cast<const TypedArrayImpl<Array>&>(other));
}
const Array* CellArray::getTypedDataPtr() const { return elements_.data(); }

} // namespace vexa::client
