// The extension module `vexadata._vexadata`; the package around it is in Python.
#include "Module.hpp"

#include <vexa/client/Client.hpp>

namespace vexa::python {

namespace {

extern "C" PyObject* refuseToMake(PyTypeObject* type, PyObject*, PyObject*) {
    PyErr_Format(PyExc_TypeError, "objects of the class %s are made by the functions of vexadata",
                 type->tp_name);
    return nullptr;
}

} // namespace

void forbidConstruction(py::handle pythonClass) {
    reinterpret_cast<PyTypeObject*>(pythonClass.ptr())->tp_new = &refuseToMake;
}

py::object pythonFunction(const char* name) { return py::module_::import("vexadata._convert").attr(name); }

} // namespace vexa::python

PYBIND11_MODULE(_vexadata, module) {
    using namespace vexa::python;
    vexa::client::registerBackEnd();
    const py::object name = module.attr("__name__");
    module.attr("__name__") = "vexadata"; // where the classes are found by their users
    module.doc() = "Arrays of vexadata for Python; import the package vexadata instead.";
    addErrors(module);
    addArrays(module);
    addCreators(module);
    addNumpy(module);
    addDlpack(module);
    addStrings(module);
    addEnumerations(module);
    addStructs(module);
    addSparse(module);
    addObjects(module);
    addWorkspace(module);
    addReaders(module);
    for (const char* made : {"Array", "DenseArray", "CharArray", "StringArray", "EnumArray", "CellArray",
                             "StructArray", "SparseArray", "ObjectArray", "Object"}) {
        forbidConstruction(module.attr(made));
    }
    module.attr("__name__") = name;
}
