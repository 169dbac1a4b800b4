// References to arrays that cells and fields hold, when the kind of the array is known.
#pragma once

#include <foundation/vexadata/BufferAccess.hpp>

#include <cstddef>
#include <memory>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// What all references to an array of handle type `A` share; `Ext` adds what the kind of array has of its own. The kind is
/// tested when the reference is formed, not afterwards.
template <class Ref, class A, class Ext>
class HeldArray : public Ext {
    using Element = typename A::value_type;

public:
    using iterator = TypedIterator<Element>;
    using const_iterator = TypedIterator<const Element>;

    explicit HeldArray(std::shared_ptr<ReferenceImpl> chain) noexcept : Ext(std::move(chain)) {}
    /// @throws TypeMismatchException when the element holds no array of this kind; index errors
    HeldArray(const ArrayElementRef<false>& element) : Ext(checked(chainOf(element))) {}
    HeldArray(const Reference<Array>& element) : Ext(checked(element.chain())) {}
    HeldArray(const HeldArray&) = default;
    HeldArray(HeldArray&&) noexcept = default;

    /// Stores an array, shared with the handle until one of them is written.
    Ref& operator=(const A& array) {
        storeArray(this->chain_, array);
        return static_cast<Ref&>(*this);
    }
    /// Stores the array that the other element holds; never makes this reference refer elsewhere.
    HeldArray& operator=(const HeldArray& other) {
        storeArray(this->chain_, castTo<Array, true>(other.chain_));
        return *this;
    }

    /// An element of the array held. The writable form makes everything on the way private.
    /// @throws index errors of either level
    ElementRefOf<Element, false> operator[](std::size_t index) {
        return ElementRefOf<Element, false>(createReferenceWithIndex<false>(this->chain_, index));
    }
    ElementRefOf<Element, true> operator[](std::size_t index) const {
        return ElementRefOf<Element, true>(createConstReferenceWithIndex(this->chain_, index));
    }

    /// The elements of the array held; the iterators keep the chain alive. Writing makes everything on the way private.
    const_iterator begin() const { return constPosition(false); }
    const_iterator end() const { return constPosition(true); }
    const_iterator cbegin() const { return begin(); }
    const_iterator cend() const { return end(); }
    iterator begin() { return position(false); }
    iterator end() { return position(true); }

protected:
    ~HeldArray() = default;

private:
    static std::shared_ptr<ReferenceImpl> checked(std::shared_ptr<ReferenceImpl> chain) {
        requireHeld<A>(chain);
        return chain;
    }
    const_iterator constPosition(bool atEnd) const {
        ArrayImpl& array = elementArray<NotEnoughIndicesProvidedException>(this->chain_);
        return typedIterator<const Element>(array, atEnd, false, this->chain_);
    }
    iterator position(bool atEnd) {
        this->chain_->prepareForWrite();
        ArrayImpl& array = elementArray<NotEnoughIndicesProvidedException>(this->chain_, true);
        return typedIterator<Element>(array, atEnd, true, this->chain_);
    }
};

} // namespace detail

/// A cell or field that holds an array of elements `T`.
template <class T>
class Reference<TypedArray<T>>
    : public detail::HeldArray<Reference<TypedArray<T>>, TypedArray<T>, ArrayReferenceExt> {
    using Held = detail::HeldArray<Reference<TypedArray<T>>, TypedArray<T>, ArrayReferenceExt>;

public:
    using Held::Held;
    using Held::operator=;
};

} // namespace foundation::vexadata
