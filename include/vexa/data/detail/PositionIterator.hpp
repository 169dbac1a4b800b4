// A ready-made iterator over a sequence that is known by its positions, for authors of back-ends.
#pragma once

#include <vexa/data/detail/ForwardIteratorImpl.hpp>

#include <cstddef>
#include <utility>

namespace vexa::data::detail {

/// Stands at a position, counted from 0; `element(position)` gives what is there, as `ForwardIteratorImpl::get`
/// does: with one reference for the caller. Clones copy `element`, which keeps alive what it needs. Iterators
/// that are compared must be of one type.
template <class Element>
class PositionIterator final : public ForwardIteratorImpl {
public:
    /// At a position, which is not tested.
    PositionIterator(Element element, std::size_t position)
        : element_(std::move(element)), position_(position) {}

    ForwardIteratorImpl* clone() const override { return new PositionIterator(element_, position_); }
    RefCounted* get() const override { return element_(position_); }
    bool equal(const ForwardIteratorImpl* other) const override {
        return position_ == static_cast<const PositionIterator*>(other)->position_;
    }
    void increment() override { ++position_; }

private:
    Element element_;
    std::size_t position_;
};

/// A new iterator at `position`, one reference for the caller.
template <class Element>
ForwardIteratorImpl* iteratorAt(Element element, std::size_t position) {
    return new PositionIterator<Element>(std::move(element), position);
}

} // namespace vexa::data::detail
