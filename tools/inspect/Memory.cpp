#include "Memory.hpp"

#include "InputError.hpp"

#include <array>
#include <cstdio>
#include <fstream>
#include <limits>

namespace vexa::inspect {

void MemoryBudget::take(std::uint64_t bytes) {
    if (bytes > limit_ - taken_)
        throw InputError("the contents need more than " + formatBytes(limit_) +
                         " of memory (see --max-memory)");
    taken_ += bytes;
}

std::uint64_t availableMemory() {
    std::ifstream file("/proc/meminfo");
    for (std::string line; std::getline(file, line);) {
        unsigned long long kibibytes = 0;
        if (std::sscanf(line.c_str(), "MemAvailable: %llu kB", &kibibytes) == 1) return kibibytes * 1024;
    }
    return std::numeric_limits<std::uint64_t>::max();
}

std::string formatBytes(std::uint64_t bytes) {
    if (bytes < 1000) return std::to_string(bytes) + " bytes";
    constexpr std::array units{"kB", "MB", "GB", "TB", "PB", "EB"};
    double amount = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    for (; amount >= 999.5; ++unit)
        amount /= 1000;
    char text[32];
    std::snprintf(text, sizeof text, "%.3g %s", amount, units[unit]);
    return text;
}

} // namespace vexa::inspect
