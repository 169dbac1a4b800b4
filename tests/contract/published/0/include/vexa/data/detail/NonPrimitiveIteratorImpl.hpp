// The iterator over arrays whose elements are handed out as references.
#pragma once

#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <memory>

namespace vexa::data::impl {

/// Tag: elements are visited in the order in which the array stores them.
struct MatchingDataOrder {};

} // namespace vexa::data::impl

namespace vexa::data::detail {

/// Stands on a linear position of `array`, which is borrowed and must outlive the iterator. Typed iterators
/// move this one themselves and forward every step to a class derived from it.
template <class Order>
class VEXADATA_API NonPrimitiveIteratorImpl : public IteratorImpl {
public:
    /// At a position, which is not tested.
    NonPrimitiveIteratorImpl(impl::ArrayImpl* array, std::uint64_t position) noexcept
        : array_(array), position_(position) {}
    ~NonPrimitiveIteratorImpl() override;

    IteratorImpl* clone() const override;
    void advance(std::int64_t count) override;
    bool isEqual(const IteratorImpl& other) const override;
    std::int64_t distanceTo(const IteratorImpl& other) const override;
    void decrement() override;
    void increment() override;
    /// An IteratorReference to the element at the current position.
    ReferenceImpl* createReference() override;
    void saveReference(ReferenceImpl* chain) override;
    void* getElementAddress() override;

    /// Where it stands.
    impl::ArrayImpl* array() const noexcept { return array_; }
    std::uint64_t position() const noexcept { return position_; }
    /// Whether it keeps a chain alive.
    bool holdsReference() const noexcept { return chain_ != nullptr; }

private:
    impl::ArrayImpl* array_;
    std::uint64_t position_;
    std::shared_ptr<ReferenceImpl> chain_;
};

extern template class VEXADATA_API NonPrimitiveIteratorImpl<impl::MatchingDataOrder>;

} // namespace vexa::data::detail
