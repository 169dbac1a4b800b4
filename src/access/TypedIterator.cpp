#include <foundation/vexadata/TypedIterator.hpp>

#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace foundation::vexadata::detail {

namespace {

/// The place of an error. Bytes have no destructor, for which each thread would take memory.
alignas(std::exception_ptr) constinit thread_local std::byte place[sizeof(std::exception_ptr)]{};

} // namespace

void holdError() noexcept { ::new (&place) std::exception_ptr(std::current_exception()); }

void rethrowHeldError() {
    auto& held = *std::launder(reinterpret_cast<std::exception_ptr*>(&place));
    const std::exception_ptr error = std::move(held);
    std::destroy_at(&held);
    std::rethrow_exception(error);
}

} // namespace foundation::vexadata::detail
