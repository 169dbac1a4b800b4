// Property values of objects and of object arrays.
#pragma once

#include "ArrayHolder.hpp"
#include "ClassDescription.hpp"
#include "Release.hpp"

#include <foundation/vexadata/Array.hpp>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace vexa::client {

/// A value for each property of a list, which is borrowed with its class from the owner. Copies share the
/// values until one side is written.
class PropertySet final : public ArrayHolder {
public:
    /// Every property holds an empty array.
    PropertySet(const PropertyList& list, const std::string& className)
        : list_(&list), className_(&className), values_(list.size()) {}
    PropertySet(const PropertySet&) = default;
    ~PropertySet() {
        if (hasNested()) {
            releaseAll(std::move(values_));
        }
    }

    const PropertyList& list() const noexcept { return *list_; }
    /// @throws UnknownPropertyException, AmbiguousPropertyException
    std::size_t placeOf(const VexaPropertyIdentifier& id) const {
        return client::placeOf(*list_, id, *className_);
    }
    bool has(const VexaPropertyIdentifier& id) const {
        return list_->find(id, *className_) != NameTable::none;
    }
    const foundation::vexadata::Array& value(std::size_t place) const noexcept { return values_[place]; }

    /// A new reference to a value, one reference for the caller; writing through it changes the value in
    /// place.
    data::detail::ReferenceImpl* reference(std::size_t place);
    /// New iterators over PropertyImpl objects, one reference for the caller. The set is borrowed. Writing
    /// through what the read-only form gives throws CantAssignArrayToThisArrayException.
    data::detail::ForwardIteratorImpl* iteratorAt(std::size_t place);
    data::detail::ForwardIteratorImpl* iteratorAt(std::size_t place) const;

    /// The same properties with equal values.
    bool equals(const PropertySet& other) const;

    std::size_t numberOfPlaces() const noexcept override { return values_.size(); }
    data::impl::ArrayImpl& heldIn(std::size_t place) const noexcept override;
    bool isShared(std::size_t place) const noexcept override;
    /// Stores an array, borrowed; a copy when it would hold the owner.
    void store(std::size_t place, data::impl::ArrayImpl& array) { put(place, storable(array, *this)); }

private:
    void replace(std::size_t place, Held array) override;

    const PropertyList* list_;
    const std::string* className_;
    std::vector<foundation::vexadata::Array> values_;
};

} // namespace vexa::client
