// Elements of a primitive type in memory that must not be written.
#pragma once

#include <vexa/data/detail/CountedPtr.hpp>
#include <vexa/data/impl/DenseArrayImpl.hpp>

#include <memory>
#include <string>
#include <vector>

namespace vexa::client {

/// A dense array over memory of somebody else, and from the first write on a copy of it. All that may write
/// comes here first, because handles do not recognise this class: that is why it exists beside the dense
/// array.
template <class T>
class BorrowedArray final : public data::impl::TypedArrayImpl<T> {
    using Dense = data::impl::DenseArrayImpl<T>;
    using Dimensions = std::vector<std::size_t>;

public:
    /// @throws std::bad_alloc
    BorrowedArray(Dimensions&& dimensions, const T* data, std::shared_ptr<const void> owner,
                  data::MemoryLayout layout);

    data::impl::ArrayImpl* sharedCopy() const override { return now_->sharedCopy(); }
    data::detail::IteratorImpl* beginIterator(void* unused, bool writable) override;
    data::detail::IteratorImpl* endIterator(void* unused, bool writable) override;
    foundation::vexadata::ArrayType getType() const override { return now_->getType(); }
    data::MemoryLayout getMemoryLayout() const override { return now_->getMemoryLayout(); }
    data::detail::ReferenceImpl* createElementReference(std::size_t, const std::string&, bool) override {
        return nullptr;
    }
    const Dimensions& getDimensions() const override { return borrowed_->getDimensions(); }
    std::size_t getNumberOfElements() const override { return now_->getNumberOfElements(); }
    bool isEmpty() const override { return now_->isEmpty(); }
    std::uint64_t getArrayID() const override { return now_->getArrayID(); }
    void unshare() override;
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override;
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override;
    const void* getUntypedDataPtr() const override { return now_->getUntypedDataPtr(); }
    bool isEqual(const data::impl::ArrayImpl* other) const override { return now_->isEqual(other); }
    T* getElementAddress(std::size_t index, const std::string& fieldName, bool forWrite) override;
    void setElementValue(std::size_t index, const std::string& fieldName, T value) override;
    const T* getTypedDataPtr() const override { return now_->getTypedDataPtr(); }

private:
    data::detail::CountedPtr<Dense>
        borrowed_;                        // never written; stays for iterators that were made before a write
    data::detail::CountedPtr<Dense> now_; // the same, or the copy
};

} // namespace vexa::client
