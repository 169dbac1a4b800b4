// Errors of the library as exceptions of Python.
#pragma once

#include <foundation/vexadata/Array.hpp>

#include <pybind11/pybind11.h>

#include <string>

namespace vexa::python {

namespace py = pybind11;
namespace fv = foundation::vexadata;

/// Raises the exception class of the package that bears this name.
[[noreturn]] void raise(const char* className, const std::string& message);
/// Raises one of Python's own.
[[noreturn]] void raise(PyObject* type, const std::string& message);

/// "3x4 double": what an array is, for messages.
std::string describe(const fv::Array& array);
/// The type of a Python object, for messages.
std::string typeName(py::handle value);

} // namespace vexa::python
