// The whole way of one file: bytes, arrays, lines for people.
#pragma once

#include "Encoding.hpp"
#include "Matrix.hpp"
#include "Memory.hpp"
#include "Progress.hpp"
#include "Saved.hpp"
#include "Source.hpp"
#include "Table.hpp"

#include <optional>
#include <string>
#include <variant>

namespace vexa::inspect {

struct Options {
    std::optional<char> delimiter; ///< detected when empty
    Encoding encoding = Encoding::utf8;
    bool checkAll = true; ///< compare saved arrays with their checksums also where they need not be read
};

using Dataset = std::variant<Table, Matrix, Saved>;

/// Reads the source: Matrix Market files, told by their first line, as a matrix, files of saved arrays, told
/// by their first bytes, as their variables, all others as delimited text. What is returned takes of
/// `budget`, which outlives it. Throws InputError.
Dataset load(Source& source, const Options& options, Progress& progress, MemoryBudget& budget);

/// "1461 rows, 6 variables".
std::string heading(const Dataset& data);

/// Lines for people. Throws InputError when `budget` has nothing left for the work.
std::string describe(const Dataset& data, MemoryBudget& budget);

} // namespace vexa::inspect
