// The whole way of one file: bytes, cells, arrays, lines for people.
#pragma once

#include "Progress.hpp"
#include "Source.hpp"
#include "Variable.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexa::inspect {

struct Options {
    std::optional<char> delimiter; ///< detected when empty
    std::uint64_t maxMemory;       ///< bytes for the columns of one file
};

/// What a file holds.
struct Dataset {
    std::size_t rows = 0;
    std::vector<Variable> variables; ///< in the order of the columns
};

/// Reads the source to its end and puts its columns into arrays. Throws InputError.
Dataset load(Source& source, const Options& options, Progress& progress);

/// A line of titles and one line a variable.
std::string describe(const Dataset& data);

} // namespace vexa::inspect
