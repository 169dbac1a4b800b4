// What the command says on standard error.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vexa::inspect {

/// One line on standard error, put together in storage of its own: it can be said when there is no memory
/// left. Texts are escaped as `printable` does, and a line that gets too long is cut.
class Complaint {
public:
    /// Begins with the name of the command.
    Complaint() noexcept { add("vexa-inspect: "); }

    Complaint& add(std::string_view text) noexcept;
    Complaint& add(std::uint64_t number) noexcept;
    /// Writes the line.
    void send() noexcept;

private:
    static constexpr std::string_view ellipsis = "...";
    static constexpr std::size_t longest = 8192;

    std::array<char, longest + ellipsis.size() + 1> line_;
    std::size_t size_ = 0;
    bool cut_ = false;
};

} // namespace vexa::inspect
