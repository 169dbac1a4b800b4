// Keeping arrays from holding themselves: before an array is stored it is searched for the holder that
// receives it, and copied when that is found. Also the chains into places.
#include "ArrayHolder.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::detail::ReferenceImpl;
using data::impl::ArrayImpl;
using fv::ArrayType;
using fv::detail::Access;

namespace {

/// An index chain into the array in a place, whichever lies there at the time of use. Its indices were
/// checked against the array that lay there when the chain was made, so that they are refused when one of
/// another kind or shape has taken its place.
class PlaceReference final : public ReferenceImpl {
public:
    PlaceReference(ArrayHolder& holder, std::size_t place, bool forWrite) : holder_(holder), place_(place) {
        if (forWrite) {
            holder_.makePrivate(place_);
        }
        const ArrayImpl& held = holder_.heldIn(place_);
        type_ = held.getType();
        bind(held.getDimensions(), held.getMemoryLayout());
    }

    std::uint64_t getLinearIndex(bool unshare) override {
        const ArrayImpl& held = holder_.heldIn(place_);
        if (held.getType() != type_) {
            fv::detail::raise<fv::TypeMismatchException>();
        }
        fv::detail::requireShape(*this, held);
        return ReferenceImpl::getLinearIndex(unshare);
    }

    ArrayImpl* getArrayImpl() const override { return &holder_.heldIn(place_); }
    void prepareForWrite() override {
        holder_.makePrivate(place_);
        holder_.heldIn(place_).unshare();
    }

private:
    ArrayHolder& holder_;
    std::size_t place_;
    ArrayType type_;
};

/// Null for arrays that hold none, and for those of other back-ends.
Container* containerIn(ArrayImpl& array) noexcept {
    return canHold(array.getType()) ? fv::detail::dynamicCast<Container>(&array) : nullptr;
}
/// Null for no object, and for one of another back-end.
Container* containerIn(const fv::HandleObjectRef& object) noexcept {
    return fv::detail::dynamicCast<Container>(Access::impl(object).get());
}

/// Looks for `target` at any depth; visits every holder once.
class Search {
public:
    explicit Search(const ArrayHolder& target) : target_(target) {}

    bool reachesFrom(Container& container) {
        enter(container);
        while (!found_ && !open_.empty()) {
            const ArrayHolder& holder = *open_.back();
            open_.pop_back();
            for (std::size_t place = holder.firstNested(); place < holder.endNested(); ++place) {
                if (Container* nested = containerIn(holder.heldIn(place))) {
                    enter(*nested);
                }
            }
        }
        return found_;
    }

private:
    void enter(Container& container) {
        const Contents contents = container.contents();
        enter(contents.places);
        for (const fv::HandleObjectRef& object : contents.objects) {
            if (Container* properties = containerIn(object)) {
                enter(properties->contents().places);
            }
        }
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

/// Copies arrays and objects so that they share no holder with the originals, at any depth. What the
/// originals share among each other, the copies do too.
class SeparateCopies {
public:
    Held of(const ArrayImpl& array) {
        Held copy = copyOf(array);
        separateAll();
        return copy;
    }
    fv::HandleObjectRef of(const fv::HandleObjectRef& object) {
        const fv::HandleObjectRef copy = copyOf(object);
        separateAll();
        return copy;
    }

private:
    void separateAll() {
        while (!open_.empty()) {
            ArrayHolder& holder = *open_.back();
            open_.pop_back();
            for (std::size_t place = holder.firstNested(); place < holder.endNested(); ++place) {
                if (containerIn(holder.heldIn(place)) != nullptr) {
                    holder.put(place, copyOf(holder.heldIn(place)));
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
        const Contents contents = containerIn(*copy)->contents();
        open_.push_back(&contents.places);
        for (fv::HandleObjectRef& element : contents.objects) {
            if (containerIn(element) != nullptr) {
                element = copyOf(element);
                containerIn(element)->contents().places.setHeld();
            }
        }
        return copy;
    }
    /// Of an object of this back-end.
    fv::HandleObjectRef copyOf(const fv::HandleObjectRef& object) {
        fv::HandleObjectRef& copy = objects_[Access::impl(object).get()];
        if (Access::impl(copy) == nullptr) {
            copy = fv::HandleObjectRef(Access::impl(object)->sharedCopy());
            open_.push_back(&containerIn(copy)->contents().places);
        }
        return copy;
    }

    std::unordered_map<const ArrayImpl*, Held> arrays_;
    std::unordered_map<const data::impl::ObjectImpl*, fv::HandleObjectRef> objects_;
    std::vector<ArrayHolder*> open_;
};

} // namespace

void ArrayHolder::note(std::size_t place, ArrayImpl& array) noexcept {
    if (!canHold(array.getType())) {
        return;
    }
    if (Container* container = containerIn(array)) {
        container->contents().places.setHeld();
    }
    firstNested_ = std::min(firstNested_, place);
    endNested_ = std::max(endNested_, place + 1);
}

ReferenceImpl* referenceInto(ArrayHolder& holder, std::size_t place, bool forWrite) {
    return new PlaceReference(holder, place, forWrite);
}

Held storable(ArrayImpl& array, const ArrayHolder& target) {
    Container* const container = containerIn(array);
    if (container != nullptr && (&container->contents().places == &target ||
                                 (target.isHeld() && Search(target).reachesFrom(*container)))) {
        return SeparateCopies().of(array);
    }
    array.retain();
    return Held(&array);
}

fv::HandleObjectRef storable(fv::HandleObjectRef object, const ArrayHolder& target) {
    Container* const container = containerIn(object);
    if (container != nullptr && target.isHeld() && Search(target).reachesFrom(*container)) {
        return SeparateCopies().of(object);
    }
    return object;
}

} // namespace vexa::client
