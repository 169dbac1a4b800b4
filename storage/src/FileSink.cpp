// Atomic replacement of a file: a new file beside it, synced, renamed, and the folder synced.
#include "Descriptor.hpp"
#include "Output.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>
#include <utility>

namespace vexa::storage {

namespace {

namespace fs = std::filesystem;

/// Where the bytes of a name really lie: behind symbolic links, which stay.
fs::path target(const fs::path& path) {
    std::error_code ignored;
    fs::path real = fs::canonical(path, ignored);
    return ignored ? path : real;
}

/// A file that is removed unless its name is taken away before.
struct Part {
    fs::path path;
    ~Part() {
        if (!path.empty()) {
            ::unlink(path.c_str());
        }
    }
};

class FileSink final : public Sink {
public:
    explicit FileSink(const fs::path& path) : name_(path.string()), target_(target(path)) {
        struct ::stat old {};
        const bool exists = ::stat(target_.c_str(), &old) == 0;
        if (exists && !S_ISREG(old.st_mode)) {
            throw Error(name_, Error::nowhere, "is no regular file, which alone can be replaced");
        }
        create();
        if (exists && ::fchmod(file_.get(), old.st_mode & 07777U) != 0) {
            failWith("cannot keep the permissions");
        }
    }
    const std::string& name() const noexcept override { return name_; }
    void write(const void* data, std::size_t size) override {
        const auto* from = static_cast<const unsigned char*>(data);
        while (size != 0) {
            const ::ssize_t count = ::write(file_.get(), from, size);
            if (count < 0 && errno != EINTR) {
                failWith("cannot write");
            }
            const auto written = static_cast<std::size_t>(count < 0 ? 0 : count);
            from += written;
            size -= written;
        }
    }
    void finish() override {
        if (::fsync(file_.get()) != 0 || ::close(file_.release()) != 0) {
            failWith("cannot write");
        }
        // Before the file has its name, so that nothing but the sync can fail afterwards.
        const Descriptor folder(::open(this->folder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder) {
            failWith("cannot open the folder");
        }
        if (std::rename(part_.path.c_str(), target_.c_str()) != 0) {
            failWith("cannot give the new file its name");
        }
        part_.path.clear();
        if (::fsync(folder.get()) != 0 && errno != EINVAL) { // not every file system syncs folders
            failWith("is written, but its folder cannot be synced");
        }
    }

private:
    [[noreturn]] void failWith(const char* what) const { throwSystemError(name_, what, errno); }

    fs::path folder() const {
        const fs::path folder = target_.parent_path();
        return folder.empty() ? fs::path(".") : folder;
    }
    void create() {
        constexpr int attempts = 100;
        std::random_device random;
        for (int k = 0; k < attempts && !file_; ++k) {
            std::string name(1, '.');
            name.append(target_.filename().string(), 0, 200).append(1, '.').append(std::to_string(random()));
            fs::path part = folder() / name.append(".part");
            file_.reset(
                ::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)); // less the umask
            if (file_) {
                part_.path = std::move(part);
            } else if (errno != EEXIST) {
                break;
            }
        }
        if (!file_) {
            failWith("cannot create a file in the folder");
        }
    }

    std::string name_;
    fs::path target_;
    Part part_;
    Descriptor file_;
};

} // namespace

std::unique_ptr<Sink> fileSink(const fs::path& path) { return std::make_unique<FileSink>(path); }

} // namespace vexa::storage
