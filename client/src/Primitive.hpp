// From a kind that is known at run time to the type of its elements.
#pragma once

#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

namespace vexa::client {

/// Calls `make` with the tag of a primitive kind.
/// @throws E for other kinds
template <class E, class F>
auto forPrimitive(foundation::vexadata::ArrayType type, F make) {
    namespace fv = foundation::vexadata;
    return fv::detail::withKind(type, [&](auto tag) -> decltype(make(fv::detail::ElementTag<double>())) {
        if constexpr (tag.isPrimitive) {
            return make(tag);
        } else {
            fv::detail::raise<E>();
        }
    });
}

} // namespace vexa::client
