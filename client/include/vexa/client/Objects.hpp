// What the embedded back-end offers for objects beyond the contract.
#pragma once

#include <foundation/vexadata/ValueObjectArray.hpp>

#include <cstddef>
#include <vector>

namespace vexa::client {

/// How many references to a handle object were told to the embedded engine through `addReference`. Safe from
/// any thread.
VEXADATA_API std::size_t countOfReferences(const foundation::vexadata::ZVMID& engine, long id);

/// Sets the dimensions that an object array shows to users; its own stay as they are. The array is made
/// private first.
/// @throws InvalidArrayTypeException when the array is not one of this back-end
VEXADATA_API void setExternalDimensions(foundation::vexadata::ValueObjectArray& array,
                                        std::vector<std::size_t> dimensions);

} // namespace vexa::client
