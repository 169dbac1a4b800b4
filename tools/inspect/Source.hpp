// The bytes of a file or of standard input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace vexa::inspect {

class Source {
public:
    /// Opens `path`; "-" is standard input. Throws InputError when it cannot be opened.
    explicit Source(const std::string& path);
    ~Source();
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    /// Fills `out` with the next bytes, `capacity` of them unless the input ends before; 0 at the end.
    /// Throws InputError when reading fails, as that of a directory does.
    std::size_t read(char* out, std::size_t capacity);

    /// Reads from the start again; regular files only. Throws InputError.
    void rewind();

    /// A path that leads to this file whatever its name leads to by now; regular files only, and only when
    /// there is nothing before what this reads.
    std::optional<std::string> pathOfWholeFile() const;

    /// Length in bytes, known for regular files only.
    std::optional<std::uint64_t> size() const noexcept { return size_; }

private:
    int descriptor_;
    std::int64_t start_ = 0; // standard input may have been read before
    std::optional<std::uint64_t> size_;
};

} // namespace vexa::inspect
