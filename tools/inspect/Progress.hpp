// How far the reading of a large file has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>

namespace vexa::inspect {

/// One line on a terminal, rewritten as the reading goes on and erased at the end. Nothing for small files.
class Progress {
public:
    /// `terminal` outlives the object; null for none. `total` is the size of the file, where it is known.
    Progress(std::ostream* terminal, std::optional<std::uint64_t> total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// So many more bytes have been read.
    void advance(std::uint64_t bytes);

private:
    using Clock = std::chrono::steady_clock;

    std::ostream* terminal_;
    std::optional<std::uint64_t> total_;
    std::uint64_t done_ = 0;
    Clock::time_point lastShown_;
    bool shown_ = false;
};

} // namespace vexa::inspect
