// Indices of Python, which count from the end when they are negative.
#pragma once

#include "Handle.hpp"

#include <cstddef>
#include <vector>

namespace vexa::python {

/// Where the element lies in storage order that a key leads to: a number for a row or a column, a tuple with
/// a number for each dimension for any array. Raises IndexError or TypeError, and says what is wrong.
std::size_t positionOf(const fv::Array& array, py::handle key);

/// The row and the column that a key leads to in a matrix.
std::pair<std::size_t, std::size_t> placeOf(const fv::Array& matrix, py::handle key);

/// Number of elements of a row, a column or an array without elements. Raises TypeError for others.
std::size_t lengthOf(const fv::Array& array);

/// From a tuple or a number.
std::vector<std::size_t> toDimensions(py::handle shape);
py::tuple fromDimensions(const std::vector<std::size_t>& dimensions);

} // namespace vexa::python
