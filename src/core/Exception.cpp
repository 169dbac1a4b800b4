// Messages and destructors of all errors, and the one place that throws each.
#include <foundation/vexadata/Exception.hpp>

namespace foundation::vexadata {

Exception::~Exception() = default;

#define VEXADATA_ERROR(E, message)                                                                           \
    const char* E::what() const { return message; }                                                          \
    E::~E() = default;
#include <foundation/vexadata/ErrorTypes.inc>

EArrayInvalidHandleRef::~EArrayInvalidHandleRef() = default;

const char* EArrayInvalidHandleRef::what() const noexcept {
    return "The HandleObjectRef does not refer to a handle.";
}

namespace detail {

template <class E>
void raise() {
    throw E();
}

#define VEXADATA_ERROR(E, message) template void raise<E>();
#include <foundation/vexadata/ErrorTypes.inc>

} // namespace detail

} // namespace foundation::vexadata
