#include "Samples.hpp"

#include <foundation/vexadata/ArrayElementTypedRef.hpp>
#include <foundation/vexadata/Enumeration.hpp>

#include <algorithm>
#include <complex>
#include <utility>

namespace vexa::check {

Owned<ArrayImpl> scalar(const Backend& backend, double value) {
    auto array = backend.zeros<double>({1, 1});
    write(*array, 0, value);
    return Owned<ArrayImpl>(array.release());
}
double scalarValue(ArrayImpl& array) {
    return read(as<TypedArrayImpl<double>>(array, "TypedArrayImpl<double>"), 0);
}

std::string shownString(const ArrayImpl& array, std::size_t index) {
    const char16_t* text = nullptr;
    std::size_t length = 0;
    array.getStringElement(index, text, length);
    return text == nullptr ? "missing" : show(std::u16string(text, length));
}
void setString(StringArrayImpl& array, std::size_t index, fv::String value) {
    array.unshare();
    array.setStringElement(index, {}, std::move(value));
}

std::string shownElementArray(ArrayImpl& holder, std::size_t index, const std::string& fieldName) {
    ReferenceImpl* made = holder.createElementReference(index, fieldName, false);
    if (made == nullptr) return "no reference";
    const Owned<ReferenceImpl> chain(made);
    ArrayImpl* held = chain->getArrayImpl();
    if (held == nullptr) return "no array";
    if (held->isEmpty()) return "empty";
    return show(held->getDimensions()) + " " + show(contentsOf(*held));
}
void assign(ArrayImpl& holder, std::size_t index, const std::string& fieldName, ArrayImpl& array) {
    holder.unshare();
    holder.assignElementArray(index, fieldName, &array);
}

namespace {

template <class T>
Buffer<T[]> valueBuffer(const std::vector<double>& values) {
    std::vector<T> converted;
    for (const double value : values)
        converted.push_back(static_cast<T>(value));
    return bufferOf(converted);
}

} // namespace

ArrayImpl* createSparse(ArrayFactoryImpl& factory, ArrayType type, const Dimensions& dimensions,
                        const std::vector<double>& values, const std::vector<std::size_t>& rows,
                        const std::vector<std::size_t>& columns, bool compressed) {
    const auto with = [&](auto tag, auto triplets, auto columnStarts) {
        return (factory.*(compressed ? columnStarts : triplets))(
            dimensions, values.size(), valueBuffer<typename decltype(tag)::type>(values), bufferOf(rows),
            bufferOf(columns));
    };
    switch (type) {
    case ArrayType::SPARSE_LOGICAL:
        return with(ElementTag<bool>(), &ArrayFactoryImpl::createSparseLogicalImpl,
                    &ArrayFactoryImpl::createVexaSparseLogicalImpl);
    case ArrayType::SPARSE_DOUBLE:
        return with(ElementTag<double>(), &ArrayFactoryImpl::createSparseDoubleImpl,
                    &ArrayFactoryImpl::createVexaSparseDoubleImpl);
    default:
        return with(ElementTag<std::complex<double>>(), &ArrayFactoryImpl::createSparseComplexDoubleImpl,
                    &ArrayFactoryImpl::createVexaSparseComplexDoubleImpl);
    }
}

fv::VexaPropertyIdentifier property(const std::string& name) { return fv::VexaPropertyIdentifier(name); }

Owned<ClassInfoImpl> pointClass(const Backend& backend) {
    return adopt(backend.factory().createClassInfoImpl(fv::VexaClassIdentifier("Point"),
                                                       {property("x"), property("y")}, {property("unit")},
                                                       {}),
                 "createClassInfoImpl");
}
void setProperty(ObjectImpl& object, const std::string& name, ArrayImpl& value) {
    adopt(object.getPropertyReference(property(name)), "getPropertyReference")->setArray(&value);
}
Owned<ObjectImpl> newPoint(const Backend& backend, double x, double y) {
    const auto description = pointClass(backend);
    auto point = adopt(backend.factory().createValueObjectImpl(description.get()), "createValueObjectImpl");
    setProperty(*point, "x", *scalar(backend, x));
    setProperty(*point, "y", *scalar(backend, y));
    return point;
}

namespace {

using Contents = std::vector<std::string>;

template <class F>
Contents listed(std::size_t count, F element) {
    Contents contents;
    for (std::size_t k = 0; k < count; ++k)
        contents.push_back(element(k));
    return contents;
}

Contents fieldNamesOf(StructArrayImpl& array) {
    Contents names;
    const auto end = adopt(array.fieldNamesEnd(), "fieldNamesEnd");
    for (const auto field = adopt(array.fieldNamesBegin(), "fieldNamesBegin"); !field->equal(end.get());
         field->increment()) {
        names.push_back(fv::VexaFieldIdentifier(field->get()).getString());
        if (names.size() > 1000) fail("the field names of a " + describe(array) + " have no end");
    }
    return names;
}

std::string shownRecord(StructArrayImpl& array, std::size_t index) {
    std::string record;
    for (const std::string& name : fieldNamesOf(array))
        record.append(record.empty() ? "" : ", ").append(name + "=" + shownElementArray(array, index, name));
    return record;
}

std::string shownObject(ObjectArrayImpl& array, std::size_t index) {
    ObjectImpl* held = array.getElementObject(index);
    if (held == nullptr) return "no object";
    const Owned<ObjectImpl> object(held);
    std::string shown;
    for (const char* name : {"x", "y"}) {
        const std::shared_ptr<ArrayImpl> value = object->getProperty(property(name));
        if (value == nullptr) fail("getProperty(" + std::string(name) + ") returns null");
        shown.append(shown.empty() ? "" : ", ")
            .append(std::string(name) + "=" + (value->isEmpty() ? "empty" : show(scalarValue(*value))));
    }
    return shown;
}

template <class T>
std::string shownValue(void* address) {
    return show(*static_cast<T*>(address));
}

Contents nonZerosOf(ArrayImpl& array) {
    const Iterator here = beginOf(array);
    const auto show = array.getType() == ArrayType::SPARSE_LOGICAL  ? &shownValue<bool>
                      : array.getType() == ArrayType::SPARSE_DOUBLE ? &shownValue<double>
                                                                    : &shownValue<std::complex<double>>;
    return listed(array.getNumberOfNonZeroElements(), [&](std::size_t k) {
        void* address = here->getElementAddress();
        if (address == nullptr) fail("the iterator of a " + describe(array) + " gives no address");
        here->increment();
        return vexa::check::show(array.getIndex(k)) + "=" + show(address);
    });
}

bool isPrimitive(ArrayType type) {
    bool found = false;
    forEachPrimitive([&](auto tag) { found = found || tag.arrayType == type; });
    return found;
}

Contents numbersOf(ArrayImpl& array) {
    Contents contents;
    forEachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        if (tag.arrayType != array.getType()) return;
        auto& numbers = as<TypedArrayImpl<T>>(array, "TypedArrayImpl of its element type");
        contents = listed(array.getNumberOfElements(), [&](std::size_t k) { return show(read(numbers, k)); });
    });
    return contents;
}

} // namespace

Contents contentsOf(ArrayImpl& array) {
    const std::size_t count = array.getNumberOfElements();
    switch (array.getType()) {
    case ArrayType::CELL:
        return listed(count, [&](std::size_t k) { return shownElementArray(array, k, {}); });
    case ArrayType::STRING:
        return listed(count, [&](std::size_t k) { return shownString(array, k); });
    case ArrayType::STRUCT:
        return listed(count, [&](std::size_t k) { return shownRecord(asStructs(array), k); });
    case ArrayType::ENUM:
        return listed(count, [&](std::size_t k) { return std::string(asEnums(array).getEnumNameAt(k)); });
    case ArrayType::SPARSE_LOGICAL:
    case ArrayType::SPARSE_DOUBLE:
    case ArrayType::SPARSE_COMPLEX_DOUBLE:
        return nonZerosOf(array);
    case ArrayType::OBJECT:
    case ArrayType::VALUE_OBJECT:
    case ArrayType::HANDLE_OBJECT_REF:
        return listed(count, [&](std::size_t k) { return shownObject(asObjects(array), k); });
    default:
        return isPrimitive(array.getType()) ? numbersOf(array) : Contents();
    }
}

void expectContents(const std::string& what, ArrayImpl& array, const Contents& wanted) {
    const Contents found = contentsOf(array);
    expectEqual(what + ": the number of elements", found.size(), wanted.size());
    for (std::size_t k = 0; k < wanted.size(); ++k)
        if (found[k] != wanted[k])
            fail(what + ": the element at position " + show(k) + " is " + found[k] + ", expected " +
                 wanted[k]);
}

namespace {

template <class T>
Sample numberSample() {
    const std::string name(nameOf(ElementTag<T>::arrayType));
    return {name,
            {name},
            false,
            [](const Backend& backend, const Dimensions& dimensions) {
                return Owned<ArrayImpl>(filled<T>(backend, dimensions).release());
            },
            [](const Backend&, ArrayImpl& array, std::size_t position) {
                write(as<TypedArrayImpl<T>>(array, "TypedArrayImpl of its element type"), position,
                      otherValueAt<T>(position));
            }};
}

Owned<ArrayImpl> makeCells(const Backend& backend, const Dimensions& dimensions) {
    auto cells = backend.array(ArrayType::CELL, dimensions);
    for (std::size_t k = 0; k < cells->getNumberOfElements(); ++k)
        assign(*cells, k, {}, *scalar(backend, static_cast<double>(k)));
    return cells;
}
void changeCell(const Backend& backend, ArrayImpl& array, std::size_t position) {
    assign(array, position, {}, *scalar(backend, 1000));
}

Owned<ArrayImpl> makeStrings(const Backend& backend, const Dimensions& dimensions) {
    auto strings = backend.array(ArrayType::STRING, dimensions);
    for (std::size_t k = 0; k < strings->getNumberOfElements(); ++k)
        setString(asStrings(*strings), k, fv::String(std::u16string(k * 7 + 1, u'a')));
    return strings;
}
void changeString(const Backend&, ArrayImpl& array, std::size_t position) {
    setString(asStrings(array), position, fv::String(u"changed"));
}

Owned<ArrayImpl> makeStructs(const Backend& backend, const Dimensions& dimensions) {
    auto records =
        adopt(backend.factory().createStructArrayImpl(dimensions, {"b", "a"}), "createStructArrayImpl");
    for (std::size_t k = 0; k < records->getNumberOfElements(); ++k) {
        assign(*records, k, "b", *scalar(backend, static_cast<double>(k)));
        assign(*records, k, "a", *scalar(backend, static_cast<double>(k + 100)));
    }
    return records;
}
void changeField(const Backend& backend, ArrayImpl& array, std::size_t position) {
    assign(array, position, "a", *scalar(backend, 1000));
}

Owned<ArrayImpl> makeEnums(const Backend& backend, const Dimensions& dimensions) {
    std::size_t count = 1;
    for (const std::size_t extent : dimensions)
        count *= extent;
    const Contents members = listed(count, [](std::size_t k) { return "Member" + std::to_string(k); });
    return adopt(backend.factory().createEnumArrayImpl(dimensions, "Colors", members), "createEnumArrayImpl");
}
/// To a member that the array knows already.
void changeMember(const Backend&, ArrayImpl& array, std::size_t position) {
    array.unshare();
    const std::string now = asEnums(array).getEnumNameAt(position);
    array.setString(position, {}, now == "Member5" ? "Member0" : "Member5");
}

/// Non-zeros on the diagonal.
Sample sparseSample(ArrayType type) {
    const std::string name(nameOf(type));
    return {name,
            {name},
            true,
            [type](const Backend& backend, const Dimensions& dimensions) {
                const std::size_t count = std::min(dimensions[0], dimensions[1]);
                std::vector<double> values;
                std::vector<std::size_t> places;
                for (std::size_t k = 0; k < count; ++k) {
                    values.push_back(static_cast<double>(k + 1));
                    places.push_back(k);
                }
                return adopt(createSparse(backend.factory(), type, dimensions, values, places, places, false),
                             "the creator of sparse arrays");
            },
            [](const Backend&, ArrayImpl& array, std::size_t position) {
                array.unshare();
                const Iterator here = beginOf(array, true);
                here->advance(static_cast<std::int64_t>(position));
                if (array.getType() == ArrayType::SPARSE_LOGICAL)
                    *static_cast<bool*>(here->getElementAddress()) = false;
                else
                    *static_cast<double*>(here->getElementAddress()) = 1000; // the real part comes first
            }};
}

Owned<ArrayImpl> makeObjects(const Backend& backend, const Dimensions& dimensions) {
    const auto description = pointClass(backend);
    auto objects = adopt(backend.factory().createValueObjectArrayImpl(dimensions, description.get()),
                         "createValueObjectArrayImpl");
    for (std::size_t k = 0; k < objects->getNumberOfElements(); ++k) {
        const auto value = static_cast<double>(k);
        asObjects(*objects).setElementObject(k, newPoint(backend, value, -value).get());
    }
    return objects;
}
void changeObject(const Backend& backend, ArrayImpl& array, std::size_t position) {
    array.unshare();
    asObjects(array).setElementObject(position, newPoint(backend, 1000, 1000).get());
}

std::vector<Sample> allSamples() {
    std::vector<Sample> all;
    forEachPrimitive([&](auto tag) { all.push_back(numberSample<typename decltype(tag)::type>()); });
    all.push_back({"cell", {"cell", "double"}, false, makeCells, changeCell});
    all.push_back({"string", {"string"}, false, makeStrings, changeString});
    all.push_back({"struct", {"struct", "double"}, false, makeStructs, changeField});
    all.push_back({"enum", {"enum"}, false, makeEnums, changeMember});
    for (const auto type :
         {ArrayType::SPARSE_LOGICAL, ArrayType::SPARSE_DOUBLE, ArrayType::SPARSE_COMPLEX_DOUBLE})
        all.push_back(sparseSample(type));
    all.push_back({"object-array",
                   {"object-array", "value-object", "class", "double"},
                   false,
                   makeObjects,
                   changeObject});
    return all;
}

} // namespace

const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = allSamples();
    return all;
}

void eachSample(Backend& backend, const std::function<void(const Sample&)>& f) {
    std::size_t count = 0;
    for (const Sample& sample : samples()) {
        if (!std::all_of(sample.needs.begin(), sample.needs.end(),
                         [&](const std::string& need) { return backend.offers(need); }))
            continue;
        backend.step(sample.name + " arrays");
        f(sample);
        ++count;
    }
    if (count == 0) throw NotOffered{"no kind of array is offered"};
    backend.note(std::to_string(count) + (count == 1 ? " kind" : " kinds"));
}

} // namespace vexa::check
