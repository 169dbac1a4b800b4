// The rule of `==`, where it may fail.
#pragma once

#include <foundation/vexadata/Array.hpp>

namespace foundation::vexadata::detail {

/// As `==` of handles of these arrays, which ends the process where this throws: errors of the back-end.
bool equal(const ArrayImpl& a, const ArrayImpl& b);

} // namespace foundation::vexadata::detail
