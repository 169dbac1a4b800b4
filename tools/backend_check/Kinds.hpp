// The kinds of array and their names.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Traits.hpp>

#include <complex>
#include <cstdint>
#include <string_view>

namespace vexa::check {

using foundation::vexadata::ArrayType;

/// E.g. "double", "complex-int8", "cell"; "no type" for a value that is none.
std::string_view nameOf(ArrayType type);

template <class T>
struct ElementTag {
    using type = T;
    static constexpr ArrayType arrayType = foundation::vexadata::detail::arrayTypeOf<T>;
};

/// Calls `f` with a tag for each primitive element type, in the order of the type values.
template <class F>
void forEachPrimitive(F f) {
#define VEXADATA_ELEMENT(T) f(ElementTag<T>());
#include <foundation/vexadata/PrimitiveTypes.inc>
}

} // namespace vexa::check
