// Positions that are not reached inline: other layouts and numbers of dimensions, shared chains, and matrices
// in fields of records. The state machine is described in ElementPosition.hpp.
#include "FieldReference.hpp"

#include <foundation/vexadata/detail/ByKind.hpp>
#include <foundation/vexadata/detail/ElementPosition.hpp>
#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/data/impl/InPlaceStructImpl.hpp>

namespace foundation::vexadata::detail {

namespace rules = vexa::data::detail;

namespace {

/// Positions in place are made without dimensions; they are asked for when something needs them.
const std::vector<std::size_t>& dimensionsOf(const ArrayImpl* array, const std::vector<std::size_t>* known) {
    return known != nullptr ? *known : array->getDimensions();
}

/// Extents of a column-major matrix of primitive elements of a recognised class; no rows for all other
/// arrays.
struct PlainMatrix {
    std::size_t rows = 0;
    std::size_t columns = 0;
    ArrayType type = ArrayType::UNKNOWN;
};

template <class T>
bool isPlainMatrixOf(const ArrayImpl& array, PlainMatrix& found) noexcept {
    if (!InPlaceClass<T>::recognises(array)) {
        return false;
    }
    const auto& matrix = static_cast<const typename InPlaceClass<T>::Base&>(array).inPlace();
    found = {matrix.rows, matrix.columns, arrayTypeOf<T>};
    return true;
}

PlainMatrix plainMatrixOf(const ArrayImpl& array) {
    PlainMatrix found;
    if (!isPlainMatrixOf<double>(array, found)) {
        withPrimitive(array.getType(),
                      [&](auto tag) { isPlainMatrixOf<typename decltype(tag)::type>(array, found); });
    }
    return found;
}

} // namespace

ElementPosition ElementPosition::inside(std::shared_ptr<ReferenceImpl>& chain, std::size_t index) {
    if (isExactly<FieldReference>(*chain)) {
        const auto& field = static_cast<const FieldReference&>(*chain);
        ArrayImpl* const records = field.getArrayImpl();
        if (InPlaceClass<StructElement>::recognises(*records) && !field.stringIndex().empty()) {
            ArrayImpl* const* place =
                static_cast<vexa::data::impl::InPlaceStructImpl*>(records)->getFieldPlace(
                    field.record(), field.stringIndex());
            const PlainMatrix matrix = plainMatrixOf(**place);
            if (matrix.rows != 0 && (*place)->referenceCount() == 1) {
                ElementPosition position(*place, reinterpret_cast<const std::vector<std::size_t>*>(place),
                                         insideOf(matrix.type), 1, index);
                position.indices_[1] = matrix.rows;
                position.indices_[2] = matrix.columns;
                position.chain_ = chain.get();
                position.chain_->retain();
                return position;
            }
        }
    }
    return ElementPosition(createReferenceWithIndex<false>(chain, index));
}

ReferenceImpl& ElementPosition::settled() const {
    const ArrayImpl& array = **place();
    if (insideOf(array.getType()) != way_) {
        raise<TypeMismatchException>();
    }
    if (array.getDimensions() != std::vector<std::size_t>{indices_[1], indices_[2]}) {
        raise<EArrayIndexOutOfRange>();
    }
    chain_->retain();
    std::shared_ptr<ReferenceImpl> field = Access::createSharedPtr(chain_);
    const std::shared_ptr<ReferenceImpl> element = createReferenceWithIndex<false>(field, indices_[0]);
    if (count_ == resolved) {
        element->getLinearIndex();
    }
    element->retain();
    std::exchange(chain_, element.get())->release();
    way_ = Way::OTHER;
    return *chain_;
}

ReferenceImpl& ElementPosition::makeChain() const {
    if (isInside()) {
        return settled();
    }
    if (chain_ == nullptr) {
        using vexa::data::detail::ArrayReferenceImpl;
        if (count_ == known) {
            chain_ = new vexa::data::detail::IteratorReference(array_, indices_[0]);
            return *chain_;
        }
        auto fresh =
            std::make_unique<ArrayReferenceImpl>(array_, dimensionsOf(array_, dimensions_), layoutOf(way_));
        for (std::uint64_t k = 0; k < count_; ++k) {
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

/// The position in storage; a single index into a matrix is spread over its row or column before.
std::uint64_t ElementPosition::indexOf(Parts& position) {
    if (position.count == known) {
        return position.indices[0];
    }
    const std::vector<std::size_t>& dimensions = dimensionsOf(position.array, position.dimensions);
    if (rules::isSingleIndexIntoMatrix(dimensions, position.count)) {
        rules::spreadSingleIndex(dimensions, position.indices);
        position.count = 2;
    }
    if (position.count < dimensions.size()) {
        raise<NotEnoughIndicesProvidedException>();
    }
    return rules::positionOf(dimensions, position.indices, layoutOf(position.way));
}

ElementPosition::Target ElementPosition::targetOf(Parts position) {
    const std::uint64_t index = indexOf(position);
    return {position.array, index, &noFieldName, position.count, position.indices[0], position.indices[1]};
}

ElementPosition::Target ElementPosition::targetOf(ReferenceImpl& chain, ArrayImpl* array) {
    return {array, chain.getLinearIndex(), &chain.stringIndex(), 0, 0, 0};
}

/// Serves reads and writes: such a position comes from a writable handle only.
ElementPosition::Target ElementPosition::settledTarget(Parts position) {
    position.chain->retain();
    const ElementPosition copy(position);
    ReferenceImpl& element = copy.settled();
    return {detail::arrayForWrite(element), element.getLinearIndex(), &noFieldName, 0, 0, 0};
}

ElementPosition::Target ElementPosition::resolve(Parts position) {
    if (position.chain == nullptr) {
        return targetOf(position);
    }
    if (position.way >= Way::INSIDE) {
        return settledTarget(position);
    }
    return targetOf(*position.chain, position.chain->getArrayImpl());
}

ElementPosition::Target ElementPosition::resolveForWrite(Parts position) {
    if (position.chain != nullptr) {
        return position.way >= Way::INSIDE
                   ? settledTarget(position)
                   : targetOf(*position.chain, detail::arrayForWrite(*position.chain));
    }
    if (position.count != known) {
        position.array->unshare();
    }
    return targetOf(position);
}

bool ElementPosition::takesFirst(const std::vector<std::size_t>& dimensions, std::size_t index) noexcept {
    return !rules::rules::hasNoElements(dimensions) && (!dimensions.empty() || index == 0);
}

void ElementPosition::raiseFirst(const std::vector<std::size_t>& dimensions, std::size_t index) {
    rules::checkAppend(dimensions, 0, index);
    raise<TooManyIndicesProvidedException>();
}

bool ElementPosition::takesFurther(const ArrayImpl* array, const std::vector<std::size_t>* dimensions,
                                   std::uint64_t count, std::size_t index) noexcept {
    return index == 0 || count < dimensionsOf(array, dimensions).size();
}

ReferenceImpl* ElementPosition::longerChain(Parts position, std::size_t index) {
    if (position.way >= Way::INSIDE) {
        const ElementPosition field(position);
        try {
            ElementPosition longer(field);
            longer.settled();
            longer.appendToChain(index);
            return std::exchange(longer.chain_, nullptr);
        } catch (...) {
            position.chain->retain(); // the caller goes on owning it
            throw;
        }
    }
    ElementPosition longer(position);
    try {
        longer.appendToChain(index);
    } catch (...) {
        if (position.chain != nullptr) {
            longer.chain_ = nullptr; // the caller goes on owning it
        }
        throw;
    }
    return std::exchange(longer.chain_, nullptr);
}

void ElementPosition::appendToChain(std::size_t index) {
    const bool needsNone =
        chain_ == nullptr ? count_ == known : chain_->indexCount() == 0 && chain_->isLinearIndexKnown();
    if (needsNone && fieldName().empty()) {
        if (index != 0) {
            raise<TooManyIndicesProvidedException>();
        }
        return;
    }
    if (makeChain().referenceCount() == 1) {
        chain_->addIndex(index);
        return;
    }
    const std::shared_ptr<ReferenceImpl> longer = copyChain(chain());
    longer->addIndex(index);
    longer->retain();
    std::exchange(chain_, longer.get())->release();
}

} // namespace foundation::vexadata::detail
