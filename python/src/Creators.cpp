// Arrays made from nothing, from text, and of other arrays.
#include "Errors.hpp"
#include "Handle.hpp"
#include "Indices.hpp"
#include "Module.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

namespace vexa::python {

namespace {

using fv::ArrayType;

/// The kind with this name, among those whose arrays can be made of zeros.
ArrayType kindNamed(const std::string& name) {
    for (std::int32_t k = 1; k <= static_cast<std::int32_t>(ArrayType::SPARSE_COMPLEX_DOUBLE); ++k) {
        const auto type = static_cast<ArrayType>(k);
        const bool startsAsZeros = fv::detail::isPrimitive(type) || fv::detail::isSparse(type) ||
                                   type == ArrayType::STRING || type == ArrayType::CELL ||
                                   type == ArrayType::HANDLE_OBJECT_REF;
        if (startsAsZeros && name == fv::kindName(type)) {
            return type;
        }
    }
    raise(PyExc_ValueError, "no kind of arrays that begin with zeros is called '" + name + "'");
}

py::object zeros(py::handle shape, const std::string& kind) {
    const ArrayType type = kindNamed(kind);
    return wrap(fv::ArrayFactory().createArray(type, toDimensions(shape)));
}

py::object cell(const py::list& values, py::handle shape) {
    auto cells = fv::ArrayFactory().createArray<fv::Array>(toDimensions(shape));
    std::size_t k = 0;
    for (auto element = cells.begin(); element != cells.end(); ++element) {
        *element = toArray(values[k++]);
    }
    return wrap(std::move(cells));
}

} // namespace

void addCreators(py::module_& module) {
    py::class_<CellObject, ArrayObject>(module, "CellArray",
                                        "An array of arrays. c[i] is a value: to change an array in a cell, "
                                        "change it and store it again.");
    module.def(
        "zeros", &zeros, py::arg("shape"), py::arg("kind") = "double",
        "An array of zeros, missing strings or cells with empty arrays; a number n as shape means n by 1.");
    module.def("_cell", &cell, py::arg("values"), py::arg("shape"));
}

} // namespace vexa::python
