// Struct arrays.
#include "Elements.hpp"
#include "Errors.hpp"
#include "Handle.hpp"
#include "Indices.hpp"
#include "Module.hpp"
#include "Text.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <pybind11/stl.h>

namespace vexa::python {

namespace {

py::list fieldsOf(const StructObject& self) {
    const fv::StructArray records = self.array;
    py::list names;
    for (const fv::VexaFieldIdentifier& name : records.getFieldNames()) {
        names.append(name.getString());
    }
    return names;
}

void requireRecord(const StructObject& self, std::size_t position) {
    if (position >= self.array.getNumberOfElements()) {
        raise(PyExc_IndexError, "record " + std::to_string(position) + " of " + describe(self.array));
    }
}

fv::Array fieldAt(const StructObject& self, std::size_t position, const std::string& name) {
    const fv::StructArray records = self.array;
    auto record = records.cbegin();
    record += static_cast<std::ptrdiff_t>(position);
    return (*record)[name];
}

py::object getField(const StructObject& self, std::size_t position, const std::string& name) {
    requireRecord(self, position);
    return wrap(fieldAt(self, position, name));
}

void setField(StructObject& self, std::size_t position, const std::string& name, py::handle value) {
    const fv::Array held = toArray(value);
    requireRecord(self, position);
    const fv::Array before = fieldAt(self, position, name); // goes last, since that may run code of Python
    write<fv::StructArray>(self, [&](fv::StructArray& records) {
        auto record = records.begin();
        record += static_cast<std::ptrdiff_t>(position);
        (*record)[name] = held;
    });
}

bool isFieldOfScalar(const StructObject& self, py::handle key) {
    if (!PyUnicode_Check(key.ptr())) {
        return false;
    }
    if (self.array.getNumberOfElements() != 1) {
        raise(PyExc_TypeError, describe(self.array) + " has " +
                                   std::to_string(self.array.getNumberOfElements()) +
                                   " records: give an index first, a[i]['name']");
    }
    return true;
}

py::object getItem(py::handle self, py::handle key) {
    const auto& held = self.cast<const StructObject&>();
    return isFieldOfScalar(held, key) ? getField(held, 0, toName(key))
                                      : readElement(self, held.array, positionOf(held.array, key));
}

void setItem(py::handle self, py::handle key, py::handle value) {
    auto& held = self.cast<StructObject&>();
    if (isFieldOfScalar(held, key)) {
        setField(held, 0, toName(key), value);
    } else {
        readElement(self, held.array, positionOf(held.array, key)).attr("assign")(value);
    }
}

py::object structArray(py::handle shape, const std::vector<std::string>& fields) {
    return wrap(fv::ArrayFactory().createStructArray(toDimensions(shape), fields));
}

} // namespace

void addStructs(py::module_& module) {
    py::class_<StructObject, ArrayObject> c(
        module, "StructArray",
        "An array of records with the same fields, each of which holds an array. s[i] is a vexadata.Record; in\n"
        "a 1x1 struct, s['name'] reads and writes a field.");
    c.def_property_readonly("fields", &fieldsOf, "Names of the fields, in their order.");
    c.def("__getitem__", &getItem, py::arg("key"), "A record, or the array in a field of a 1x1 struct.");
    c.def("__setitem__", &setItem, py::arg("key"), py::arg("value"),
          "Writes a field of a 1x1 struct, or a record from a mapping with its fields.");
    c.def("_get_field", &getField, py::arg("position"), py::arg("name"));
    c.def("_set_field", &setField, py::arg("position"), py::arg("name"), py::arg("value"));
    module.def("_struct", &structArray, py::arg("shape"), py::arg("fields"));
}

} // namespace vexa::python
