// What the contract gives every enumeration array.
#include <foundation/vexadata/detail/Text.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>

namespace vexa::data::impl {

using Iterator = detail::NonPrimitiveIteratorImpl<MatchingDataOrder>;

EnumArrayImpl::~EnumArrayImpl() = default;

detail::IteratorImpl* EnumArrayImpl::beginIterator(void*, bool) { return new Iterator(this, 0); }
detail::IteratorImpl* EnumArrayImpl::endIterator(void*, bool) {
    return new Iterator(this, getNumberOfElements());
}
void EnumArrayImpl::reservedOp42() {}

std::string EnumArrayImpl::getEnumName(std::size_t index) const {
    return foundation::vexadata::detail::copied(getEnumNameAt(index));
}

} // namespace vexa::data::impl
