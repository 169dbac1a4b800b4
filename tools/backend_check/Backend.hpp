// The back-end under test, as the checks see it.
#pragma once

#include "Expect.hpp"
#include "Kinds.hpp"
#include "Values.hpp"

#include <vexa/data/detail/CountedPtr.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::check {

using data::detail::IteratorImpl;
using data::detail::ReferenceImpl;
using data::impl::ArrayFactoryImpl;
using data::impl::ArrayImpl;
using data::impl::TypedArrayImpl;
using Dimensions = std::vector<std::size_t>;

/// What the command owns of an object.
template <class T>
using Owned = data::detail::CountedPtr<T>;

/// The reference that an operation returned; null is a failure.
template <class T>
Owned<T> adopt(T* object, std::string_view operation) {
    if (object == nullptr) fail(std::string(operation) + " returns null");
    return Owned<T>(object);
}

/// One more reference of an object.
template <class T>
Owned<T> share(T& object) {
    return Owned<T>::share(object);
}

using Names = std::set<std::string, std::less<>>;

class Backend {
public:
    using Step = std::function<void(std::string_view)>;

    /// `missing` are the capabilities that the back-end does not offer; `step` is told what is about to be
    /// done.
    Backend(Owned<ArrayFactoryImpl> factory, Names missing, Step step)
        : factory_(std::move(factory)), missing_(std::move(missing)), step_(std::move(step)) {}

    ArrayFactoryImpl& factory() const noexcept { return *factory_; }
    /// Goes on with another factory, or the same again. The one before is released.
    void setFactory(Owned<ArrayFactoryImpl> factory) { factory_ = std::move(factory); }
    /// The same with a factory of its own, and silent.
    Backend forAnotherThread(Owned<ArrayFactoryImpl> factory) const {
        return Backend(std::move(factory), missing_, [](std::string_view) {});
    }
    bool offers(std::string_view capability) const { return missing_.find(capability) == missing_.end(); }

    /// Tells what is about to be done, in case that the process ends there.
    void step(std::string_view what) const { step_(what); }
    /// A remark beside a check that holds.
    void note(std::string text) { note_ = std::move(text); }
    const std::string& note() const noexcept { return note_; }

    Owned<ArrayImpl> array(ArrayType type, const Dimensions& dimensions) const;

    /// An array of zeros.
    template <class T>
    Owned<TypedArrayImpl<T>> zeros(const Dimensions& dimensions) const {
        Owned<ArrayImpl> made = array(ElementTag<T>::arrayType, dimensions);
        auto* typed = dynamic_cast<TypedArrayImpl<T>*>(made.get());
        if (typed == nullptr)
            fail("a " + std::string(nameOf(ElementTag<T>::arrayType)) +
                 " array does not implement TypedArrayImpl of its element type");
        static_cast<void>(made.detach());
        return Owned<TypedArrayImpl<T>>(typed);
    }

    /// Runs `f` with a tag for each primitive element type that is offered, and notes how many those are.
    template <class F>
    void eachPrimitive(F f) {
        std::size_t count = 0;
        forEachPrimitive([&](auto tag) {
            if (!offers(nameOf(tag.arrayType))) return;
            step(std::string(nameOf(tag.arrayType)) + " arrays");
            f(tag);
            ++count;
        });
        if (count == 0) throw NotOffered{"no primitive element type is offered"};
        note(std::to_string(count) + (count == 1 ? " element type" : " element types"));
    }

private:
    Owned<ArrayFactoryImpl> factory_;
    Names missing_;
    Step step_;
    std::string note_;
};

/// Writes as the library does: storage made exclusive, then the value.
template <class T>
void write(TypedArrayImpl<T>& array, std::size_t position, T value) {
    array.unshare();
    array.setElementValue(position, {}, value);
}
template <class T>
T read(TypedArrayImpl<T>& array, std::size_t position) {
    const T* address = array.getElementAddress(position, {}, false);
    if (address == nullptr) fail("getElementAddress(" + std::to_string(position) + ") returns null");
    return *address;
}

/// An array whose element at position k is value k.
template <class T>
Owned<TypedArrayImpl<T>> filled(const Backend& backend, const Dimensions& dimensions,
                                std::size_t pattern = counting) {
    auto array = backend.zeros<T>(dimensions);
    for (std::size_t k = 0; k < array->getNumberOfElements(); ++k)
        write(*array, k, valueAt<T>(pattern, k));
    return array;
}

/// The iterator that an array made; it is deleted, not released.
using Iterator = std::unique_ptr<IteratorImpl>;
Iterator beginOf(ArrayImpl& array, bool writable = false);
Iterator endOf(ArrayImpl& array, bool writable = false);

/// E.g. "2x3 double array".
std::string describe(ArrayType type, const Dimensions& dimensions);
inline std::string describe(const ArrayImpl& array) {
    return describe(array.getType(), array.getDimensions());
}

/// Position of the element (row, column) of a matrix in the order of its memory layout.
std::size_t positionOf(const ArrayImpl& matrix, std::size_t row, std::size_t column);

/// @throws Failure unless the count is 1
void expectOneReference(std::string_view what, const data::detail::RefCounted& object);

/// How a creator answered: a back-end that does not offer a kind throws. Null is a failure: handles take it
/// for an array.
template <class F>
auto offered(const Backend& backend, std::string_view creator, F create) {
    backend.step(creator);
    decltype(create()) made = nullptr;
    try {
        made = create();
    } catch (...) {
        throw NotOffered{std::string(creator) + " throws " + describeException()};
    }
    if (made == nullptr) fail(std::string(creator) + " returns null, where it should throw");
    return Owned<std::remove_pointer_t<decltype(made)>>(made);
}

} // namespace vexa::check
