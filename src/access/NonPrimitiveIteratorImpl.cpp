// The iterator that the library offers for elements without an address: it gives index chains.
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>

namespace vexa::data::detail {

template <class Order>
NonPrimitiveIteratorImpl<Order>::~NonPrimitiveIteratorImpl() = default;

template <class Order>
IteratorImpl* NonPrimitiveIteratorImpl<Order>::clone() const {
    return new NonPrimitiveIteratorImpl(*this);
}

template <class Order>
void NonPrimitiveIteratorImpl<Order>::advance(std::int64_t count) {
    position_ += static_cast<std::uint64_t>(count);
}

template <class Order>
bool NonPrimitiveIteratorImpl<Order>::isEqual(const IteratorImpl& other) const {
    return position_ == static_cast<const NonPrimitiveIteratorImpl&>(other).position_;
}

template <class Order>
std::int64_t NonPrimitiveIteratorImpl<Order>::distanceTo(const IteratorImpl& other) const {
    return static_cast<std::int64_t>(static_cast<const NonPrimitiveIteratorImpl&>(other).position_ -
                                     position_);
}

template <class Order>
void NonPrimitiveIteratorImpl<Order>::decrement() {
    --position_;
}

template <class Order>
void NonPrimitiveIteratorImpl<Order>::increment() {
    ++position_;
}

template <class Order>
ReferenceImpl* NonPrimitiveIteratorImpl<Order>::createReference() {
    return new IteratorReference(array_, position_);
}

template <class Order>
void NonPrimitiveIteratorImpl<Order>::saveReference(ReferenceImpl* chain) {
    chain_ = foundation::vexadata::detail::Access::createSharedPtr(chain);
}

template <class Order>
void* NonPrimitiveIteratorImpl<Order>::getElementAddress() {
    return nullptr;
}

template class NonPrimitiveIteratorImpl<impl::MatchingDataOrder>;

} // namespace vexa::data::detail
