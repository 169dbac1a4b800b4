// An array of every kind with known contents, for the checks that all kinds have in common.
#pragma once

#include "Backend.hpp"

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

/// The array in an element or field as text, or what stands in its place: "empty", "no array", "no reference".
std::string shownElementArray(ArrayImpl& holder, std::size_t index, const std::string& fieldName);
/// Stores as the library does: storage made exclusive, then the array.
void assign(ArrayImpl& holder, std::size_t index, const std::string& fieldName, ArrayImpl& array);

/// Sparse arrays of each type by one name.
ArrayImpl* createSparse(ArrayFactoryImpl& factory, ArrayType type, const Dimensions& dimensions,
                        const std::vector<double>& values, const std::vector<std::size_t>& rows,
                        const std::vector<std::size_t>& columns, bool compressed);

Owned<ClassInfoImpl> pointClass(const Backend& backend);
Owned<ObjectImpl> newPoint(const Backend& backend, double x, double y);
fv::VexaPropertyIdentifier property(const std::string& name);
void setProperty(ObjectImpl& object, const std::string& name, ArrayImpl& value);

/// Every element as text, in the order of positions. For a sparse array: every non-zero with its place.
std::vector<std::string> contentsOf(ArrayImpl& array);

struct Sample {
    std::string name;
    std::vector<std::string> needs;
    bool matricesOnly;
    std::function<Owned<ArrayImpl>(const Backend&, const Dimensions&)> make;
    /// Changes what stands at `position` of the contents.
    std::function<void(const Backend&, ArrayImpl&, std::size_t position)> change;
};

const std::vector<Sample>& samples();

/// Runs `f` with each sample whose needs are offered, and notes how many those are.
void eachSample(Backend& backend, const std::function<void(const Sample&)>& f);

/// @throws Failure unless the contents are `wanted`
void expectContents(const std::string& what, ArrayImpl& array, const std::vector<std::string>& wanted);

} // namespace vexa::check
