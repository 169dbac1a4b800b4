#include "Payloads.hpp"

#include "Lexer.hpp"

#include <vexa/client/Adoption.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace vexa::storage {

namespace {

void swapBytes(unsigned char* bytes, std::size_t count, std::size_t size) {
    for (std::size_t k = 0; k < count; k += size) {
        std::reverse(bytes + k, bytes + k + size);
    }
}

/// One half after the other goes through the decoder as an item of CBOR.
void convertHalves(const unsigned char* halves, std::size_t count, bool isBigEndian, float* to) {
    for (std::size_t k = 0; k < count; ++k, halves += 2) {
        const std::array<unsigned char, 3> item{0xF9, halves[isBigEndian ? 0 : 1],
                                                halves[isBigEndian ? 1 : 0]};
        to[k] = static_cast<float>(Lexer({}, item.data(), item.size()).next().number);
    }
}

} // namespace

Payloads::Payloads(const Source& source, std::size_t begin, std::size_t size, const LoadOptions& options)
    : source_(source), begin_(begin), size_(size), options_(options), checked_(source.data() + begin) {
    if (checksAlong()) {
        checksum_.emplace();
    }
}

bool Payloads::checksAlong() const noexcept {
    return options_.placement == Placement::memory && options_.check != Check::never;
}

fv::Array Payloads::dense(std::vector<std::size_t> dimensions, ArrayType type, data::MemoryLayout layout,
                          const TypedTag& typed, const unsigned char* data) {
    const std::size_t parts = isComplex(type) ? 2 : 1;
    const std::size_t count = fv::detail::elementsOf(dimensions);
    const std::size_t bytes = count * parts * typed.size;
    if (options_.placement == Placement::mapped && bytes >= leastAligned && !typed.isBigEndian &&
        !typed.isHalf) {
        fv::Array array = mapped(dimensions, type, layout, data);
        if (array.getType() != ArrayType::UNKNOWN) {
            return array;
        }
    }
    const fv::ArrayFactory factory;
    auto buffer = factory.createBuffer(type, count);
    copy(typed, data, bytes, buffer.get());
    return factory.createArrayFromBuffer(std::move(dimensions), type, std::move(buffer), layout);
}

/// An empty array when it cannot be done. Only then are the dimensions still there.
fv::Array Payloads::mapped(std::vector<std::size_t>& dimensions, ArrayType type, data::MemoryLayout layout,
                           const unsigned char* data) {
    const auto place = static_cast<std::size_t>(data - source_.data());
    if (place % sizeof(double) != 0) { // in a file behind another one, or another program's
        return {};
    }
    if (!mapping_) {
        mapping_ = source_.mapPrivately(begin_, size_);
    }
    if (*mapping_ == nullptr) {
        return {};
    }
    isMapped_ = true;
    return client::adopt(std::move(dimensions), type, mapping_->get() + (place - begin_), *mapping_, layout);
}

void Payloads::copy(const TypedTag& typed, const unsigned char* data, std::size_t bytes, void* to) {
    if (typed.isHalf) {
        convertHalves(data, bytes / typed.size, typed.isBigEndian, static_cast<float*>(to));
        return;
    }
    copyBytes(data, bytes, to);
    if (typed.isBigEndian) {
        swapBytes(static_cast<unsigned char*>(to), bytes, typed.size);
    }
}

void Payloads::copyBytes(const unsigned char* data, std::size_t bytes, void* to) {
    const auto place = static_cast<std::size_t>(data - source_.data());
    if (!checksum_) {
        source_.copy(place, to, bytes);
        return;
    }
    checksum_->add(checked_, static_cast<std::size_t>(data - checked_));
    constexpr std::size_t piece = std::size_t{1} << 18U; // stays in the cache between copy and checksum
    auto* const target = static_cast<unsigned char*>(to);
    for (std::size_t done = 0; done < bytes; done += piece) {
        const std::size_t count = std::min(piece, bytes - done);
        source_.copy(place + done, target + done, count);
        checksum_->add(target + done, count);
    }
    checked_ = data + bytes;
}

void Payloads::finish(std::uint64_t expected) {
    if (options_.check == Check::never || (options_.check == Check::whenRead && isMapped_)) {
        return;
    }
    const unsigned char* const begin = source_.data() + begin_;
    std::uint64_t found = 0;
    if (checksum_) {
        checksum_->add(checked_, static_cast<std::size_t>(begin + size_ - checked_));
        found = checksum_->value();
    } else {
        found = Checksum::of(begin, size_);
    }
    if (found != expected) {
        throw Error(source_.name(), begin_,
                    "expected the bytes that were written, found others: the checksum differs");
    }
}

} // namespace vexa::storage
