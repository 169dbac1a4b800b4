// What the program and the back-end know of each other beside the contract: all errors, and two ways to throw
// them across.
#pragma once

#include <foundation/vexadata/Exception.hpp>

#include <cstddef>
#include <vector>

using Thrower = void (*)();

template <class E>
void throwOne() {
    throw E();
}

template <class E>
bool catches(Thrower thrower) {
    try {
        thrower();
    } catch (const E&) {
        return true;
    } catch (...) {}
    return false;
}

template <class... Errors>
struct ListOf {
    static std::vector<Thrower> throwers() { return {&throwOne<Errors>...}; }
    /// For each error in turn, whether a handler for it catches what is thrown.
    static std::vector<bool> caughtBy(Thrower thrower) { return {catches<Errors>(thrower)...}; }
};

namespace fv = foundation::vexadata;
// clang-format off
using AllErrors = ListOf<
#define VEXADATA_ERROR(E, message) fv::E,
#include <foundation/vexadata/ErrorTypes.inc>
    fv::EArrayInvalidHandleRef>;
// clang-format on

[[gnu::visibility("default")]] std::vector<Thrower> throwersOfBackEnd();
[[gnu::visibility("default")]] std::vector<bool> caughtByBackEnd(Thrower thrower);
