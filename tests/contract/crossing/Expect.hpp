// What the programs of a published contract have in common: how they report.
#pragma once

#include <cstdio>
#include <thread>
#include <vector>

namespace {

int conditions = 0;
int faults = 0;

void expect(bool holds, const char* what, int line) {
    ++conditions;
    if (!holds) {
        ++faults;
        std::printf("line %d: does not hold: %s\n", line, what);
    }
}
#define EXPECT(...) expect(__VA_ARGS__, #__VA_ARGS__, __LINE__)

/// Whether `E` and nothing else comes out of `action`.
template <class E, class Action>
bool throws(Action action) {
    try {
        action();
    } catch (const E& error) {
        return *error.what() != '\0';
    } catch (...) {}
    return false;
}

/// Runs the actions alone, then in a second thread: a process with one thread counts in another way.
int report(const std::vector<void (*)()>& actions) {
    const auto all = [&] {
        for (const auto action : actions)
            action();
    };
    all();
    std::thread(all).join();
    std::printf("%d conditions, %d faults\n", conditions, faults);
    return faults == 0 ? 0 : 1;
}

} // namespace
