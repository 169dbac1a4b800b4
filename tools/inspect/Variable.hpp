// Columns of the file as arrays of the library, and the values of such arrays.
#pragma once

#include "Column.hpp"
#include "Words.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace vexa::inspect {

/// The n-by-1 array of a column, which is of no further use: the array adopts its storage or copies it, and
/// `memory` answers for it. `className` names the class of an enumeration.
foundation::vexadata::Array makeArray(Column& column, const std::string& className,
                                      foundation::vexadata::ArrayFactory& factory, MemoryShare& memory);

/// The numbers of an array that are not missing; false and true are 0 and 1. Empty for other kinds of arrays.
std::vector<double> presentValues(const foundation::vexadata::Array& array);

/// The least and the greatest element of an array of 64-bit integers, in all their digits; empty for other
/// arrays.
struct Extremes {
    std::string minimum;
    std::string maximum;
};
Extremes integerExtremes(const foundation::vexadata::Array& array);

/// How often each member of an enumeration array occurs, the most frequent first, equally frequent ones in
/// alphabetical order; empty for other arrays.
std::vector<WordCount> countWords(const foundation::vexadata::Array& array);

/// Elements of an array, of a sparse one its non-zeros.
std::size_t storedElements(const foundation::vexadata::Array& array);

/// Bytes that the elements of an array take: text as UTF-16, a member of an enumeration as four bytes, a
/// sparse matrix with its indices, cells and fields with all that is in them.
std::size_t bytesOf(const foundation::vexadata::Array& array);

} // namespace vexa::inspect
