// Reading files variable by variable.
#pragma once

#include <foundation/vexadata/ArrayType.hpp>
#include <vexa/storage/Storage.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::storage {

/// What the list of a file says about a variable.
struct VariableDescription {
    std::string name;                     ///< UTF-8
    foundation::vexadata::ArrayType type; ///< of the array that loading gives
    std::vector<std::size_t> dimensions;  ///< two at least
    std::uint64_t offset;                 ///< where its value begins in the file
    std::uint64_t size;                   ///< of its value in the file, in bytes
};

/// A file with variables, or several files that were put one behind the other. Opening it reads the list of
/// the variables and nothing else. Copies share the open file. All members may be called on several threads
/// at once, with the one exception of variables with objects of one class (docs/threads.md).
///
/// Of a hostile file nothing worse comes than an Error: every length is compared with the bytes that are
/// there before memory is asked for. Numeric arrays take what they take in the file, or nothing when they are
/// mapped; texts at most twice that. Every array takes an object besides, of some hundred bytes, also one
/// that is a single byte in the file: a number in a cell, a list in a list.
class VEXADATA_API Reader {
public:
    /// Opens a file. One that cannot be mapped, such as a pipe, is read to its end.
    /// @throws Error when it is no such file, is incomplete, or its list is damaged or has a name twice
    explicit Reader(const std::filesystem::path& path);
    /// Reads a stream to its end.
    explicit Reader(std::istream& stream);
    /// Over bytes that `owner` keeps alive, as long as the reader lives. Loading copies from them.
    Reader(const void* data, std::size_t size, std::shared_ptr<const void> owner);
    Reader(const Reader&) noexcept;
    Reader(Reader&&) noexcept;
    Reader& operator=(const Reader&) noexcept;
    Reader& operator=(Reader&&) noexcept;
    ~Reader();

    /// All variables in the order of the file; valid as long as the reader or a copy of it lives.
    const std::vector<VariableDescription>& variables() const noexcept;
    /// Whether the file has a variable of this name.
    bool has(std::string_view name) const noexcept;

    /// Loads one variable, reading no other.
    /// @throws Error when there is none of this name, or its bytes are not what they should be
    foundation::vexadata::Array load(std::string_view name, const LoadOptions& options = {}) const;
    /// Loads all variables. Those that were one array are one again.
    std::vector<Variable> loadAll(const LoadOptions& options = {}) const;
    /// Reads all bytes of a variable and compares them with its checksum.
    /// @throws Error when they differ, or there is none of this name
    void verify(std::string_view name) const;

private:
    struct [[gnu::visibility("hidden")]] State;
    std::shared_ptr<const State> state_;
};

} // namespace vexa::storage
