// Numbers between Python and the element types. Nothing is rounded but what a `float` of 32 bits rounds.
#pragma once

#include "Errors.hpp"

#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/Traits.hpp>

#include <pybind11/pybind11.h>

#include <complex>
#include <limits>
#include <string>
#include <type_traits>

namespace vexa::python {

inline void requireNoError() {
    if (PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
}

template <class T>
T toInteger(py::handle value) {
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
    requireNoError();
    if constexpr (std::is_signed_v<T>) {
        int overflow = 0;
        const long long wide = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
        if (overflow == 0 && wide >= std::numeric_limits<T>::min() && wide <= std::numeric_limits<T>::max()) {
            return static_cast<T>(wide);
        }
    } else {
        const unsigned long long wide = PyLong_AsUnsignedLongLong(number.ptr());
        const bool failed = PyErr_Occurred() != nullptr;
        PyErr_Clear();
        if (!failed && wide <= std::numeric_limits<T>::max()) {
            return static_cast<T>(wide);
        }
    }
    raise(PyExc_OverflowError, py::str(number).cast<std::string>() + " does not fit into " +
                                   fv::kindName(fv::detail::arrayTypeOf<T>));
}

template <class T>
std::complex<T> toComplexInteger(py::handle value) {
    if (PySequence_Check(value.ptr()) != 0 && PySequence_Size(value.ptr()) == 2) {
        const auto pair = py::reinterpret_borrow<py::sequence>(value);
        return {toInteger<T>(pair[0]), toInteger<T>(pair[1])};
    }
    return {toInteger<T>(value), 0};
}

/// A number as an element of type `T`.
/// Raises TypeError for other values, OverflowError for integers out of range.
template <class T>
T toNumber(py::handle value) {
    if constexpr (std::is_same_v<T, bool>) {
        const std::string type = typeName(value); // that of NumPy bears both names, by its version
        if (!PyBool_Check(value.ptr()) && type != "numpy.bool_" && type != "numpy.bool") {
            raise(PyExc_TypeError, "a logical is True or False, not " + typeName(value));
        }
        return PyObject_IsTrue(value.ptr()) == 1;
    } else if constexpr (std::is_integral_v<T>) {
        return toInteger<T>(value);
    } else if constexpr (std::is_floating_point_v<T>) {
        const double number = PyFloat_AsDouble(value.ptr());
        requireNoError();
        return static_cast<T>(number);
    } else if constexpr (std::is_floating_point_v<typename T::value_type>) {
        const Py_complex number = PyComplex_AsCComplex(value.ptr());
        requireNoError();
        using Part = typename T::value_type;
        return {static_cast<Part>(number.real), static_cast<Part>(number.imag)};
    } else {
        return toComplexInteger<typename T::value_type>(value);
    }
}

/// `bool`, `int`, `float`, `complex`, or a pair of `int` for a complex integer, which Python has none of.
template <class T>
py::object fromNumber(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
        return py::bool_(value);
    } else if constexpr (std::is_integral_v<T>) {
        return py::int_(value);
    } else if constexpr (std::is_floating_point_v<T>) {
        return py::float_(static_cast<double>(value));
    } else if constexpr (std::is_floating_point_v<typename T::value_type>) {
        return py::reinterpret_steal<py::object>(
            PyComplex_FromDoubles(static_cast<double>(value.real()), static_cast<double>(value.imag())));
    } else {
        return py::make_tuple(py::int_(value.real()), py::int_(value.imag()));
    }
}

} // namespace vexa::python
