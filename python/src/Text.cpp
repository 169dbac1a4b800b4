#include "Text.hpp"

#include "Errors.hpp"

#include <cstring>

namespace vexa::python {

std::u16string toUtf16(py::handle text, const char* what) {
    if (!PyUnicode_Check(text.ptr())) {
        raise(PyExc_TypeError, std::string(what) + " must be str, not " + typeName(text));
    }
    const auto bytes = py::reinterpret_steal<py::object>(
        PyUnicode_AsEncodedString(text.ptr(), "utf-16-le", "surrogatepass"));
    if (!bytes) {
        throw py::error_already_set();
    }
    std::u16string units(static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr())) / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), PyBytes_AS_STRING(bytes.ptr()), units.size() * sizeof(char16_t));
    return units;
}

py::str fromUtf16(std::u16string_view text) {
    int littleEndian = -1;
    PyObject* decoded = PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(text.data()),
                                              static_cast<Py_ssize_t>(text.size() * sizeof(char16_t)),
                                              "surrogatepass", &littleEndian);
    if (decoded == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::str>(decoded);
}

std::string toName(py::handle name) {
    if (!PyUnicode_Check(name.ptr())) {
        raise(PyExc_TypeError, "a name must be str, not " + typeName(name));
    }
    py::ssize_t length = 0;
    const char* bytes = PyUnicode_AsUTF8AndSize(name.ptr(), &length);
    if (bytes == nullptr) {
        throw py::error_already_set();
    }
    return {bytes, static_cast<std::size_t>(length)};
}

foundation::vexadata::String toString(py::handle text) {
    if (text.is_none()) {
        return {};
    }
    return toUtf16(text, "a string");
}

py::object fromString(const foundation::vexadata::String& text) {
    return text ? py::object(fromUtf16(*text)) : py::none();
}

} // namespace vexa::python
