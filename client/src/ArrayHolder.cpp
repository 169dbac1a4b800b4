#include "ArrayHolder.hpp"

#include "ObjectArray.hpp"

#include <unordered_set>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::detail::ReferenceImpl;
using fv::detail::Access;

namespace {

/// Stands for whatever lies in the slot. Once it has indices it means an element of the array that lay there when it was made:
/// in an array of another kind or shape they mean nothing.
class SlotReference final : public ReferenceImpl {
public:
    SlotReference(ArrayHolder& holder, std::size_t slot, bool forWrite) : holder_(holder), slot_(slot) {
        if (forWrite) {
            holder_.makePrivate(slot_);
        }
        const ArrayImpl& held = holder_.heldIn(slot_);
        type_ = held.getType();
        bind(held.getDimensions(), held.getMemoryLayout());
    }

    std::uint64_t getLinearIndex(bool unshare) override {
        const ArrayImpl& held = holder_.heldIn(slot_);
        if (held.getType() != type_) {
            fv::detail::raise<fv::TypeMismatchException>();
        }
        fv::detail::requireShape(*this, held);
        return ReferenceImpl::getLinearIndex(unshare);
    }

    ArrayImpl* getArrayImpl() const override { return &holder_.heldIn(slot_); }
    void prepareForWrite() override {
        holder_.makePrivate(slot_);
        holder_.heldIn(slot_).unshare();
    }

private:
    ArrayHolder& holder_;
    std::size_t slot_;
    ArrayType type_;
};

/// Null for arrays that hold none, and for those of other back-ends.
ArrayHolder* asHolder(ArrayImpl& array) {
    const ArrayType type = array.getType();
    return type == ArrayType::CELL || type == ArrayType::STRUCT ? dynamic_cast<ArrayHolder*>(&array)
                                                                : nullptr;
}
ObjectArray* asObjects(ArrayImpl& array) {
    return fv::detail::acceptsType<fv::ValueObject>(array.getType()) ? dynamic_cast<ObjectArray*>(&array)
                                                                     : nullptr;
}

/// Looks for `target` in arrays at any depth. What many paths lead to is looked into once.
class Search {
public:
    explicit Search(const void* target) : target_(target) {}

    bool reaches(ArrayImpl& array) {
        if (&array == target_) {
            return true;
        }
        if (const ArrayHolder* holder = asHolder(array)) {
            return visited_.insert(&array).second && anyReaches(*holder);
        }
        ObjectArray* objects = asObjects(array);
        return objects != nullptr && visited_.insert(&array).second && objectsReach(*objects);
    }
    bool anyReaches(const ArrayHolder& holder) {
        for (std::size_t slot = 0; slot < holder.numberOfSlots(); ++slot) {
            if (reaches(holder.heldIn(slot))) {
                return true;
            }
        }
        return false;
    }

private:
    bool objectsReach(ObjectArray& objects) {
        for (std::size_t k = 0; k < objects.getNumberOfElements(); ++k) {
            Instance* object = objects.objectIn(k);
            if (object != nullptr && (static_cast<data::impl::ObjectImpl*>(object) == target_ ||
                                      anyReaches(object->properties()))) {
                return true;
            }
        }
        return anyReaches(objects.properties());
    }

    const void* target_;
    std::unordered_set<const ArrayImpl*> visited_;
};

Held separateCopy(const ArrayImpl& array);

void separateSlots(ArrayHolder& holder) {
    for (std::size_t slot = 0; slot < holder.numberOfSlots(); ++slot) {
        ArrayImpl& held = holder.heldIn(slot);
        if (asHolder(held) != nullptr || asObjects(held) != nullptr) {
            holder.put(slot, separateCopy(held));
        }
    }
}

/// A copy of `array` that shares no holder with it, at any depth.
Held separateCopy(const ArrayImpl& array) {
    Held copy(array.sharedCopy());
    if (ArrayHolder* holder = asHolder(*copy)) {
        separateSlots(*holder);
    } else if (ObjectArray* objects = asObjects(*copy)) {
        separateSlots(objects->properties());
        for (std::size_t k = 0; k < objects->getNumberOfElements(); ++k) {
            if (objects->objectIn(k) != nullptr) {
                objects->separate(k);
                separateSlots(objects->objectIn(k)->properties());
            }
        }
    }
    return copy;
}

} // namespace

ReferenceImpl* referenceInto(ArrayHolder& holder, std::size_t slot, bool forWrite) {
    return new SlotReference(holder, slot, forWrite);
}

Held storable(ArrayImpl& array, const void* target) {
    if (Search(target).reaches(array)) {
        return separateCopy(array);
    }
    array.retain();
    return Held(&array);
}

fv::HandleObjectRef storable(fv::HandleObjectRef object, const void* target) {
    auto* instance = dynamic_cast<Instance*>(Access::impl(object).get());
    if (instance != nullptr && Search(target).anyReaches(instance->properties())) {
        object = fv::HandleObjectRef(instance->sharedCopy());
        separateSlots(dynamic_cast<Instance&>(*Access::impl(object)).properties());
    }
    return object;
}

} // namespace vexa::client
