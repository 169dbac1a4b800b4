#include "Samples.hpp"

#include "Foreign.hpp"

#include <foundation/vexadata/ArrayElementTypedRef.hpp>
#include <foundation/vexadata/Enumeration.hpp>

#include <complex>
#include <memory>
#include <utility>

namespace vexa::check {

namespace {

/// The value of a property, a cell or a field. With `extreme` arrays of all kinds, some of another back-end.
Owned<ArrayImpl> heldArray(const Backend& backend, std::size_t pattern, std::size_t n) {
    const auto value = static_cast<double>(n);
    if (pattern == counting) return scalar(backend, value);
    if (pattern == alike) {
        auto row = filled<double>(backend, {1, 3});
        write(*row, 2, value);
        return Owned<ArrayImpl>(row.detach());
    }
    switch (n % 7) {
    case 0:
        return emptyArray();
    case 1:
        return foreign(scalar(backend, value));
    case 2:
        return Owned<ArrayImpl>(backend.zeros<double>({0, 3}).detach());
    case 3:
        if (!backend.offers("cell")) break;
        {
            auto cells = backend.array(ArrayType::CELL, {1, 2});
            assign(*cells, 1, {}, *scalar(backend, value));
            return cells;
        }
    case 4:
        if (!backend.offers("string")) break;
        {
            auto strings = backend.array(ArrayType::STRING, {2, 1});
            setString(asStrings(*strings), 0, fv::String(u""));
            setString(asStrings(*strings), 1, fv::String(std::u16string(n, u's')));
            return strings;
        }
    case 5:
        return Owned<ArrayImpl>(filled<double>(backend, {2, 3, 2}).detach());
    default:
        break;
    }
    return scalar(backend, value);
}

std::string heldText(const Backend& backend, std::size_t pattern, std::size_t n) {
    const std::string value = show(static_cast<double>(n));
    if (pattern == counting) return "1x1 double [" + value + "]";
    if (pattern == alike) return "1x3 double [1, 2, " + value + "]";
    switch (n % 7) {
    case 0:
        return "empty";
    case 2:
        return "0x3 double []";
    case 3:
        if (!backend.offers("cell")) break;
        return "1x2 cell [empty, 1x1 double [" + value + "]]";
    case 4:
        if (!backend.offers("string")) break;
        return "2x1 string [\"\", " + show(std::u16string(n, u's')) + "]";
    case 5:
        return "2x3x2 double [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12]";
    default:
        break;
    }
    return "1x1 double [" + value + "]";
}

/// As `operator==` of handles tells them apart.
bool heldEqual(std::size_t pattern, std::size_t a, std::size_t b) {
    const auto alwaysTheSame = [](std::size_t n) { return n % 7 == 0 || n % 7 == 2 || n % 7 == 5; };
    return a == b || (pattern == extreme && a % 7 == b % 7 && alwaysTheSame(a));
}

std::size_t productOf(const Dimensions& dimensions) {
    std::size_t product = 1;
    for (const std::size_t extent : dimensions)
        product *= extent;
    return product;
}

// --- numbers

template <class T>
std::vector<T> valuesOf(const Dimensions& dimensions, std::size_t pattern) {
    std::vector<T> values;
    for (std::size_t k = 0; k < productOf(dimensions); ++k)
        values.push_back(valueAt<T>(pattern, k));
    return values;
}

template <class T>
Owned<ArrayImpl> writtenNumbers(const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
    auto array = backend.zeros<T>(dimensions);
    for (std::size_t k = 0; k < productOf(dimensions); ++k)
        write(*array, positionAt(*array, k), valueAt<T>(pattern, k));
    return Owned<ArrayImpl>(array.detach());
}

template <class T>
Owned<ArrayImpl> numbersFromData(const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
    const std::vector<T> values = valuesOf<T>(dimensions, pattern);
    const auto data = std::make_unique<T[]>(values.size() + 1);
    std::copy(values.begin(), values.end(), data.get());
    return adopt(backend.factory().createArrayWithDataImpl(ElementTag<T>::arrayType, dimensions, data.get(),
                                                           values.size()),
                 "createArrayWithDataImpl");
}

/// The position of the k-th element in column-major order, in row-major order.
std::size_t rowMajorPosition(const Dimensions& dimensions, std::size_t k) {
    std::size_t position = 0;
    for (const std::size_t extent : dimensions) {
        position = position * extent + k % extent;
        k /= extent;
    }
    return position;
}

template <class T>
Owned<ArrayImpl> numbersOverBuffer(const Backend& backend, const Dimensions& dimensions, std::size_t pattern,
                                   data::MemoryLayout layout) {
    std::vector<T> values = valuesOf<T>(dimensions, pattern);
    if (layout == data::MemoryLayout::ROW_MAJOR)
        for (std::size_t k = 0; k < values.size(); ++k)
            values[rowMajorPosition(dimensions, k)] = valueAt<T>(pattern, k);
    return adopt(backend.factory().createArrayFromBufferImpl(
                     dimensions, ElementTag<T>::arrayType,
                     Buffer<void>(bufferOf(values).release(), &std::free), layout),
                 "createArrayFromBufferImpl");
}

template <class T>
void writeThroughIterator(const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern,
                          const Element& element) {
    const Iterator begin = beginOf(array, true);
    const Iterator end = endOf(array, true);
    expectEqual("distanceTo from a writable begin to a writable end", begin->distanceTo(*end),
                static_cast<std::int64_t>(lengthOf(array)));
    const Iterator here(begin->clone());
    here->advance(static_cast<std::int64_t>(positionAt(array, k)));
    *static_cast<T*>(here->getElementAddress()) = valueAt<T>(pattern, element[0]);
}

template <class T>
Sample numberSample() {
    using data::MemoryLayout;
    const std::string name(nameOf(ElementTag<T>::arrayType));
    Sample sample{name, {name}};
    sample.primitive = true;
    const auto over = [](MemoryLayout layout) {
        return [layout](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
            return numbersOverBuffer<T>(backend, dimensions, pattern, layout);
        };
    };
    sample.origins = {{"", {}, writtenNumbers<T>},
                      {" from data", {"data"}, numbersFromData<T>},
                      {" over a buffer", {"from-buffer"}, over(MemoryLayout::COLUMN_MAJOR)},
                      {" over a row-major buffer", {"from-buffer"}, over(MemoryLayout::ROW_MAJOR)}};
    sample.writers = {
        {"setElementValue", Writer::wholeElement,
         [](const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern, const Element& element) {
             write(asNumbers<T>(array), positionAt(array, k), valueAt<T>(pattern, element[0]));
         }},
        {"a writable iterator", Writer::wholeElement, writeThroughIterator<T>}};
    sample.text = [](const Backend&, std::size_t pattern, const Element& element) {
        return show(valueAt<T>(pattern, element[0]));
    };
    sample.equal = [](std::size_t pattern, std::size_t a, std::size_t b) {
        return valueAt<T>(pattern, a) == valueAt<T>(pattern, b);
    };
    return sample;
}

// --- texts, members

Sample stringSample() {
    Sample sample{"string", {"string"}};
    const auto writeOne = [](const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern,
                             const Element& element) {
        setString(asStrings(array), k, textAt(pattern, element[0]));
    };
    sample.origins = {{"", {}, [](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
                           auto strings = backend.array(ArrayType::STRING, dimensions);
                           for (std::size_t k = 0; k < productOf(dimensions); ++k)
                               setString(asStrings(*strings), k, textAt(pattern, k));
                           return strings;
                       }}};
    sample.writers = {
        {"setStringElement", Writer::wholeElement, writeOne},
        {"setElementValue", Writer::wholeElement,
         [](const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern, const Element& element) {
             array.unshare();
             asStrings(array).setElementValue(k, {}, textAt(pattern, element[0]));
         }}};
    sample.text = [](const Backend&, std::size_t pattern, const Element& element) {
        const auto text = textAt(pattern, element[0]);
        return text ? show(*text) : std::string("missing");
    };
    sample.equal = [](std::size_t pattern, std::size_t a, std::size_t b) {
        return textAt(pattern, a) == textAt(pattern, b);
    };
    return sample;
}

/// With `alike` names that begin alike, one of them long.
std::string memberAt(std::size_t pattern, std::size_t n) {
    if (pattern == counting) return "Member" + std::to_string(n * 7 % 1000);
    if (pattern == extreme) return n % 3 == 0 ? "" : n % 3 == 1 ? "Z" : "A" + std::string(40, 'a');
    return std::string(n % 5 == 4 ? 0 : 40, 'L') + static_cast<char>('A' + n % 5);
}

Sample enumSample() {
    Sample sample{"enumeration", {"enumeration"}};
    sample.knownValuesOnly = true;
    sample.origins = {{"", {}, [](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
                           Contents members;
                           for (std::size_t k = 0; k < productOf(dimensions); ++k)
                               members.push_back(memberAt(pattern, k));
                           return adopt(backend.factory().createEnumArrayImpl(dimensions, "Colors", members),
                                        "createEnumArrayImpl");
                       }}};
    sample.writers = {
        {"setString", Writer::wholeElement,
         [](const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern, const Element& element) {
             array.unshare();
             array.setString(k, {}, memberAt(pattern, element[0]));
         }},
        {"setElementValue", Writer::wholeElement,
         [](const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern, const Element& element) {
             array.unshare();
             asEnums(array).setElementValue(k, {}, fv::Enumeration(memberAt(pattern, element[0])));
         }}};
    sample.text = [](const Backend&, std::size_t pattern, const Element& element) {
        return memberAt(pattern, element[0]);
    };
    sample.equal = [](std::size_t pattern, std::size_t a, std::size_t b) {
        return memberAt(pattern, a) == memberAt(pattern, b);
    };
    return sample;
}

// --- cells, records

/// Writes inside the array that an element holds, as the library does: through a chain, to a copy when others
/// own it too. With arrays of other kinds, or empty ones, the element is replaced.
void replaceThroughChain(ArrayImpl& array, std::size_t k, const std::string& field, ArrayImpl& value) {
    const Owned<ReferenceImpl> chain(new data::detail::ArrayReferenceImpl(&array, k));
    if (!field.empty()) chain->addIndex(field);
    chain->setArray(&value);
}

Sample cellSample() {
    Sample sample{"cell", {"cell", "double"}};
    const auto writeOne = [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                             const Element& element) {
        assign(array, k, {}, *heldArray(backend, pattern, element[0]));
    };
    sample.origins = {
        {"", {}, [writeOne](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
             auto cells = backend.array(ArrayType::CELL, dimensions);
             for (std::size_t k = 0; k < productOf(dimensions); ++k)
                 writeOne(backend, *cells, k, pattern, {k, 0});
             return cells;
         }}};
    sample.writers = {{"assignElementArray", Writer::wholeElement, writeOne},
                      {"setElementValue", Writer::wholeElement,
                       [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                          const Element& element) {
                           array.unshare();
                           asCells(array).setElementValue(
                               k, {}, fv::Array(heldArray(backend, pattern, element[0]).detach()));
                       }},
                      {"a chain", Writer::wholeElement,
                       [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                          const Element& element) {
                           replaceThroughChain(array, k, {}, *heldArray(backend, pattern, element[0]));
                       }}};
    sample.text = [](const Backend& backend, std::size_t pattern, const Element& element) {
        return heldText(backend, pattern, element[0]);
    };
    sample.equal = heldEqual;
    return sample;
}

const std::array<std::string, 2> fieldNames{"velocity", "a"};

std::vector<fv::Array> recordOf(const Backend& backend, std::size_t pattern, const Element& element) {
    std::vector<fv::Array> values;
    values.reserve(element.size());
    for (const std::size_t n : element)
        values.emplace_back(heldArray(backend, pattern, n).detach());
    return values;
}

Sample structSample() {
    Sample sample{"struct", {"struct", "double"}, 2};
    const auto writeField = [](std::size_t part) {
        return [part](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                      const Element& element) {
            assign(array, k, fieldNames[part], *heldArray(backend, pattern, element[part]));
        };
    };
    sample.origins = {
        {"", {}, [writeField](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
             auto records =
                 adopt(backend.factory().createStructArrayImpl(dimensions, {fieldNames[0], fieldNames[1]}),
                       "createStructArrayImpl");
             for (std::size_t k = 0; k < productOf(dimensions); ++k) {
                 writeField(0)(backend, *records, k, pattern, {k, k + 100});
                 writeField(1)(backend, *records, k, pattern, {k, k + 100});
             }
             return records;
         }}};
    sample.writers = {{"setFieldValues", Writer::wholeElement,
                       [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                          const Element& element) {
                           array.unshare();
                           asStructs(array).setFieldValues(k, recordOf(backend, pattern, element));
                       }},
                      {"assignElementArray to the first field", 0, writeField(0)},
                      {"assignElementArray to the second field", 1, writeField(1)},
                      {"a chain to the second field", 1,
                       [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                          const Element& element) {
                           replaceThroughChain(array, k, fieldNames[1],
                                               *heldArray(backend, pattern, element[1]));
                       }}};
    sample.text = [](const Backend& backend, std::size_t pattern, const Element& element) {
        return fieldNames[0] + "=" + heldText(backend, pattern, element[0]) + ", " + fieldNames[1] + "=" +
               heldText(backend, pattern, element[1]);
    };
    sample.equal = heldEqual;
    return sample;
}

// --- sparse matrices

/// Scattered over the matrix, in the order in which they are stored.
std::vector<std::pair<std::size_t, std::size_t>> nonZerosOf(const Dimensions& dimensions) {
    const bool large = dimensions[0] * dimensions[1] > 1000;
    std::vector<std::pair<std::size_t, std::size_t>> places;
    for (std::size_t column = 0; column < dimensions[1]; ++column)
        for (std::size_t row = 0; row < dimensions[0]; ++row)
            if (large ? (row + column) % 50 != 1 : (row + 2 * column) % 3 != 1)
                places.emplace_back(row, column);
    return places;
}

/// Never zero. Only the first of the numbers of an array are true.
double sparseValue(ArrayType type, std::size_t pattern, std::size_t n) {
    if (type == ArrayType::SPARSE_LOGICAL) return n < 1000000 ? 1 : 0;
    const double value = valueAt<double>(pattern, n);
    return value == 0 ? 0.5 + static_cast<double>(n) : value;
}

Owned<ArrayImpl> makeSparse(const Backend& backend, ArrayType type, const Dimensions& dimensions,
                            std::size_t pattern, bool compressed) {
    auto places = nonZerosOf(dimensions);
    std::vector<double> values;
    std::vector<std::size_t> rows;
    std::vector<std::size_t> columns(compressed ? dimensions[1] + 1 : 0, 0);
    for (std::size_t k = 0; k < places.size(); ++k) {
        const std::size_t from = compressed ? k : places.size() - 1 - k; // triplets come in any order
        values.push_back(sparseValue(type, pattern, from));
        rows.push_back(places[from].first);
        if (compressed)
            ++columns[places[from].second + 1];
        else
            columns.push_back(places[from].second);
    }
    if (compressed)
        for (std::size_t column = 0; column < dimensions[1]; ++column)
            columns[column + 1] += columns[column];
    return adopt(createSparse(backend.factory(), type, dimensions, values, rows, columns, compressed),
                 "the creator of sparse arrays");
}

Sample sparseSample(ArrayType type) {
    const std::string name(nameOf(type));
    Sample sample{name, {name}};
    sample.sparse = true;
    const auto origin = [type](bool compressed) {
        return [type, compressed](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
            return makeSparse(backend, type, dimensions, pattern, compressed);
        };
    };
    sample.origins = {{"", {}, origin(false)},
                      {" from compressed columns", {"compressed-columns"}, origin(true)}};
    sample.writers = {{"a writable iterator", Writer::wholeElement,
                       [type](const Backend&, ArrayImpl& array, std::size_t k, std::size_t pattern,
                              const Element& element) {
                           array.unshare();
                           const Iterator here = beginOf(array, true);
                           here->advance(static_cast<std::int64_t>(k));
                           void* address = here->getElementAddress();
                           const double value = sparseValue(type, pattern, element[0]);
                           if (type == ArrayType::SPARSE_LOGICAL)
                               *static_cast<bool*>(address) = value != 0;
                           else
                               *static_cast<double*>(address) = value; // the real part comes first
                       }}};
    sample.text = [type](const Backend&, std::size_t pattern, const Element& element) {
        const double value = sparseValue(type, pattern, element[0]);
        return type == ArrayType::SPARSE_LOGICAL  ? show(value != 0)
               : type == ArrayType::SPARSE_DOUBLE ? show(value)
                                                  : show(std::complex<double>(value, 0));
    };
    sample.equal = [type](std::size_t pattern, std::size_t a, std::size_t b) {
        return sparseValue(type, pattern, a) == sparseValue(type, pattern, b);
    };
    return sample;
}

// --- objects

Owned<ObjectImpl> pointAt(const Backend& backend, std::size_t pattern, const Element& element) {
    return newPoint(backend, *heldArray(backend, pattern, element[0]),
                    *heldArray(backend, pattern, element[1]));
}

/// To a property, through the properties of the element.
auto writeProperty(std::size_t part) {
    return [part](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                  const Element& element) {
        array.unshare();
        const auto here = adopt(asObjects(array).beginElementProperties(k), "beginElementProperties");
        for (std::size_t step = 0; step < part; ++step)
            here->increment();
        const auto object = adopt(here->get(), "get of a property iterator");
        adopt(dynamic_cast<data::impl::PropertyImpl&>(*object).getReference(), "getReference")
            ->setArray(heldArray(backend, pattern, element[part]).get());
    };
}

Sample objectSample() {
    Sample sample{"object-array", {"object-array", "value-object", "class", "double"}, 2};
    const auto writeOne = [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                             const Element& element) {
        array.unshare();
        asObjects(array).setElementObject(k, pointAt(backend, pattern, element).get());
    };
    sample.origins = {
        {"", {}, [writeOne](const Backend& backend, const Dimensions& dimensions, std::size_t pattern) {
             const auto description = pointClass(backend);
             auto objects = adopt(backend.factory().createValueObjectArrayImpl(dimensions, description.get()),
                                  "createValueObjectArrayImpl");
             adopt(asObjects(*objects).getArrayPropertyReference(property("unit")),
                   "getArrayPropertyReference")
                 ->setArray(scalar(backend, 0).get());
             for (std::size_t k = 0; k < productOf(dimensions); ++k)
                 writeOne(backend, *objects, k, pattern, {k, k + 100});
             return objects;
         }}};
    sample.writers = {{"setElementObject", Writer::wholeElement, writeOne},
                      {"setElementValue", Writer::wholeElement,
                       [](const Backend& backend, ArrayImpl& array, std::size_t k, std::size_t pattern,
                          const Element& element) {
                           array.unshare();
                           asObjects(array).setElementValue(
                               k, {}, fv::HandleObjectRef(pointAt(backend, pattern, element).detach()));
                       }},
                      {"a reference to the first property", 0, writeProperty(0)},
                      {"a reference to the second property", 1, writeProperty(1)}};
    sample.text = [](const Backend& backend, std::size_t pattern, const Element& element) {
        return "x=" + heldText(backend, pattern, element[0]) +
               ", y=" + heldText(backend, pattern, element[1]);
    };
    sample.equal = heldEqual;
    return sample;
}

std::vector<Sample> allSamples() {
    std::vector<Sample> all;
    forEachPrimitive([&](auto tag) { all.push_back(numberSample<typename decltype(tag)::type>()); });
    all.push_back(cellSample());
    all.push_back(stringSample());
    all.push_back(structSample());
    all.push_back(enumSample());
    for (const auto type :
         {ArrayType::SPARSE_LOGICAL, ArrayType::SPARSE_DOUBLE, ArrayType::SPARSE_COMPLEX_DOUBLE})
        all.push_back(sparseSample(type));
    all.push_back(objectSample());
    return all;
}

} // namespace

const std::vector<Sample>& samples() {
    static const std::vector<Sample> all = allSamples();
    return all;
}

// --- models

Model::Model(const Backend& backend, const Sample& sample, std::size_t pattern, const Dimensions& dimensions)
    : sample_(&sample), pattern_(pattern) {
    std::size_t count = productOf(dimensions);
    if (sample.sparse) {
        const auto places = nonZerosOf(dimensions);
        count = places.size();
        for (const auto& place : places)
            places_.push_back(show(place) + "=");
    }
    for (std::size_t k = 0; k < count; ++k) {
        elements_.push_back({k, k + 100});
        contents_.push_back(textOf(backend, k, elements_[k]));
    }
}

std::string Model::textOf(const Backend& backend, std::size_t k, const Element& element) const {
    const std::string text = sample_->text(backend, pattern_, element);
    return sample_->sparse ? places_[k] + text : text;
}

bool Model::change(const Backend& backend, ArrayImpl& array, std::size_t k, const Writer& writer) {
    Element element = elements_[k];
    const bool whole = writer.part == Writer::wholeElement;
    const std::size_t part = whole ? 0 : writer.part;
    const auto shown = [&](std::size_t n) { return sample_->text(backend, pattern_, {n, n}); };
    if (sample_->knownValuesOnly) {
        const auto other = std::find_if(elements_.begin(), elements_.end(), [&](const Element& known) {
            return shown(known[0]) != shown(element[0]);
        });
        if (other == elements_.end()) return false;
        element = *other;
    } else {
        element[part] = anotherThan(element[part], [&](std::size_t a, std::size_t b) {
            return shown(a) == shown(b) || sample_->equal(pattern_, a, b);
        });
        if (array.getType() == ArrayType::SPARSE_LOGICAL)
            element[part] = elements_[k][part] < 1000000 ? 1000000 : 0;
        if (whole && sample_->parts == 2) element[1] = element[0] + 100;
    }
    std::string text = textOf(backend, k, element);
    writer.write(backend, array, k, pattern_, element);
    elements_[k] = element; // what follows the write cannot fail
    contents_[k].swap(text);
    return true;
}

bool Model::exchange(const Backend& backend, ArrayImpl& array, std::size_t a, std::size_t b) {
    const auto differs = [&](std::size_t part) {
        return !sample_->equal(pattern_, elements_[a][part], elements_[b][part]);
    };
    if (!differs(0) && !(sample_->parts == 2 && differs(1))) return false;
    std::swap(elements_[a], elements_[b]);
    for (const std::size_t k : {a, b}) {
        sample_->writers.front().write(backend, array, k, pattern_, elements_[k]);
        contents_[k] = textOf(backend, k, elements_[k]);
    }
    return true;
}

std::optional<bool> Model::equalsItself() const {
    bool equal = true;
    for (const Element& element : elements_) {
        if (sample_->name == "string" && !textAt(pattern_, element[0])) return std::nullopt;
        equal = equal && sample_->equal(pattern_, element[0], element[0]);
    }
    return equal;
}

void Subject::expectUnchanged(const std::string& when) const {
    expectContents("the " + what + when, *array, model.contents());
    expectDescribed("the " + what + when, *array, model);
    for (const auto& [other, held] : others) {
        expectContents("an array that shares with the " + what + when, *other, held.contents());
        expectDescribed("an array that shares with the " + what + when, *other, held);
    }
}

// --- what arrays say of themselves

namespace {

void describesStructs(const std::string& of, ArrayImpl& array, const Model&) {
    StructArrayImpl& structs = asStructs(array);
    expectEqual("getNumFields" + of, structs.getNumFields(), fieldNames.size());
    const auto here = adopt(structs.fieldNamesBegin(), "fieldNamesBegin");
    const auto end = adopt(structs.fieldNamesEnd(), "fieldNamesEnd");
    for (const std::string& name : fieldNames) {
        expect(!here->equal(end.get()), "the field names" + of + " end before " + show(name));
        expectEqual("a field name" + of, fv::VexaFieldIdentifier(here->get()).getString(), name);
        here->increment();
    }
    expect(here->equal(end.get()), "the field names" + of + " do not end after the last");
}

/// Of some of the elements, which castToString tells too.
template <class Name>
void describesTexts(const std::string& of, ArrayImpl& array, const Model& model, Name name) {
    for (const std::size_t k : somePositions(model.size()))
        expectEqual("castToString(" + show(k) + ")" + of, array.castToString(k, {}),
                    name(model.contents()[k]));
}

void describesSparse(const std::string& of, ArrayImpl& array, const Model& model) {
    const Dimensions& dimensions = array.getDimensions();
    expectEqual("getRows" + of, array.getRows(), dimensions[0]);
    expectEqual("getCols" + of, array.getCols(), dimensions[1]);
    expectEqual("getNumberOfNonZeroElements" + of, array.getNumberOfNonZeroElements(), model.size());
    const std::size_t* starts = array.getJc();
    const std::size_t* rows = array.getIr();
    expectEqual("the last entry of getJc" + of, starts[dimensions[1]], model.size());
    for (const std::size_t k : somePositions(model.size())) {
        const auto [row, column] = array.getIndex(k);
        expectEqual("entry " + show(k) + " of getIr" + of, rows[k], row);
        expect(starts[column] <= k && k < starts[column + 1],
               "getJc" + of + " leaves non-zero " + show(k) + " out of its column");
    }
}

void describesObjects(const std::string& of, ArrayImpl& array, const Model&) {
    const ObjectArrayImpl& objects = asObjects(array);
    expectEqual("numOfArrayProperties" + of, objects.numOfArrayProperties(), 1);
    expectEqual("hasArrayProperty" + of, objects.hasArrayProperty(property("unit")), true);
    expectEqual("isHeterogeneous" + of, objects.isHeterogeneous(), false);
    expectEqual("getExternalRepresentationArrayPropertyNames" + of,
                objects.getExternalRepresentationArrayPropertyNames(), {"unit"});
}

} // namespace

void expectDescribed(const std::string& what, ArrayImpl& array, const Model& model) {
    const std::string of = " of " + what;
    const std::string& kind = model.sample().name;
    if (kind == "struct") describesStructs(of, array, model);
    if (model.sample().sparse) describesSparse(of, array, model);
    if (kind == "object-array") describesObjects(of, array, model);
    if (kind == "string" && model.pattern() == counting)
        describesTexts(of, array, model,
                       [](const std::string& quoted) { return quoted.substr(1, quoted.size() - 2); });
    if (kind == "enumeration") {
        expectEqual("getClassName" + of, std::string(asEnums(array).getClassName()), "Colors");
        describesTexts(of, array, model, [](const std::string& name) { return name; });
    }
}

// --- subjects

namespace {

/// What has happened to an array since it was made.
struct History {
    const char* name;
    void (*apply)(const Backend&, Subject&);
};

/// The subject goes on with a copy; the original is kept among the others.
void continueWithCopy(const Backend&, Subject& subject) {
    auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
    subject.others.emplace_back(std::exchange(subject.array, std::move(copy)), subject.model);
}
void keepCopy(const Backend&, Subject& subject) {
    subject.others.emplace_back(adopt(subject.array->sharedCopy(), "sharedCopy"), subject.model);
}
void changeSome(const Backend& backend, Subject& subject) {
    for (const std::size_t k : somePositions(subject.model.size()))
        subject.model.change(backend, *subject.array, k);
}

const std::array<History, 9> histories{{
    {"copy of a ", continueWithCopy},
    {"copy, whose original has gone, of a ",
     [](const Backend& backend, Subject& subject) {
         continueWithCopy(backend, subject);
         subject.others.clear();
     }},
    {"copy of a copy of a ",
     [](const Backend& backend, Subject& subject) {
         continueWithCopy(backend, subject);
         continueWithCopy(backend, subject);
     }},
    {"copied ", keepCopy},
    {"unshared ", [](const Backend&, Subject& subject) { subject.array->unshare(); }},
    {"copied and unshared ",
     [](const Backend& backend, Subject& subject) {
         keepCopy(backend, subject);
         subject.array->unshare();
     }},
    {"changed ", changeSome},
    {"copied and changed ",
     [](const Backend& backend, Subject& subject) {
         keepCopy(backend, subject);
         changeSome(backend, subject);
     }},
    {"changed copy of a ",
     [](const Backend& backend, Subject& subject) {
         continueWithCopy(backend, subject);
         changeSome(backend, subject);
     }},
}};

/// Kinds of which 70,000 elements are made.
bool isLargeKind(const Sample& sample) {
    static const Contents names{"logical", "int8",        "double",       "complex-single",
                                "string",  "enumeration", "sparse-double"};
    return std::find(names.begin(), names.end(), sample.name) != names.end();
}

const std::vector<Dimensions> everyShape{{2, 3},    {1, 1},       {0, 0},    {0, 3},
                                         {3, 0},    {1, 5},       {5, 1},    {3, 3},
                                         {2, 3, 4}, {2, 3, 2, 2}, {4, 1, 0}, {1, 2, 1, 1, 1, 3, 1}};
const std::vector<Dimensions> shapesWithHistory{{2, 3}, {1, 1}, {0, 3}, {4, 1}, {2, 2, 2}};

class Subjects {
public:
    Subjects(Backend& backend, const Selection& selection, const std::function<void(Subject&)>& f)
        : backend_(backend), selection_(selection), f_(f) {}

    void runOver(const Sample& sample) {
        for (const Origin& origin : sample.origins) {
            if (!offersAll(backend_, origin.needs)) continue;
            for (const Dimensions& dimensions : everyShape)
                for (std::size_t pattern = 0; pattern < numberOfPatterns; ++pattern)
                    runOne(sample, origin, dimensions, pattern, nullptr);
            runOne(sample, origin, {1, 300}, counting, nullptr);
            if (selection_.histories)
                for (const History& history : histories)
                    for (const Dimensions& dimensions : shapesWithHistory)
                        for (const std::size_t pattern : {counting, extreme})
                            runOne(sample, origin, dimensions, pattern, &history);
            if (selection_.large && isLargeKind(sample))
                runOne(sample, origin, {350, 200}, counting, nullptr);
        }
    }

private:
    void runOne(const Sample& sample, const Origin& origin, const Dimensions& dimensions, std::size_t pattern,
                const History* history) {
        if (sample.sparse && dimensions.size() != 2) return;
        if (!selection_.empty && productOf(dimensions) == 0) return;
        const auto values = static_cast<Pattern>(pattern);
        std::string what = show(dimensions) + " " + sample.name + " array" + origin.name;
        if (values != counting) what += " (" + std::string(nameOf(values)) + ")";
        backend_.step("making a " + what);
        Subject subject{what, origin.make(backend_, dimensions, pattern),
                        Model(backend_, sample, pattern, dimensions), dimensions, &origin};
        if (history != nullptr) {
            subject.what.insert(0, history->name);
            history->apply(backend_, subject);
        }
        backend_.step("a " + subject.what);
        f_(subject);
    }

    Backend& backend_;
    const Selection& selection_;
    const std::function<void(Subject&)>& f_;
};

} // namespace

bool offersAll(const Backend& backend, const std::vector<std::string>& needs) {
    return std::all_of(needs.begin(), needs.end(),
                       [&](const std::string& need) { return backend.offers(need); });
}

void eachSample(Backend& backend, const std::function<void(const Sample&)>& f) {
    std::size_t count = 0;
    for (const Sample& sample : samples()) {
        if (!offersAll(backend, sample.needs)) continue;
        backend.step(sample.name + " arrays");
        f(sample);
        ++count;
    }
    if (count == 0) throw NotOffered{"no kind of array is offered"};
    backend.note(std::to_string(count) + (count == 1 ? " kind" : " kinds"));
}

void eachSubject(Backend& backend, const Selection& selection, const std::function<void(Subject&)>& f) {
    eachSample(backend, [&](const Sample& sample) {
        if (selection.primitivesOnly && !sample.primitive) return;
        Subjects(backend, selection, f).runOver(sample);
    });
}

Owned<ArrayImpl> make(const Backend& backend, const Sample& sample, const Dimensions& dimensions,
                      std::size_t pattern) {
    return sample.origins.front().make(backend, dimensions, pattern);
}

std::vector<std::size_t> somePositions(std::size_t size) {
    if (size == 0) return {};
    if (size == 1) return {0};
    if (size == 2) return {0, 1};
    return {0, size / 2, size - 1};
}

std::vector<std::size_t> manyPositions(std::size_t size) {
    std::vector<std::size_t> found;
    for (std::size_t k = 0; k < size; ++k) {
        const bool powerOfTwo = (k & (k - 1)) == 0 || (k & (k + 1)) == 0;
        if (size <= 30 || k < 3 || k + 3 > size || powerOfTwo || k % (size / 7) == 1) found.push_back(k);
    }
    return found;
}

} // namespace vexa::check
