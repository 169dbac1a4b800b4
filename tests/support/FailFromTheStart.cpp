// A library for LD_PRELOAD: the environment says which allocation of the program fails, counted from its
// first instruction.
//   FAIL_AT=7         the seventh fails
//   FAIL_FROM=7       the seventh fails and all that follow
//   COUNT_TO=FILE     the number of allocations is written to FILE when the program ends
#include <vexa/testing/AllocationFunctions.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace {

using vexa::testing::FailingAllocations;

const char* valueOf(char** environment, std::string_view name) {
    for (char** entry = environment; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (text.size() > name.size() && text.substr(0, name.size()) == name && text[name.size()] == '=')
            return *entry + name.size() + 1;
    }
    return nullptr;
}

const char* countFile = nullptr;

// The library is linked so that this runs before the initialisation of all others.
[[gnu::constructor]] void begin(int, char**, char** environment) {
    countFile = valueOf(environment, "COUNT_TO");
    const char* one = valueOf(environment, "FAIL_AT");
    const char* all = valueOf(environment, "FAIL_FROM");
    const char* number = all != nullptr ? all : one;
    FailingAllocations::start();
    FailingAllocations::failAt(number == nullptr ? 0 : static_cast<std::size_t>(std::atol(number)),
                               all != nullptr);
}

[[gnu::destructor]] void end() {
    const std::size_t count = FailingAllocations::allocations();
    FailingAllocations::stop();
    if (countFile == nullptr) return;
    char digits[20];
    const char* stop = std::to_chars(digits, digits + sizeof digits, count).ptr;
    const int file = ::open(countFile, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (::write(file, digits, static_cast<std::size_t>(stop - digits)) < 0) ::_exit(1);
    ::close(file);
}

} // namespace
