// Struct arrays.

#include "Check.hpp"
#include "Samples.hpp"

#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

namespace vexa::check {

namespace {

using data::detail::ForwardIteratorImpl;
using data::impl::VexaIdentifierImpl;
using Contents = std::vector<std::string>;

const Contents fields{"velocity", "a", "name"};

Owned<ArrayImpl> records(const Backend& backend, const Dimensions& dimensions,
                         const Contents& names = fields) {
    return adopt(backend.factory().createStructArrayImpl(dimensions, names), "createStructArrayImpl");
}

std::string nameAt(const ForwardIteratorImpl& iterator) {
    const auto object = adopt(iterator.get(), "get of a field name iterator");
    const auto* name = dynamic_cast<const VexaIdentifierImpl*>(object.get());
    expect(name != nullptr, "get of a field name iterator returns no VexaIdentifierImpl");
    return name->name();
}

void fieldNames(Backend& backend) {
    const auto array = records(backend, {1, 2});
    StructArrayImpl& structs = asStructs(*array);
    expectEqual("getNumFields", structs.getNumFields(), 3);
    const auto here = adopt(structs.fieldNamesBegin(), "fieldNamesBegin");
    const auto end = adopt(structs.fieldNamesEnd(), "fieldNamesEnd");
    expectOneReference("a new field name iterator", *here);
    Contents found;
    for (; !here->equal(end.get()) && found.size() < 10; here->increment())
        found.push_back(nameAt(*here));
    expectEqual("the field names", found, fields);
}

void fieldNameIterators(Backend& backend) {
    const auto array = records(backend, {1, 1});
    const auto here = adopt(asStructs(*array).fieldNamesBegin(), "fieldNamesBegin");
    const auto clone = adopt(here->clone(), "clone of a field name iterator");
    expectOneReference("a cloned field name iterator", *clone);
    expect(clone->equal(here.get()), "a clone of a field name iterator stands elsewhere");
    clone->increment();
    expect(!clone->equal(here.get()), "field name iterators at positions 0 and 1 are equal");
    expectEqual("the name at a field name iterator after its clone moved", nameAt(*here), fields[0]);
}

void withoutFields(Backend& backend) {
    const auto array = records(backend, {2, 2}, {});
    StructArrayImpl& structs = asStructs(*array);
    expectEqual("getNumFields of a struct array without fields", structs.getNumFields(), 0);
    expect(adopt(structs.fieldNamesBegin(), "fieldNamesBegin")
               ->equal(adopt(structs.fieldNamesEnd(), "fieldNamesEnd").get()),
           "the field names of a struct array without fields begin before their end");
    structs.setFieldValues(0, {});
}

std::string shownField(const StructArrayImpl& array, std::size_t index, const std::string& name) {
    const auto value =
        adopt(array.getField(index, name), "getField(" + show(index) + ", " + show(name) + ")");
    return value->isEmpty() ? "empty" : show(scalarValue(*value));
}
void expectFields(const std::string& when, StructArrayImpl& array, const Contents& wanted) {
    Contents found;
    for (std::size_t k = 0; k < array.getNumberOfElements(); ++k)
        for (const std::string& name : fields)
            found.push_back(shownField(array, k, name));
    expectEqual("the values of " + show(fields) + " of one record after another " + when, found, wanted);
}

void fieldsStartEmpty(Backend& backend) {
    const auto array = records(backend, {1, 2});
    expectFields("of a new struct array", asStructs(*array), Contents(6, "empty"));
}

void storesFields(Backend& backend) {
    const auto array = records(backend, {1, 2});
    assign(*array, 1, "a", *scalar(backend, 1));
    assign(*array, 0, "name", *scalar(backend, 2));
    expectFields("after assignElementArray", asStructs(*array),
                 {"empty", "empty", "2", "empty", "1", "empty"});
}

void storesRecords(Backend& backend) {
    const auto array = records(backend, {1, 2});
    std::vector<fv::Array> values;
    for (const double value : {1.0, 2.0, 3.0})
        values.emplace_back(scalar(backend, value).release());
    array->unshare();
    asStructs(*array).setFieldValues(1, values);
    expectFields("after setFieldValues(1)", asStructs(*array), {"empty", "empty", "empty", "1", "2", "3"});
}

void unknownFields(Backend& backend) {
    const auto array = records(backend, {1, 1});
    expectThrows("getField of a field that is not there",
                 [&] { Owned<ArrayImpl>(asStructs(*array).getField(0, "nowhere")); });
    expectThrows("assignElementArray to a field that is not there",
                 [&] { assign(*array, 0, "nowhere", *scalar(backend, 1)); });
}

/// In the order of the fields.
void valueIterators(Backend& backend) {
    const auto array = records(backend, {1, 2});
    for (std::size_t k = 0; k < 3; ++k)
        assign(*array, 1, fields[k], *scalar(backend, static_cast<double>(k)));
    StructArrayImpl& structs = asStructs(*array);
    const Iterator here(structs.createFieldValuesIterator(1, false));
    const Iterator end(structs.createFieldValuesIterator(1, true));
    expect(here != nullptr && end != nullptr, "createFieldValuesIterator returns null");
    expectEqual("distanceTo from the first field value to the end", here->distanceTo(*end), 3);
    for (std::size_t k = 0; k < 3; ++k, here->increment()) {
        expect(!here->isEqual(*end), "the field values end before field " + show(k));
        const auto chain = adopt(here->createReference(), "createReference of a field value iterator");
        ArrayImpl* value = chain->getElementArray(false);
        expect(value != nullptr, "the chain to a field value has no array");
        expectEqual("field value " + show(k), value->isEmpty() ? "empty" : show(scalarValue(*value)),
                    show(k));
    }
    expect(here->isEqual(*end), "the field values go on after the last field");
}

void writesSpareOtherOwners(Backend& backend) {
    for (const bool forWrite : {false, true}) {
        const auto array = records(backend, {1, 1});
        const auto held = scalar(backend, 1);
        assign(*array, 0, "a", *held);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        const auto chain = adopt(array->createElementReference(0, "a", forWrite), "createElementReference");
        chain->prepareForWrite();
        write(as<TypedArrayImpl<double>>(*chain->getArrayImpl(), "TypedArrayImpl<double>"), 0, 2.0);
        const std::string after = " after a write through a chain made with forWrite " + show(forWrite);
        expectEqual("the array that the field was set to," + after, scalarValue(*held), 1.0);
        expectEqual("the field of a copy" + after, shownField(asStructs(*copy), 0, "a"), "1");
        expectEqual("the field" + after, shownField(asStructs(*array), 0, "a"), "2");
    }
}

void balance(Backend& backend) {
    const auto held = scalar(backend, 1);
    auto array = records(backend, {1, 1});
    assign(*array, 0, "a", *held);
    const bool sameObject = adopt(asStructs(*array).getField(0, "a"), "getField").get() == held.get();
    expectEqual("the reference count of an array in a field", held->referenceCount(), sameObject ? 2 : 1);
    {
        const auto field = adopt(asStructs(*array).getField(0, "a"), "getField");
        expectEqual("the reference count of an array that getField returned", field->referenceCount(),
                    sameObject ? 3 : field->referenceCount());
        std::vector<fv::Array> values(3, fv::Array(share(*held).release()));
        asStructs(*array).setFieldValues(0, std::move(values));
    }
    array.reset();
    expectOneReference("an array after its struct array has gone", *held);
}

} // namespace

void addStructChecks(Checks& checks) {
    Family structs(checks, "structs");
    const std::vector<std::string> needs{"struct", "double"};
    structs.add("field names in the order given", {"struct"}, fieldNames);
    structs.add("field name iterators", {"struct"}, fieldNameIterators);
    structs.add("no fields", {"struct"}, withoutFields);
    structs.add("new fields are empty", {"struct"}, fieldsStartEmpty);
    structs.add("a field is stored in its record", needs, storesFields);
    structs.add("a record is replaced in field order", needs, storesRecords);
    structs.add("unknown fields are reported", needs, unknownFields);
    structs.add("field values in field order", needs, valueIterators);
    structs.add("writes inside spare other owners", needs, writesSpareOtherOwners);
    structs.add("what is held is retained and released", needs, balance);
}

} // namespace vexa::check
