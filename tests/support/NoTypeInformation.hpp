// Back-end objects whose classes were built with -fno-rtti.
#pragma once

#include <vexa/data/impl/ArrayImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>

namespace support {

/// The row 1, 2, 3, behind iterators of its own.
vexa::data::impl::ArrayImpl* rowWithoutTypeInformation();
/// An object without properties.
vexa::data::impl::ObjectImpl* objectWithoutTypeInformation();

} // namespace support
