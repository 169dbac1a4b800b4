// The iterator that the library offers to back-ends whose elements lie side by side. Typed iterators
// recognise it and then move by pointer alone.
#pragma once

#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <complex>
#include <memory>

namespace vexa::data::detail {

/// Stands on an element of contiguous storage of primitive type `T`, which must outlive it.
template <class T>
class VEXADATA_API ContiguousIteratorImpl final : public IteratorImpl {
public:
    /// At an element, or behind the last.
    explicit ContiguousIteratorImpl(T* current) noexcept : current_(current) {}
    ~ContiguousIteratorImpl() override {} // compilers may omit a defaulted one from an explicit instantiation

    IteratorImpl* clone() const override;
    void advance(std::int64_t count) override;
    bool isEqual(const IteratorImpl& other) const override;
    std::int64_t distanceTo(const IteratorImpl& other) const override;
    void decrement() override;
    void increment() override;
    ReferenceImpl* createReference() override;
    void saveReference(ReferenceImpl* chain) override;
    void* getElementAddress() override;

    /// The element at which it stands.
    T* current() const noexcept { return current_; }
    /// True when the iterator keeps a chain alive.
    bool holdsReference() const noexcept { return chain_ != nullptr; }

private:
    T* current_;
    std::shared_ptr<ReferenceImpl> chain_;
};

#define VEXADATA_ELEMENT(T) extern template class VEXADATA_API ContiguousIteratorImpl<T>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>

} // namespace vexa::data::detail
