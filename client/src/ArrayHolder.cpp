#include "ArrayHolder.hpp"

#include "ObjectArray.hpp"

#include <foundation/vexadata/TypeInformation.hpp>

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::detail::ReferenceImpl;
using fv::detail::Access;

namespace {

/// Stands for whatever lies in the slot. Once it has indices it means an element of the array that lay there
/// when it was made: in an array of another kind or shape they mean nothing.
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

ObjectArray* asObjects(ArrayImpl& array) {
    return fv::detail::acceptsType<fv::ValueObject>(array.getType())
               ? fv::detail::dynamicCast<ObjectArray>(&array)
               : nullptr;
}
/// The slots of a cell or struct, the properties of an array of objects; null for arrays that hold none, and
/// for those of other back-ends.
ArrayHolder* slotsOf(ArrayImpl& array) {
    if (!canHold(array.getType())) {
        return nullptr;
    }
    if (ObjectArray* objects = asObjects(array)) {
        return &objects->properties();
    }
    return fv::detail::dynamicCast<ArrayHolder>(&array);
}

/// Calls `visit` for the slots of `array` and for those of its objects.
template <class Visit>
void forEachHolder(ArrayImpl& array, Visit visit) {
    if (ArrayHolder* slots = slotsOf(array)) {
        visit(*slots);
    }
    if (ObjectArray* objects = asObjects(array)) {
        for (std::size_t k = 0; k < objects->getNumberOfElements(); ++k) {
            if (Instance* object = objects->objectIn(k)) {
                visit(object->properties());
            }
        }
    }
}

/// Looks for `target` at any depth, into everything once.
class Search {
public:
    explicit Search(const ArrayHolder& target) : target_(target) {}

    bool reachesFrom(ArrayImpl& array) {
        enter(array);
        return finds();
    }
    bool reachesFrom(ArrayHolder& holder) {
        enter(holder);
        return finds();
    }

private:
    bool finds() {
        while (!found_ && !open_.empty()) {
            const ArrayHolder& holder = *open_.back();
            open_.pop_back();
            for (std::size_t slot = holder.firstNested(); slot < holder.endNested(); ++slot) {
                enter(holder.heldIn(slot));
            }
        }
        return found_;
    }
    void enter(ArrayImpl& array) {
        forEachHolder(array, [this](ArrayHolder& holder) { enter(holder); });
    }
    void enter(ArrayHolder& holder) {
        found_ = found_ || &holder == &target_;
        if (holder.hasNested() && visited_.insert(&holder).second) {
            open_.push_back(&holder);
        }
    }

    const ArrayHolder& target_;
    bool found_ = false;
    std::unordered_set<const ArrayHolder*> visited_;
    std::vector<const ArrayHolder*> open_;
};

/// Copies arrays and objects so that they share no holder with the originals, at any depth. What the originals
/// share among each other, the copies do too.
class SeparateCopies {
public:
    Held of(const ArrayImpl& array) {
        Held copy = copyOf(array);
        separateAll();
        return copy;
    }
    fv::HandleObjectRef of(const Instance& object) {
        const fv::HandleObjectRef copy = copyOf(object);
        separateAll();
        return copy;
    }

private:
    void separateAll() {
        while (!open_.empty()) {
            ArrayHolder& holder = *open_.back();
            open_.pop_back();
            for (std::size_t slot = holder.firstNested(); slot < holder.endNested(); ++slot) {
                if (slotsOf(holder.heldIn(slot)) != nullptr) {
                    holder.put(slot, copyOf(holder.heldIn(slot)));
                }
            }
        }
    }
    Held copyOf(const ArrayImpl& array) {
        const auto known = arrays_.find(&array);
        if (known != arrays_.end()) {
            return known->second;
        }
        Held copy(array.sharedCopy());
        arrays_.emplace(&array, copy);
        open_.push_back(slotsOf(*copy));
        if (ObjectArray* objects = asObjects(*copy)) {
            for (std::size_t k = 0; k < objects->getNumberOfElements(); ++k) {
                if (const Instance* object = objects->objectIn(k)) {
                    objects->put(k, copyOf(*object));
                }
            }
        }
        return copy;
    }
    fv::HandleObjectRef copyOf(const Instance& object) {
        fv::HandleObjectRef& copy = objects_[&object];
        if (Access::impl(copy) == nullptr) {
            copy = fv::HandleObjectRef(object.sharedCopy());
            open_.push_back(&dynamic_cast<Instance&>(*Access::impl(copy)).properties());
        }
        return copy;
    }

    std::unordered_map<const ArrayImpl*, Held> arrays_;
    std::unordered_map<const Instance*, fv::HandleObjectRef> objects_;
    std::vector<ArrayHolder*> open_;
};

} // namespace

void ArrayHolder::note(std::size_t slot, ArrayImpl& array) noexcept {
    if (!canHold(array.getType())) {
        return;
    }
    if (const ArrayHolder* slots = slotsOf(array)) {
        slots->setHeld();
    }
    firstNested_ = std::min(firstNested_, slot);
    endNested_ = std::max(endNested_, slot + 1);
}

ReferenceImpl* referenceInto(ArrayHolder& holder, std::size_t slot, bool forWrite) {
    return new SlotReference(holder, slot, forWrite);
}

Held storable(ArrayImpl& array, const ArrayHolder& target) {
    const ArrayHolder* slots = slotsOf(array);
    if (slots != nullptr && (slots == &target || (target.isHeld() && Search(target).reachesFrom(array)))) {
        return SeparateCopies().of(array);
    }
    array.retain();
    return Held(&array);
}

fv::HandleObjectRef storable(fv::HandleObjectRef object, const ArrayHolder& target) {
    auto* instance = fv::detail::dynamicCast<Instance>(Access::impl(object).get());
    if (instance != nullptr && target.isHeld() && Search(target).reachesFrom(instance->properties())) {
        return SeparateCopies().of(*instance);
    }
    return object;
}

} // namespace vexa::client
