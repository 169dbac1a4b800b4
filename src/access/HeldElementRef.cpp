// Elements of an array that lies in a cell or field: by the address that a cell array gives, for a write only
// when the array there has no other owner; through a chain of the back-end otherwise.
#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/HeldElementRef.hpp>

namespace foundation::vexadata::detail {

namespace {

/// The array in a cell, borrowed from the cell array; null for elements of other kinds of arrays, for which
/// the back-end makes a chain.
const std::shared_ptr<ArrayImpl>* inCell(const ElementPosition& holder) {
    ArrayImpl* array = holder.array();
    if (array->getType() != ArrayType::CELL || !holder.fieldName().empty()) {
        return nullptr;
    }
    const Array* cell = static_cast<TypedArrayImpl<Array>&>(*array).getElementAddress(holder.linearIndex(),
                                                                                      noFieldName, false);
    return cell == nullptr || Access::impl(*cell) == nullptr ? nullptr : &Access::impl(*cell);
}

/// A chain without indices into the array that the element holds.
ElementPosition chainInto(const ElementPosition& holder, bool forWrite) {
    ArrayImpl* array = forWrite ? holder.arrayForWrite() : holder.array();
    ReferenceImpl* chain = array->createElementReference(holder.linearIndex(), holder.fieldName(), forWrite);
    if (chain == nullptr) {
        raise<NotEnoughIndicesProvidedException>();
    }
    return ElementPosition::adopt(chain);
}

} // namespace

void HeldPosition::appendFurther(std::size_t index) {
    if (count_ != resolved) {
        holder_ = kept();
        count_ = resolved;
    }
    holder_.append(index);
}

ElementPosition HeldPosition::forRead() const {
    if (count_ == resolved) {
        return holder_;
    }
    const auto* array = inCell(holder_);
    return array == nullptr ? withIndices(chainInto(holder_, false))
                            : withIndices(ElementPosition::first(array->get(), indices_[0]));
}

ElementPosition HeldPosition::forWrite() const {
    if (count_ == resolved) {
        return holder_;
    }
    holder_.prepareForWrite();
    const auto* array = inCell(holder_);
    return array == nullptr || !Access::isPrivate(*array)
               ? kept()
               : withIndices(ElementPosition::first(array->get(), indices_[0]));
}

ElementPosition HeldPosition::kept() const {
    return count_ == resolved ? holder_ : withIndices(chainInto(holder_, writable_));
}

/// Appends the indices that `position` lacks: all when it is a chain, all but the first when it holds its
/// index in place.
ElementPosition HeldPosition::withIndices(ElementPosition position) const {
    for (std::uint32_t k = position.hasChain() ? 0 : 1; k < count_; ++k) {
        position.append(indices_[k]);
    }
    return position;
}

ArrayImpl* shareInPlace(const ElementPosition& cell) noexcept {
    const Array* array = cell.tryInPlace<Array>();
    if (array == nullptr || Access::impl(*array) == nullptr) {
        return nullptr;
    }
    Access::impl(*array)->retain();
    return Access::impl(*array).get();
}

} // namespace foundation::vexadata::detail
