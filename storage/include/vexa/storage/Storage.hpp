// Saving arrays and loading them again, in one call. For single variables of large files: Reader.hpp; for one
// variable after the other: Writer.hpp. The format is CBOR (RFC 8949) with the arrays of RFC 8746;
// docs/format.md describes it.
//
// Every function throws Error, std::bad_alloc and errors of the back-end. Calls on different files may run on
// different threads. Arrays of objects ask for their class information, which two threads must not do at once
// for one class
// (docs/threads.md).
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <vexa/storage/Error.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace vexa::storage {

/// Where the elements of large numeric arrays lie after loading.
enum class Placement : std::int32_t {
    /// In the file, which is mapped for them: loading reads nothing of them, memory is used as they are
    /// touched, and a write copies the page that it is for and never reaches the file. The array keeps the
    /// mapping alive; the file may be replaced or removed, but whoever shortens it in place ends this process
    /// at the next touch. Small arrays and those that are not numeric lie in memory.
    mapped = 0,
    memory = 1 ///< in memory of their own, read once
};

/// When the checksum of a variable is compared with its bytes.
enum class Check : std::int32_t {
    whenRead = 0, ///< when nothing of the variable is mapped: all its bytes are read anyway
    always = 1,   ///< also when arrays are mapped, which reads all of their bytes
    never = 2
};

/// How arrays are loaded.
struct LoadOptions {
    Placement placement = Placement::mapped; ///< of large numeric arrays; of no others
    Check check = Check::whenRead;           ///< of the checksum
};

/// An array under a name, which is any UTF-8 text.
struct Variable {
    std::string name;                  ///< never twice in one file
    foundation::vexadata::Array array; ///< of any kind but handle objects
};

/// The name under which `save` puts a single array.
inline constexpr const char* singleName = "array";

/// Writes a file with one array, or with several, in place of the file that has the name. Atomic: the bytes
/// go to a new file in the same folder, which gets the name when they are safely on the disk; until then, and
/// when this throws, what had the name stays as it was. A crash may leave the new file behind, whose name
/// begins with a dot and ends in ".part".
///
/// Parts that an array shares with itself, and arrays that are several variables, are written once and shared
/// again when they are loaded.
/// @throws Error for handle objects, which live in an engine, for two variables of one name, and when the
/// name is not that of a regular file
VEXADATA_API void save(const std::filesystem::path& path, const foundation::vexadata::Array& array);
VEXADATA_API void save(const std::filesystem::path& path, const std::vector<Variable>& variables);
/// The same bytes to a stream, which must be in binary mode. On an error the stream has a part of them.
VEXADATA_API void save(std::ostream& stream, const foundation::vexadata::Array& array);
VEXADATA_API void save(std::ostream& stream, const std::vector<Variable>& variables);

/// The one array of a file, whatever its name.
/// @throws Error when there is none, or more than one
VEXADATA_API foundation::vexadata::Array load(const std::filesystem::path& path,
                                              const LoadOptions& options = {});
/// The same from a stream, which is read to its end.
VEXADATA_API foundation::vexadata::Array load(std::istream& stream, const LoadOptions& options = {});
/// All variables in the order of the file.
VEXADATA_API std::vector<Variable> loadAll(const std::filesystem::path& path,
                                           const LoadOptions& options = {});
VEXADATA_API std::vector<Variable> loadAll(std::istream& stream, const LoadOptions& options = {});

/// An array as one CBOR item, without the file around it: for messages, data bases, other programs.
VEXADATA_API std::vector<std::byte> encode(const foundation::vexadata::Array& array);
/// The array that one CBOR item says: what `encode` gives, and what other programs write as numbers, texts,
/// lists, typed and multi-dimensional arrays (docs/format.md). Copies from `data`, which is borrowed.
/// @throws Error when the bytes are no such item, or go on behind it
VEXADATA_API foundation::vexadata::Array decode(const void* data, std::size_t size);

} // namespace vexa::storage
