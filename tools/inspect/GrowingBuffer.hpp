// A growing run of plain values whose storage an array can adopt.
#pragma once

#include "Memory.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace vexa::inspect {

/// Grows through realloc: large blocks then move by remapping their pages, not by copying, and the pages
/// behind the last value cost nothing.
template <class T>
class GrowingBuffer {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    using Storage = std::unique_ptr<T[], void (*)(void*)>;

    /// `budget` outlives the buffer and answers for its capacity.
    explicit GrowingBuffer(MemoryBudget& budget) : budget_(&budget), data_(nullptr, std::free) {}
    ~GrowingBuffer() { clear(); }
    GrowingBuffer(GrowingBuffer&& other) noexcept
        : budget_(other.budget_),
          data_(std::move(other.data_)),
          size_(std::exchange(other.size_, 0)),
          capacity_(std::exchange(other.capacity_, 0)) {}
    GrowingBuffer& operator=(GrowingBuffer&&) = delete;

    /// Throws InputError when the budget and std::bad_alloc when the machine has no more.
    void push(const T& value) {
        if (size_ == capacity_) resize(capacity_ + capacity_ / 2 + 16);
        data_.get()[size_++] = value;
    }
    /// The same for several.
    void append(const T* values, std::size_t count) {
        if (count > capacity_ - size_) resize(std::max(capacity_ + capacity_ / 2, size_ + count));
        std::copy_n(values, count, data_.get() + size_);
        size_ += count;
    }

    std::size_t size() const noexcept { return size_; }
    const T* data() const noexcept { return data_.get(); }
    const T& operator[](std::size_t k) const noexcept { return data_.get()[k]; }

    /// Frees the storage.
    void clear() noexcept {
        data_.reset();
        budget_->giveBack(capacity_ * sizeof(T));
        size_ = capacity_ = 0;
    }
    /// Hands the storage over, cut to the values in it (at least one); the buffer is empty then, and `heir`
    /// answers for the bytes.
    Storage release(MemoryShare& heir) {
        resize(size_ == 0 ? 1 : size_);
        heir.inherit(capacity_ * sizeof(T));
        size_ = capacity_ = 0;
        return std::move(data_);
    }

private:
    void resize(std::size_t capacity) {
        if (capacity > capacity_) budget_->take((capacity - capacity_) * sizeof(T));
        void* moved = std::realloc(static_cast<void*>(data_.get()), capacity * sizeof(T));
        if (moved == nullptr) {
            if (capacity > capacity_) budget_->giveBack((capacity - capacity_) * sizeof(T));
            throw std::bad_alloc();
        }
        data_.release();
        data_.reset(static_cast<T*>(moved));
        if (capacity < capacity_) budget_->giveBack((capacity_ - capacity) * sizeof(T));
        capacity_ = capacity;
    }

    MemoryBudget* budget_;
    Storage data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace vexa::inspect
