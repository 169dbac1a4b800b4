// Where the bytes of a file go: a sink, and a buffer before it that counts them and keeps a checksum.
#pragma once

#include <vexa/storage/Error.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

struct XXH3_state_s;

namespace vexa::storage {

/// XXH3 of 64 bits, as the xxHash project describes it, version 0.2.0; of the bytes that were added.
class Checksum {
public:
    Checksum();
    void reset() noexcept;
    void add(const void* data, std::size_t size) noexcept;
    std::uint64_t value() const noexcept;
    static std::uint64_t of(const void* data, std::size_t size) noexcept;

private:
    struct Free {
        void operator()(XXH3_state_s* state) const noexcept;
    };
    std::unique_ptr<XXH3_state_s, Free> state_;
};

class Sink {
public:
    virtual ~Sink();
    virtual const std::string& name() const noexcept = 0;
    /// @throws Error
    virtual void write(const void* data, std::size_t size) = 0;
    /// Makes lasting what was written.
    /// @throws Error
    virtual void finish() = 0;

protected:
    Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
};

/// A new file that takes the place of the one with the name in `finish`.
std::unique_ptr<Sink> fileSink(const std::filesystem::path& path);
std::unique_ptr<Sink> streamSink(std::ostream& stream);
/// `bytes` is borrowed.
std::unique_ptr<Sink> memorySink(std::vector<std::byte>& bytes);

class Output {
public:
    explicit Output(Sink& sink);

    /// Room for `size` bytes, at most `mostRoom`; `take` says how many were written there.
    unsigned char* room(std::size_t size) {
        if (capacity - used_ < size) {
            flush();
        }
        return buffer_.get() + used_;
    }
    void take(std::size_t size) noexcept { used_ += size; }
    void write(const void* data, std::size_t size);
    void flush();
    std::uint64_t position() const noexcept { return flushed_ + used_; }
    const std::string& name() const noexcept { return sink_.name(); }

    void beginChecksum() noexcept;
    /// Of what was written since `beginChecksum`.
    std::uint64_t checksum() noexcept;

    static constexpr std::size_t mostRoom = 256;

private:
    static constexpr std::size_t capacity = std::size_t{1} << 16U;

    Sink& sink_;
    std::unique_ptr<unsigned char[]> buffer_;
    std::size_t used_ = 0;
    std::size_t checked_ = 0; // how much of the buffer is in the checksum
    std::uint64_t flushed_ = 0;
    Checksum checksum_;
};

} // namespace vexa::storage
