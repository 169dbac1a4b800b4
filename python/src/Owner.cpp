#include "Owner.hpp"

namespace vexa::python {

namespace {

bool isFinalizing() noexcept {
#if PY_VERSION_HEX >= 0x030D0000
    return Py_IsFinalizing() != 0;
#else
    return _Py_IsFinalizing() != 0;
#endif
}

struct DropReference {
    void operator()(void* object) const noexcept {
        withInterpreter([&] { Py_DECREF(static_cast<PyObject*>(object)); });
    }
};

} // namespace

bool canEnterInterpreter() noexcept {
    // While it ends, only the thread that ends it may go on: any other would wait for the GIL for ever.
    return Py_IsInitialized() != 0 && (!isFinalizing() || PyGILState_Check() != 0);
}

std::shared_ptr<void> ownerOf(py::object object) {
    return std::shared_ptr<void>(object.release().ptr(), DropReference());
}

} // namespace vexa::python
