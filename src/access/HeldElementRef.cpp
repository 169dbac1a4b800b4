#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/HeldElementRef.hpp>

namespace foundation::vexadata::detail {

namespace {

/// The array in a cell, borrowed from the cell array; null for elements of other arrays, whose back-end has to
/// be asked for a chain.
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

/// `position` has the first index already when it is in place, and none when it is a chain.
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
