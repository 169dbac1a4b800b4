#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ElementPosition.hpp>

namespace foundation::vexadata::detail {

std::shared_ptr<ReferenceImpl>& ElementPosition::chain() const {
    if (chain_ == nullptr) {
        using vexa::data::detail::ArrayReferenceImpl;
        auto shared =
            Access::createSharedPtr<ReferenceImpl>(new ArrayReferenceImpl(array_, *dimensions_, layout_));
        for (std::uint32_t k = 0; k < count_; ++k) {
            shared->addIndex(indices_[k]);
        }
        chain_ = std::move(shared);
    }
    return chain_;
}

std::size_t ElementPosition::positionOf(const std::vector<std::size_t>& dimensions, std::size_t first,
                                        std::size_t second, std::size_t third,
                                        vexa::data::MemoryLayout layout) {
    const std::uint64_t indices[capacity] = {first, second, third};
    return vexa::data::detail::positionOf(dimensions, indices, layout);
}

void ElementPosition::appendToChain(std::size_t index) {
    std::shared_ptr<ReferenceImpl>& current = chain();
    if (current.use_count() == 1) {
        current->addIndex(index);
    } else {
        std::shared_ptr<ReferenceImpl> longer = copyChain(current);
        longer->addIndex(index);
        chain_ = std::move(longer);
    }
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
