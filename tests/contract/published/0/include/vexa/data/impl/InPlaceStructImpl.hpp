// What an array of records derives from when handles are to reach its fields in place.
#pragma once

#include <vexa/data/impl/InPlaceArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <cstddef>
#include <string>

namespace vexa::data::impl {

/// Continues StructArrayImpl. See `detail::recognise`.
class InPlaceStructImpl : public InPlaceArrayImpl<StructArrayImpl, const void> {
public:
    /// Slot 50. Where the pointer to the array lies that a field holds. It stays there as long as this array
    /// lives; the array is the field's alone while it has one reference. Errors as from `getField`.
    virtual ArrayImpl* const* getFieldPlace(std::size_t index, const std::string& fieldName) const = 0;

protected:
    InPlaceStructImpl() noexcept = default;
    InPlaceStructImpl(const InPlaceStructImpl&) noexcept = default;
};

} // namespace vexa::data::impl
