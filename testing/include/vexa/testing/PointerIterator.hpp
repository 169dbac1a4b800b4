// An iterator of a test's own over elements that lie side by side, which typed iterators have to ask at every
// step.
#pragma once

#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <cstdint>
#include <memory>

namespace vexa::testing {

/// `Self` derives from it and is copied by `clone`. The elements are borrowed. Gives addresses and no chains,
/// and keeps the chain that it is given.
template <class Self, class T>
class PointerIterator : public vexa::data::detail::IteratorImpl {
public:
    /// At an element, or behind the last.
    explicit PointerIterator(T* current) noexcept : current_(current) {}

    IteratorImpl* clone() const override { return new Self(static_cast<const Self&>(*this)); }
    void advance(std::int64_t count) override { current_ += count; }
    bool isEqual(const IteratorImpl& other) const override { return current_ == at(other); }
    std::int64_t distanceTo(const IteratorImpl& other) const override { return at(other) - current_; }
    void decrement() override { --current_; }
    void increment() override { ++current_; }
    vexa::data::detail::ReferenceImpl* createReference() override { return nullptr; }
    void saveReference(vexa::data::detail::ReferenceImpl* chain) override {
        chain_ = foundation::vexadata::detail::Access::createSharedPtr(chain);
    }
    void* getElementAddress() override { return current_; }

private:
    static T* at(const IteratorImpl& other) { return static_cast<const PointerIterator&>(other).current_; }

    T* current_;
    std::shared_ptr<vexa::data::detail::ReferenceImpl> chain_;
};

} // namespace vexa::testing
