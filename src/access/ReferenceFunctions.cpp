// Growing chains, into nested arrays too, and storing arrays through them.
#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/detail/ReferenceFunctions.hpp>

#include <utility>

namespace foundation::vexadata::detail {

namespace {

/// A chain that forwards to another, which it keeps alive, for the array and the write hook. That hook may
/// put a copy in the array's place, and a client may store another array there: a position in the old array
/// is refused in one of another kind or shape.
class DependentReference final : public ReferenceImpl {
public:
    explicit DependentReference(std::shared_ptr<ReferenceImpl> base)
        : ReferenceImpl(*base), base_(std::move(base)), type_(base_->getArrayImpl()->getType()) {}

    ArrayImpl* getArrayImpl() const override { return base_->getArrayImpl(); }
    void prepareForWrite() override { base_->prepareForWrite(); }
    std::uint64_t getLinearIndex(bool unshare) override {
        const ArrayImpl& array = *getArrayImpl();
        if (array.getType() != type_) {
            raise<TypeMismatchException>();
        }
        requireShape(*this, array);
        return ReferenceImpl::getLinearIndex(unshare);
    }

private:
    std::shared_ptr<ReferenceImpl> base_;
    ArrayType type_;
};

std::shared_ptr<ReferenceImpl> intoElement(ReferenceImpl& chain, std::size_t index, bool forWrite) {
    std::shared_ptr<ReferenceImpl> deeper = chain.createReference(forWrite, false);
    if (deeper == nullptr) {
        raise<NotEnoughIndicesProvidedException>();
    }
    deeper->addIndex(index);
    return deeper;
}

} // namespace

const std::string noFieldName;

void addIndex(std::shared_ptr<ReferenceImpl>& chain, std::size_t index) { chain->addIndex(index); }

void addIndex(std::shared_ptr<ReferenceImpl>& chain, std::string fieldName) {
    chain->addIndex(std::move(fieldName));
}

template <bool isConst>
std::shared_ptr<ReferenceImpl> createReferenceWithIndex(std::shared_ptr<ReferenceImpl>& chain,
                                                        std::size_t index) {
    if constexpr (!isConst) {
        chain->prepareForWrite();
    }
    return intoElement(*chain, index, !isConst);
}
template std::shared_ptr<ReferenceImpl> createReferenceWithIndex<false>(std::shared_ptr<ReferenceImpl>&,
                                                                        std::size_t);
template std::shared_ptr<ReferenceImpl> createReferenceWithIndex<true>(std::shared_ptr<ReferenceImpl>&,
                                                                       std::size_t);

std::shared_ptr<ReferenceImpl> createConstReferenceWithIndex(const std::shared_ptr<ReferenceImpl>& chain,
                                                             std::size_t index) {
    return intoElement(*chain, index, false);
}

std::shared_ptr<ReferenceImpl> copyChain(const std::shared_ptr<ReferenceImpl>& chain) {
    return Access::createSharedPtr<ReferenceImpl>(new DependentReference(chain));
}

void requireShape(const ReferenceImpl& chain, const ArrayImpl& array) {
    // A chain to a known position may have been made without dimensions.
    if (!chain.dimensions().empty() && array.getDimensions() != chain.dimensions()) {
        raise<EArrayIndexOutOfRange>();
    }
}

std::string castToString(std::shared_ptr<ReferenceImpl> chain) { return chain->getString(); }

void storeArray(const std::shared_ptr<ReferenceImpl>& chain, const Array& array) {
    const std::shared_ptr<ReferenceImpl> keptAlive = chain;
    std::shared_ptr<ArrayImpl> stored = Access::impl(array);
    if (stored.get() == keptAlive->getArrayImpl()) {
        stored = Access::createSharedPtr<ArrayImpl>(stored->sharedCopy());
    }
    keptAlive->setArray(stored.get());
}

} // namespace foundation::vexadata::detail
