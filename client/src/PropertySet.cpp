// Properties as chains and as walks. A property is presented to the library as the only element of a cell
// array.
#include "PropertySet.hpp"

#include "CellArray.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/Equality.hpp>
#include <vexa/data/detail/Identity.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/detail/PositionIterator.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstdint>
#include <string>
#include <utility>

namespace vexa::client {

using data::detail::ForwardIteratorImpl;
using data::detail::RefCounted;
using data::detail::ReferenceImpl;
using data::impl::ArrayImpl;
using foundation::vexadata::Array;
using foundation::vexadata::detail::Access;

namespace {

/// A property as the only element of a cell array, which is what chains to properties index into: a property
/// allows and refuses what a cell does, and its value never passes for the array that an element of it is
/// asked for.
class PropertyCell final : public data::impl::TypedArrayImpl<Array> {
public:
    PropertyCell(PropertySet& properties, std::size_t place, bool writable)
        : properties_(properties), place_(place), writable_(writable) {}

    ArrayImpl* sharedCopy() const override {
        Held copy(new CellArray(getDimensions()));
        copy->assignElementArray(0, {}, &held());
        return copy.detach();
    }
    data::detail::IteratorImpl* beginIterator(void*, bool) override { return new Iterator(this, 0); }
    data::detail::IteratorImpl* endIterator(void*, bool) override { return new Iterator(this, 1); }
    ArrayType getType() const override { return ArrayType::CELL; }
    MemoryLayout getMemoryLayout() const override { return MemoryLayout::COLUMN_MAJOR; }
    const Dimensions& getDimensions() const override {
        static const Dimensions scalar{1, 1};
        return scalar;
    }
    std::size_t getNumberOfElements() const override { return 1; }
    bool isEmpty() const override { return false; }
    std::uint64_t getArrayID() const override { return identity_.get(); }
    bool isEqual(const ArrayImpl* other) const override {
        return data::detail::equalElements<Array>(*this, static_cast<const TypedArrayImpl<Array>&>(*other));
    }
    /// Before every write.
    void unshare() override {
        if (!writable_) {
            foundation::vexadata::detail::raise<foundation::vexadata::CantAssignArrayToThisArrayException>();
        }
    }
    ReferenceImpl* createElementReference(std::size_t, const std::string&, bool forWrite) override {
        if (forWrite) {
            unshare();
        }
        return referenceInto(properties_, place_, forWrite);
    }
    void assignElementArray(std::size_t, const std::string&, ArrayImpl* array) override {
        unshare();
        properties_.store(place_, *array);
    }
    Array* getElementAddress(std::size_t, const std::string&, bool) override {
        return const_cast<Array*>(getTypedDataPtr());
    }
    void setElementValue(std::size_t index, const std::string& fieldName, Array value) override {
        assignElementArray(index, fieldName, Access::impl(value).get());
    }
    const Array* getTypedDataPtr() const override { return &properties_.value(place_); }

    ArrayImpl& held() const { return properties_.heldIn(place_); }
    void makePrivate() {
        unshare();
        properties_.makePrivate(place_);
        held().unshare();
    }

private:
    using Iterator = data::detail::NonPrimitiveIteratorImpl<data::impl::MatchingDataOrder>;

    PropertySet& properties_;
    std::size_t place_;
    bool writable_;
    data::detail::Identity identity_;
};

/// A reference to a property. The array in its place is asked for without making a chain to it.
class PropertyReference final : public ReferenceImpl {
public:
    PropertyReference(PropertySet& properties, std::size_t place, bool writable)
        : cell_(properties, place, writable) {
        setKnownIndex(0);
    }

    ArrayImpl* getArrayImpl() const override { return &cell_; }
    void prepareForWrite() override { cell_.unshare(); }
    ArrayImpl* getElementArray(bool forWrite) override {
        if (forWrite) {
            cell_.makePrivate();
        }
        return &cell_.held();
    }
    ArrayImpl* getElementArrayForCopy() override { return &cell_.held(); }

private:
    mutable PropertyCell cell_;
};

class PropertyView final : public data::impl::PropertyImpl {
public:
    PropertyView(PropertySet& properties, std::size_t place, bool writable)
        : properties_(properties), place_(place), writable_(writable) {}

    const VexaPropertyIdentifier* getIdentifier() const override { return &properties_.list()[place_]; }
    std::shared_ptr<ArrayImpl> getValue() const override { return Access::impl(properties_.value(place_)); }
    ReferenceImpl* getReference() override { return new PropertyReference(properties_, place_, writable_); }

    void moveTo(std::size_t place) noexcept { place_ = place; }

private:
    PropertySet& properties_;
    std::size_t place_;
    bool writable_;
};

/// What iterators over properties stand at: the same view, moved to the next property, as long as the caller
/// has not retained it. A walk allocates one view; a copy of the walk makes its own.
class Views {
public:
    Views(PropertySet& properties, bool writable) : properties_(properties), writable_(writable) {}
    Views(const Views& other) : Views(other.properties_, other.writable_) {}

    RefCounted* operator()(std::size_t place) const {
        if (view_ == nullptr || view_->referenceCount() > 1) {
            view_ = data::detail::CountedPtr(new PropertyView(properties_, place, writable_));
        }
        view_->moveTo(place);
        return data::detail::CountedPtr(view_).detach();
    }

private:
    PropertySet& properties_;
    bool writable_;
    mutable data::detail::CountedPtr<PropertyView> view_;
};

} // namespace

ReferenceImpl* PropertySet::reference(std::size_t place) { return new PropertyReference(*this, place, true); }
ForwardIteratorImpl* PropertySet::iteratorAt(std::size_t place) {
    return data::detail::iteratorAt(Views(*this, true), place);
}
ForwardIteratorImpl* PropertySet::iteratorAt(std::size_t place) const {
    return data::detail::iteratorAt(Views(const_cast<PropertySet&>(*this), false), place); // refuses writes
}

bool PropertySet::equals(const PropertySet& other) const {
    return list_->equals(*other.list_) && values_ == other.values_;
}

ArrayImpl& PropertySet::heldIn(std::size_t place) const noexcept { return *Access::impl(values_[place]); }
bool PropertySet::isShared(std::size_t place) const noexcept {
    return !Access::isPrivate(Access::impl(values_[place]));
}
void PropertySet::replace(std::size_t place, Held array) { values_[place] = Array(array.detach()); }

} // namespace vexa::client
