// Timing of several ways to do one task, in turns, so that whatever slows the machine down slows all of them.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace bench {

/// Makes the compiler believe that `value` is read and changed.
template <class T>
void hide(T& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

/// The test that a checked loop makes.
inline void require(bool inside) {
    if (!inside) {
        std::abort();
    }
}

/// One way to do a task. `run` does it `units` times over (elements, arrays) and returns something that
/// depends on the result; ways that disagree on it do not do the same thing.
struct Contender {
    std::string name;
    std::function<double()> run;
};

/// One line of the table. The first contender is the raw loop, the second this library, the others peers.
struct Task {
    std::string name;
    double units;     // per run
    double mostRatio; // of this library to the raw loop
    std::vector<Contender> contenders;
    double mostNanoseconds = 0; // of this library, instead of a ratio, unless 0
};

inline double nanoseconds(const std::function<double()>& run, double& result) {
    const auto start = std::chrono::steady_clock::now();
    result = run();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Median time of each contender per unit, over rounds in which all take turns; false when results differ.
inline bool compete(const Task& task, int rounds, std::vector<double>& medians) {
    std::vector<std::vector<double>> times(task.contenders.size());
    bool agree = true;
    for (int round = 0; round < rounds + 2; ++round) {
        double expected = 0;
        for (std::size_t k = 0; k < task.contenders.size(); ++k) {
            double result = 0;
            const double time = nanoseconds(task.contenders[k].run, result) / task.units;
            if (round >= 2) { // the first rounds warm up
                times[k].push_back(time);
            }
            expected = k == 0 ? result : expected;
            agree = agree && result == expected;
        }
    }
    for (auto& each : times) {
        medians.push_back(median(std::move(each)));
    }
    return agree;
}

/// Median time per unit of this library where the process has a second thread, which sleeps: counts of shared
/// objects need locked instructions then. Measured in a child process, because a process that once had
/// threads counts with locked instructions from then on. Not a number when the child fails.
inline double withThreads(const Task& task, int rounds) {
    int ends[2];
    if (pipe(ends) != 0) {
        return std::nan("");
    }
    const pid_t child = fork();
    if (child == 0) {
        std::thread([] { pause(); }).detach();
        std::vector<double> times;
        for (int round = 0; round < rounds; ++round) {
            double result = 0;
            times.push_back(nanoseconds(task.contenders[1].run, result) / task.units);
        }
        const double time = median(std::move(times));
        _exit(write(ends[1], &time, sizeof time) == sizeof time ? 0 : 1);
    }
    close(ends[1]);
    double time = std::nan("");
    if (child < 0 || read(ends[0], &time, sizeof time) != sizeof time) {
        time = std::nan("");
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return time;
}

/// The compiler, and a warning when the figures mean nothing.
inline void printSetting() {
#ifdef __clang__
    std::printf("clang++ %s", __clang_version__);
#else
    std::printf("g++ %s", __VERSION__);
#endif
#ifdef __OPTIMIZE__
    std::printf(", optimised");
#else
    std::printf(", NOT OPTIMISED: the figures mean nothing");
#endif
#ifdef NDEBUG
    std::printf(", NDEBUG\n");
#else
    std::printf(", DEBUG BUILD: the figures mean nothing\n");
#endif
    std::printf(
        "raw: the checked loop over plain storage; aim: the most that the ratio, or the time, should be; ! beside a\n"
        "miss; threads: vexadata in a process with two threads, where counts need locked instructions\n\n");
}

inline void printHeading() {
    std::printf("%-42s %10s %10s %7s %7s   %10s  %s\n", "task (ns per element or array)", "raw", "vexadata",
                "ratio", "aim", "threads", "peers");
}

/// Runs a task and prints its line; false when results differ.
inline bool report(const Task& task, int rounds = 25) {
    std::vector<double> medians;
    const bool agree = compete(task, rounds, medians);
    const double ratio = medians[1] / medians[0];
    const bool absolute = task.mostNanoseconds > 0;
    const bool reached = absolute ? medians[1] <= task.mostNanoseconds : ratio <= task.mostRatio;
    std::printf("%-42s %10.4g %10.4g %6.2fx %6.4g%s %s %10.4g ", task.name.c_str(), medians[0], medians[1],
                ratio, absolute ? task.mostNanoseconds : task.mostRatio, absolute ? "ns" : "x ",
                reached ? " " : "!", withThreads(task, rounds));
    for (std::size_t k = 2; k < medians.size(); ++k) {
        std::printf(" %s %.4g", task.contenders[k].name.c_str(), medians[k]);
    }
    std::printf("%s\n", agree ? "" : "  RESULTS DIFFER");
    std::fflush(stdout);
    return agree;
}

} // namespace bench
