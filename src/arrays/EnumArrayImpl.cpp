#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>

#include <stdexcept>

namespace vexa::data::impl {

using Iterator = detail::NonPrimitiveIteratorImpl<MatchingDataOrder>;

EnumArrayImpl::~EnumArrayImpl() = default;

detail::IteratorImpl* EnumArrayImpl::beginIterator(void*, bool) { return new Iterator(this, 0); }
detail::IteratorImpl* EnumArrayImpl::endIterator(void*, bool) {
    return new Iterator(this, getNumberOfElements());
}
void EnumArrayImpl::reservedOp42() {}

std::string EnumArrayImpl::getEnumName(std::size_t index) const {
    const char* name = getEnumNameAt(index);
    if (name == nullptr) {
        // The text that standard libraries gave for a null pointer is part of the contract; not all give it today.
        throw std::logic_error("basic_string::_M_construct null not valid");
    }
    return name;
}

} // namespace vexa::data::impl
