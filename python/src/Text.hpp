// Between the text of arrays, UTF-16 in which halves of pairs may stand alone, and that of Python, in which they may too.
#pragma once

#include <foundation/vexadata/Traits.hpp>

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>

namespace vexa::python {

namespace py = pybind11;

/// Throws TypeError for anything but a `str`; `what` begins the message.
std::u16string toUtf16(py::handle text, const char* what);
py::str fromUtf16(std::u16string_view text);

/// The name of a field, a property, a member or a variable as UTF-8. Throws TypeError for anything but a `str`,
/// and UnicodeEncodeError.
std::string toName(py::handle name);

/// A `str`, or `None` for a missing string.
foundation::vexadata::String toString(py::handle text);
py::object fromString(const foundation::vexadata::String& text);

} // namespace vexa::python
