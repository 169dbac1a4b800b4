// Arrays that hold arrays: cells and structs.
#pragma once

#include <foundation/vexadata/Object.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <cstddef>
#include <utility>

namespace vexa::client {

/// One counted reference to an array, in the room of a pointer. Null only after a move.
class Held {
public:
    /// Adopts the one reference that `array` carries.
    explicit Held(data::impl::ArrayImpl* array) noexcept : array_(array) {}
    Held(const Held& other) noexcept : array_(other.array_) { array_->retain(); }
    Held(Held&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}
    Held& operator=(Held other) noexcept {
        std::swap(array_, other.array_);
        return *this;
    }
    ~Held() {
        if (array_ != nullptr) {
            array_->release();
        }
    }

    data::impl::ArrayImpl& operator*() const noexcept { return *array_; }
    data::impl::ArrayImpl* operator->() const noexcept { return array_; }
    /// Hands the reference over.
    data::impl::ArrayImpl* detach() noexcept { return std::exchange(array_, nullptr); }

private:
    data::impl::ArrayImpl* array_;
};

/// Implemented beside the interface of the array's kind. Slots are counted from 0; the array in each may be shared with
/// handles and other holders.
class ArrayHolder {
public:
    virtual std::size_t numberOfSlots() const noexcept = 0;
    virtual data::impl::ArrayImpl& heldIn(std::size_t slot) const noexcept = 0;
    /// Puts a copy into the slot unless the array there is the slot's alone.
    virtual void makePrivate(std::size_t slot) = 0;
    virtual void put(std::size_t slot, Held array) = 0;

protected:
    ~ArrayHolder() = default;
};

/// A new chain into the array in a slot, one reference for the caller. Before a write that array is made the slot's alone,
/// even when the chain was made for reading: then it moves to the copy.
data::detail::ReferenceImpl* referenceInto(ArrayHolder& holder, std::size_t slot, bool forWrite);

/// `array` for a slot of the array or object `target`. When `target` lies in `array`, at any depth, a copy that shares no
/// holder with it: `target` would own itself otherwise.
Held storable(data::impl::ArrayImpl& array, const void* target);
/// The same for an object that becomes an element of the array `target`.
foundation::vexadata::HandleObjectRef storable(foundation::vexadata::HandleObjectRef object,
                                               const void* target);

} // namespace vexa::client
