// The interfaces of iterators and of index chains, and the members that both sides of the boundary see.
#include "Table.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/IndexList.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/NonPrimitiveIteratorImpl.hpp>
#include <vexa/data/detail/RefCounted.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace contract {

using namespace vexa::data;
using namespace vexa::data::detail;
using namespace vexa::data::impl;

template struct Interface<RefCounted, 16, 2>;
template struct Member<8, std::atomic<std::uint64_t>, &RefCounted::count_>;

template struct Interface<IteratorImpl, 16, 13>;
template struct Operation<2, IteratorImpl*() const, &IteratorImpl::clone>;
template struct Operation<3, void(std::int64_t), &IteratorImpl::advance>;
template struct Operation<4, bool(const IteratorImpl&) const, &IteratorImpl::isEqual>;
template struct Operation<5, std::int64_t(const IteratorImpl&) const, &IteratorImpl::distanceTo>;
template struct Operation<6, void(), &IteratorImpl::decrement>;
template struct Operation<7, void(), &IteratorImpl::increment>;
template struct Operation<8, void(), &IteratorImpl::reservedOp9>;
template struct Operation<9, ReferenceImpl*(), &IteratorImpl::createReference>;
template struct Operation<10, void(ReferenceImpl*), &IteratorImpl::saveReference>;
template struct Operation<11, void(), &IteratorImpl::reservedOp12>;
template struct Operation<12, void*(), &IteratorImpl::getElementAddress>;

static_assert(sizeof(ContiguousIteratorImpl<double>) == 40);
template struct Member<16, double*, &ContiguousIteratorImpl<double>::current_>;
template struct Member<24, std::shared_ptr<ReferenceImpl>, &ContiguousIteratorImpl<double>::chain_>;

template struct Values<24, 8, 24, Passed::inRegisters, InPlace<double>>;
template struct Member<0, std::size_t, &InPlace<double>::rows>;
template struct Member<8, std::size_t, &InPlace<double>::columns>;
template struct Member<16, double*, &InPlace<double>::data>;
template struct Member<16, InPlace<double>, &DenseArrayImpl<double>::inPlace_>;
using InPlaceCells = vexa::data::impl::InPlaceArrayImpl<TypedArrayImpl<foundation::vexadata::Array>,
                                                        foundation::vexadata::Array>;
template struct Member<16, InPlace<foundation::vexadata::Array>, &InPlaceCells::inPlace_>;

using NonPrimitiveIterator = NonPrimitiveIteratorImpl<MatchingDataOrder>;
template struct Interface<NonPrimitiveIterator, 48, 13>;
template struct Member<16, ArrayImpl*, &NonPrimitiveIterator::array_>;
template struct Member<24, std::uint64_t, &NonPrimitiveIterator::position_>;
template struct Member<32, std::shared_ptr<ReferenceImpl>, &NonPrimitiveIterator::chain_>;

template struct Interface<ForwardIteratorImpl, 16, 6>;
template struct Operation<2, ForwardIteratorImpl*() const, &ForwardIteratorImpl::clone>;
template struct Operation<3, RefCounted*() const, &ForwardIteratorImpl::get>;
template struct Operation<4, bool(const ForwardIteratorImpl*) const, &ForwardIteratorImpl::equal>;
template struct Operation<5, void(), &ForwardIteratorImpl::increment>;

static_assert(sizeof(IndexList) == 48 && IndexList::inlineCapacity == 3);
template struct Member<0, std::uint64_t*, &IndexList::values_>;
template struct Member<8, std::uint64_t, &IndexList::length_>;
template struct Member<16, std::uint64_t, &IndexList::capacity_>;
template struct Member<24, std::uint64_t[3], &IndexList::inline_>;

template struct Interface<ReferenceImpl, 176, 13>;
template struct Operation<2, ArrayImpl*() const, &ReferenceImpl::getArrayImpl>;
template struct Operation<3, ArrayImpl*(bool), &ReferenceImpl::getElementArray>;
template struct Operation<4, std::shared_ptr<ReferenceImpl>(bool, bool), &ReferenceImpl::createReference>;
template struct Operation<5, void(), &ReferenceImpl::prepareForWrite>;
template struct Operation<6, ArrayImpl*(), &ReferenceImpl::getElementArrayForCopy>;
template struct Operation<7, std::uint64_t(bool), &ReferenceImpl::getLinearIndex>;
template struct Operation<8, void(ArrayImpl*), &ReferenceImpl::setArray>;
template struct Operation<9, std::string(), &ReferenceImpl::getString>;
template struct Operation<10, void(std::string), &ReferenceImpl::setString>;
template struct Operation<11, void(std::uint64_t, std::uint64_t), &ReferenceImpl::setWords>;
template struct Operation<12, std::uint64_t(), &ReferenceImpl::getElementArrayID>;
template struct Member<16, std::uint64_t, &ReferenceImpl::count_>;
template struct Member<24, std::vector<std::size_t>, &ReferenceImpl::dimensions_>;
template struct Member<48, IndexList, &ReferenceImpl::indices_>;
template struct Member<96, MemoryLayout, &ReferenceImpl::layout_>;
template struct Member<104, std::string, &ReferenceImpl::stringIndex_>;
template struct Member<136, std::uint64_t, &ReferenceImpl::linearIndex_>;
template struct Member<144, bool, &ReferenceImpl::linearIndexKnown_>;
template struct Member<152, std::shared_ptr<ReferenceImpl>, &ReferenceImpl::elementReference_>;
template struct Member<168, ReferenceImpl*, &ReferenceImpl::copyReference_>;

template struct Interface<ArrayReferenceImpl, 184, 13>;
template struct Member<176, ArrayImpl*, &ArrayReferenceImpl::array_>;
template struct Interface<IteratorReference, 184, 13>;
template struct Member<176, ArrayImpl*, &IteratorReference::array_>;

} // namespace contract
