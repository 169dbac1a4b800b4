#include <foundation/vexadata/ElementPosition.hpp>

namespace foundation::vexadata::detail {

namespace rules = vexa::data::detail;

namespace {

/// Those that were not needed so far are asked for.
const std::vector<std::size_t>& dimensionsOf(const ArrayImpl* array, const std::vector<std::size_t>* known) {
    return known != nullptr ? *known : array->getDimensions();
}

} // namespace

ReferenceImpl& ElementPosition::makeChain() const {
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

ElementPosition::Target ElementPosition::resolve(Parts position) {
    return position.chain == nullptr ? targetOf(position)
                                     : targetOf(*position.chain, position.chain->getArrayImpl());
}

ElementPosition::Target ElementPosition::resolveForWrite(Parts position) {
    if (position.chain != nullptr) {
        return targetOf(*position.chain, detail::arrayForWrite(*position.chain));
    }
    if (position.count != known) {
        position.array->unshare();
    }
    return targetOf(position);
}

void ElementPosition::checkFirst(const std::vector<std::size_t>& dimensions, std::size_t index) {
    rules::checkAppend(dimensions, 0, index);
}

void ElementPosition::checkFurther(const ArrayImpl* array, const std::vector<std::size_t>* dimensions,
                                   std::uint64_t count, std::size_t index) {
    rules::checkAppend(dimensionsOf(array, dimensions), count, index);
}

ReferenceImpl* ElementPosition::longerChain(Parts position, std::size_t index) {
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
