#include "Identity.hpp"

#include <vexa/data/detail/Identity.hpp>

namespace vexa::client {

std::uint64_t Identity::draw() const noexcept {
    const std::uint64_t fresh = data::detail::nextIdentity();
    std::uint64_t current = 0;
    return value_.compare_exchange_strong(current, fresh, std::memory_order_relaxed) ? fresh : current;
}

} // namespace vexa::client
