// A column of the file as an array of the library.
#pragma once

#include "Column.hpp"
#include "Summary.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

/// An n-by-1 array: `bool` for a column of true and false without missing cells, otherwise `double` with NaN
/// for missing cells. A text column has no array.
struct Variable {
    std::string name;
    std::size_t rows;
    std::size_t missing;
    foundation::vexadata::Array array; ///< default-constructed for text
};

/// The array adopts the storage of the column's values; the column is of no further use.
Variable makeVariable(Column& column, std::size_t rows, foundation::vexadata::ArrayFactory& factory);

/// The values of the array that are not missing; false and true are 0 and 1. Empty for text.
std::vector<double> presentValues(const Variable& variable);

/// "double", "logical" or "text".
std::string typeName(const Variable& variable);

/// "1461x1".
std::string dimensionText(const Variable& variable);

} // namespace vexa::inspect
