// An array of every kind with known contents, in every state that the library can bring it into: what the
// checks that all kinds have in common run over.
#pragma once

#include "Backend.hpp"
#include "Values.hpp"

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/Identifiers.hpp>
#include <foundation/vexadata/Object.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace vexa::check {

namespace fv = foundation::vexadata;
using data::impl::Buffer;
using data::impl::ClassInfoImpl;
using data::impl::EnumArrayImpl;
using data::impl::ObjectArrayImpl;
using data::impl::ObjectImpl;
using data::impl::StringArrayImpl;
using data::impl::StructArrayImpl;
using CellArrayImpl = TypedArrayImpl<fv::Array>;
using Contents = std::vector<std::string>;

/// The interface of a kind behind an array. @throws Failure when the array does not implement it
template <class Interface>
Interface& as(ArrayImpl& array, std::string_view interface) {
    auto* typed = dynamic_cast<Interface*>(&array);
    if (typed == nullptr) fail("a " + describe(array) + " does not implement " + std::string(interface));
    return *typed;
}
inline CellArrayImpl& asCells(ArrayImpl& array) { return as<CellArrayImpl>(array, "TypedArrayImpl<Array>"); }
inline StringArrayImpl& asStrings(ArrayImpl& array) { return as<StringArrayImpl>(array, "StringArrayImpl"); }
inline StructArrayImpl& asStructs(ArrayImpl& array) { return as<StructArrayImpl>(array, "StructArrayImpl"); }
inline EnumArrayImpl& asEnums(ArrayImpl& array) { return as<EnumArrayImpl>(array, "EnumArrayImpl"); }
inline ObjectArrayImpl& asObjects(ArrayImpl& array) { return as<ObjectArrayImpl>(array, "ObjectArrayImpl"); }
template <class T>
TypedArrayImpl<T>& asNumbers(ArrayImpl& array) {
    return as<TypedArrayImpl<T>>(array, "TypedArrayImpl of its element type");
}

/// Runs `f` with a tag for the element type of an array of primitive elements; false for other kinds.
template <class F>
bool withElementType(ArrayType type, F f) {
    return fv::detail::withPrimitive(type, f);
}

/// A 1-by-1 double array.
Owned<ArrayImpl> scalar(const Backend& backend, double value);
double scalarValue(ArrayImpl& array);

/// Memory as callers hand it over.
template <class T>
Buffer<T[]> bufferOf(const std::vector<T>& values) {
    auto* memory = static_cast<T*>(std::malloc(values.size() * sizeof(T) + 1));
    if (memory == nullptr) throw std::bad_alloc();
    std::copy(values.begin(), values.end(), memory);
    return Buffer<T[]>(memory, &std::free);
}

/// The text of a string element; "missing" stands for one.
std::string shownString(const ArrayImpl& array, std::size_t index);
void setString(StringArrayImpl& array, std::size_t index, fv::String value);

/// Kind, dimensions and elements of an array, such as "1x1 double [7]"; "empty" for one of 0 by 0.
std::string shownArray(ArrayImpl& array);
/// The array in an element or field as text, or what stands in its place: "empty", "no array", "no
/// reference".
std::string shownElementArray(ArrayImpl& holder, std::size_t index, const std::string& fieldName);
/// Stores as the library does: storage made exclusive, then the array.
void assign(ArrayImpl& holder, std::size_t index, const std::string& fieldName, ArrayImpl& array);

/// Sparse arrays of each type by one name.
ArrayImpl* createSparse(ArrayFactoryImpl& factory, ArrayType type, const Dimensions& dimensions,
                        const std::vector<double>& values, const std::vector<std::size_t>& rows,
                        const std::vector<std::size_t>& columns, bool compressed);
bool isSparse(ArrayType type);

Owned<ClassInfoImpl> pointClass(const Backend& backend);
/// An object of the class Point with the properties x and y.
Owned<ObjectImpl> newPoint(const Backend& backend, ArrayImpl& x, ArrayImpl& y);
Owned<ObjectImpl> newPoint(const Backend& backend, double x, double y);
fv::VexaPropertyIdentifier property(const std::string& name);
void setProperty(ObjectImpl& object, const std::string& name, ArrayImpl& value);
std::string shownObject(ObjectImpl& object);

/// Every element as text, in column-major order whatever the layout. For a sparse array: every non-zero with
/// its place.
Contents contentsOf(ArrayImpl& array);
/// @throws Failure unless the contents are `wanted`
void expectContents(const std::string& what, ArrayImpl& array, const Contents& wanted);

/// Position of the k-th element in column-major order.
std::size_t positionAt(const ArrayImpl& array, std::size_t k);
/// How many elements an iterator of the array passes.
std::size_t lengthOf(const ArrayImpl& array);

/// The numbers of the values that make up an element, one for each part of it.
using Element = std::array<std::size_t, 2>;

/// A way to write to an element.
struct Writer {
    static constexpr std::size_t wholeElement = 2;

    std::string name;
    std::size_t part; ///< the only one that it changes, or `wholeElement`
    std::function<void(const Backend&, ArrayImpl&, std::size_t k, std::size_t pattern, const Element&)> write;
};

/// A way to make an array in which element k has the value k (and its second part the value k + 100).
struct Origin {
    std::string name;
    std::vector<std::string> needs;
    std::function<Owned<ArrayImpl>(const Backend&, const Dimensions&, std::size_t pattern)> make;
};

/// A kind of array.
struct Sample {
    std::string name;
    std::vector<std::string> needs;
    std::size_t parts = 1;
    bool sparse = false;
    bool knownValuesOnly = false; ///< a value written is one that the array holds already
    std::vector<Origin> origins{};
    std::vector<Writer> writers{};
    std::function<std::string(const Backend&, std::size_t pattern, const Element&)> text{};
    /// What `isEqual` has to say about elements with the values `a` and `b`.
    std::function<bool(std::size_t pattern, std::size_t a, std::size_t b)> equal{};
    bool primitive = false;
};

const std::vector<Sample>& samples();

/// What an array should hold.
class Model {
public:
    Model(const Backend& backend, const Sample& sample, std::size_t pattern, const Dimensions& dimensions);

    const Sample& sample() const noexcept { return *sample_; }
    std::size_t pattern() const noexcept { return pattern_; }
    /// Elements, or non-zeros of a sparse array.
    std::size_t size() const noexcept { return elements_.size(); }
    const Contents& contents() const noexcept { return contents_; }
    const Element& operator[](std::size_t k) const { return elements_[k]; }

    /// Writes another value to element `k` of `array`, and of the model. False when there is none that may be
    /// written.
    bool change(const Backend& backend, ArrayImpl& array, std::size_t k, const Writer& writer);
    /// Writes the values of elements `a` and `b` to each other's place. False when that would change nothing.
    bool exchange(const Backend& backend, ArrayImpl& array, std::size_t a, std::size_t b);
    bool change(const Backend& backend, ArrayImpl& array, std::size_t k) {
        return change(backend, array, k, sample_->writers.front());
    }
    /// Whether `isEqual` of the array with one that holds the same is to be true; no answer when that is the
    /// back-end's choice.
    std::optional<bool> equalsItself() const;

private:
    std::string textOf(const Backend& backend, std::size_t k, const Element& element) const;

    const Sample* sample_;
    std::size_t pattern_;
    std::vector<Element> elements_;
    Contents places_; // of the non-zeros of a sparse array
    Contents contents_;
};

/// An array in some state, with what it should hold, and others that must not change with it.
struct Subject {
    std::string what; ///< e.g. "copy of a 2x3 double array from data"
    Owned<ArrayImpl> array;
    Model model;
    Dimensions dimensions;
    const Origin* origin;
    std::vector<std::pair<Owned<ArrayImpl>, Model>> others{};

    /// @throws Failure unless it and the others hold what they should, and say of themselves what they should
    void expectUnchanged(const std::string& when) const;
};

/// Which of the subjects a check runs over.
struct Selection {
    bool histories = true; ///< copies, arrays with copies, arrays that were written
    bool large = true;     ///< 70,000 elements
    bool primitivesOnly = false;
    bool empty = true;
};

/// Runs `f` with each subject of the kinds that are offered, and notes how many kinds those are.
void eachSubject(Backend& backend, const Selection& selection, const std::function<void(Subject&)>& f);
inline void eachSubject(Backend& backend, const std::function<void(Subject&)>& f) {
    eachSubject(backend, {}, f);
}

/// Runs `f` with each kind that is offered, and notes how many those are.
void eachSample(Backend& backend, const std::function<void(const Sample&)>& f);
/// An array of the kind, by the first of its origins.
Owned<ArrayImpl> make(const Backend& backend, const Sample& sample, const Dimensions& dimensions,
                      std::size_t pattern = counting);
bool offersAll(const Backend& backend, const std::vector<std::string>& needs);

/// What an array says of itself as a whole, beside its shape: its names, its class, where its non-zeros lie.
/// @throws Failure unless that is as in all samples of its kind
void expectDescribed(const std::string& what, ArrayImpl& array, const Model& model);

/// First, a middle, and last.
std::vector<std::size_t> somePositions(std::size_t size);
/// All of few; of many those at the ends, around powers of two, and some between.
std::vector<std::size_t> manyPositions(std::size_t size);

} // namespace vexa::check
