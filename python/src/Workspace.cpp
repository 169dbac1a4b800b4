// Named variables. The Python part makes a mapping of it.
#include "Errors.hpp"
#include "Handle.hpp"
#include "Module.hpp"
#include "Text.hpp"

#include <vexa/client/Workspace.hpp>

#include <pybind11/stl.h>

namespace vexa::python {

namespace {

using Engine = vexa::client::WorkspaceEngine;

py::object get(Engine& self, const std::string& name) {
    std::vector<const char*> names{name.c_str()};
    const fv::VariableInfo found = self.workspace().getVariables(names);
    if (found.getStatus(0) == fv::IVariableInfo::NOT_SET) {
        raise(PyExc_KeyError, name);
    }
    return wrap(found.getValue(0));
}

/// All of them or, when one has no name or no value, none.
void update(Engine& self, const py::dict& variables) {
    std::vector<std::string> texts;
    std::vector<fv::Array> values;
    for (const auto& [name, value] : variables) {
        texts.push_back(toName(name));
        values.push_back(toArray(value));
    }
    std::vector<const char*> names;
    for (const std::string& text : texts) {
        if (text.find('\0') != std::string::npos) {
            raise("InvalidVariableNameException", "the name of a variable has a NUL");
        }
        names.push_back(text.c_str());
    }
    self.workspace().setVariables(std::move(names), std::move(values));
}

void remove(Engine& self, const std::string& name) {
    get(self, name); // raises KeyError
    self.workspace().clearVariable(name.c_str());
}

} // namespace

void addWorkspace(py::module_& module) {
    py::class_<Engine> c(module, "_Variables");
    c.def(py::init());
    c.def("get", &get, py::arg("name"));
    c.def("update", &update, py::arg("variables"));
    c.def("remove", &remove, py::arg("name"));
    c.def("names", [](Engine& self) { return self.workspace().getVariableNames(); });
}

} // namespace vexa::python
