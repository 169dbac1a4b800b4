// From the kind of an array to the type of its elements.
#pragma once

#include <foundation/vexadata/Traits.hpp>

namespace foundation::vexadata::detail {

/// Calls `visit(T())` with the element type of a primitive kind; false, without a call, for any other kind.
template <class Visit>
bool withPrimitive(ArrayType type, Visit visit) {
    switch (type) {
#define VEXADATA_ELEMENT(T)                                                                                  \
    case arrayTypeOf<T>:                                                                                     \
        visit(T());                                                                                          \
        return true;
#include <foundation/vexadata/PrimitiveTypes.inc>
    default:
        return false;
    }
}

} // namespace foundation::vexadata::detail
