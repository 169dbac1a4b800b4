// Reading arrays, and making what checks put into them.

#include "Samples.hpp"

#include <foundation/vexadata/ArrayElementTypedRef.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>

#include <complex>

namespace vexa::check {

Owned<ArrayImpl> scalar(const Backend& backend, double value) {
    auto array = backend.zeros<double>({1, 1});
    write(*array, 0, value);
    return Owned<ArrayImpl>(array.detach());
}
double scalarValue(ArrayImpl& array) { return read(asNumbers<double>(array), 0); }

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

std::string shownArray(ArrayImpl& array) {
    if (array.getDimensions() == Dimensions{0, 0}) return "empty";
    return show(array.getDimensions()) + " " + std::string(nameOf(array.getType())) + " " +
           show(contentsOf(array));
}
std::string shownElementArray(ArrayImpl& holder, std::size_t index, const std::string& fieldName) {
    ReferenceImpl* made = holder.createElementReference(index, fieldName, false);
    if (made == nullptr) return "no reference";
    const Owned<ReferenceImpl> chain(made);
    ArrayImpl* held = chain->getArrayImpl();
    return held == nullptr ? "no array" : shownArray(*held);
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
bool isSparse(ArrayType type) { return fv::detail::isSparse(type); }

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
Owned<ObjectImpl> newPoint(const Backend& backend, ArrayImpl& x, ArrayImpl& y) {
    const auto description = pointClass(backend);
    auto point = adopt(backend.factory().createValueObjectImpl(description.get()), "createValueObjectImpl");
    setProperty(*point, "x", x);
    setProperty(*point, "y", y);
    return point;
}
Owned<ObjectImpl> newPoint(const Backend& backend, double x, double y) {
    return newPoint(backend, *scalar(backend, x), *scalar(backend, y));
}

namespace {

template <class F>
Contents listed(std::size_t count, F element) {
    Contents contents;
    contents.reserve(count);
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

std::string shownRecord(StructArrayImpl& array, std::size_t index, const Contents& names) {
    std::string record;
    for (const std::string& name : names)
        record.append(record.empty() ? "" : ", ").append(name + "=" + shownElementArray(array, index, name));
    return record;
}

std::string shownObjectAt(ObjectArrayImpl& array, std::size_t index) {
    ObjectImpl* held = array.getElementObject(index);
    return held == nullptr ? "no object" : shownObject(*Owned<ObjectImpl>(held));
}

template <class T>
std::string shownValue(void* address) {
    return show(*static_cast<T*>(address));
}

Contents nonZerosOf(ArrayImpl& array) {
    const Iterator here = beginOf(array);
    std::string (*show)(void*) = nullptr;
    fv::detail::withSparse(array.getType(),
                           [&](auto tag) { show = &shownValue<typename decltype(tag)::type>; });
    return listed(array.getNumberOfNonZeroElements(), [&](std::size_t k) {
        void* address = here->getElementAddress();
        if (address == nullptr) fail("the iterator of a " + describe(array) + " gives no address");
        here->increment();
        return vexa::check::show(array.getIndex(k)) + "=" + show(address);
    });
}

} // namespace

std::string shownObject(ObjectImpl& object) {
    std::string shown;
    for (const char* name : {"x", "y"}) {
        const std::shared_ptr<ArrayImpl> value = object.getProperty(property(name));
        if (value == nullptr) fail("getProperty(" + std::string(name) + ") returns null");
        shown.append(shown.empty() ? "" : ", ").append(std::string(name) + "=" + shownArray(*value));
    }
    return shown;
}

std::size_t positionAt(const ArrayImpl& array, std::size_t k) {
    if (array.getMemoryLayout() != data::MemoryLayout::ROW_MAJOR) return k;
    std::size_t position = 0;
    for (const std::size_t extent : array.getDimensions()) {
        position = position * extent + k % extent;
        k /= extent;
    }
    return position;
}

std::size_t lengthOf(const ArrayImpl& array) {
    return isSparse(array.getType()) ? array.getNumberOfNonZeroElements() : array.getNumberOfElements();
}

Contents contentsOf(ArrayImpl& array) {
    const std::size_t count = array.getNumberOfElements();
    switch (array.getType()) {
    case ArrayType::CELL:
        return listed(count, [&](std::size_t k) { return shownElementArray(array, k, {}); });
    case ArrayType::STRING:
        return listed(count, [&](std::size_t k) { return shownString(array, k); });
    case ArrayType::STRUCT: {
        const Contents names = fieldNamesOf(asStructs(array));
        return listed(count, [&](std::size_t k) { return shownRecord(asStructs(array), k, names); });
    }
    case ArrayType::ENUM:
        return listed(count, [&](std::size_t k) { return std::string(asEnums(array).getEnumNameAt(k)); });
    case ArrayType::SPARSE_LOGICAL:
    case ArrayType::SPARSE_DOUBLE:
    case ArrayType::SPARSE_COMPLEX_DOUBLE:
        return nonZerosOf(array);
    case ArrayType::OBJECT:
    case ArrayType::VALUE_OBJECT:
    case ArrayType::HANDLE_OBJECT_REF:
        return listed(count, [&](std::size_t k) { return shownObjectAt(asObjects(array), k); });
    default: {
        Contents contents;
        withElementType(array.getType(), [&](auto tag) {
            auto& numbers = asNumbers<typename decltype(tag)::type>(array);
            contents =
                listed(count, [&](std::size_t k) { return show(read(numbers, positionAt(array, k))); });
        });
        return contents;
    }
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

} // namespace vexa::check
