#include "Identity.hpp"

namespace vexa::client {

std::uint64_t Identity::draw() const noexcept {
    static std::atomic<std::uint64_t> last{0};
    const std::uint64_t fresh = last.fetch_add(1, std::memory_order_relaxed) + 1;
    std::uint64_t current = 0;
    return value_.compare_exchange_strong(current, fresh, std::memory_order_relaxed) ? fresh : current;
}

} // namespace vexa::client
