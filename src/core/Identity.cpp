// The counter of identities, one for all back-ends of the process.
#include <vexa/data/detail/Identity.hpp>

#include <atomic>

namespace vexa::data::detail {

std::uint64_t nextIdentity() noexcept {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

} // namespace vexa::data::detail
