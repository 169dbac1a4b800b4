#include "ArrayHolder.hpp"

namespace vexa::client {

using data::detail::ReferenceImpl;
using data::impl::ArrayImpl;
using foundation::vexadata::ArrayType;

namespace {

class SlotReference final : public ReferenceImpl {
public:
    SlotReference(ArrayHolder& holder, std::size_t slot, bool forWrite) : holder_(holder), slot_(slot) {
        if (forWrite) {
            holder_.makePrivate(slot_);
        }
        const ArrayImpl& held = holder_.heldIn(slot_);
        bind(held.getDimensions(), held.getMemoryLayout());
    }

    ArrayImpl* getArrayImpl() const override { return &holder_.heldIn(slot_); }
    void prepareForWrite() override {
        holder_.makePrivate(slot_);
        holder_.heldIn(slot_).unshare();
    }

private:
    ArrayHolder& holder_;
    std::size_t slot_;
};

/// Null for arrays that hold none, and for those of other back-ends.
ArrayHolder* asHolder(ArrayImpl& array) {
    const ArrayType type = array.getType();
    return type == ArrayType::CELL || type == ArrayType::STRUCT ? dynamic_cast<ArrayHolder*>(&array)
                                                                : nullptr;
}

/// True when `target` is `array` or lies in it at any depth.
bool reaches(ArrayImpl& array, const ArrayImpl& target) {
    if (&array == &target) {
        return true;
    }
    const ArrayHolder* holder = asHolder(array);
    const std::size_t slots = holder == nullptr ? 0 : holder->numberOfSlots();
    for (std::size_t slot = 0; slot < slots; ++slot) {
        if (reaches(holder->heldIn(slot), target)) {
            return true;
        }
    }
    return false;
}

/// A copy of `array` that shares no holder with it, at any depth.
Held separateCopy(const ArrayImpl& array) {
    Held copy(array.sharedCopy());
    if (ArrayHolder* holder = asHolder(*copy)) {
        for (std::size_t slot = 0; slot < holder->numberOfSlots(); ++slot) {
            ArrayImpl& held = holder->heldIn(slot);
            if (asHolder(held) != nullptr) {
                holder->put(slot, separateCopy(held));
            }
        }
    }
    return copy;
}

} // namespace

ReferenceImpl* referenceInto(ArrayHolder& holder, std::size_t slot, bool forWrite) {
    return new SlotReference(holder, slot, forWrite);
}

Held storable(ArrayImpl& array, const ArrayImpl& target) {
    if (reaches(array, target)) {
        return separateCopy(array);
    }
    array.retain();
    return Held(&array);
}

} // namespace vexa::client
