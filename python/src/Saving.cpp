// Files of arrays, by vexadata::storage. Without it, the functions say so.
#include "Errors.hpp"
#include "Handle.hpp"
#include "Module.hpp"

#if VEXADATA_PYTHON_HAS_STORAGE
#    include <vexa/storage/Reader.hpp>
#    include <vexa/storage/Storage.hpp>
#endif

#include <pybind11/stl.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vexa::python {

namespace {

#if VEXADATA_PYTHON_HAS_STORAGE

namespace vs = vexa::storage;

/// Runs `action` without the GIL; an error of a file becomes one of Python: OSError when it could not be read
/// or written, InputError when its bytes are not what they should be.
template <class Action>
void withFile(Action action) {
    std::optional<vs::Error> failure;
    try {
        const py::gil_scoped_release release; // nothing of Python is touched meanwhile
        action();
    } catch (const vs::Error& error) {
        failure = error;
    }
    if (failure && failure->offset() == vs::Error::nowhere) {
        raise(PyExc_OSError, failure->what());
    }
    if (failure) {
        raise("InputError", failure->what());
    }
}

void save(const std::string& path, const py::dict& values) {
    std::vector<vs::Variable> variables;
    for (const auto& [name, value] : values) {
        variables.push_back({name.cast<std::string>(), toArray(value)});
    }
    withFile([&] { vs::save(path, variables); });
}

py::dict load(const std::string& path, const std::optional<std::vector<std::string>>& names, bool mapped) {
    vs::LoadOptions options;
    options.placement = mapped ? vs::Placement::mapped : vs::Placement::memory;
    std::vector<vs::Variable> variables;
    std::string unknown;
    withFile([&] {
        const vs::Reader reader(path);
        if (!names) {
            variables = reader.loadAll(options);
            return;
        }
        for (const std::string& name : *names) {
            if (!reader.has(name)) {
                unknown = name;
                return;
            }
            variables.push_back({name, reader.load(name, options)});
        }
    });
    if (!unknown.empty() || (names && variables.size() != names->size())) {
        raise(PyExc_KeyError, path + " has no variable '" + unknown + "'");
    }
    py::dict values;
    for (vs::Variable& variable : variables) {
        values[py::str(variable.name)] = wrap(std::move(variable.array));
    }
    return values;
}

#else

[[noreturn]] void refuse() {
    raise(PyExc_NotImplementedError, "this vexadata was built without vexadata::storage");
}
void save(const std::string&, const py::dict&) { refuse(); }
py::dict load(const std::string&, const std::optional<std::vector<std::string>>&, bool) { refuse(); }

#endif

} // namespace

void addSaving(py::module_& module) {
    module.def("_save", &save, py::arg("path"), py::arg("values"));
    module.def("_load", &load, py::arg("path"), py::arg("names"), py::arg("mapped"));
}

} // namespace vexa::python
