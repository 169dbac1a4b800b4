#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ElementPosition.hpp>

namespace foundation::vexadata::detail {

ReferenceImpl& ElementPosition::makeChain() const {
    if (chain_ == nullptr) {
        using vexa::data::detail::ArrayReferenceImpl;
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

template <class T>
bool copyScalar(ArrayType type, const ElementPosition& from, const ElementPosition& to) {
    if (type != arrayTypeOf<T>) {
        return false;
    }
    to.setValue<T>(from.value<T>());
    return true;
}

template <class... T>
struct ScalarTypes {
    static bool copy(ArrayType type, const ElementPosition& from, const ElementPosition& to) {
        return (copyScalar<T>(type, from, to) || ...);
    }
};

using AllScalars =
    ScalarTypes<bool, char16_t, double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t,
                std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, std::complex<double>,
                std::complex<float>, std::complex<std::int8_t>, std::complex<std::uint8_t>,
                std::complex<std::int16_t>, std::complex<std::uint16_t>, std::complex<std::int32_t>,
                std::complex<std::uint32_t>, std::complex<std::int64_t>, std::complex<std::uint64_t>>;

} // namespace

void copyElement(const ElementPosition& from, const ElementPosition& to) {
    const ArrayType type = from.array()->getType();
    if (!isPrimitive(type)) {
        storeArray(to.chain(), castTo<Array, true>(from.chain()));
        return;
    }
    if (to.array()->getType() != type) {
        raise<TypeMismatchException>();
    }
    AllScalars::copy(type, from, to);
}

} // namespace foundation::vexadata::detail
