#include "CellArray.hpp"

#include "DenseArray.hpp"

#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

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
        bind(slot_.getDimensions(), slot_.getMemoryLayout());
    }

    data::impl::ArrayImpl* getArrayImpl() const override { return Access::impl(slot_).get(); }
    void prepareForWrite() override {
        Access::unshare(slot_);
        Access::impl(slot_)->unshare();
    }

private:
    Array& slot_;
};

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
