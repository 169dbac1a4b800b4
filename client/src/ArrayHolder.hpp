// Arrays that hold arrays: cells and structs.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <vector>

namespace vexa::client {

using foundation::vexadata::Array;

/// Implemented beside the interface of the array's kind.
class ArrayHolder {
public:
    /// The arrays held. Each may be shared with other handles and holders.
    virtual std::vector<Array>& slots() = 0;

protected:
    ~ArrayHolder() = default;
};

/// A new chain into the array that a slot holds, one reference for the caller. Before a write that array is made the slot's
/// alone, even when the chain was made for reading: then it moves to the copy.
data::detail::ReferenceImpl* referenceInto(Array& slot, bool forWrite);

/// A handle of `array` for a slot of `holder`. When `holder` lies in `array`, at any depth, the handle is of a copy that
/// shares no holder with it: `holder` would own itself otherwise.
Array storable(data::impl::ArrayImpl& array, const data::impl::ArrayImpl& holder);

} // namespace vexa::client
