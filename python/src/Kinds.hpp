// Kinds of arrays and the dtypes of NumPy.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Traits.hpp>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <cstddef>
#include <string>

namespace vexa::python {

namespace py = pybind11;
namespace fv = foundation::vexadata;

/// How the elements of a kind look to NumPy and to the buffer protocol.
struct ElementFormat {
    fv::ArrayType type;
    const char* format; ///< as in the module `struct`
    const char* dtype;  ///< in the same words as a dtype's `str`; null where NumPy has a structure for it
    std::size_t size;   ///< in bytes
};

/// The format of a primitive kind. Characters are numbers of 16 bits here.
const ElementFormat& formatOf(fv::ArrayType type);
/// The dtype of a primitive kind; lives as long as the process.
py::handle dtypeOf(fv::ArrayType type);
/// The kind whose elements a dtype in native byte order describes; UNKNOWN when there is none.
fv::ArrayType kindOf(const py::dtype& dtype);
/// Whether the elements of a dtype lie in native byte order.
bool isNative(const py::dtype& dtype);

} // namespace vexa::python
