// Value objects, handle objects, their classes and arrays of them.
#include "Objects.hpp"

#include "Errors.hpp"
#include "Indices.hpp"
#include "Module.hpp"
#include "Text.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/Print.hpp>
#include <vexa/client/Exception.hpp>

#include <pybind11/stl.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace vexa::python {

namespace {

using Names = std::vector<std::string>;

// --- classes ---------------------------------------------------------------------------------------------

template <class Range>
Names namesOf(const Range& identifiers) {
    Names names;
    for (const fv::VexaPropertyIdentifier& id : identifiers) {
        names.push_back(id.getPropertyName());
    }
    return names;
}

std::vector<fv::VexaPropertyIdentifier> identifiersOf(const Names& names) {
    return {names.begin(), names.end()};
}

fv::ClassInfo newClass(const std::string& name, const Names& properties, const Names& arrayProperties,
                       const std::vector<fv::ClassInfo>& superclasses) {
    return fv::ArrayFactory().createClassInfo(name, identifiersOf(properties), identifiersOf(arrayProperties),
                                              superclasses);
}

std::vector<fv::ClassInfo> superclassesOf(const fv::ClassInfo& self) {
    std::vector<fv::ClassInfo> classes;
    for (const fv::ClassInfo& superclass : self.getSuperclasses()) {
        classes.push_back(superclass);
    }
    return classes;
}

py::object newObject(const fv::ClassInfo& self, const py::kwargs& properties) {
    fv::ValueObject object = fv::ArrayFactory().createValueObject(self);
    for (const auto& [name, value] : properties) {
        object[toName(name)] = toArray(value);
    }
    return py::cast(object);
}

// --- objects ---------------------------------------------------------------------------------------------

Names propertiesOf(const fv::ValueObject& self) {
    Names names;
    for (const fv::Property& property : self) {
        names.push_back(property.getPropertyName());
    }
    return names;
}

py::object getProperty(const fv::ValueObject& self, const std::string& name) { return wrap(self[name]); }

/// The old value goes last, since that may run code of Python.
void setProperty(fv::ValueObject& self, const std::string& name, py::handle value) {
    const fv::Array held = toArray(value);
    const fv::Array before = std::as_const(self)[name];
    self[name] = held;
}

py::object memberOf(const fv::ValueObject& self) {
    try {
        return py::str(self.getEnumerationName());
    } catch (const std::logic_error&) {
        return py::none(); // no member of an enumeration
    }
}

py::object equalObjects(const fv::ValueObject& self, py::handle other) {
    if (!py::isinstance<fv::ValueObject>(other)) {
        return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    }
    return py::bool_(self == other.cast<const fv::ValueObject&>());
}

/// Attributes that are not of the class of Python are properties.
void setAttribute(py::handle self, const std::string& name, py::handle value) {
    auto& object = self.cast<fv::ValueObject&>();
    if (py::hasattr(py::type::of(self), name.c_str())) {
        raise(PyExc_AttributeError, "'" + name +
                                        "' is of the class vexadata.Object; a property of this name: o['" +
                                        name + "'] = value");
    }
    if (!object.hasProperty(name)) {
        raise("UnknownPropertyException", "an object of the class '" +
                                              object.getClassInfo().getClassIdentifier().getString() +
                                              "' has no property '" + name + "'");
    }
    setProperty(object, name, value);
}

py::object getAttribute(const fv::ValueObject& self, const std::string& name) {
    const bool isOfPython = name.size() > 4 && name.compare(0, 2, "__") == 0;
    if (isOfPython || !self.hasProperty(name)) {
        raise("UnknownPropertyException", "no property '" + name + "'");
    }
    return getProperty(self, name);
}

Names attributesOf(py::handle self) {
    auto names = py::module_::import("builtins").attr("dir")(py::type::of(self)).cast<Names>();
    const Names properties = propertiesOf(self.cast<const fv::ValueObject&>());
    names.insert(names.end(), properties.begin(), properties.end());
    return names;
}

// --- handles ---------------------------------------------------------------------------------------------

fv::HandleObjectRef newHandle(const py::bytes& engine, long id) {
    const std::string bytes = engine;
    fv::ZVMID name{};
    if (bytes.size() != sizeof name.bytes) {
        raise(PyExc_ValueError, "an engine is known by 16 bytes, not by " + std::to_string(bytes.size()));
    }
    std::memcpy(name.bytes, bytes.data(), bytes.size());
    return fv::ArrayFactory().createHandleObjectRef(name, id);
}

py::bytes engineOf(const fv::HandleObjectRef& self) {
    const fv::ZVMID engine = self.getZVMID();
    return {reinterpret_cast<const char*>(engine.bytes), sizeof engine.bytes};
}

py::object equalHandles(const fv::HandleObjectRef& self, py::handle other) {
    if (!py::isinstance<fv::HandleObjectRef>(other)) {
        return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    }
    return py::bool_(self == other.cast<const fv::HandleObjectRef&>());
}

// --- arrays of objects -----------------------------------------------------------------------------------

fv::ValueObjectArray arrayOf(const ObjectsObject& self) {
    if (self.array.getType() == fv::ArrayType::HANDLE_OBJECT_REF) {
        raise("InvalidArrayTypeException",
              describe(self.array) + " holds handles, which have no properties here");
    }
    return self.array;
}

/// The name of a property of the array, or indices of an element.
py::object getItem(py::handle self, py::handle key) {
    if (PyUnicode_Check(key.ptr())) {
        const fv::ValueObjectArray array = arrayOf(self.cast<const ObjectsObject&>());
        return wrap(array[toName(key)]);
    }
    return py::type::of<ArrayObject>().attr("__getitem__")(self, key);
}

void setItem(py::handle self, py::handle key, py::handle value) {
    if (!PyUnicode_Check(key.ptr())) {
        py::type::of<ArrayObject>().attr("__setitem__")(self, key, value);
        return;
    }
    auto& held = self.cast<ObjectsObject&>();
    const fv::Array stored = toArray(value);
    const std::string name = toName(key);
    const fv::Array before = std::as_const(static_cast<const fv::ValueObjectArray&>(arrayOf(held)))[name];
    write<fv::ValueObjectArray>(held, [&](fv::ValueObjectArray& array) { array[name] = stored; });
}

py::object objects(py::handle shape, const fv::ClassInfo& classInfo) {
    return wrap(fv::ArrayFactory().createValueObjectArray(toDimensions(shape), classInfo));
}

void addClasses(py::module_& module) {
    py::class_<fv::ClassInfo> c(module, "Class",
                                "A class of objects: a name, properties and superclasses. Calling "
                                "it makes an object: Point(x=1.0, y=2.0).");
    c.def(py::init(&newClass), py::arg("name"), py::arg("properties") = Names(), py::kw_only(),
          py::arg("array_properties") = Names(), py::arg("superclasses") = std::vector<fv::ClassInfo>());
    c.def_property_readonly(
        "name", [](const fv::ClassInfo& self) { return self.getClassIdentifier().getString(); },
        "Name of the class.");
    c.def_property_readonly(
        "properties", [](const fv::ClassInfo& self) { return namesOf(self.getPropertyIDs()); },
        "Names of the properties of an object.");
    c.def_property_readonly(
        "array_properties", [](const fv::ClassInfo& self) { return namesOf(self.getArrayPropertyIDs()); },
        "Names of the properties of a whole array of objects.");
    c.def_property_readonly("superclasses", &superclassesOf, "The classes that it inherits from.");
    c.def("__call__", &newObject, "An object; properties that are not named hold empty arrays.");
    c.def(
        "array", [](const fv::ClassInfo& self, py::handle shape) { return objects(shape, self); },
        py::arg("shape"), "An array of objects of the class, with empty properties.");
    c.def("__repr__", [](const fv::ClassInfo& self) {
        return "<vexadata.Class " + self.getClassIdentifier().getString() + '>';
    });
}

void addValueObjects(py::module_& module) {
    py::class_<fv::ValueObject> c(
        module, "Object",
        "An object with properties: o.x and o['x'] read and write them. A value: an "
        "object that was read from an\narray is changed there by storing it again. "
        "o['x'] also reaches properties that bear the name of a method.");
    c.def_property_readonly(
        "class_info", [](const fv::ValueObject& self) { return self.getClassInfo(); },
        "The vexadata.Class of the object.");
    c.def_property_readonly("member", &memberOf,
                            "Name of the enumeration member that the object is, or None.");
    c.def("properties", &propertiesOf, "Names of the properties.");
    c.def(
        "copy", [](const fv::ValueObject& self) { return self; }, "The same object as another value.");
    c.def("__copy__", [](const fv::ValueObject& self) { return self; });
    c.def(
        "__deepcopy__", [](const fv::ValueObject& self, py::handle) { return self; }, py::arg("memo"));
    c.def("__getitem__", &getProperty, py::arg("name"), "The value of a property.");
    c.def("__setitem__", &setProperty, py::arg("name"), py::arg("value"), "Stores a property.");
    c.def("__getattr__", &getAttribute, py::arg("name"));
    c.def("__setattr__", &setAttribute, py::arg("name"), py::arg("value"));
    c.def("__dir__", &attributesOf);
    c.def("__eq__", &equalObjects, py::arg("other"), "Whether all properties are equal.");
    c.attr("__hash__") = py::none();
    c.def("__repr__", [](const fv::ValueObject& self) { return fv::toText(self); });
}

void addHandles(py::module_& module) {
    py::class_<fv::HandleObjectRef> c(module, "Handle", "A reference to an object that lives in an engine.");
    c.def(py::init(&newHandle), py::arg("engine"), py::arg("id"));
    c.def_property_readonly("engine", &engineOf, "The engine, as 16 bytes.");
    c.def_property_readonly("id", &fv::HandleObjectRef::getId, "Number of the object in the engine.");
    c.def("__eq__", &equalHandles, py::arg("other"), "Whether it is the same object.");
    c.def("__hash__", [](const fv::HandleObjectRef& self) {
        return py::hash(py::make_tuple(engineOf(self), self.getId()));
    });
    c.def("__repr__", [](const fv::HandleObjectRef& self) { return fv::toText(self); });
}

} // namespace

py::object fromObject(const fv::ValueObject& object) {
    return fv::detail::Access::impl(object) == nullptr ? py::object(py::none()) : py::cast(object);
}

fv::ValueObject toObject(py::handle value) {
    if (!py::isinstance<fv::ValueObject>(value)) {
        raise(PyExc_TypeError, "an element is a vexadata.Object, not " + typeName(value));
    }
    return value.cast<const fv::ValueObject&>();
}

py::object fromHandle(const fv::HandleObjectRef& handle) {
    return fv::detail::handleObject(handle) == nullptr ? py::object(py::none()) : py::cast(handle);
}

fv::HandleObjectRef toHandle(py::handle value) {
    if (!py::isinstance<fv::HandleObjectRef>(value)) {
        raise(PyExc_TypeError, "an element is a vexadata.Handle, not " + typeName(value));
    }
    return value.cast<const fv::HandleObjectRef&>();
}

void addObjects(py::module_& module) {
    addClasses(module);
    addValueObjects(module);
    addHandles(module);
    py::class_<ObjectsObject, ArrayObject> c(
        module, "ObjectArray",
        "An array of objects or of handles to objects. Its elements are values: "
        "change one and store it again.\na['name'] reads and writes a property "
        "of the whole array.");
    c.def("__getitem__", &getItem, py::arg("key"), "An object, or a property of the array.");
    c.def("__setitem__", &setItem, py::arg("key"), py::arg("value"),
          "Stores an object, or a property of the array.");
    c.def_property_readonly(
        "class_info", [](const ObjectsObject& self) { return arrayOf(self).getClassInfo(); },
        "The vexadata.Class of the elements, or of what they have in common.");
    c.def_property_readonly(
        "is_heterogeneous", [](const ObjectsObject& self) { return arrayOf(self).isHeterogeneous(); },
        "Whether elements may be of different classes.");
    module.def("_scalar_object", [](const fv::ValueObject& object) {
        return wrap(fv::ArrayFactory().createValueObjectScalar(object));
    });
}

} // namespace vexa::python
