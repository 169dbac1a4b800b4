// The list of the variables at the end of a file.
#pragma once

#include "Format.hpp"
#include "Output.hpp"
#include "Source.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexa::storage {

/// A variable as the list has it. Offsets count from the beginning of its file, which may lie behind others.
struct Entry {
    std::string name;
    ArrayType type;
    std::vector<std::size_t> dimensions;
    std::uint64_t offset;
    std::uint64_t size;
    std::uint64_t checksum;
    std::uint64_t firstShared;         ///< the number of the first shared value in it
    std::optional<std::uint64_t> same; ///< the place in the list of the variable that is the same array
};

/// Writes what comes behind the variables: the end of their map, the list, the trailer.
void putEnd(Output& out, const std::vector<Entry>& entries);

/// One file, perhaps among several in one.
struct Segment {
    std::size_t begin;
    std::vector<Entry> entries;
};
/// All files that lie one behind the other in the bytes.
/// @throws Error unless they are such files, whole, with lists that make sense
std::vector<Segment> readSegments(const Source& source);

} // namespace vexa::storage
