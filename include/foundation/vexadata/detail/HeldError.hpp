// Exceptions that travel in results: what an access calls must not throw, or compilers keep the sums of a
// loop in memory.
#pragma once

#include <foundation/vexadata/Export.hpp>

namespace foundation::vexadata::detail {

/// The exception in flight, in one word that a result can carry in a register; never null.
VEXADATA_API void* holdError() noexcept;
/// Throws what `holdError` returned, once.
[[noreturn, gnu::cold]] VEXADATA_API void rethrowHeldError(void* error);

} // namespace foundation::vexadata::detail
