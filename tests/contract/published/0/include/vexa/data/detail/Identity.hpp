// Identities of arrays, from one counter for all back-ends of the process.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <cstdint>

namespace vexa::data::detail {

/// A number for `ArrayImpl::getArrayID` that no other call in this process has given or will give; never 0. Arrays with equal
/// identities count as equal unseen, so back-ends that may meet in one process all draw from here. Safe from any thread.
VEXADATA_API std::uint64_t nextIdentity() noexcept;

} // namespace vexa::data::detail
