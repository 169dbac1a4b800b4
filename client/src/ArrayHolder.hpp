// What holds arrays: cells, structs, and the properties of objects and of their arrays. An array comes to lie
// in itself only through one of these, so that here every array that is stored is looked into first, and
// copied where that would happen.
#pragma once

#include <foundation/vexadata/Object.hpp>
#include <vexa/data/detail/CountedPtr.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>

namespace vexa::client {

/// An array that is held; never null but after a move.
using Held = data::detail::CountedPtr<data::impl::ArrayImpl>;

/// Whether arrays of this type can hold other arrays.
inline bool canHold(foundation::vexadata::ArrayType type) noexcept {
    using foundation::vexadata::ArrayType;
    return type == ArrayType::CELL || type == ArrayType::STRUCT ||
           foundation::vexadata::detail::acceptsType<foundation::vexadata::ValueObject>(type);
}

class ArrayHolder;

/// What an array or object holds: the places of its own, and objects with places of theirs.
struct Contents {
    /// The cells or fields; the properties of an object, or of an array of objects.
    ArrayHolder& places;
    /// The elements of an array of objects, empty handles among them.
    std::span<foundation::vexadata::HandleObjectRef> objects;
};

/// An array or object of this back-end that holds arrays. Whoever follows them to any depth asks this and
/// knows no class of arrays.
class Container {
public:
    virtual Contents contents() noexcept = 0;

protected:
    ~Container() = default;
};

/// Places with an array each, counted from 0; the arrays may be shared with handles and other holders.
/// Remembers what spares most searches: whether it ever came into another holder, and which of its places
/// ever held what can hold arrays itself.
class ArrayHolder : public Container {
public:
    Contents contents() noexcept override { return {*this, {}}; }
    virtual std::size_t numberOfPlaces() const noexcept = 0;
    virtual data::impl::ArrayImpl& heldIn(std::size_t place) const noexcept = 0;
    /// Whether the array in the place has another owner.
    virtual bool isShared(std::size_t place) const noexcept = 0;
    /// Replaces the array in the place by a copy when it has another owner.
    void makePrivate(std::size_t place) {
        if (isShared(place)) {
            put(place, Held(heldIn(place).sharedCopy()));
        }
    }
    void put(std::size_t place, Held array) {
        note(place, *array);
        replace(place, std::move(array));
    }

    /// False when no array or object has ever held the one that these places belong to.
    bool isHeld() const noexcept { return isHeld_.load(std::memory_order_relaxed); }
    /// Constant: arrays that are shared between threads are stored on any of them.
    void setHeld() const noexcept { isHeld_.store(true, std::memory_order_relaxed); }
    bool hasNested() const noexcept { return firstNested_ < endNested_; }
    /// No place before this one, and none from `endNested` on, has an array that can hold others.
    std::size_t firstNested() const noexcept { return firstNested_; }
    std::size_t endNested() const noexcept { return endNested_; }

protected:
    ArrayHolder() noexcept = default;
    /// A copy is not held yet.
    ArrayHolder(const ArrayHolder& other) noexcept
        : firstNested_(other.firstNested_), endNested_(other.endNested_) {}
    ArrayHolder& operator=(const ArrayHolder&) = delete;
    ~ArrayHolder() = default;

private:
    virtual void replace(std::size_t place, Held array) = 0;
    void note(std::size_t place, data::impl::ArrayImpl& array) noexcept;

    mutable std::atomic<bool> isHeld_{false};
    std::size_t firstNested_ = std::numeric_limits<std::size_t>::max();
    std::size_t endNested_ = 0;
};

/// A new chain into the array in a place, one reference for the caller. Before a write that array is made the
/// place's alone, even when the chain was made for reading: then it moves to the copy.
data::detail::ReferenceImpl* referenceInto(ArrayHolder& holder, std::size_t place, bool forWrite);

/// `array` for a place of `target`. When `target` is in `array`, at any depth, a copy that shares no holder
/// with it: `target` would own itself otherwise. Looks for it only when somebody holds `target`, once into
/// everything that can hold arrays.
Held storable(data::impl::ArrayImpl& array, const ArrayHolder& target);
/// The same for an object that becomes an element of the array whose properties are `target`.
foundation::vexadata::HandleObjectRef storable(foundation::vexadata::HandleObjectRef object,
                                               const ArrayHolder& target);

} // namespace vexa::client
