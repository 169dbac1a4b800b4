// The text of a source, piece by piece.
#pragma once

#include "Encoding.hpp"
#include "Progress.hpp"
#include "Source.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::inspect {

class Chunks {
public:
    /// `source` and `progress` outlive the object.
    Chunks(Source& source, Progress& progress, Encoding encoding)
        : source_(source),
          progress_(progress),
          bytes_(chunkSize),
          converted_(encoding == Encoding::latin1 ? utf8BytesOfLatin1 * chunkSize : 0) {}

    /// The next bytes, converted to UTF-8 if they have to be, valid until the next call; none at the end.
    /// Throws what Source::read throws.
    std::string_view next();

    /// The first bytes, without a UTF-8 byte order mark. Throws InputError when there are none, or when they
    /// are of another encoding.
    std::string_view first();

    /// What `first` or `next` has read last, as it is in the file, byte order mark and all.
    std::string_view bytes() const noexcept { return read_; }
    /// The next bytes as they are in the file, valid until the next call; none at the end.
    std::string_view nextBytes() { return read(); }
    /// A path that leads to the file itself, when it is a regular one that is read from its start.
    std::optional<std::string> pathOfWholeFile() const { return source_.pathOfWholeFile(); }

    /// Whether `rewind` works.
    bool canRewind() const noexcept { return source_.size().has_value(); }
    /// Begins again at the start, with `first`.
    void rewind() { source_.rewind(); }

private:
    static constexpr std::size_t chunkSize = 256 * 1024;

    std::string_view read();
    std::string_view converted(std::string_view bytes);

    Source& source_;
    Progress& progress_;
    std::vector<char> bytes_;
    std::string_view read_;       // of bytes_
    std::vector<char> converted_; // empty for UTF-8
};

} // namespace vexa::inspect
