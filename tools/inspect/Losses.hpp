// Numbers that are shown changed.
#pragma once

#include "Cell.hpp"

#include <cstddef>
#include <string>

namespace vexa::inspect {

/// How many numbers lost what.
struct Losses {
    std::size_t rounded = 0;
    std::size_t overflowed = 0;
    std::size_t underflowed = 0;

    void count(Loss loss) noexcept;
};

/// "2 whole numbers beyond 2^53 are rounded; 1 number is too large for a double and became inf"; empty when
/// nothing is lost.
std::string textOf(const Losses& losses);

} // namespace vexa::inspect
