// The rule of `==` between arrays, as a function that may throw.
#pragma once

#include <foundation/vexadata/Array.hpp>

namespace foundation::vexadata::detail {

/// What `==` of handles to these arrays gives. Throws errors of the back-end, where `==`, which is
/// `noexcept`, ends the process.
bool equal(const ArrayImpl& a, const ArrayImpl& b);

} // namespace foundation::vexadata::detail
