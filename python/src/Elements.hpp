// Single elements as Python objects.
#pragma once

#include "Handle.hpp"

namespace vexa::python {

/// The element at a position in storage order. `self` is the object of the array, which records keep.
py::object readElement(py::handle self, const fv::Array& array, std::size_t position);

/// Stores a Python value. Raises TypeError or OverflowError, and then nothing has changed, for a value that
/// the kind cannot represent.
void writeElement(ArrayObject& self, std::size_t position, py::handle value);

} // namespace vexa::python
