#include "Source.hpp"

#include "InputError.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vexa::inspect {

namespace {

/// Says why the last call of the system failed.
[[noreturn]] void fail(const char* what) {
    const int error = errno; // making the exception may change it
    throw InputError(std::string(what) + ": " + std::generic_category().message(error));
}

int openForReading(const std::string& path) {
    if (path == "-") return STDIN_FILENO;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) fail("cannot open");
    return descriptor;
}

} // namespace

Source::Source(const std::string& path) : descriptor_(openForReading(path)) {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0) return; // reading reports what is wrong
    if (S_ISREG(status.st_mode)) start_ = ::lseek(descriptor_, 0, SEEK_CUR);
    if (S_ISREG(status.st_mode)) size_ = static_cast<std::uint64_t>(status.st_size);
}

Source::~Source() {
    if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
}

void Source::rewind() {
    if (::lseek(descriptor_, start_, SEEK_SET) < 0) fail("cannot read again");
}

std::optional<std::string> Source::pathOfWholeFile() const {
    if (!size_ || start_ != 0) return std::nullopt;
    return "/proc/self/fd/" + std::to_string(descriptor_);
}

std::size_t Source::read(char* out, std::size_t capacity) {
    std::size_t filled = 0;
    while (filled < capacity) {
        const ssize_t got = ::read(descriptor_, out + filled, capacity - filled);
        if (got == 0) break;
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            fail("cannot read");
        }
    }
    return filled;
}

} // namespace vexa::inspect
