#include "Source.hpp"

#include "InputError.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vexa::inspect {

namespace {

std::string reason(int error) { return std::generic_category().message(error); }

int openForReading(const std::string& path) {
    if (path == "-") return STDIN_FILENO;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) throw InputError("cannot open: " + reason(errno));
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
    if (::lseek(descriptor_, start_, SEEK_SET) < 0) throw InputError("cannot read again: " + reason(errno));
}

std::size_t Source::read(char* out, std::size_t capacity) {
    std::size_t filled = 0;
    while (filled < capacity) {
        const ssize_t got = ::read(descriptor_, out + filled, capacity - filled);
        if (got == 0) break;
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            throw InputError("cannot read: " + reason(errno));
        }
    }
    return filled;
}

} // namespace vexa::inspect
