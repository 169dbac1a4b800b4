// The iterator that the library offers for contiguous storage. Typed iterators recognise it and move a
// pointer instead.
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>

namespace vexa::data::detail {

template <class T>
IteratorImpl* ContiguousIteratorImpl<T>::clone() const {
    return new ContiguousIteratorImpl(*this);
}

template <class T>
void ContiguousIteratorImpl<T>::advance(std::int64_t count) {
    current_ += count;
}

template <class T>
bool ContiguousIteratorImpl<T>::isEqual(const IteratorImpl& other) const {
    return current_ == static_cast<const ContiguousIteratorImpl&>(other).current_;
}

template <class T>
std::int64_t ContiguousIteratorImpl<T>::distanceTo(const IteratorImpl& other) const {
    return static_cast<const ContiguousIteratorImpl&>(other).current_ - current_;
}

template <class T>
void ContiguousIteratorImpl<T>::decrement() {
    --current_;
}

template <class T>
void ContiguousIteratorImpl<T>::increment() {
    ++current_;
}

template <class T>
ReferenceImpl* ContiguousIteratorImpl<T>::createReference() {
    return nullptr;
}

template <class T>
void ContiguousIteratorImpl<T>::saveReference(ReferenceImpl* chain) {
    chain_ = foundation::vexadata::detail::Access::createSharedPtr(chain);
}

template <class T>
void* ContiguousIteratorImpl<T>::getElementAddress() {
    return current_;
}

#define VEXADATA_ELEMENT(T) template class ContiguousIteratorImpl<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>

} // namespace vexa::data::detail
