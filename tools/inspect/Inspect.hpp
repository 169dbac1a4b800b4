// The whole way of one file: bytes, arrays, lines for people.
#pragma once

#include "Matrix.hpp"
#include "Progress.hpp"
#include "Source.hpp"
#include "Table.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace vexa::inspect {

struct Options {
    std::optional<char> delimiter; ///< detected when empty
    std::uint64_t maxMemory;       ///< bytes for the contents of one file
};

using Dataset = std::variant<Table, Matrix>;

/// Reads the source to its end: Matrix Market files, told by their first line, as a matrix, all others as delimited
/// text. Throws InputError.
Dataset load(Source& source, const Options& options, Progress& progress);

/// "1461 rows, 6 variables".
std::string heading(const Dataset& data);

/// Lines for people.
std::string describe(const Dataset& data);

} // namespace vexa::inspect
