// Arrays of numbers and truth values.
#include "Errors.hpp"
#include "Kinds.hpp"
#include "Module.hpp"
#include "Numpy.hpp"

#include <pybind11/stl.h>

namespace vexa::python {

namespace {

/// An array with memory for NumPy: itself, or a copy that nobody else has.
py::object toNumpy(const py::object& self, bool writable, Copy copy) {
    auto& held = self.cast<ArrayObject&>();
    if (copy.value_or(false)) {
        return writable ? exportWritable(wrap(held.value())) : exportReadOnly(held.value());
    }
    if (writable) {
        return exportWritable(self);
    }
    if (held.isAliased() && copy.has_value()) {
        raise(PyExc_ValueError,
              "the memory of " + describe(held.array) +
                  " can be written by others: read-only memory that never changes is a copy");
    }
    return exportReadOnly(held.value());
}

/// A row or a column with one dimension.
py::object toVector(const py::object& self, bool writable) {
    const py::object matrix = toNumpy(self, writable, {});
    const auto& array = self.cast<const ArrayObject&>().array;
    const std::vector<std::size_t> extents = array.getDimensions();
    if (extents.size() != 2 || (extents[0] != 1 && extents[1] != 1 && !array.isEmpty())) {
        raise(PyExc_ValueError, describe(array) + " is neither row nor column");
    }
    return matrix.attr("reshape")(-1);
}

/// For NumPy, which asks so where it does not use the buffer protocol.
py::object asArray(const py::object& self, py::handle dtype, Copy copy) {
    py::object array = toNumpy(self, copy.value_or(false), copy);
    return dtype.is_none() ? array : array.attr("astype")(dtype, py::arg("copy") = false);
}

py::object dtype(const DenseObject& self) {
    return py::reinterpret_borrow<py::object>(dtypeOf(self.array.getType()));
}

py::str order(const DenseObject& self) {
    return self.array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR ? "C" : "F";
}

/// Whether NumPy's array is one of plain elements: masks, texts, objects and records have their ways in the
/// Python part.
bool isPlain(py::handle value) {
    const auto& numpy = py::detail::npy_api::get();
    if (Py_TYPE(value.ptr()) != reinterpret_cast<PyTypeObject*>(numpy.PyArray_Type_)) {
        return false;
    }
    const py::dtype dtype = py::reinterpret_borrow<py::array>(value).dtype();
    const char kind = dtype.kind();
    return kind == 'V' ? kindOf(dtype) != fv::ArrayType::UNKNOWN : kind != 'U' && kind != 'O';
}

py::object array(py::handle value, py::handle dtype, Copy copy) {
    if (dtype.is_none() && isPlain(value)) {
        return fromNumpy(py::reinterpret_borrow<py::array>(value), copy);
    }
    return pythonFunction("as_array")(value, dtype, copy);
}

} // namespace

void addNumpy(py::module_& module) {
    py::class_<DenseObject, ArrayObject> c(
        module, "DenseArray", py::custom_type_setup(&addBufferProtocol),
        "An array of numbers or truth values. numpy.asarray(a) shares its memory, read-only: that memory never\n"
        "changes, since a write through `a` then gives `a` memory of its own. a.numpy(writable=True) is a window "
        "onto\n`a` itself; while it lives, whatever else is taken from `a` (copies, elements of cells, read-only "
        "memory) is a copy.");
    c.def(
        "numpy", &toNumpy, py::kw_only(), py::arg("writable") = false, py::arg("copy") = py::none(),
        "A NumPy array over the memory of this array, which keeps it alive.\n\n"
        "Read-only, it shows the elements as they are now, for ever. Writable, it is a window: the array gets "
        "memory\nof its own first when it shares, and writes on either side are seen on the other. With "
        "copy=True nothing is\nshared; with copy=False ValueError is raised where a copy would be needed.");
    c.def("vector", &toVector, py::kw_only(), py::arg("writable") = false,
          "A row or a column as a NumPy array of one dimension, over the same memory as numpy() gives.");
    c.def("__array__", &asArray, py::arg("dtype") = py::none(), py::arg("copy") = py::none());
    c.def_property_readonly("dtype", &dtype, "The dtype of the NumPy arrays over the memory.");
    c.def_property_readonly("order", &order,
                            "'F' when the first index varies fastest in memory, 'C' when the last one does.");
    c.def_property_readonly(
        "is_window", [](const DenseObject& self) { return self.isWindow; },
        "Whether the memory belongs to somebody else who can write it.");
    module.def(
        "array", &array, py::arg("value"), py::arg("dtype") = py::none(), py::kw_only(),
        py::arg("copy") = py::none(),
        "An array of a value of Python:\n\n"
        "  numbers, nested lists of numbers, NumPy arrays   DenseArray\n"
        "  str, None and nested lists of them               StringArray\n"
        "  members of an enum.Enum, lists of them           EnumArray\n"
        "  dict, lists of dicts with the same keys,\n"
        "  structured NumPy arrays                          StructArray\n"
        "  other lists, NumPy arrays of objects             CellArray\n"
        "  matrices of scipy.sparse                         SparseArray\n"
        "  Object, Handle, lists of one of them             ObjectArray\n"
        "  arrays of vexadata                               another value of the same array\n"
        "  None                                             the empty array\n\n"
        "A vector becomes a column. With copy=None, memory of NumPy is shared when it cannot change any more "
        "and copied\notherwise; copy=True always copies; copy=False never does, and raises ValueError where "
        "it would have to. See\nhelp(vexadata) for what sharing means. Strided elements are copied in column-major "
        "order. TypeError names a dtype\nor type that no array has.");
    module.def("_from_numpy", &fromNumpy, py::arg("value"), py::arg("copy"));
    module.def(
        "freeze", &freeze, py::arg("value"),
        "An array over the memory of a NumPy array, as a value and without a copy. Makes the NumPy array, and "
        "those that it\nis a part of, read-only; whoever calls this says that nobody writes the memory any more "
        "in other ways. For large\ndata, memory-mapped files among it. Raises ValueError when the elements do "
        "not lie side by side.");
}

} // namespace vexa::python
