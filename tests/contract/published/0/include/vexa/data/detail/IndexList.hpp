// The numeric indices of an index chain. Binary contract: pointer, length, capacity, three values in place.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace vexa::data::detail {

/// A small vector of indices with room for three in place. Never to be copied bytewise: the pointer may refer
/// to the object itself. The length is set once, when the chain is bound to its array; surplus zero indices
/// need room beyond it, which `reserve` gives without changing the length.
class IndexList {
public:
    /// How many indices fit without memory of their own.
    static constexpr std::size_t inlineCapacity = 3;

    IndexList() noexcept = default;
    IndexList(const IndexList& other) { copyFrom(other); }
    IndexList& operator=(const IndexList& other) {
        if (this != &other) {
            IndexList copy(other);
            swapContents(copy);
        }
        return *this;
    }
    ~IndexList() { freeHeap(); }

    /// Makes the list `length` zeros.
    void assignZeros(std::size_t length) {
        reserve(length);
        std::fill_n(values_, length, 0);
        length_ = length;
    }

    /// Makes room for `capacity` values; values and length stay.
    void reserve(std::size_t capacity) {
        if (capacity <= capacity_) {
            return;
        }
        const std::size_t grown = std::max(capacity, 2 * static_cast<std::size_t>(capacity_));
        auto* fresh = new std::uint64_t[grown]();
        std::copy_n(values_, capacity_, fresh);
        freeHeap();
        values_ = fresh;
        capacity_ = grown;
    }

    /// What is in the list; the room may be larger. The values move when the list grows.
    std::size_t length() const noexcept { return length_; }
    std::size_t capacity() const noexcept { return capacity_; }
    std::uint64_t* data() noexcept { return values_; }
    const std::uint64_t* data() const noexcept { return values_; }

private:
    void freeHeap() noexcept {
        if (values_ != inline_) {
            delete[] values_;
        }
    }
    void copyFrom(const IndexList& other) {
        reserve(other.capacity_);
        std::copy_n(other.values_, other.capacity_, values_);
        length_ = other.length_;
    }
    void swapContents(IndexList& other) noexcept {
        const bool thisInline = values_ == inline_;
        const bool otherInline = other.values_ == other.inline_;
        std::swap_ranges(inline_, inline_ + inlineCapacity, other.inline_);
        std::swap(values_, other.values_);
        std::swap(length_, other.length_);
        std::swap(capacity_, other.capacity_);
        if (thisInline) {
            other.values_ = other.inline_;
        }
        if (otherInline) {
            values_ = inline_;
        }
    }

    std::uint64_t* values_ = inline_;
    std::uint64_t length_ = 0;
    std::uint64_t capacity_ = inlineCapacity;
    std::uint64_t inline_[inlineCapacity] = {0, 0, 0};
};

} // namespace vexa::data::detail
