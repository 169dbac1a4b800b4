// The class of arrays of any kind, and what all kinds can do.
#include "Elements.hpp"
#include "Errors.hpp"
#include "Indices.hpp"
#include "Module.hpp"

#include <foundation/vexadata/Print.hpp>

namespace vexa::python {

namespace {

std::string kind(const ArrayObject& self) { return fv::kindName(self.array.getType()); }
std::string text(const ArrayObject& self) { return fv::toText(self.array); }

/// The text, with dimensions and kind before it where the printer leaves them out.
std::string representation(const ArrayObject& self) {
    const std::string heading = describe(self.array);
    const std::string shown = text(self);
    return shown.compare(0, heading.size(), heading) == 0 ? shown : heading + ": " + shown;
}

/// Another index must not be tested against an array that a conversion of the value has changed, so that the
/// position is looked up last.
void setItem(ArrayObject& self, py::handle key, py::handle value) {
    const std::size_t before = positionOf(self.array, key);
    writeElement(self, before, value);
}

py::object getItem(py::handle self, py::handle key) {
    const auto& held = self.cast<const ArrayObject&>();
    return readElement(self, held.array, positionOf(held.array, key));
}

void requirePosition(const ArrayObject& self, std::size_t position) {
    if (position >= self.array.getNumberOfElements()) {
        raise(PyExc_IndexError, "position " + std::to_string(position) + " of " + describe(self.array));
    }
}

py::object at(py::handle self, std::size_t position) {
    const auto& held = self.cast<const ArrayObject&>();
    requirePosition(held, position);
    return readElement(self, held.array, position);
}

void setAt(ArrayObject& self, std::size_t position, py::handle value) {
    requirePosition(self, position);
    writeElement(self, position, value);
}

py::object iterate(py::handle self) {
    lengthOf(self.cast<const ArrayObject&>().array); // raises for a matrix
    return py::reinterpret_steal<py::object>(PySeqIter_New(self.ptr()));
}

py::object equals(const ArrayObject& self, py::handle other) {
    if (!py::isinstance<ArrayObject>(other)) {
        return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    }
    return py::bool_(self.array == other.cast<const ArrayObject&>().array);
}

/// The one element of an array of numbers or truth values.
py::object scalar(py::handle self, const char* wanted) {
    const auto& array = self.cast<const ArrayObject&>().array;
    const fv::ArrayType type = array.getType();
    if (array.getNumberOfElements() != 1 || type == fv::ArrayType::CHAR || !fv::detail::isPrimitive(type)) {
        raise(PyExc_TypeError, describe(array) + " is no single number and has no " + wanted);
    }
    return readElement(self, array, 0);
}

template <class Number>
void addConversion(py::class_<ArrayObject>& c, const char* name, const char* wanted, const char* doc) {
    c.def(
        name, [wanted](py::handle self) { return Number(scalar(self, wanted)); }, doc);
}

void addElements(py::class_<ArrayObject>& c) {
    c.def(
        "__getitem__", &getItem, py::arg("key"),
        "The element at a[i, j, ...]; a row or a column takes one index. Counts from 0, and from the end when\n"
        "negative. In a 1x1 struct, a['name'] is the array in that field.");
    c.def("__setitem__", &setItem, py::arg("key"), py::arg("value"),
          "Stores an element. An array that shares its memory gets memory of its own first.");
    c.def("_at", &at, py::arg("position"));
    c.def("_set_at", &setAt, py::arg("position"), py::arg("value"));
    c.def(
        "__len__", [](const ArrayObject& self) { return lengthOf(self.array); },
        "Number of elements of a row or a column; a matrix has none, but a size and a shape.");
    c.def("__iter__", &iterate, "Walks the elements of a row or a column; elements() walks any array.");
}

} // namespace

void addArrays(py::module_& module) {
    py::class_<ArrayObject> c(module, "Array",
                              "An array of vexadata, of any kind; the empty one has none.\n\n"
                              "Arrays are values: copy() shares memory until one of the two is "
                              "written. Made by vexadata.array() and the\n"
                              "other functions of the package.");
    c.def_property_readonly("kind", &kind,
                            "Name of the kind: 'double', 'logical', 'cell', 'sparse double' ...");
    c.def_property_readonly(
        "shape", [](const ArrayObject& self) { return fromDimensions(self.array.getDimensions()); },
        "The dimensions, two at least.");
    c.def_property_readonly(
        "ndim", [](const ArrayObject& self) { return self.array.getDimensions().size(); },
        "Number of dimensions, two at least.");
    c.def_property_readonly(
        "size", [](const ArrayObject& self) { return self.array.getNumberOfElements(); },
        "Number of elements.");
    c.def_property_readonly(
        "is_shared", [](const ArrayObject& self) { return self.array.isShared(); },
        "Whether the next write through this array gives it memory of its own.");
    c.def(
        "copy", [](const ArrayObject& self) { return wrap(self.value()); },
        "The same array as another value. Shares the memory until one of the two is written, unless somebody\n"
        "else may write it.");
    c.def("__copy__", [](const ArrayObject& self) { return wrap(self.value()); });
    c.def(
        "__deepcopy__", [](const ArrayObject& self, py::handle) { return wrap(self.value()); },
        py::arg("memo"));
    c.def("__eq__", &equals, py::arg("other"), "Whether kind, dimensions and all elements are equal.");
    c.attr("__hash__") = py::none();
    c.def("__str__", &text, "The elements for people; long arrays are cut.");
    c.def("__repr__", &representation, "Dimensions, kind and elements.");
    c.def(
        "__bool__", [](py::handle self) { return py::bool_(scalar(self, "truth value")); },
        "Truth of a single number; TypeError for other arrays.");
    addConversion<py::float_>(c, "__float__", "float", "A single number as float.");
    addConversion<py::int_>(c, "__int__", "int", "A single number as int.");
    c.def(
        "__complex__",
        [](py::handle self) {
            return py::reinterpret_steal<py::object>(
                PyComplex_FromCComplex(PyComplex_AsCComplex(scalar(self, "complex").ptr())));
        },
        "A single number as complex.");
    addElements(c);
    module.def("_empty", [] { return wrap(fv::Array()); });
}

} // namespace vexa::python
