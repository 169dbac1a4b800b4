// Feeds bytes to the readers of vexa-inspect, once as a file and once through a pipe. Both load and describe, or both say
// what is wrong; nothing but InputError and std::bad_alloc may come out.
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
#include <optional>
#include <string>
#include <string_view>

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

Answer answer(int descriptor, const Options& options) {
    Source source(pathOf(descriptor));
    ::close(descriptor);
    Progress progress(nullptr, source.size());
    try {
        const Dataset data = load(source, options, progress);
        return {heading(data) + "\n" + describe(data)};
    } catch (const InputError& error) {
        return {std::to_string(error.line()) + ": " + error.what()};
    } catch (const std::bad_alloc&) {
        return {"not enough memory", true};
    }
}

Answer throughFile(std::string_view bytes, const Options& options) {
    const int file = ::memfd_create("input", MFD_CLOEXEC);
    writeAll(file, bytes);
    return answer(file, options);
}

Answer throughPipe(std::string_view bytes, const Options& options) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) fail("no pipe");
    writeAll(ends[1], bytes); // fits into the pipe
    // The pipe must have a writer until it is opened once more for reading.
    Source keep(pathOf(ends[0]));
    ::close(ends[1]);
    return answer(ends[0], options);
}

/// The last byte also says how the input is read; a line end, with which most files end, means the defaults.
Options optionsOf(unsigned char last) {
    constexpr std::uint64_t plenty = 1U << 20U;
    constexpr std::string_view delimiters = ",;\t";
    Options options{std::nullopt, plenty};
    if (last < 0x80U) return options;
    if (const std::size_t k = last & 3U; k < delimiters.size()) options.delimiter = delimiters[k];
    if ((last & 4U) != 0) options.maxMemory = (last & 0x78U) * 16U;
    return options;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 32768; // half of what a pipe holds
    if (size > longest) return -1;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const Options options = optionsOf(bytes.empty() ? 0 : static_cast<unsigned char>(bytes.back()));
    const Answer file = throughFile(bytes, options);
    const Answer pipe = throughPipe(bytes, options);
    // With little memory either may give up where the other does not.
    const bool comparable = !file.outOfMemory && !pipe.outOfMemory && options.maxMemory >= (1U << 20U);
    if (comparable && file.text != pipe.text)
        fail("through a file:\n" + file.text + "\nthrough a pipe:\n" + pipe.text);
    return 0;
}
