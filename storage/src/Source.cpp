#include "Source.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <istream>
#include <new>
#include <utility>

namespace vexa::storage {

namespace {

/// Bytes that grow in place where they are many, so that they never take memory twice.
class Bytes {
public:
    ~Bytes() { std::free(data_); }
    Bytes() = default;
    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;

    void resize(std::size_t size) {
        void* const moved = std::realloc(data_, size);
        if (moved == nullptr) {
            throw std::bad_alloc();
        }
        data_ = static_cast<unsigned char*>(moved);
    }
    unsigned char* data() const noexcept { return data_; }

private:
    unsigned char* data_ = nullptr;
};

std::shared_ptr<void> mapped(int file, std::size_t offset, std::size_t size, int protection) {
    // Without a reservation: a large file is no request for as much memory.
    void* const address =
        ::mmap(nullptr, size, protection, MAP_PRIVATE | MAP_NORESERVE, file, static_cast<::off_t>(offset));
    if (address == MAP_FAILED) {
        return nullptr;
    }
    return {address, [size](void* pages) { ::munmap(pages, size); }};
}

/// Lets `read` fill bytes piece by piece until it gives nothing; says in `size` how many there are.
template <class Read>
std::shared_ptr<const Bytes> readAll(std::size_t& size, Read read) {
    constexpr std::size_t piece = std::size_t{1} << 16U;
    auto bytes = std::make_shared<Bytes>();
    std::size_t room = 0;
    std::size_t count = 0;
    size = 0;
    do {
        if (size == room) {
            room += std::max(piece, room / 2);
            bytes->resize(room);
        }
        count = read(bytes->data() + size, room - size);
        size += count;
    } while (count != 0);
    return bytes;
}

} // namespace

Source::Source(const std::filesystem::path& path)
    : name_(path.string()), file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    struct ::stat status {};
    if (!file_ || ::fstat(file_.get(), &status) != 0) {
        throwSystemError(name_, "cannot open", errno);
    }
    if (S_ISDIR(status.st_mode)) {
        throw Error(name_, Error::nowhere, "is a folder");
    }
    size_ = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
    if (S_ISREG(status.st_mode)) {
        map();
    }
    if (owner_ == nullptr) {
        readToEnd();
    }
}

void Source::map() {
    if (size_ == 0) {
        return;
    }
    const std::shared_ptr<void> pages = mapped(file_.get(), 0, size_, PROT_READ);
    data_ = static_cast<const unsigned char*>(pages.get());
    owner_ = pages;
}

void Source::readToEnd() {
    const auto bytes = readAll(size_, [this](unsigned char* to, std::size_t room) {
        ::ssize_t count = 0;
        do {
            count = ::read(file_.get(), to, room);
        } while (count < 0 && errno == EINTR);
        if (count < 0) {
            throwSystemError(name_, "cannot read", errno);
        }
        return static_cast<std::size_t>(count);
    });
    data_ = bytes->data();
    owner_ = bytes;
    file_.reset(-1);
}

Source::Source(std::istream& stream) : name_("stream") {
    const auto bytes = readAll(size_, [&](unsigned char* to, std::size_t room) {
        stream.read(reinterpret_cast<char*>(to), static_cast<std::streamsize>(room));
        return static_cast<std::size_t>(stream.gcount());
    });
    if (stream.bad()) {
        throw Error(name_, Error::nowhere, "cannot read from the stream");
    }
    data_ = bytes->data();
    owner_ = bytes;
}

Source::Source(const void* data, std::size_t size, std::shared_ptr<const void> owner)
    : name_("memory"),
      data_(static_cast<const unsigned char*>(data)),
      size_(size),
      owner_(std::move(owner)) {}

void Source::copy(std::size_t offset, void* to, std::size_t size) const {
    if (size == 0) { // perhaps to nowhere
        return;
    }
    if (!file_ || size < std::size_t{1} << 14U) { // a call of the system is worth while for much
        std::memcpy(to, data_ + offset, size);
        return;
    }
    auto* place = static_cast<unsigned char*>(to);
    while (size != 0) {
        const ::ssize_t count = ::pread(file_.get(), place, size, static_cast<::off_t>(offset));
        if (count == 0) {
            throw Error(name_, offset, "expected more bytes: the file was made shorter while it was read");
        }
        if (count < 0 && errno != EINTR) {
            throwSystemError(name_, "cannot read", errno);
        }
        const auto done = static_cast<std::size_t>(count < 0 ? 0 : count);
        place += done;
        offset += done;
        size -= done;
    }
}

std::shared_ptr<unsigned char> Source::mapPrivately(std::size_t offset, std::size_t size) const {
    if (!file_ || size == 0) {
        return nullptr;
    }
    const std::size_t ahead = offset % static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    const std::shared_ptr<void> pages =
        mapped(file_.get(), offset - ahead, size + ahead, PROT_READ | PROT_WRITE);
    if (pages == nullptr) {
        return nullptr;
    }
    return {pages, static_cast<unsigned char*>(pages.get()) + ahead};
}

} // namespace vexa::storage
