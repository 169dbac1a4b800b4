// How much memory may be taken.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexa::inspect {

/// Counts bytes against a limit, so that a file over memory gets a message instead of the end of the process.
class MemoryBudget {
public:
    explicit MemoryBudget(std::uint64_t limit) : limit_(limit) {}

    /// Throws InputError, and takes nothing, when less than `bytes` is left.
    void take(std::uint64_t bytes);
    void giveBack(std::uint64_t bytes) noexcept { taken_ -= bytes; }

private:
    std::uint64_t limit_;
    std::uint64_t taken_ = 0;
};

/// A part of a budget, given back at the end of its life. The budget outlives it.
class MemoryShare {
public:
    explicit MemoryShare(MemoryBudget& budget) noexcept : budget_(&budget) {}
    ~MemoryShare() { budget_->giveBack(bytes_); }
    MemoryShare(MemoryShare&& other) noexcept
        : budget_(other.budget_), bytes_(std::exchange(other.bytes_, 0)) {}
    MemoryShare& operator=(MemoryShare&&) = delete;

    /// Throws InputError, and takes nothing, when less than `bytes` is left.
    void take(std::uint64_t bytes) {
        budget_->take(bytes);
        bytes_ += bytes;
    }
    /// Takes over the bytes that another share has charged.
    void inherit(std::uint64_t bytes) noexcept { bytes_ += bytes; }

private:
    MemoryBudget* budget_;
    std::uint64_t bytes_ = 0;
};

/// Bytes that the machine can give to new work without swapping; the largest number when it does not tell.
std::uint64_t availableMemory();

/// "1.5 GB", "0 bytes": three digits at most, units of 1000.
std::string formatBytes(std::uint64_t bytes);

/// The number of bytes that "500", "500 MB" or "2GiB" mean, in any case; nothing for other texts and beyond
/// 64 bits.
std::optional<std::uint64_t> parseBytes(std::string_view text);

/// A whole number in decimal digits and nothing else; nothing beyond 64 bits.
std::optional<std::uint64_t> parseWhole(std::string_view digits);

} // namespace vexa::inspect
