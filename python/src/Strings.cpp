// Character and string arrays.
#include "Errors.hpp"
#include "Handle.hpp"
#include "Indices.hpp"
#include "Module.hpp"
#include "Text.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

namespace vexa::python {

namespace {

py::object chars(py::handle text) {
    return wrap(fv::ArrayFactory().createCharArray(toUtf16(text, "the text of a character array")));
}

py::str textOf(const CharObject& self) {
    return fromUtf16({static_cast<const char16_t*>(dataOf(self.array)), self.array.getNumberOfElements()});
}

/// Reads all elements before there is an array, so that a wrong one leaves nothing behind.
py::object strings(const py::list& values, py::handle shape) {
    std::vector<fv::String> texts;
    texts.reserve(values.size());
    for (const py::handle value : values) {
        texts.push_back(toString(value));
    }
    return wrap(fv::ArrayFactory().createArray<fv::String>(toDimensions(shape), texts.begin(), texts.end()));
}

py::list listOf(const StringObject& self) {
    const fv::TypedArray<fv::String> strings = self.array;
    py::list texts(strings.getNumberOfElements());
    std::size_t k = 0;
    for (const auto& element : strings) {
        texts[k++] = fromString(element.value());
    }
    return texts;
}

} // namespace

void addStrings(py::module_& module) {
    py::class_<CharObject, ArrayObject> characters(module, "CharArray",
                                                   "An array of units of UTF-16, mostly a row with a text.");
    characters.def_property_readonly("text", &textOf,
                                     "All characters as one str, in the order in which they lie.");
    module.def("chars", &chars, py::arg("text"),
               "A row of characters with a text. Characters beyond U+FFFF take two elements.");

    py::class_<StringObject, ArrayObject> strings_(module, "StringArray",
                                                   "An array of strings: str, or None for a missing one.");
    strings_.def("_list", &listOf);
    module.def("_strings", &strings, py::arg("values"), py::arg("shape"));
}

} // namespace vexa::python
