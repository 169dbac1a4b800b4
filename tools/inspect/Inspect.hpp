// The whole way of one file: bytes, arrays, lines for people.
#pragma once

#include "Encoding.hpp"
#include "Matrix.hpp"
#include "Memory.hpp"
#include "Progress.hpp"
#include "Source.hpp"
#include "Table.hpp"

#include <optional>
#include <string>
#include <variant>

namespace vexa::inspect {

struct Options {
    std::optional<char> delimiter; ///< detected when empty
    Encoding encoding = Encoding::utf8;
};

using Dataset = std::variant<Table, Matrix>;

/// Reads the source to its end: Matrix Market files, told by their first line, as a matrix, all others as
/// delimited text. What is returned takes of `budget`, which outlives it. Throws InputError.
Dataset load(Source& source, const Options& options, Progress& progress, MemoryBudget& budget);

/// "1461 rows, 6 variables".
std::string heading(const Dataset& data);

/// Lines for people. Throws InputError when `budget` has nothing left for the work.
std::string describe(const Dataset& data, MemoryBudget& budget);

} // namespace vexa::inspect
