// Feeds bytes to the readers of vexa-inspect, once as a file and once through a pipe. Both load and describe,
// or both say what is wrong; nothing but InputError and std::bad_alloc may come out.
#include "Inspect.hpp"

#include "InputError.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace vexa::inspect;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "fuzz_inspect: %s\n", what.c_str());
    std::abort();
}

void writeAll(int descriptor, std::string_view bytes) {
    if (::write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        fail("cannot hand the input over");
}

/// Opened by path, as the command opens its arguments.
std::string pathOf(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

/// The description or the complaint, and whether it may depend on how the bytes came in.
struct Answer {
    std::string text;
    bool outOfMemory = false;
};

struct How {
    Options options;
    std::uint64_t maxMemory;
};

Answer answer(int descriptor, const How& how) {
    Source source(pathOf(descriptor));
    ::close(descriptor);
    Progress progress(nullptr, source.size());
    try {
        MemoryBudget budget(how.maxMemory);
        const Dataset data = load(source, how.options, progress, budget);
        std::string text = heading(data) + "\n" + describe(data, budget);
        if (findInvalidByte(text)) fail("not UTF-8:\n" + text);
        return {std::move(text)};
    } catch (const InputError& error) {
        return {std::to_string(error.line()) + ": " + error.what()};
    } catch (const std::bad_alloc&) {
        return {"not enough memory", true};
    }
}

Answer throughFile(std::string_view bytes, const How& how) {
    const int file = ::memfd_create("input", MFD_CLOEXEC);
    writeAll(file, bytes);
    return answer(file, how);
}

Answer throughPipe(std::string_view bytes, const How& how) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) fail("no pipe");
    writeAll(ends[1], bytes); // fits into the pipe
    // The pipe must have a writer until it is opened once more for reading.
    Source keep(pathOf(ends[0]));
    ::close(ends[1]);
    return answer(ends[0], how);
}

/// The last byte also says how the input is read; a line end, with which most files end, means the defaults,
/// and a byte that cannot end UTF-8 means Latin-1.
How howToRead(unsigned char last) {
    constexpr std::uint64_t plenty = 1U << 26U;
    constexpr std::string_view delimiters = ",;\t";
    How how{Options(), plenty};
    if (last < 0x80U) return how;
    how.options.encoding = Encoding::latin1;
    if (const std::size_t k = last & 3U; k < delimiters.size()) how.options.delimiter = delimiters[k];
    if ((last & 4U) != 0) how.maxMemory = (last & 0x78U) * 100U;
    return how;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 32768; // half of what a pipe holds
    if (size > longest) return -1;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const How how = howToRead(bytes.empty() ? 0 : static_cast<unsigned char>(bytes.back()));
    const Answer file = throughFile(bytes, how);
    const Answer pipe = throughPipe(bytes, how);
    // With little memory either may give up where the other does not.
    const bool comparable = !file.outOfMemory && !pipe.outOfMemory && how.maxMemory >= (1U << 26U);
    if (comparable && file.text != pipe.text)
        fail("through a file:\n" + file.text + "\nthrough a pipe:\n" + pipe.text);
    return 0;
}
