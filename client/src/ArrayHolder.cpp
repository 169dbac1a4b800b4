#include "ArrayHolder.hpp"

#include <algorithm>

namespace vexa::client {

using data::detail::ReferenceImpl;
using foundation::vexadata::ArrayType;
using foundation::vexadata::detail::Access;

namespace {

class SlotReference final : public ReferenceImpl {
public:
    SlotReference(Array& slot, bool forWrite) : slot_(slot) {
        if (forWrite) {
            Access::unshare(slot_);
        }
        const data::impl::ArrayImpl& held = *Access::impl(slot_);
        bind(held.getDimensions(), held.getMemoryLayout());
    }

    data::impl::ArrayImpl* getArrayImpl() const override { return Access::impl(slot_).get(); }
    void prepareForWrite() override {
        Access::unshare(slot_);
        Access::impl(slot_)->unshare();
    }

private:
    Array& slot_;
};

/// Null for arrays that hold none, and for those of other back-ends.
ArrayHolder* asHolder(data::impl::ArrayImpl& array) {
    const ArrayType type = array.getType();
    return type == ArrayType::CELL || type == ArrayType::STRUCT ? dynamic_cast<ArrayHolder*>(&array)
                                                                : nullptr;
}

/// True when `target` is `array` or lies in it at any depth.
bool reaches(data::impl::ArrayImpl& array, const data::impl::ArrayImpl& target) {
    if (&array == &target) {
        return true;
    }
    ArrayHolder* holder = asHolder(array);
    return holder != nullptr && std::any_of(holder->slots().begin(), holder->slots().end(), [&](Array& held) {
               return reaches(*Access::impl(held), target);
           });
}

/// A copy of `array` that shares no holder with it, at any depth.
Array separateCopy(const data::impl::ArrayImpl& array) {
    Array copy(array.sharedCopy());
    if (ArrayHolder* holder = asHolder(*Access::impl(copy))) {
        for (Array& held : holder->slots()) {
            if (asHolder(*Access::impl(held)) != nullptr) {
                held = separateCopy(*Access::impl(held));
            }
        }
    }
    return copy;
}

} // namespace

ReferenceImpl* referenceInto(Array& slot, bool forWrite) { return new SlotReference(slot, forWrite); }

Array storable(data::impl::ArrayImpl& array, const data::impl::ArrayImpl& holder) {
    if (reaches(array, holder)) {
        return separateCopy(array);
    }
    array.retain();
    return Array(&array);
}

} // namespace vexa::client
