#include "Memory.hpp"

#include "InputError.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <system_error>

namespace vexa::inspect {

void MemoryBudget::take(std::uint64_t bytes) {
    if (bytes > limit_ - taken_)
        throw InputError("the contents need more than " + formatBytes(limit_) +
                         " of memory (see --max-memory)");
    taken_ += bytes;
}

std::uint64_t availableMemory() {
    // No stream: one without memory for its buffer would answer that there is no limit.
    std::array<char, 4096> text{};
    const int file = ::open("/proc/meminfo", O_RDONLY | O_CLOEXEC);
    const ssize_t length = file < 0 ? 0 : ::read(file, text.data(), text.size() - 1);
    if (file >= 0) ::close(file);
    const std::string_view lines(text.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    constexpr std::string_view title = "MemAvailable:";
    const std::size_t start = lines.find(title);
    if (start == std::string_view::npos) return std::numeric_limits<std::uint64_t>::max();
    return std::strtoull(lines.data() + start + title.size(), nullptr, 10) * 1024;
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

std::optional<std::uint64_t> parseWhole(std::string_view digits) {
    std::uint64_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

std::optional<std::uint64_t> parseBytes(std::string_view text) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    const auto number = parseWhole(text.substr(0, end));
    std::string unit(text.substr(std::min(text.find_first_not_of(' ', end), text.size())));
    std::transform(unit.begin(), unit.end(), unit.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (unit.ends_with('B')) unit.pop_back();
    const bool binary = unit.ends_with('I');
    if (binary) unit.pop_back();
    constexpr std::string_view powers = "KMGTPE";
    const std::size_t power = unit.empty() ? 0 : powers.find(unit) + 1; // 0 when it is none of them
    if (!number || unit.size() > 1 || (power == 0 && (binary || !unit.empty()))) return std::nullopt;

    std::uint64_t bytes = *number;
    for (std::size_t k = 0; k < power; ++k)
        if (__builtin_mul_overflow(bytes, binary ? 1024U : 1000U, &bytes)) return std::nullopt;
    return bytes;
}

} // namespace vexa::inspect
