#include "Losses.hpp"

#include "Text.hpp"

namespace vexa::inspect {

void Losses::count(Loss loss) noexcept {
    rounded += loss == Loss::rounded ? 1U : 0U;
    overflowed += loss == Loss::overflowed ? 1U : 0U;
    underflowed += loss == Loss::underflowed ? 1U : 0U;
}

std::string textOf(const Losses& losses) {
    std::string text;
    const auto add = [&](std::size_t count, const char* noun, const char* fate) {
        if (count == 0) return;
        if (!text.empty()) text += "; ";
        text += counted(count, noun) + (count == 1 ? " is " : " are ") + fate;
    };
    add(losses.rounded, "whole number", "beyond 2^53 and rounded");
    add(losses.overflowed, "number", "too large for a double and shown as inf");
    add(losses.underflowed, "number", "too small for a double and shown as 0");
    return text;
}

} // namespace vexa::inspect
