// A growing run of doubles whose storage an array can adopt.
#pragma once

#include "Memory.hpp"

#include <cstddef>
#include <memory>

namespace vexa::inspect {

/// Grows through realloc: large blocks then move by remapping their pages, not by copying, and the pages
/// behind the last value cost nothing.
class NumberBuffer {
public:
    using Storage = std::unique_ptr<double[], void (*)(void*)>;

    /// `budget` outlives the buffer and answers for its capacity.
    explicit NumberBuffer(MemoryBudget& budget);
    ~NumberBuffer();
    NumberBuffer(NumberBuffer&& other) noexcept;
    NumberBuffer& operator=(NumberBuffer&&) = delete;

    /// Throws InputError when the budget and std::bad_alloc when the machine has no more.
    void push(double value) {
        if (size_ == capacity_) resize(capacity_ + capacity_ / 2 + 16);
        data_.get()[size_++] = value;
    }

    std::size_t size() const noexcept { return size_; }
    const double* data() const noexcept { return data_.get(); }

    /// Frees the storage.
    void clear() noexcept;
    /// Hands the storage over, cut to the values in it (at least one); the buffer is empty then. The budget
    /// goes on counting it.
    Storage release();

private:
    void resize(std::size_t capacity);

    MemoryBudget* budget_;
    Storage data_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace vexa::inspect
