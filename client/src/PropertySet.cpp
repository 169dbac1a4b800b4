#include "PropertySet.hpp"

#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>

#include <utility>

namespace vexa::client {

using data::detail::ForwardIteratorImpl;
using data::detail::RefCounted;
using data::detail::ReferenceImpl;
using data::impl::ArrayImpl;
using foundation::vexadata::Array;
using foundation::vexadata::detail::Access;

namespace {

/// A reference to a property: the array in its slot is the element's array. It has no array of its own to index into, so the
/// array held stands for that too.
class PropertyReference final : public ReferenceImpl {
public:
    PropertyReference(PropertySet& properties, std::size_t place) : properties_(properties), place_(place) {
        setKnownIndex(0);
    }

    ArrayImpl* getArrayImpl() const override { return &properties_.heldIn(place_); }
    ArrayImpl* getElementArray(bool forWrite) override {
        if (forWrite) {
            properties_.makePrivate(place_);
            properties_.heldIn(place_).unshare();
        }
        return &properties_.heldIn(place_);
    }
    ArrayImpl* getElementArrayForCopy() override { return &properties_.heldIn(place_); }
    std::shared_ptr<ReferenceImpl> createReference(bool forWrite, bool) override {
        return Access::createSharedPtr(referenceInto(properties_, place_, forWrite));
    }
    void setArray(ArrayImpl* array) override { properties_.store(place_, *array); }

private:
    PropertySet& properties_;
    std::size_t place_;
};

class PropertyView final : public data::impl::PropertyImpl {
public:
    PropertyView(PropertySet& properties, std::size_t place) : properties_(properties), place_(place) {}

    const VexaPropertyIdentifier* getIdentifier() const override { return &properties_.list()[place_]; }
    std::shared_ptr<ArrayImpl> getValue() const override { return Access::impl(properties_.value(place_)); }
    ReferenceImpl* getReference() override { return properties_.reference(place_); }

    void moveTo(std::size_t place) noexcept { place_ = place; }

private:
    PropertySet& properties_;
    std::size_t place_;
};

/// Hands out one view again and again as long as nobody else has kept it: a walk makes no object for each property.
class PropertyIterator final : public ForwardIteratorImpl {
public:
    PropertyIterator(PropertySet& properties, std::size_t place) : properties_(properties), place_(place) {}

    ForwardIteratorImpl* clone() const override { return new PropertyIterator(properties_, place_); }
    RefCounted* get() const override {
        if (view_ == nullptr || view_->referenceCount() > 1) {
            view_ = Access::createSharedPtr(new PropertyView(properties_, place_));
        }
        view_->moveTo(place_);
        view_->retain();
        return view_.get();
    }
    bool equal(const ForwardIteratorImpl* other) const override {
        return place_ == static_cast<const PropertyIterator*>(other)->place_;
    }
    void increment() override { ++place_; }

private:
    PropertySet& properties_;
    std::size_t place_;
    mutable std::shared_ptr<PropertyView> view_;
};

} // namespace

ReferenceImpl* PropertySet::reference(std::size_t place) { return new PropertyReference(*this, place); }
ForwardIteratorImpl* PropertySet::iteratorAt(std::size_t place) { return new PropertyIterator(*this, place); }

bool PropertySet::equals(const PropertySet& other) const {
    return list_->equals(*other.list_) && values_ == other.values_;
}

ArrayImpl& PropertySet::heldIn(std::size_t slot) const noexcept { return *Access::impl(values_[slot]); }
bool PropertySet::isShared(std::size_t slot) const noexcept {
    return !Access::isPrivate(Access::impl(values_[slot]));
}
void PropertySet::replace(std::size_t slot, Held array) { values_[slot] = Array(array.detach()); }

} // namespace vexa::client
