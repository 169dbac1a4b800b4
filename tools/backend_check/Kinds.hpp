// The kinds of array and their names.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

#include <string>

namespace vexa::check {

using foundation::vexadata::ArrayType;

/// The name that printed arrays have, with hyphens: "double", "complex-int8", "enumeration"; "unknown" for a
/// value that is no kind.
std::string nameOf(ArrayType type);

using foundation::vexadata::detail::ElementTag;
using foundation::vexadata::detail::forEachPrimitive;

} // namespace vexa::check
