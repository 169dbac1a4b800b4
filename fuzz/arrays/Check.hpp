// How an operation ends, and what is said when it ends otherwise than it should.
#pragma once

#include <foundation/vexadata/Exception.hpp>

#include <array>
#include <cstddef>
#include <exception>
#include <string>
#include <typeinfo>

namespace vexa::fuzz {

/// The operation that is going on and those before it, for messages: the fault lies in the last one, or in
/// one of the few before it when another array has changed.
class Operations {
public:
    static constexpr std::size_t kept = 8;

    Operations& operator=(const char* name) {
        names_[next_++ % kept] = name;
        return *this;
    }
    /// Oldest first, in quotes.
    std::string list() const;

private:
    std::array<const char*, kept> names_{};
    std::size_t next_ = 0;
};
extern Operations operation;

/// Ends the process, saying what differs after which operations.
[[noreturn]] void fail(const std::string& what);

inline void require(bool holds, const char* what) {
    if (!holds) {
        fail(what);
    }
}

/// The class of what was thrown; null when nothing was.
using Outcome = const std::type_info*;

template <class E>
inline constexpr Outcome thrown = &typeid(E);

template <class F>
Outcome outcomeOf(F perform) {
    try {
        perform();
        return nullptr;
    } catch (const foundation::vexadata::Exception& error) {
        return &typeid(error);
    } catch (const std::exception& error) {
        return &typeid(error);
    }
}

void requireOutcome(Outcome wanted, Outcome found);

/// Performs and tells whether it should succeed and did.
template <class F>
bool succeeds(Outcome wanted, F perform) {
    requireOutcome(wanted, outcomeOf(perform));
    return wanted == nullptr;
}

} // namespace vexa::fuzz
