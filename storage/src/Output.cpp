#include "Output.hpp"

#include <xxhash.h>
#if defined(__x86_64__) && __has_include(<xxh_x86dispatch.h>)
#    include <xxh_x86dispatch.h> // the same functions, for the widest registers that the processor has
#endif

#include <algorithm>
#include <cstring>
#include <new>
#include <ostream>
#include <utility>

namespace vexa::storage {

Checksum::Checksum() : state_(XXH3_createState()) {
    if (state_ == nullptr) {
        throw std::bad_alloc();
    }
    reset();
}
void Checksum::Free::operator()(XXH3_state_s* state) const noexcept { XXH3_freeState(state); }
void Checksum::reset() noexcept { XXH3_64bits_reset(state_.get()); }
void Checksum::add(const void* data, std::size_t size) noexcept {
    XXH3_64bits_update(state_.get(), data, size);
}
std::uint64_t Checksum::value() const noexcept { return XXH3_64bits_digest(state_.get()); }
std::uint64_t Checksum::of(const void* data, std::size_t size) noexcept { return XXH3_64bits(data, size); }

Sink::~Sink() = default;

namespace {

class StreamSink final : public Sink {
public:
    explicit StreamSink(std::ostream& stream) : stream_(stream) {}
    const std::string& name() const noexcept override { return name_; }
    void write(const void* data, std::size_t size) override {
        stream_.write(static_cast<const char*>(data), static_cast<std::streamsize>(size));
        require();
    }
    void finish() override {
        stream_.flush();
        require();
    }

private:
    void require() const {
        if (!stream_) {
            throw Error(name_, Error::nowhere, "cannot write to the stream");
        }
    }
    std::ostream& stream_;
    std::string name_ = "stream";
};

class MemorySink final : public Sink {
public:
    explicit MemorySink(std::vector<std::byte>& bytes) : bytes_(bytes) {}
    const std::string& name() const noexcept override { return name_; }
    void write(const void* data, std::size_t size) override {
        const auto* const first = static_cast<const std::byte*>(data);
        bytes_.insert(bytes_.end(), first, first + size);
    }
    void finish() override {}

private:
    std::vector<std::byte>& bytes_;
    std::string name_ = "memory";
};

} // namespace

std::unique_ptr<Sink> streamSink(std::ostream& stream) { return std::make_unique<StreamSink>(stream); }
std::unique_ptr<Sink> memorySink(std::vector<std::byte>& bytes) {
    return std::make_unique<MemorySink>(bytes);
}

Output::Output(Sink& sink) : sink_(sink), buffer_(new unsigned char[capacity]) {}

void Output::write(const void* data, std::size_t size) {
    if (size == 0) { // perhaps from nowhere
        return;
    }
    if (size <= capacity - used_) {
        std::memcpy(buffer_.get() + used_, data, size);
        used_ += size;
        return;
    }
    flush();
    constexpr std::size_t piece = std::size_t{1} << 20U; // stays in the cache between checksum and sink
    const auto* from = static_cast<const unsigned char*>(data);
    while (size != 0) {
        const std::size_t count = std::min(size, piece);
        checksum_.add(from, count);
        sink_.write(from, count);
        from += count;
        flushed_ += count;
        size -= count;
    }
}

void Output::flush() {
    checksum_.add(buffer_.get() + checked_, used_ - checked_);
    sink_.write(buffer_.get(), used_);
    flushed_ += used_;
    used_ = checked_ = 0;
}

void Output::beginChecksum() noexcept {
    checked_ = used_;
    checksum_.reset();
}
std::uint64_t Output::checksum() noexcept {
    checksum_.add(buffer_.get() + checked_, used_ - checked_);
    checked_ = used_;
    return checksum_.value();
}

} // namespace vexa::storage
