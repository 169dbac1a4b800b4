#include <foundation/vexadata/ElementPosition.hpp>

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
