// The parts of the module, each of which adds its classes and functions.
#pragma once

#include <pybind11/pybind11.h>

namespace vexa::python {

namespace py = pybind11;

void addErrors(py::module_& module);
void addArrays(py::module_& module);
void addCreators(py::module_& module);
void addNumpy(py::module_& module);
void addDlpackExport(py::module_& module);
void addDlpack(py::module_& module);
void addStrings(py::module_& module);
void addEnumerations(py::module_& module);
void addStructs(py::module_& module);
void addSparse(py::module_& module);
void addObjects(py::module_& module);
void addWorkspace(py::module_& module);
void addReaders(py::module_& module);

/// Lets no object of a class be made from Python, not even by `__new__`, which would leave it without an array.
void forbidConstruction(py::handle pythonClass);

/// A function of the Python part of the package, `vexadata._convert`.
py::object pythonFunction(const char* name);

} // namespace vexa::python
