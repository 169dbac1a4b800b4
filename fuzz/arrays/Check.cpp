#include "Check.hpp"

#include <cstdio>
#include <cstdlib>

namespace vexa::fuzz {

Operations operation;

std::string Operations::list() const {
    std::string text;
    for (std::size_t k = 0; k < kept; ++k) {
        if (const char* name = names_[(next_ + k) % kept]) {
            text += (text.empty() ? "'" : ", '") + std::string(name) + "'";
        }
    }
    return text;
}

void fail(const std::string& what) {
    std::fprintf(stderr, "fuzz_arrays: difference after %s: %s\n", operation.list().c_str(), what.c_str());
    std::abort();
}

void requireOutcome(Outcome wanted, Outcome found) {
    const auto name = [](Outcome outcome) { return outcome == nullptr ? "success" : outcome->name(); };
    if (wanted == nullptr ? found != nullptr : found == nullptr || *wanted != *found) {
        fail(std::string("expected ") + name(wanted) + ", found " + name(found));
    }
}

} // namespace vexa::fuzz
