// Delimited text as a struct of columns.
#pragma once

#include "Chunks.hpp"
#include "Losses.hpp"
#include "Memory.hpp"

#include <foundation/vexadata/StructArray.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::inspect {

/// A column of the file.
struct Variable {
    std::string name;  ///< as in the file, or what is shown of a long one
    std::string field; ///< of the struct
    std::size_t missing;
    Losses losses;
};

/// A 1-by-1 struct whose fields are the columns, n-by-1 arrays: every column stays one contiguous array,
/// where a struct of n records would take an array for each cell of the file.
/// - `bool` for true and false without missing cells;
/// - `double` for numbers, NaN for missing cells;
/// - `int64` or `uint64` for whole numbers that `double` would round, none of them missing;
/// - enumerations for few distinct words, without member for missing cells;
/// - strings, some of them missing, for everything else.
struct Table {
    std::size_t rows;
    foundation::vexadata::StructArray columns;
    std::vector<Variable> variables; ///< in the order of the columns
    MemoryShare memory;
};

/// Reads delimited text to its end; `head` is its first chunk. Without `delimiter`, finds out. Throws
/// InputError.
Table readTable(Chunks& chunks, std::string_view head, std::optional<char> delimiter, MemoryBudget& budget);

/// A line of titles, one line a variable, notes on numbers that are shown changed, and the words of each
/// enumeration.
std::string describe(const Table& table, MemoryBudget& budget);

} // namespace vexa::inspect
