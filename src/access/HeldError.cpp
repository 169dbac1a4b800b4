// Errors of calls that inlined code has to see as noexcept: held as a plain pointer, and thrown again after
// the call.
#include <foundation/vexadata/detail/HeldError.hpp>

#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace foundation::vexadata::detail {

// An exception_ptr is one word that may be moved by copying its bytes. It is passed as a plain pointer, which
// is returned in a register and leaves no destructor in the caller's loop.
static_assert(sizeof(std::exception_ptr) == sizeof(void*));

void* holdError() noexcept {
    void* error = nullptr;
    ::new (&error) std::exception_ptr(std::current_exception());
    return error;
}

void rethrowHeldError(void* error) {
    auto& held = *std::launder(reinterpret_cast<std::exception_ptr*>(&error));
    const std::exception_ptr owned = std::move(held);
    std::destroy_at(&held);
    std::rethrow_exception(owned);
}

} // namespace foundation::vexadata::detail
