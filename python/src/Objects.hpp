// Objects and handles as Python objects.
#pragma once

#include "Handle.hpp"

#include <foundation/vexadata/Object.hpp>

namespace vexa::python {

/// The object of `vexadata.Object`, or None for a handle without one.
py::object fromObject(const fv::ValueObject& object);
/// Raises TypeError for anything but a `vexadata.Object`.
fv::ValueObject toObject(py::handle value);

py::object fromHandle(const fv::HandleObjectRef& handle);
fv::HandleObjectRef toHandle(py::handle value);

} // namespace vexa::python
