// Threads that register back-ends at once, in processes that have just begun: this program starts itself
// again and again.
#include <foundation/vexadata/ArrayFactory.hpp>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <thread>

namespace {

using vexa::data::impl::ArrayFactoryImpl;
using Function = ArrayFactoryImpl* (*)();
using Register = bool (*)(Function);

std::atomic<int> calls[2]{};
template <int number>
ArrayFactoryImpl* make() {
    ++calls[number];
    return nullptr;
}
constexpr Function functions[]{&make<0>, &make<1>};
constexpr Register slots[]{&ArrayFactoryImpl::registerClientFactoryFunction,
                           &ArrayFactoryImpl::registerVexaFactoryFunction};

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(EXIT_FAILURE);
    }
}

/// Performs both at the same time, as nearly as threads can.
void together(const std::function<void()>& first, const std::function<void()>& second) {
    std::atomic<int> waiting{2};
    const auto meet = [&](const std::function<void()>& perform) {
        for (--waiting; waiting != 0;) { // no rest: a wake-up would come too late
        }
        perform();
    };
    std::thread other([&] { meet(second); });
    meet(first);
    other.join();
}

/// True when the function is in force.
bool registers(Register slot, Function function) {
    try {
        require(slot(function), "a registration returned false");
        return true;
    } catch (const std::logic_error&) {
        return false;
    }
}

/// Different functions: one wins, is in force and stays so.
void raceOfRivals(Register slot) {
    bool won[2]{};
    together([&] { won[0] = registers(slot, functions[0]); },
             [&] { won[1] = registers(slot, functions[1]); });
    require(won[0] != won[1], "not exactly one of two functions won");
    const int winner = won[0] ? 0 : 1;
    calls[0] = calls[1] = 0;
    const foundation::vexadata::ArrayFactory factory;
    require(calls[winner] == 1 && calls[1 - winner] == 0, "another function than the winner was asked");
    require(registers(slot, functions[winner]) && !registers(slot, functions[1 - winner]),
            "the winner did not stay");
}

/// The same function: both succeed.
void raceOfTwins(Register slot) {
    bool won[2]{};
    together([&] { won[0] = registers(slot, functions[0]); },
             [&] { won[1] = registers(slot, functions[0]); });
    require(won[0] && won[1], "a function registered twice was refused");
}

int race(const char* kind) {
    for (const Register slot : slots) {
        std::strcmp(kind, "rivals") == 0 ? raceOfRivals(slot) : raceOfTwins(slot);
    }
    return EXIT_SUCCESS;
}

bool succeedsAfresh(const char* program, const char* kind) {
    char* arguments[]{const_cast<char*>(program), const_cast<char*>(kind), nullptr};
    pid_t child = 0;
    int status = -1;
    return ::posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, arguments, environ) == 0 &&
           ::waitpid(child, &status, 0) == child && status == 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        return race(argv[1]);
    }
    constexpr int processes = 100;
    for (int k = 0; k < processes; ++k) {
        for (const char* kind : {"rivals", "twins"}) {
            if (!succeedsAfresh(argv[0], kind)) {
                std::fprintf(stderr, "process %d of %s failed\n", k, kind);
                return EXIT_FAILURE;
            }
        }
    }
    std::printf("%d races of registration in %d fresh processes\n", 4 * processes, 2 * processes);
}
