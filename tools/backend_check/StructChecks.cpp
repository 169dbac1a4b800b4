// Struct arrays.

#include "Check.hpp"
#include "Foreign.hpp"
#include "Ranges.hpp"
#include "Samples.hpp"

#include <foundation/vexadata/StructElement.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

namespace vexa::check {

namespace {

using data::impl::VexaIdentifierImpl;

const Contents fields{"velocity", "a", "name"};

Owned<ArrayImpl> records(const Backend& backend, const Dimensions& dimensions,
                         const Contents& names = fields) {
    return adopt(backend.factory().createStructArrayImpl(dimensions, names), "createStructArrayImpl");
}

std::string nameOfField(data::detail::RefCounted& object) {
    const auto* name = dynamic_cast<const VexaIdentifierImpl*>(&object);
    expect(name != nullptr, "get of a field name iterator returns no VexaIdentifierImpl");
    return name->name();
}

/// Names that look alike, and many.
std::vector<Contents> fieldLists() {
    Contents many;
    for (int k = 0; k < 300; ++k)
        many.push_back("aVeryLongFieldName" + std::to_string(k * 7 % 300) + "OfManyThatAreAlike");
    Contents oneLetter; // apart
    for (const std::size_t length : {7U, 8U, 9U, 15U, 16U, 17U, 25U})
        for (std::size_t k = 0; k <= length; ++k) {
            oneLetter.emplace_back(length, 'a');
            if (k < length) oneLetter.back()[k] = 'b';
        }
    Contents letters; // every one, first and later
    for (const char* range : {"az", "AZ"})
        for (char letter = range[0]; letter <= range[1]; ++letter) {
            letters.emplace_back(1, letter);
            letters.push_back(std::string("n").append(1, letter));
        }
    for (char digit = '0'; digit <= '9'; ++digit)
        letters.push_back(std::string("n_").append(1, digit));
    return {fields, {"x"}, {"b", "a", "B", "aa", "ab", "a1", "a_"}, many, oneLetter, letters, {}};
}

void fieldNames(Backend& backend) {
    for (const Contents& names : fieldLists())
        for (const bool copied : {false, true}) {
            auto array = records(backend, {1, 2}, names);
            if (copied) array = adopt(array->sharedCopy(), "sharedCopy");
            StructArrayImpl& structs = asStructs(*array);
            expectEqual("getNumFields", structs.getNumFields(), names.size());
            if (names.size() < 10 || !copied)
                expectSequence({"the field names", [&] { return structs.fieldNamesBegin(); },
                                [&] { return structs.fieldNamesEnd(); }, &nameOfField},
                               names.size() > 20 ? Contents(names) : names);
            expectOneReference("a struct array after walks over its field names", *array);
        }
}

void withoutFields(Backend& backend) {
    const auto array = records(backend, {2, 2}, {});
    StructArrayImpl& structs = asStructs(*array);
    expectEqual("getNumFields of a struct array without fields", structs.getNumFields(), 0);
    structs.setFieldValues(0, {});
    const Iterator begin(structs.createFieldValuesIterator(1, false));
    const Iterator end(structs.createFieldValuesIterator(1, true));
    expect(begin != nullptr && end != nullptr && begin->isEqual(*end),
           "the field values of a struct array without fields begin before their end");
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    expect(array->isEqual(copy.get()), "isEqual of struct arrays without fields is false");
}

std::string shownField(const StructArrayImpl& array, std::size_t index, const std::string& name) {
    const auto value =
        adopt(array.getField(index, name), "getField(" + show(index) + ", " + show(name) + ")");
    return value->isEmpty() ? "empty" : show(scalarValue(*value));
}
void expectFields(const std::string& when, StructArrayImpl& array, const Contents& wanted,
                  const Contents& names = fields) {
    Contents found;
    for (std::size_t k = 0; k < array.getNumberOfElements(); ++k)
        for (const std::string& name : names)
            found.push_back(shownField(array, k, name));
    expectEqual("the values of " + show(names) + " of one record after another " + when, found, wanted);
}

void fieldsStartEmpty(Backend& backend) {
    for (const Dimensions& dimensions : {Dimensions{1, 1}, {1, 2}, {3, 20}}) {
        const auto array = records(backend, dimensions);
        expectFields("of a new struct array", asStructs(*array),
                     Contents(3 * array->getNumberOfElements(), "empty"));
    }
}

/// Each field of each of many records, under every list of names, read by name.
void storesFields(Backend& backend) {
    for (const Contents& names : fieldLists()) {
        if (names.empty()) continue;
        const auto array = records(backend, {1, 3}, names);
        Contents wanted(3 * names.size());
        for (std::size_t k = wanted.size(); k-- > 0;) {
            assign(*array, k / names.size(), names[k % names.size()],
                   *scalar(backend, static_cast<double>(k)));
            wanted[k] = show(static_cast<double>(k));
        }
        expectFields("after assignElementArray", asStructs(*array), wanted, names);
        if (names.size() < 2) continue;
        assign(*array, 1, names.back(), *scalar(backend, 7000));
        wanted[2 * names.size() - 1] = "7000";
        expectFields("after one was replaced", asStructs(*array), wanted, names);
    }
}

void storesRecords(Backend& backend) {
    for (const Dimensions& dimensions : {Dimensions{1, 2}, {2, 3}, {1, 300}}) {
        const auto array = records(backend, dimensions);
        const std::size_t count = array->getNumberOfElements();
        Contents wanted(3 * count, "empty");
        for (const std::size_t k : somePositions(count)) {
            std::vector<fv::Array> values;
            for (std::size_t field = 0; field < 3; ++field) {
                const auto value = static_cast<double>(10 * k + field);
                values.emplace_back(scalar(backend, value).detach());
                wanted[3 * k + field] = show(value);
            }
            array->unshare();
            asStructs(*array).setFieldValues(k, values);
            for (const fv::Array& value : values)
                expect(value.getNumberOfElements() == 1, "setFieldValues takes the caller's values away");
        }
        expectFields("after setFieldValues", asStructs(*array), wanted);
    }
}

void unknownFields(Backend& backend) {
    const auto array = records(backend, {1, 1});
    for (const char* name : {"nowhere", "", "A", "nam", "names", "velocitz"}) {
        const std::string field = " of a field that is not there, " + show(std::string(name)) + ",";
        expectThrows("getField" + field, [&] { Owned<ArrayImpl>(asStructs(*array).getField(0, name)); });
        expectThrows("assignElementArray" + field, [&] { assign(*array, 0, name, *scalar(backend, 1)); });
    }
    expectFields("after unknown names", asStructs(*array), Contents(3, "empty"));
}

Owned<ArrayImpl> numbered(const Backend& backend, const Dimensions& dimensions) {
    auto array = records(backend, dimensions);
    for (std::size_t k = 0; k < 3 * array->getNumberOfElements(); ++k)
        assign(*array, k / 3, fields[k % 3], *scalar(backend, static_cast<double>(k)));
    return array;
}

/// A record of another array, which a view tells.
void storesViews(Backend& backend) {
    const auto from = numbered(backend, {1, 3});
    const auto array = records(backend, {1, 2});
    const auto chain = fv::detail::Access::createSharedPtr<ReferenceImpl>(
        new data::detail::ArrayReferenceImpl(from.get(), 1));
    array->unshare();
    asStructs(*array).setElementValue(1, {}, fv::StructElement(chain));
    expectFields("after setElementValue", asStructs(*array), {"empty", "empty", "empty", "3", "4", "5"});
}

Iterator fieldValues(StructArrayImpl& structs, std::size_t record, bool atEnd) {
    Iterator made(structs.createFieldValuesIterator(record, atEnd));
    expect(made != nullptr, "createFieldValuesIterator returns null");
    return made;
}

/// In the order of the fields, of each record, with several chains at once.
void valueIterators(Backend& backend) {
    const auto array = numbered(backend, {1, 3});
    StructArrayImpl& structs = asStructs(*array);
    for (std::size_t record = 0; record < 3; ++record) {
        std::vector<Owned<ReferenceImpl>> chains;
        const Iterator here = fieldValues(structs, record, false);
        for (std::size_t k = 0; k < 3; ++k, here->increment())
            chains.push_back(adopt(here->createReference(), "createReference of a field value iterator"));
        for (std::size_t k = 0; k < 3; ++k) {
            ArrayImpl* value = chains[k]->getElementArray(false);
            expect(value != nullptr, "the chain to a field value has no array");
            expectEqual("field value " + show(k) + " of record " + show(record), shownArray(*value),
                        "1x1 double [" + show(3 * record + k) + "]");
            expectOneReference("a chain to a field value", *chains[k]);
        }
        expectEqual("the address of a field value", here->getElementAddress() == nullptr, true);
    }
    expectOneReference("a struct array after walks over its values", *array);
}

/// Whichever way an iterator comes to a field, its chain leads there.
void valueIteratorsGoBack(Backend& backend) {
    const auto array = numbered(backend, {1, 3});
    StructArrayImpl& structs = asStructs(*array);
    for (std::size_t record = 0; record < 3; ++record) {
        const auto expectAt = [&](IteratorImpl& here, std::size_t k, const char* when) {
            const auto chain = adopt(here.createReference(), "createReference of a field value iterator");
            expectEqual("field value " + show(k) + " of record " + show(record) + when,
                        shownArray(*chain->getElementArray(false)),
                        "1x1 double [" + show(3 * record + k) + "]");
        };
        const Iterator back = fieldValues(structs, record, true);
        for (std::size_t k = 3; k-- > 0;) {
            back->decrement();
            expectAt(*back, k, " on the way back");
            const Iterator jumped = fieldValues(structs, record, true);
            jumped->advance(static_cast<std::int64_t>(k) - 3);
            expectAt(*jumped, k, " after a jump back");
        }
    }
}

/// A check of all iterators, over field values.
std::function<void(Backend&)> overValues(void (*expectation)(const Range&)) {
    return [=](Backend& backend) {
        for (const Dimensions& dimensions : {Dimensions{1, 3}, {1, 1}, {2, 2, 2}, {2, 150}}) {
            const auto array = numbered(backend, dimensions);
            StructArrayImpl& structs = asStructs(*array);
            for (const std::size_t record : manyPositions(array->getNumberOfElements()))
                expectation({"record " + show(record) + " (its field values)",
                             [&, record] { return fieldValues(structs, record, false); },
                             [&, record] { return fieldValues(structs, record, true); }, 3});
            expectOneReference("a struct array after iterators over its values", *array);
        }
    };
}

void valueIteratorsKeepChains(Backend& backend) {
    const auto array = numbered(backend, {1, 2});
    const Owned<ReferenceImpl> chain(new data::detail::ArrayReferenceImpl(array.get()));
    expectToKeepChains({"record (its field values)", [&] { return fieldValues(asStructs(*array), 1, false); },
                        [&] { return fieldValues(asStructs(*array), 1, true); }, 3},
                       *chain);
}

/// Writes through the chain that a field value iterator gives.
void valueIteratorsWrite(Backend& backend) {
    const auto array = numbered(backend, {1, 2});
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    const Iterator here = fieldValues(asStructs(*array), 1, false);
    here->advance(2);
    const auto chain = adopt(here->createReference(), "createReference of a field value iterator");
    ArrayImpl* value = chain->getElementArray(true);
    expect(value != nullptr, "the chain to a field value has no array");
    write(asNumbers<double>(*value), 0, 50.0);
    expectFields("after a write through a field value iterator", asStructs(*array),
                 {"0", "1", "2", "3", "4", "50"});
    expectFields("of a copy after that write", asStructs(*copy), {"0", "1", "2", "3", "4", "5"});
}

void writesSpareOtherOwners(Backend& backend) {
    for (const bool forWrite : {false, true}) {
        const auto array = records(backend, {1, 1});
        const auto held = scalar(backend, 1);
        assign(*array, 0, "a", *held);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        const auto chain = adopt(array->createElementReference(0, "a", forWrite), "createElementReference");
        chain->prepareForWrite();
        write(asNumbers<double>(*chain->getArrayImpl()), 0, 2.0);
        const std::string after = " after a write through a chain made with forWrite " + show(forWrite);
        expectEqual("the array that the field was set to," + after, scalarValue(*held), 1.0);
        expectEqual("the field of a copy" + after, shownField(asStructs(*copy), 0, "a"), "1");
        expectEqual("the field" + after, shownField(asStructs(*array), 0, "a"), "2");
        const auto taken = adopt(asStructs(*array).getField(0, "a"), "getField");
        chain->prepareForWrite();
        write(asNumbers<double>(*chain->getArrayImpl()), 0, 3.0);
        expectEqual("an array that getField gave" + after, scalarValue(*taken), 2.0);
    }
}

void balance(Backend& backend) {
    const auto held = scalar(backend, 1);
    auto array = records(backend, {1, 2});
    assign(*array, 1, "a", *held);
    const bool sameObject = adopt(asStructs(*array).getField(1, "a"), "getField").get() == held.get();
    expectEqual("the reference count of an array in a field", held->referenceCount(), sameObject ? 2 : 1);
    {
        const auto field = adopt(asStructs(*array).getField(1, "a"), "getField");
        expectEqual("the reference count of an array that getField returned", field->referenceCount(),
                    sameObject ? 3 : field->referenceCount());
        std::vector<fv::Array> values(3, fv::Array(share(*held).detach()));
        asStructs(*array).setFieldValues(1, std::move(values));
    }
    assign(*array, 1, "a", *scalar(backend, 2));
    expectFields("after one value was stored thrice and replaced once", asStructs(*array),
                 {"empty", "empty", "empty", "1", "2", "1"});
    auto copy = adopt(array->sharedCopy(), "sharedCopy");
    array.reset();
    expectFields("of a copy whose original is gone", asStructs(*copy),
                 {"empty", "empty", "empty", "1", "2", "1"});
    copy.reset();
    expectOneReference("an array after its struct arrays have gone", *held);
}

/// Structs whose fields are called differently are different.
void namesTellApart(Backend& backend) {
    const auto array = records(backend, {1, 2}, {"a", "b"});
    for (const Contents& other : {Contents{"a", "c"}, {"c", "b"}, {"a"}, {"a", "b", "c"}, {"a", "B"}, {}}) {
        const auto second = records(backend, {1, 2}, other);
        expect(!array->isEqual(second.get()) && !second->isEqual(array.get()),
               "isEqual of struct arrays with the fields a, b and " + show(other) + " is true");
        expect(!array->isEqual(foreign(records(backend, {1, 2}, other)).get()),
               "isEqual of a struct array with the fields a, b and one of another back-end with " +
                   show(other) + " is true");
    }
    expect(array->isEqual(records(backend, {1, 2}, {"a", "b"}).get()),
           "isEqual of struct arrays with equal fields is false");
}

} // namespace

void addStructChecks(Checks& checks) {
    Family structs(checks, "structs");
    const std::vector<std::string> needs{"struct", "double"};
    const std::string names =
        "fieldNamesBegin and fieldNamesEnd give VexaIdentifierImpl objects (slots 42 to 44)";
    const std::string values =
        "createFieldValuesIterator walks the field values of a record in field order (slot 46)";
    const std::string stored = "assignElementArray stores into a field, getField gives it (slots 18, 48)";
    structs.add("field names in the order given", names, {"struct"}, fieldNames);
    structs.add("no fields", names, {"struct"}, withoutFields);
    structs.add("new fields are empty", "a new struct array holds empty arrays (slot 11 of the factory)",
                {"struct"}, fieldsStartEmpty);
    structs.add("a field is stored in its record", stored, needs, storesFields);
    structs.add("a record is replaced in field order",
                "setFieldValues replaces all field values of an element, in field order (slot 49)", needs,
                storesRecords);
    structs.add("a record is replaced by another", "setElementValue stores a record (slot 40)", needs,
                storesViews);
    structs.add("unknown fields are reported", "an unknown name is the back-end's to report (slot 48)", needs,
                unknownFields);
    structs.add("field values in field order", values, needs, valueIterators);
    structs.add("field values both ways", values, needs, valueIteratorsGoBack);
    structs.add("field values from begin to end", values, needs, overValues(&expectToPassAll));
    structs.add("field values: distances", values, needs, overValues(&expectDistances));
    structs.add("field values: advance and decrement", values, needs, overValues(&expectMoves));
    structs.add("field values: equal only at one position", values, needs, overValues(&expectEqualOnlyThere));
    structs.add("field values: clones", values, needs, overValues(&expectIndependentClones));
    structs.add("field values: saved chains",
                "a saved chain is kept as long as its iterator (slot 10 of iterators)", needs,
                valueIteratorsKeepChains);
    structs.add("field values: writes", values, needs, valueIteratorsWrite);
    structs.add("writes inside spare other owners",
                "a chain makes the array held exclusively owned before its write (slot 13)", needs,
                writesSpareOtherOwners);
    structs.add("what is held is retained and released",
                "getField gives one reference for the caller (slot 48)", needs, balance);
    structs.add("names of fields tell arrays apart", "isEqual is element-wise equality (slot 36)", needs,
                namesTellApart);
}

} // namespace vexa::check
