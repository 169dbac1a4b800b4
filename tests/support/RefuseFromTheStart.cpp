// A library for LD_PRELOAD: a system that refuses memory to a program that has allocation functions of its
// own in front of the C library's. Processes that the program forks go on with its count.
//   REFUSE_AT=7     the seventh request is refused
//   REFUSE_FROM=7   the seventh and all that follow
#include <dlfcn.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace {

std::atomic<long> requests = 0;
long refused = 0;
bool onwards = false;

// The library is linked so that this runs before the initialisation of all others.
[[gnu::constructor]] void begin(int, char**, char** environment) {
    for (char** entry = environment; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::string_view name = text.substr(0, text.find('='));
        if (name != "REFUSE_AT" && name != "REFUSE_FROM") continue;
        onwards = name == "REFUSE_FROM";
        refused = std::atol(text.data() + name.size() + 1);
    }
    requests = 0;
}

bool refuses() noexcept {
    const long number = ++requests;
    const bool now = refused != 0 && (onwards ? number >= refused : number == refused);
    if (now) errno = ENOMEM;
    return now;
}

template <class... Arguments>
void* pass(const char* name, Arguments... arguments) noexcept {
    using Function = void* (*)(Arguments...);
    return refuses() ? nullptr : reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

extern "C" {
void* __libc_malloc(std::size_t size) { return pass("__libc_malloc", size); }
void* __libc_calloc(std::size_t number, std::size_t size) { return pass("__libc_calloc", number, size); }
void* __libc_realloc(void* block, std::size_t size) { return pass("__libc_realloc", block, size); }
void* __libc_memalign(std::size_t alignment, std::size_t size) {
    return pass("__libc_memalign", alignment, size);
}
}
