// What the contract gives every struct array.
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

namespace vexa::data::impl {

using Iterator = detail::NonPrimitiveIteratorImpl<MatchingDataOrder>;

StructArrayImpl::~StructArrayImpl() = default;

detail::IteratorImpl* StructArrayImpl::beginIterator(void*, bool) { return new Iterator(this, 0); }
detail::IteratorImpl* StructArrayImpl::endIterator(void*, bool) {
    return new Iterator(this, getNumberOfElements());
}
void StructArrayImpl::reservedOp44() {}
void StructArrayImpl::reservedOp46() {}

std::shared_ptr<detail::IteratorImpl> StructArrayImpl::endFieldValues(std::size_t index) {
    return foundation::vexadata::detail::Access::createSharedPtr(createFieldValuesIterator(index, true));
}

} // namespace vexa::data::impl
