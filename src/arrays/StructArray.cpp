// Handles to structs, their records and their fields. A field is reached by a chain with a name
// (FieldReference.hpp).
#include "../access/FieldReference.hpp"
#include "../core/SpareBlock.hpp"

#include <foundation/vexadata/StructArray.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

namespace foundation::vexadata {

using vexa::data::impl::StructArrayImpl;
using FieldNameIterator = ForwardIterator<const VexaFieldIdentifier>;
using FieldNames = Range<ForwardIterator, const VexaFieldIdentifier>;

namespace {

StructArrayImpl& structOf(vexa::data::impl::ArrayImpl& array) { return static_cast<StructArrayImpl&>(array); }
void requireStruct(const vexa::data::impl::ArrayImpl& array) {
    if (array.getType() != ArrayType::STRUCT) {
        detail::raise<TypeMismatchException>();
    }
}
/// The kind is tested again behind a chain: the cell or field that it leads to may hold another array by now.
StructArrayImpl& structOf(const detail::ElementPosition& position) {
    vexa::data::impl::ArrayImpl& array = *position.array();
    if (position.hasChain()) {
        requireStruct(array);
    }
    return structOf(array);
}

FieldNames namesOf(StructArrayImpl& array) {
    FieldNameIterator begin(array.fieldNamesBegin());
    return {std::move(begin), FieldNameIterator(array.fieldNamesEnd())};
}

template <class Iterator>
Iterator fieldValues(const detail::ElementPosition& position, bool atEnd) {
    StructArrayImpl& array = structOf(position);
    const std::size_t index = position.linearIndex();
    return atEnd ? Iterator(array.endFieldValues(index))
                 : Iterator(array.createFieldValuesIterator(index, false));
}

vexa::data::impl::ArrayImpl& heldStruct(const std::shared_ptr<detail::ReferenceImpl>& chain) {
    return detail::heldArray<StructArray, NotEnoughIndicesProvidedException>(chain);
}

} // namespace

StructArray::~StructArray() = default;
FieldNames StructArray::getFieldNames() const { return namesOf(structOf(*impl_)); }
std::size_t StructArray::getNumberOfFields() const { return structOf(*impl_).getNumFields(); }

FieldNames StructArrayExt::getFieldNames() const {
    // Both iterators come from `fieldNamesBegin`, the one for the end first, and each is retained once more
    // than it is released. The calls and counts are observable to back-ends and therefore kept
    // (docs/decisions.md).
    auto& array = structOf(heldStruct(chain_));
    const auto fresh = [&] {
        auto* it = array.fieldNamesBegin();
        it->retain();
        return FieldNameIterator(it);
    };
    FieldNameIterator end = fresh();
    return {fresh(), std::move(end)};
}
std::size_t StructArrayExt::getNumberOfFields() const { return structOf(heldStruct(chain_)).getNumFields(); }

FieldNames StructElement::getFieldNames() const { return namesOf(structOf(position_)); }
std::size_t StructElement::getNumberOfFields() const { return structOf(position_).getNumFields(); }
const Array StructElement::askedField(detail::ElementPosition position, const std::string& fieldName) {
    const StructArrayImpl& array = structOf(position);
    return Array(array.getField(position.linearIndex(), fieldName));
}
StructElement::const_iterator StructElement::cbegin() const {
    return fieldValues<const_iterator>(position_, false);
}
StructElement::const_iterator StructElement::cend() const {
    return fieldValues<const_iterator>(position_, true);
}

StructRefExt::iterator StructRefExt::begin() {
    position_.prepareForWrite();
    return fieldValues<iterator>(position_, false);
}
StructRefExt::iterator StructRefExt::end() {
    position_.prepareForWrite();
    return fieldValues<iterator>(position_, true);
}

const Array Reference<Array>::operator[](const std::string& fieldName) const {
    if (!chain_->stringIndex().empty()) { // a field, not a record
        detail::raise<CanOnlyUseOneStringIndexException>();
    }
    return detail::fieldOf(detail::ElementPosition(chain_), fieldName, std::true_type());
}

namespace detail {

std::shared_ptr<ReferenceImpl> chainToField(ArrayImpl* records, std::size_t index,
                                            const std::string& fieldName) {
    return FieldReference::make(records, index, fieldName);
}

/// When the record was reached through a chain, the result depends on that chain and runs its write hook: the
/// record may lie in a cell that other handles share.
std::shared_ptr<ReferenceImpl> chainToField(ElementPosition record, const std::string& fieldName) {
    if (!record.fieldName().empty()) {
        raise<CanOnlyUseOneStringIndexException>();
    }
    const std::size_t index = record.linearIndex();
    if (!record.hasChain()) {
        return chainToField(record.array(), index, fieldName);
    }
    std::shared_ptr<ReferenceImpl> chain = copyChain(record.chain());
    chain->addIndex(fieldName);
    return chain;
}

const Array fieldOf(const ArrayImpl& records, std::size_t index, const std::string& fieldName) {
    // Usually a temporary handle: its control block comes from the block that the last one left.
    return Array(
        std::shared_ptr<ArrayImpl>(static_cast<const StructArrayImpl&>(records).getField(index, fieldName),
                                   ReleaseReference(), SpareAllocator<ArrayImpl>()));
}

const Array fieldOf(const ElementPosition& record, const std::string& fieldName, std::true_type) {
    requireStruct(*record.array());
    return StructElement(record)[fieldName];
}

Reference<Array> fieldOf(const ElementPosition& record, const std::string& fieldName, std::false_type) {
    requireStruct(*record.array());
    return Reference<Array>(chainToField(record, fieldName));
}

void storeRecord(const ElementPosition& position, std::vector<Array> values) {
    vexa::data::impl::ArrayImpl* array = position.arrayForWrite();
    requireStruct(*array);
    StructArrayImpl& records = structOf(*array);
    if (records.getNumFields() != values.size()) {
        raise<WrongVectorSizeForStructException>();
    }
    records.setFieldValues(position.linearIndex(), std::move(values));
}

void setElement(const std::shared_ptr<ReferenceImpl>& chain, std::vector<Array> values) {
    storeRecord(ElementPosition(chain), std::move(values));
}

std::vector<Array> valuesOf(const ElementPosition& position) {
    const StructElement record(position);
    std::vector<Array> values;
    values.reserve(record.getNumberOfFields());
    for (const auto& value : record) {
        values.emplace_back(value);
    }
    return values;
}

} // namespace detail

} // namespace foundation::vexadata
