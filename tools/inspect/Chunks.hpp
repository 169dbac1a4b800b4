// The bytes of a source, piece by piece.
#pragma once

#include "Progress.hpp"
#include "Source.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace vexa::inspect {

class Chunks {
public:
    /// `source` and `progress` outlive the object.
    Chunks(Source& source, Progress& progress) : source_(source), progress_(progress), buffer_(chunkSize) {}

    /// The next bytes, valid until the next call; none at the end. Throws what Source::read throws.
    std::string_view next() {
        const std::size_t length = source_.read(buffer_.data(), buffer_.size());
        progress_.advance(length);
        return {buffer_.data(), length};
    }

    /// The first bytes, without a UTF-8 byte order mark. Throws InputError when there are none, or when they are UTF-16.
    std::string_view first();

    /// Whether `rewind` works.
    bool canRewind() const noexcept { return source_.size().has_value(); }
    /// Begins again at the start, with `first`.
    void rewind() { source_.rewind(); }

private:
    static constexpr std::size_t chunkSize = 256 * 1024;

    Source& source_;
    Progress& progress_;
    std::vector<char> buffer_;
};

} // namespace vexa::inspect
