// Python objects that keep memory alive for arrays.
#pragma once

#include <pybind11/pybind11.h>

#include <memory>

namespace vexa::python {

namespace py = pybind11;

/// Runs `f` with the GIL held, on whatever thread; not at all when the interpreter is gone or going on
/// another thread. What `f` would have freed stays then, until the process ends.
template <class F>
void withInterpreter(F&& f) noexcept;

/// Whether the interpreter can still be entered from this thread.
bool canEnterInterpreter() noexcept;

/// Holds one reference to `object` and drops it under the GIL, on whatever thread the last array goes.
/// @throws std::bad_alloc after dropping it
std::shared_ptr<void> ownerOf(py::object object);

template <class F>
void withInterpreter(F&& f) noexcept {
    if (canEnterInterpreter()) {
        const PyGILState_STATE state = PyGILState_Ensure();
        f();
        PyGILState_Release(state);
    }
}

} // namespace vexa::python
