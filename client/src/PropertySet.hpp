// Property values of objects and of object arrays.
#pragma once

#include "ArrayHolder.hpp"
#include "ClassDescription.hpp"

#include <foundation/vexadata/Array.hpp>

#include <cstddef>
#include <memory>
#include <vector>

namespace vexa::client {

/// A value for each property of a list, which is borrowed with its class from the owner. Copies share the values until one
/// side is written.
class PropertySet final : public ArrayHolder {
public:
    /// Every property holds an empty array. `owner` is the object that holds the set: what can never be stored in it.
    PropertySet(const PropertyList& list, const std::string& className, const void* owner)
        : list_(&list), className_(&className), owner_(owner), values_(list.size()) {}
    PropertySet(const PropertySet& other, const void* owner)
        : list_(other.list_), className_(other.className_), owner_(owner), values_(other.values_) {}
    PropertySet(const PropertySet&) = delete;
    PropertySet& operator=(const PropertySet&) = delete;

    const PropertyList& list() const noexcept { return *list_; }
    /// @throws UnknownPropertyException, AmbiguousPropertyException
    std::size_t placeOf(const VexaPropertyIdentifier& id) const {
        return client::placeOf(*list_, id, *className_);
    }
    bool has(const VexaPropertyIdentifier& id) const {
        return list_->find(id, *className_) != NameTable::none;
    }
    const foundation::vexadata::Array& value(std::size_t place) const noexcept { return values_[place]; }

    /// A new reference to a value, one reference for the caller; writing through it changes the value in place.
    data::detail::ReferenceImpl* reference(std::size_t place);
    /// New iterators over PropertyImpl objects, one reference for the caller. The set is borrowed. Writing through what the
    /// read-only form gives throws CantAssignArrayToThisArrayException.
    data::detail::ForwardIteratorImpl* iteratorAt(std::size_t place);
    data::detail::ForwardIteratorImpl* iteratorAt(std::size_t place) const;

    /// The same properties with equal values.
    bool equals(const PropertySet& other) const;

    std::size_t numberOfSlots() const noexcept override { return values_.size(); }
    data::impl::ArrayImpl& heldIn(std::size_t slot) const noexcept override;
    void makePrivate(std::size_t slot) override;
    void put(std::size_t slot, Held array) override;
    /// Stores an array, borrowed; a copy when it would hold the owner.
    void store(std::size_t slot, data::impl::ArrayImpl& array) { put(slot, storable(array, owner_)); }

private:
    const PropertyList* list_;
    const std::string* className_;
    const void* owner_;
    std::vector<foundation::vexadata::Array> values_;
};

} // namespace vexa::client
