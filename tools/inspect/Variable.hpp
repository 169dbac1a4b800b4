// Columns of the file as arrays of the library, and the values of such arrays.
#pragma once

#include "Column.hpp"
#include "Words.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vexa::inspect {

/// The n-by-1 array of a column, which is of no further use: the array adopts its storage or copies it, and
/// `memory` answers for it. `className` names the class of an enumeration.
foundation::vexadata::Array makeArray(Column& column, const std::string& className,
                                      foundation::vexadata::ArrayFactory& factory, MemoryShare& memory);

/// Whether an array is a 1-by-1 struct, whose fields are listed and shown as columns.
bool isTable(const foundation::vexadata::Array& array);

/// The names of the fields of a struct array.
std::vector<std::string> fieldsOf(const foundation::vexadata::Array& array);

/// How many elements are NaN, strings that are missing, or enumeration elements without member.
std::size_t missingElements(const foundation::vexadata::Array& array);

/// The real numbers of a dense array that are not missing; false and true are 0 and 1. Empty for other kinds of
/// arrays.
std::vector<double> presentValues(const foundation::vexadata::Array& array);

/// The most values that `presentValues` gives.
std::size_t numberOfFigures(const foundation::vexadata::Array& array);

/// The least and the greatest element of an array of 64-bit integers, in all their digits; empty for other
/// arrays and those without elements.
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
/// sparse matrix with its indices, cells and fields with all that is in them, what is there several times
/// once.
std::size_t bytesOf(const foundation::vexadata::Array& array);

/// What an array that was loaded takes in memory, with all that is in it. With `mapped`, large numeric arrays
/// take nothing.
std::uint64_t bytesHeldInMemory(const foundation::vexadata::Array& array, bool mapped);

/// Whether arrays of a kind are dense and numeric.
bool isNumeric(foundation::vexadata::ArrayType type) noexcept;

} // namespace vexa::inspect
