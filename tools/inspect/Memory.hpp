// How much memory the contents of one file may take.
#pragma once

#include <cstdint>
#include <string>

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

/// Bytes that the machine can give to new work without swapping; the largest number when it does not tell.
std::uint64_t availableMemory();

/// "1.5 GB", "0 bytes": three digits at most, units of 1000.
std::string formatBytes(std::uint64_t bytes);

} // namespace vexa::inspect
