// The shared index chain: indices are collected, resolved once at the first use, and then stay.
#include "ChainTarget.hpp"

#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/detail/IndexRules.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/ArrayImpl.hpp>

#include <utility>

namespace vexa::data::detail {

using fv::detail::Access;
using fv::detail::raise;

ReferenceImpl::ReferenceImpl() noexcept = default;

ReferenceImpl::ReferenceImpl(const ReferenceImpl& other)
    : RefCounted(other),
      count_(other.count_),
      dimensions_(other.dimensions_),
      indices_(other.indices_),
      layout_(other.layout_),
      stringIndex_(other.stringIndex_),
      linearIndex_(other.linearIndex_),
      linearIndexKnown_(other.linearIndexKnown_) {}

ReferenceImpl::~ReferenceImpl() { dropCaches(); }

void ReferenceImpl::dropCaches() noexcept {
    elementReference_.reset();
    if (ReferenceImpl* copy = std::exchange(copyReference_, nullptr)) {
        copy->release();
    }
}

void ReferenceImpl::bind(std::vector<std::size_t> dimensions, MemoryLayout layout) {
    indices_.assignZeros(dimensions.size());
    dimensions_ = std::move(dimensions);
    layout_ = layout;
}

void ReferenceImpl::setKnownIndex(std::uint64_t linearIndex) noexcept {
    linearIndex_ = linearIndex;
    linearIndexKnown_ = true;
}

impl::ArrayImpl* ReferenceImpl::getElementArray(bool forWrite) {
    if (elementReference_ == nullptr) {
        elementReference_ = createReference(forWrite, false);
    } else if (forWrite) {
        elementReference_->prepareForWrite();
    }
    return elementReference_ == nullptr ? nullptr : elementReference_->getArrayImpl();
}

std::shared_ptr<ReferenceImpl> ReferenceImpl::createReference(bool forWrite, bool /*forChain*/) {
    const auto [array, index] = targetOf(*this);
    return Access::createSharedPtr(array->createElementReference(index, stringIndex_, forWrite));
}

void ReferenceImpl::prepareForWrite() {}

impl::ArrayImpl* ReferenceImpl::getElementArrayForCopy() {
    if (copyReference_ == nullptr) {
        if (const std::shared_ptr<ReferenceImpl> fresh = createReference(false, true)) {
            fresh->retain();
            copyReference_ = fresh.get();
        }
    }
    return copyReference_ == nullptr ? nullptr : copyReference_->getArrayImpl();
}

std::uint64_t ReferenceImpl::getLinearIndex(bool /*unshare*/) {
    if (linearIndexKnown_) {
        return linearIndex_;
    }
    if (isSingleIndexIntoMatrix(dimensions_, count_)) {
        spreadSingleIndex(dimensions_, indices_.data());
        count_ = 2;
    }
    if (count_ < dimensions_.size()) {
        raise<fv::NotEnoughIndicesProvidedException>();
    }
    if (indices_.length() != dimensions_.size()) {
        raise<fv::EArrayIndexOutOfRange>();
    }
    setKnownIndex(positionOf(dimensions_, indices_.data(), layout_));
    return linearIndex_;
}

void ReferenceImpl::setArray(impl::ArrayImpl* array) {
    const ChainTarget target = targetForWrite(*this);
    target.array->assignElementArray(target.index, stringIndex_, array);
    dropCaches(); // they refer to the array that was there before
}

std::string ReferenceImpl::getString() {
    const auto [array, index] = targetOf(*this);
    return array->castToString(index, stringIndex_);
}

void ReferenceImpl::setString(std::string value) {
    const auto [array, index] = targetForWrite(*this);
    array->setString(index, stringIndex_, std::move(value));
}

void ReferenceImpl::setWords(std::uint64_t first, std::uint64_t second) {
    const auto [array, index] = targetForWrite(*this);
    array->setElementWords(index, first, second);
}

std::uint64_t ReferenceImpl::getElementArrayID() {
    const impl::ArrayImpl* array = getElementArray(false);
    if (array == nullptr) {
        raise<fv::NotEnoughIndicesProvidedException>();
    }
    return array->getArrayID();
}

void ReferenceImpl::addIndex(std::uint64_t index) {
    if (!stringIndex_.empty()) {
        raise<fv::StringIndexMustBeLastException>();
    }
    checkAppend(dimensions_, count_, index);
    indices_.reserve(count_ + 1);
    indices_.data()[count_++] = index;
}

void ReferenceImpl::addIndex(std::string fieldName) {
    if (!stringIndex_.empty()) {
        raise<fv::CanOnlyUseOneStringIndexException>();
    }
    stringIndex_ = std::move(fieldName);
}

ArrayReferenceImpl::ArrayReferenceImpl(impl::ArrayImpl* array)
    : ArrayReferenceImpl(array, array->getDimensions(), array->getMemoryLayout()) {}

ArrayReferenceImpl::ArrayReferenceImpl(impl::ArrayImpl* array, std::vector<std::size_t> dimensions,
                                       MemoryLayout layout)
    : array_(array) {
    bind(std::move(dimensions), layout);
}

ArrayReferenceImpl::ArrayReferenceImpl(impl::ArrayImpl* array, std::uint64_t linearIndex) : array_(array) {
    setKnownIndex(linearIndex);
}

ArrayReferenceImpl::ArrayReferenceImpl(const ArrayReferenceImpl& other) = default;
ArrayReferenceImpl::~ArrayReferenceImpl() = default;

impl::ArrayImpl* ArrayReferenceImpl::getArrayImpl() const { return array_; }

void ArrayReferenceImpl::prepareForWrite() { array_->unshare(); }

IteratorReference::IteratorReference(impl::ArrayImpl* array, std::uint64_t linearIndex) : array_(array) {
    bind(array->getDimensions(), array->getMemoryLayout());
    setKnownIndex(linearIndex);
}

IteratorReference::~IteratorReference() = default;

impl::ArrayImpl* IteratorReference::getArrayImpl() const { return array_; }

} // namespace vexa::data::detail
