// A file descriptor that is closed, and errors of the system as ours.
#pragma once

#include <vexa/storage/Error.hpp>

#include <unistd.h>

#include <string>
#include <system_error>
#include <utility>

namespace vexa::storage {

class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    explicit operator bool() const noexcept { return number_ >= 0; }
    int get() const noexcept { return number_; }
    int release() noexcept { return std::exchange(number_, -1); }
    void reset(int number) noexcept { *this = Descriptor(number); }

private:
    int number_;
};

/// "cannot write: No space left on device"
[[noreturn]] inline void throwSystemError(const std::string& file, const std::string& what, int number) {
    throw Error(file, Error::nowhere, what + ": " + std::generic_category().message(number));
}

} // namespace vexa::storage
