#include <foundation/vexadata/detail/HeldError.hpp>

#include <exception>
#include <memory>
#include <new>
#include <utility>

namespace foundation::vexadata::detail {

// An exception_ptr is one word, and moves with its bytes: it travels as a plain pointer, which has no
// destructor and is returned in a register.
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
