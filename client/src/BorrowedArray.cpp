// What reads goes to the array that holds the elements now; what may write makes a copy first.
#include "BorrowedArray.hpp"

#include <utility>

namespace vexa::client {

template <class T>
BorrowedArray<T>::BorrowedArray(Dimensions&& dimensions, const T* data, std::shared_ptr<const void> owner,
                                data::MemoryLayout layout)
    // Never written: every operation that could asks `unshare` for a copy first.
    : borrowed_(Dense::adopt(std::move(dimensions), const_cast<T*>(data),
                             std::const_pointer_cast<void>(std::move(owner)), layout)),
      now_(borrowed_) {}

template <class T>
data::detail::IteratorImpl* BorrowedArray<T>::beginIterator(void* unused, bool writable) {
    if (writable) {
        unshare();
    }
    return now_->beginIterator(unused, writable);
}
template <class T>
data::detail::IteratorImpl* BorrowedArray<T>::endIterator(void* unused, bool writable) {
    if (writable) {
        unshare();
    }
    return now_->endIterator(unused, writable);
}

template <class T>
void BorrowedArray<T>::unshare() {
    if (now_ == borrowed_) {
        now_.reset(static_cast<Dense*>(borrowed_->sharedCopy()));
    }
}

template <class T>
void BorrowedArray<T>::copyOutBuffer(void*& data, void (*&deleter)(void*)) const {
    now_->copyOutBuffer(data, deleter);
}
template <class T>
void BorrowedArray<T>::releaseBuffer(void*& data, void (*&deleter)(void*)) {
    data::detail::CountedPtr<Dense> nothing(Dense::zeros(0, 0));
    unshare();
    now_->releaseBuffer(data, deleter);
    borrowed_ = nothing;
    now_ = std::move(nothing);
}

template <class T>
T* BorrowedArray<T>::getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) {
    if (forWrite) {
        unshare();
    }
    return now_->getElementAddress(index, fieldName, forWrite);
}
template <class T>
void BorrowedArray<T>::setElementValue(std::size_t index, const std::string& fieldName, T value) {
    unshare();
    now_->setElementValue(index, fieldName, value);
}

#define VEXADATA_ELEMENT(T) template class BorrowedArray<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>

} // namespace vexa::client
