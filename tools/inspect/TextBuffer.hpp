// A growing list of texts, any of which may be missing.
#pragma once

#include "GrowingBuffer.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vexa::inspect {

/// The texts lie one after another; each costs its bytes and eight more.
class TextBuffer {
public:
    /// `budget` outlives the buffer.
    explicit TextBuffer(MemoryBudget& budget) : bytes_(budget), ends_(budget) {}

    /// Both throw what GrowingBuffer::push throws.
    void push(std::string_view text) {
        for (const char byte : text)
            bytes_.push(byte);
        ends_.push(bytes_.size());
    }
    void pushMissing() { ends_.push(bytes_.size() | missing); }

    std::size_t size() const noexcept { return ends_.size(); }
    std::size_t bytes() const noexcept { return bytes_.size(); } ///< of all texts
    /// Nothing for a missing text; valid until the next change.
    std::optional<std::string_view> operator[](std::size_t k) const noexcept {
        if ((ends_[k] & missing) != 0) return std::nullopt;
        const std::uint64_t start = k == 0 ? 0 : ends_[k - 1] & ~missing;
        return std::string_view(bytes_.data() + start, ends_[k] - start);
    }
    void clear() noexcept {
        bytes_.clear();
        ends_.clear();
    }

private:
    static constexpr std::uint64_t missing = std::uint64_t{1} << 63;

    GrowingBuffer<char> bytes_;
    GrowingBuffer<std::uint64_t> ends_; // where each text ends, and whether it is missing
};

} // namespace vexa::inspect
