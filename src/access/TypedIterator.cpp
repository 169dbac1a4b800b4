#include <foundation/vexadata/TypedIterator.hpp>

#include <exception>
#include <utility>

namespace foundation::vexadata::detail {

namespace {

thread_local std::exception_ptr heldError;

} // namespace

void holdError() noexcept { heldError = std::current_exception(); }

void rethrowHeldError() { std::rethrow_exception(std::exchange(heldError, nullptr)); }

} // namespace foundation::vexadata::detail
