#include "NumberBuffer.hpp"

#include <cstdlib>
#include <new>
#include <utility>

namespace vexa::inspect {

NumberBuffer::NumberBuffer(MemoryBudget& budget) : budget_(&budget), data_(nullptr, std::free) {}

NumberBuffer::~NumberBuffer() { clear(); }

NumberBuffer::NumberBuffer(NumberBuffer&& other) noexcept
    : budget_(other.budget_),
      data_(std::move(other.data_)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

void NumberBuffer::clear() noexcept {
    data_.reset();
    budget_->giveBack(capacity_ * sizeof(double));
    size_ = capacity_ = 0;
}

NumberBuffer::Storage NumberBuffer::release() {
    resize(size_);
    size_ = capacity_ = 0;
    return std::move(data_);
}

void NumberBuffer::resize(std::size_t capacity) {
    if (capacity > capacity_) budget_->take((capacity - capacity_) * sizeof(double));
    void* moved = std::realloc(data_.get(), capacity * sizeof(double));
    if (moved == nullptr) {
        if (capacity > capacity_) budget_->giveBack((capacity - capacity_) * sizeof(double));
        throw std::bad_alloc();
    }
    data_.release();
    data_.reset(static_cast<double*>(moved));
    if (capacity < capacity_) budget_->giveBack((capacity_ - capacity) * sizeof(double));
    capacity_ = capacity;
}

} // namespace vexa::inspect
