#include "StructArray.hpp"

#include "Release.hpp"

#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/PositionIterator.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace vexa::client {

namespace fv = foundation::vexadata;
using data::detail::ForwardIteratorImpl;
using data::detail::IteratorImpl;
using data::detail::ReferenceImpl;
using fv::detail::Access;

namespace {

ForwardIteratorImpl* fieldNamesAt(std::shared_ptr<const FieldNames> names, std::size_t position) {
    return data::detail::iteratorAt(
        [names = std::move(names)](std::size_t k) -> data::detail::RefCounted* {
            return new data::impl::VexaIdentifierImpl((*names)[k]);
        },
        position);
}

/// Walks the values of one record. The array is borrowed and must outlive the iterator.
class FieldValueIterator final : public IteratorImpl {
public:
    FieldValueIterator(StructArray& array, std::size_t record, std::size_t field)
        : array_(array), record_(record), field_(static_cast<std::int64_t>(field)) {}

    IteratorImpl* clone() const override { return new FieldValueIterator(*this); }
    void advance(std::int64_t count) override { field_ += count; }
    bool isEqual(const IteratorImpl& other) const override { return distanceTo(other) == 0; }
    std::int64_t distanceTo(const IteratorImpl& other) const override {
        return static_cast<const FieldValueIterator&>(other).field_ - field_;
    }
    void decrement() override { --field_; }
    void increment() override { ++field_; }
    /// A chain to the field by its name, as `["name"]` gives.
    ReferenceImpl* createReference() override {
        auto chain = std::make_unique<data::detail::ArrayReferenceImpl>(&array_, record_);
        chain->addIndex(array_.names()[static_cast<std::size_t>(field_)]);
        return chain.release();
    }
    void saveReference(ReferenceImpl* chain) override { chain_ = Access::createSharedPtr(chain); }
    void* getElementAddress() override { return nullptr; }

private:
    StructArray& array_;
    std::size_t record_;
    std::int64_t field_;
    std::shared_ptr<ReferenceImpl> chain_;
};

std::size_t numberOfValues(std::size_t records, std::size_t fields) {
    if (fields != 0 && records > std::numeric_limits<std::size_t>::max() / fields) {
        throw std::bad_alloc();
    }
    return allocatable<Held>(records * fields);
}

/// The empty array that default-constructed handles share.
Held emptyArray() {
    const fv::Array handle;
    ArrayImpl& empty = *Access::impl(handle);
    empty.retain();
    return Held(&empty);
}

/// A handle that owns nothing: an aliasing pointer, which allocates no control block.
fv::Array borrowed(const Held& held) {
    return fv::Array(std::shared_ptr<ArrayImpl>(std::shared_ptr<void>(), &*held));
}
bool equalArrays(const Held& a, const Held& b) { return borrowed(a) == borrowed(b); }

} // namespace

StructArray::StructArray(Dimensions dimensions, std::vector<std::string> fieldNames)
    : ColumnMajorArray(std::move(dimensions)),
      names_(std::make_shared<FieldNames>(std::move(fieldNames))),
      values_(numberOfValues(getNumberOfElements(), names_->size()), emptyArray()) {
    showPositions(getDimensions());
}
StructArray::StructArray(const StructArray& other)
    : ColumnMajorArray(other),
      ArrayHolder(other),
      Comparable(other),
      names_(other.names_),
      values_(other.values_) {
    showPositions(getDimensions());
}
StructArray::~StructArray() {
    if (hasNested()) {
        releaseAll(std::move(values_));
    }
}

ArrayImpl* StructArray::sharedCopy() const { return new StructArray(*this); }
ArrayType StructArray::getType() const { return ArrayType::STRUCT; }
ReferenceImpl* StructArray::createElementReference(std::size_t index, const std::string& fieldName,
                                                   bool forWrite) {
    return fieldName.empty() ? nullptr : referenceInto(*this, placeOf(index, fieldName), forWrite);
}
void StructArray::assignElementArray(std::size_t index, const std::string& fieldName, ArrayImpl* array) {
    if (fieldName.empty()) {
        fv::detail::raise<fv::CantAssignArrayToThisArrayException>();
    }
    put(placeOf(index, fieldName), storable(*array, *this));
}
StructArray::Element* StructArray::getElementAddress(std::size_t, const std::string&, bool) {
    return nullptr;
}
const StructArray::Element* StructArray::getTypedDataPtr() const { return nullptr; }

void StructArray::setElementValue(std::size_t index, const std::string&, Element value) {
    setFieldValues(index, std::vector<fv::Array>(value.begin(), value.end()));
}

bool StructArray::isEqual(const ArrayImpl* other) const { return Comparison::equal(*this, *other); }
bool StructArray::equalsIn(Comparison& comparison, const ArrayImpl& other) const {
    if (const auto* right = fv::detail::dynamicCast<const StructArray>(&other)) {
        return *names_ == *right->names_ && comparison.equalPlaces(*this, *right);
    }
    return equalByName(static_cast<const StructArrayImpl&>(other));
}

/// Compares with a struct of another back-end, field by field by name; structs with other fields are
/// different.
bool StructArray::equalByName(const StructArrayImpl& other) const {
    if (other.getNumFields() != names_->size()) {
        return false;
    }
    try {
        for (std::size_t k = 0; k < values_.size(); ++k) {
            const std::string& name = (*names_)[k % names_->size()];
            if (!equalArrays(values_[k], Held(other.getField(k / names_->size(), name)))) {
                return false;
            }
        }
        return true;
    } catch (...) {
        return false;
    }
}

ForwardIteratorImpl* StructArray::fieldNamesBegin() { return fieldNamesAt(names_, 0); }
ForwardIteratorImpl* StructArray::fieldNamesEnd() { return fieldNamesAt(names_, names_->size()); }
std::size_t StructArray::getNumFields() const { return names_->size(); }
IteratorImpl* StructArray::createFieldValuesIterator(std::size_t index, bool atEnd) {
    return new FieldValueIterator(*this, index, atEnd ? names_->size() : 0);
}
ArrayImpl* StructArray::getField(std::size_t index, const std::string& fieldName) const {
    ArrayImpl& value = *values_[placeOf(index, fieldName)];
    value.retain();
    return &value;
}
void StructArray::setFieldValues(std::size_t index, std::vector<fv::Array> values) {
    std::vector<Held> stored;
    stored.reserve(values.size());
    for (const fv::Array& value : values) {
        stored.push_back(storable(*Access::impl(value), *this));
    }
    std::size_t place = index * names_->size();
    for (Held& value : stored) {
        put(place++, std::move(value));
    }
}

std::size_t StructArray::numberOfPlaces() const noexcept { return values_.size(); }
ArrayImpl& StructArray::heldIn(std::size_t place) const noexcept { return *values_[place]; }
bool StructArray::isShared(std::size_t place) const noexcept { return values_[place]->referenceCount() > 1; }
void StructArray::replace(std::size_t place, Held array) { values_[place] = std::move(array); }

} // namespace vexa::client
