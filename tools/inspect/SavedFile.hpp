// Files of vexadata::storage. Where the command was built without that library, reading and writing say so.
#pragma once

#include "Chunks.hpp"
#include "Saved.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::inspect {

/// Whether bytes begin as files of saved arrays do.
bool isSavedFile(std::string_view head) noexcept;

/// Reads a file of which `chunks` has given the first bytes. Large numeric arrays of a regular file are mapped,
/// all others are in memory. With `checkAll` all bytes are read and compared with their checksums, without it
/// not those of mapped arrays. `budget` outlives what is returned. Throws InputError.
Saved readSavedFile(Chunks& chunks, bool checkAll, MemoryBudget& budget);

/// Empty when `path` is a name that `writeSavedFile` takes; else what is expected of it.
std::string whyNotSavable(const std::string& path);

/// Writes a file in place of what has its name, at once or not at all; returns its length in bytes. Throws
/// InputError.
std::uint64_t writeSavedFile(const std::string& path, const std::vector<NamedArray>& variables);

} // namespace vexa::inspect
