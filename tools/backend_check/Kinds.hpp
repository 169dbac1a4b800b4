// The kinds of array and their names.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

#include <string_view>

namespace vexa::check {

using foundation::vexadata::ArrayType;

/// E.g. "double", "complex-int8", "cell"; "no type" for a value that is none.
std::string_view nameOf(ArrayType type);

using foundation::vexadata::detail::ElementTag;
using foundation::vexadata::detail::forEachPrimitive;

} // namespace vexa::check
