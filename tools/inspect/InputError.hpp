// Faults of the input, in words for the person who typed the command.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vexa::inspect {

/// A file that cannot be read or understood. `what()` says what was expected and what was found, in one line,
/// without the name of the file.
class InputError : public std::runtime_error {
public:
    explicit InputError(const std::string& message, std::uint64_t line = 0)
        : std::runtime_error(message), line_(line) {}

    /// Line of the file, counted from 1; 0 when the fault lies in no line.
    std::uint64_t line() const noexcept { return line_; }

private:
    std::uint64_t line_;
};

} // namespace vexa::inspect
