#include "../core/ByType.hpp"

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ElementPosition.hpp>
#include <foundation/vexadata/StructElement.hpp>

namespace foundation::vexadata::detail {

ReferenceImpl& ElementPosition::makeChain() const {
    if (chain_ == nullptr) {
        using vexa::data::detail::ArrayReferenceImpl;
        if (count_ == known) {
            chain_ = new vexa::data::detail::IteratorReference(array_, indices_[0]);
            return *chain_;
        }
        auto fresh = std::make_unique<ArrayReferenceImpl>(array_, *dimensions_, layout_);
        for (std::uint32_t k = 0; k < count_; ++k) {
            fresh->addIndex(indices_[k]);
        }
        chain_ = fresh.release();
    }
    return *chain_;
}

std::shared_ptr<ReferenceImpl> ElementPosition::chain() const {
    makeChain().retain();
    return Access::createSharedPtr(chain_);
}

std::size_t ElementPosition::positionOf(const std::vector<std::size_t>& dimensions, std::size_t first,
                                        std::size_t second, std::size_t third,
                                        vexa::data::MemoryLayout layout) {
    const std::uint64_t indices[capacity] = {first, second, third};
    return vexa::data::detail::positionOf(dimensions, indices, layout);
}

void ElementPosition::appendToChain(std::size_t index) {
    if (makeChain().referenceCount() == 1) {
        chain_->addIndex(index);
        return;
    }
    const std::shared_ptr<ReferenceImpl> longer = copyChain(chain());
    longer->addIndex(index);
    longer->retain();
    std::exchange(chain_, longer.get())->release();
}

namespace {

/// Copies an element of an array of `type`, both with values and no arrays; false for other kinds.
bool copyValue(ArrayType type, const ElementPosition& from, const ElementPosition& to) {
    const auto copy = [&](auto zero) { to.setValue<decltype(zero)>(from.value<decltype(zero)>()); };
    if (type == ArrayType::STRING) {
        copy(String());
        return true;
    }
    if (type == ArrayType::ENUM) {
        copy(Enumeration());
        return true;
    }
    return withPrimitive(type, copy);
}

} // namespace

void copyElement(const ElementPosition& from, const ElementPosition& to) {
    const ArrayType type = from.array()->getType();
    if (to.array()->getType() == type && from.fieldName().empty() && to.fieldName().empty()) {
        if (copyValue(type, from, to)) {
            return;
        }
        if (type == ArrayType::STRUCT) {
            storeRecord(to, valuesOf(from));
            return;
        }
    }
    storeArray(to.chain(), castTo<Array, true>(from.chain()));
}

ElementPosition elementInCell(const ElementPosition& position, bool forWrite) {
    if (position.array()->getType() != ArrayType::CELL) {
        raise<TypeMismatchException>();
    }
    const std::array<std::uint64_t, 2> indices = position.twoIndicesIntoVector();
    if (forWrite) {
        position.prepareForWrite();
    }
    ArrayImpl* cells = position.array();
    const std::size_t cell = ElementPosition::first(cells, indices[0]).linearIndex();
    ReferenceImpl* inner = cells->createElementReference(cell, noFieldName, forWrite);
    if (inner == nullptr) {
        raise<NotEnoughIndicesProvidedException>();
    }
    ElementPosition element = ElementPosition::adopt(inner);
    element.append(indices[1]);
    return element;
}

std::array<std::uint64_t, 2> ElementPosition::twoIndicesIntoVector() const {
    const std::uint64_t count = chain_ == nullptr ? count_ : chain_->indexCount();
    if (count != 2 || !fieldName().empty()) {
        raise<TypeMismatchException>();
    }
    const std::vector<std::size_t>& dimensions = chain_ == nullptr ? *dimensions_ : chain_->dimensions();
    if (dimensions.size() != 2 || (dimensions[0] != 1 && dimensions[1] != 1)) {
        raise<TypeMismatchException>();
    }
    const std::uint64_t* indices = chain_ == nullptr ? indices_ : chain_->indices();
    return {indices[0], indices[1]};
}

} // namespace foundation::vexadata::detail
