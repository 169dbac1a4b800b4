// Files, by the readers of the command vexa-inspect. Without them, the functions say so.
#include "Errors.hpp"
#include "Handle.hpp"
#include "Module.hpp"

#if VEXADATA_PYTHON_HAS_READERS
#    include <InputError.hpp>
#    include <Inspect.hpp>
#endif

#include <pybind11/stl.h>

#include <optional>
#include <string>
#include <variant>

namespace vexa::python {

namespace {

#if VEXADATA_PYTHON_HAS_READERS

namespace vi = vexa::inspect;

vi::Options optionsOf(std::optional<char> delimiter, const std::string& encoding) {
    if (encoding != "utf-8" && encoding != "latin-1") {
        raise(PyExc_ValueError, "encoding is 'utf-8' or 'latin-1', not '" + encoding + "'");
    }
    return {delimiter, encoding == "utf-8" ? vi::Encoding::utf8 : vi::Encoding::latin1};
}

/// The contents without the shares of the budget, which ends with the reading.
fv::Array contentsOf(vi::Dataset&& data) {
    if (auto* table = std::get_if<vi::Table>(&data)) {
        return std::move(table->columns);
    }
    if (auto* matrix = std::get_if<vi::Matrix>(&data)) {
        return std::move(matrix->array);
    }
    throw vi::InputError("the file holds saved arrays; expected delimited text");
}

std::string messageOf(const std::string& path, const vi::InputError& error) {
    const std::string line = error.line() == 0 ? "" : ":" + std::to_string(error.line());
    return path + line + ": " + error.what();
}

py::object read(const std::string& path, std::optional<char> delimiter, const std::string& encoding) {
    const vi::Options options = optionsOf(delimiter, encoding);
    std::string fault;
    fv::Array contents;
    try {
        const py::gil_scoped_release release; // nothing of Python is touched while a file is read
        vi::MemoryBudget budget(vi::availableMemory());
        vi::Source source(path);
        vi::Progress progress(nullptr, source.size());
        contents = contentsOf(vi::load(source, options, progress, budget));
    } catch (const vi::InputError& error) {
        fault = messageOf(path, error);
    }
    if (!fault.empty()) {
        raise("InputError", fault);
    }
    return wrap(std::move(contents));
}

#else

py::object read(const std::string&, std::optional<char>, const std::string&) {
    raise(PyExc_NotImplementedError, "this vexadata was built without the readers of vexa-inspect");
}

#endif

} // namespace

void addReaders(py::module_& module) {
    module.def("_read", &read, py::arg("path"), py::arg("delimiter"), py::arg("encoding"));
}

} // namespace vexa::python
