// Columns of the file as arrays of the library, and the values of such arrays.
#pragma once

#include "Column.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

/// The n-by-1 array of a column, which is of no further use: the array adopts its storage or copies it.
/// `className` names the class of an enumeration.
foundation::vexadata::Array makeArray(Column& column, const std::string& className,
                                      foundation::vexadata::ArrayFactory& factory);

/// The numbers of an array that are not missing; false and true are 0 and 1. Empty for other kinds of arrays.
std::vector<double> presentValues(const foundation::vexadata::Array& array);

/// The names of the members of an enumeration array, without the elements that have none.
std::vector<std::string> presentWords(const foundation::vexadata::Array& array);

/// Bytes that the elements of an array take: text as UTF-16, a member of an enumeration as four bytes, a sparse matrix with its
/// indices, cells and fields with all that is in them.
std::size_t bytesOf(const foundation::vexadata::Array& array);

} // namespace vexa::inspect
