#include "Errors.hpp"

#include "Module.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Print.hpp>
#include <vexa/client/Exception.hpp>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace vexa::python {

namespace {

namespace vc = vexa::client;

template <class Error>
bool isA(const fv::Exception& error) {
    return dynamic_cast<const Error*>(&error) != nullptr;
}

/// An error of the library: its class in Python, which also derives from what a user of Python expects.
struct ErrorClass {
    const char* name;
    bool (*matches)(const fv::Exception&);
    PyObject* const* standard;
    const char* doc;
    PyObject* python = nullptr; // lives as long as the process
};

ErrorClass errorClasses[] = {
    {"EArrayIndexOutOfRange", isA<fv::EArrayIndexOutOfRange>, &PyExc_IndexError,
     "An index is not less than its dimension."},
    {"NotEnoughIndicesProvidedException", isA<fv::NotEnoughIndicesProvidedException>, &PyExc_IndexError,
     "Fewer indices than dimensions; a row or a column takes one."},
    {"TooManyIndicesProvidedException", isA<fv::TooManyIndicesProvidedException>, &PyExc_IndexError,
     "More indices than dimensions."},
    {"CantIndexIntoEmptyArrayException", isA<fv::CantIndexIntoEmptyArrayException>, &PyExc_IndexError,
     "The array has no elements."},
    {"MustBePrimitiveTypeException", isA<fv::MustBePrimitiveTypeException>, &PyExc_TypeError,
     "Memory was asked for of elements that are no numbers, truth values or characters."},
    {"StringIndexMustBeLastException", isA<fv::StringIndexMustBeLastException>, &PyExc_TypeError,
     "A number follows the name of a field."},
    {"CanOnlyUseOneStringIndexException", isA<fv::CanOnlyUseOneStringIndexException>, &PyExc_TypeError,
     "Two names of fields in a row."},
    {"TypeMismatchException", isA<fv::TypeMismatchException>, &PyExc_TypeError,
     "An element was read or written as another type than its array has."},
    {"InvalidArrayTypeException", isA<fv::InvalidArrayTypeException>, &PyExc_TypeError,
     "An array is not of the kind that the operation wants."},
    {"EArrayUnknownDataType", isA<fv::EArrayUnknownDataType>, &PyExc_TypeError, "An array without kind."},
    {"CantAssignArrayToThisArrayException", isA<fv::CantAssignArrayToThisArrayException>, &PyExc_TypeError,
     "An array was stored into an element that holds none."},
    {"EInvalidDimensionsInSparseArray", isA<fv::EInvalidDimensionsInSparseArray>, &PyExc_ValueError,
     "A sparse array of more than two dimensions."},
    {"NonAsciiCharInInputDataException", isA<fv::NonAsciiCharInInputDataException>, &PyExc_ValueError,
     "Narrow text with a byte above 127."},
    {"NonAsciiCharInRequestedAsciiOutputException", isA<fv::NonAsciiCharInRequestedAsciiOutputException>,
     &PyExc_ValueError, "Text above 127 was asked for as ASCII."},
    {"NumberOfElementsExceedsMaximumException", isA<fv::NumberOfElementsExceedsMaximumException>,
     &PyExc_ValueError, "The product of the dimensions does not fit in 64 bits."},
    {"WrongVectorSizeForStructException", isA<fv::WrongVectorSizeForStructException>, &PyExc_ValueError,
     "A record was replaced by another number of values than it has fields."},
    {"InvalidBufferException", isA<vc::InvalidBufferException>, &PyExc_ValueError,
     "Memory that cannot be that of an array."},
    {"InvalidColumnStartsException", isA<vc::InvalidColumnStartsException>, &PyExc_ValueError,
     "Column starts of a sparse matrix that do not rise from 0 to the number of values."},
    {"UnknownFieldException", isA<vc::UnknownFieldException>, &PyExc_KeyError, "A struct has no such field."},
    {"InvalidFieldNameException", isA<vc::InvalidFieldNameException>, &PyExc_ValueError,
     "The name of a field is none, or comes twice."},
    {"UnknownMemberException", isA<vc::UnknownMemberException>, &PyExc_ValueError,
     "An enumeration has no such member."},
    {"WrongNumberOfNamesException", isA<vc::WrongNumberOfNamesException>, &PyExc_ValueError,
     "Not one member name for each element."},
    {"UnknownPropertyException", isA<vc::UnknownPropertyException>, &PyExc_AttributeError,
     "A class has no such property, or there is no object."},
    {"AmbiguousPropertyException", isA<vc::AmbiguousPropertyException>, &PyExc_AttributeError,
     "Several superclasses define the property."},
    {"InvalidPropertyException", isA<vc::InvalidPropertyException>, &PyExc_ValueError,
     "A class cannot have this property."},
    {"InvalidClassNameException", isA<vc::InvalidClassNameException>, &PyExc_ValueError,
     "The name of a class has a NUL."},
    {"InvalidSuperclassException", isA<vc::InvalidSuperclassException>, &PyExc_ValueError,
     "A class would inherit from itself."},
    {"ForeignClassException", isA<vc::ForeignClassException>, &PyExc_TypeError,
     "A class of another back-end."},
    {"WrongClassException", isA<vc::WrongClassException>, &PyExc_TypeError,
     "An object of another class in an array of one."},
    {"InvalidVariableNameException", isA<vc::InvalidVariableNameException>, &PyExc_ValueError,
     "A variable cannot have this name."},
    // Without counterparts among the library's errors of this base; kept last.
    {"EArrayInvalidHandleRef", [](const fv::Exception&) { return false; }, &PyExc_ValueError,
     "A handle object was asked for where there is none."},
    {"InputError", [](const fv::Exception&) { return false; }, &PyExc_ValueError,
     "A file is not of the format it is read as; the message begins with file and line."},
};

PyObject* baseClass = nullptr;

const ErrorClass* findClass(const char* name) {
    const auto* found =
        std::find_if(std::begin(errorClasses), std::end(errorClasses),
                     [&](const ErrorClass& entry) { return std::strcmp(entry.name, name) == 0; });
    return found == std::end(errorClasses) ? nullptr : found;
}

PyObject* newClass(py::module_& module, const char* name, const char* doc, const py::tuple& bases) {
    py::dict members;
    // That of KeyError shows the message in quotes.
    members["__str__"] = py::handle(PyExc_Exception).attr("__str__");
    members["__module__"] = "vexadata";
    const std::string qualified = std::string("vexadata.") + name;
    PyObject* made = PyErr_NewExceptionWithDoc(qualified.c_str(), doc, bases.ptr(), members.ptr());
    if (made == nullptr) {
        throw py::error_already_set();
    }
    module.attr(name) = py::handle(made);
    return made;
}

/// Messages carry names and paths of whatever bytes.
void setError(PyObject* type, const std::string& message) {
    PyObject* text =
        PyUnicode_DecodeUTF8(message.data(), static_cast<py::ssize_t>(message.size()), "replace");
    if (text != nullptr) {
        PyErr_SetObject(type, text);
        Py_DECREF(text);
    }
}

void translate(const fv::Exception& error) {
    const auto* found = std::find_if(std::begin(errorClasses), std::end(errorClasses),
                                     [&](const ErrorClass& entry) { return entry.matches(error); });
    setError(found == std::end(errorClasses) ? baseClass : found->python, error.what());
}

void translateAny(std::exception_ptr thrown) {
    try {
        std::rethrow_exception(std::move(thrown));
    } catch (const fv::Exception& error) {
        translate(error);
    } catch (const py::cast_error&) { // of a method called with an object of another class
        PyErr_SetString(PyExc_TypeError, "an argument is of another class than the method wants");
    } catch (const fv::EArrayInvalidHandleRef& error) {
        PyErr_SetString(findClass("EArrayInvalidHandleRef")->python, error.what());
    }
}

} // namespace

void addErrors(py::module_& module) {
    baseClass =
        newClass(module, "Error",
                 "Base of the errors of vexadata. Each class also derives from the exception of Python "
                 "that says the same.",
                 py::make_tuple(py::handle(PyExc_Exception)));
    for (ErrorClass& entry : errorClasses) {
        entry.python = newClass(module, entry.name, entry.doc,
                                py::make_tuple(py::handle(baseClass), py::handle(*entry.standard)));
    }
    py::register_local_exception_translator(&translateAny);
}

void raise(PyObject* type, const std::string& message) {
    setError(type, message);
    throw py::error_already_set();
}

void raise(const char* className, const std::string& message) {
    raise(findClass(className)->python, message);
}

std::string describe(const fv::Array& array) {
    return fv::dimensionText(array) + ' ' + fv::kindName(array.getType());
}

std::string typeName(py::handle value) { return Py_TYPE(value.ptr())->tp_name; }

} // namespace vexa::python
