// `Reference<TypedArray<T>>` and its like: references to arrays that cells and fields hold, of a kind that is
// known at compile time. With the headers of their kinds also `Reference<CharArray>`,
// `Reference<StructArray>` and so on; `Reference<const ...>` only reads. For an array of any kind see
// `Reference<Array>`, for a single element of a primitive array `Reference<T>` (both Reference.hpp).
#pragma once

#include <foundation/vexadata/BufferAccess.hpp>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// What a reference to an array of handle type `A` can do to be read; `Ext` adds what the kind of array has
/// of its own. What lies in the cell or field may be replaced while the reference is kept: its kind is tested
/// at every use.
///
/// @throws TypeMismatchException from every function when no array of this kind lies there; index errors
template <class A, class Ext>
class HeldView : public Ext {
protected:
    using Element = typename A::value_type;

public:
    using const_iterator = TypedIterator<const Element>;

    /// Takes a chain over; the kind of the array is not tested before the first use.
    explicit HeldView(std::shared_ptr<ReferenceImpl> chain) noexcept : Ext(std::move(chain)) {}

    /// An element of the array held.
    ElementRefOf<Element, true> operator[](std::size_t index) const {
        std::shared_ptr<ReferenceImpl> element = createConstReferenceWithIndex(requireKind(), index);
        return ElementRefOf<Element, true>(element);
    }

    /// The elements of the array held; the iterators keep the chain alive.
    const_iterator begin() const { return constPosition(false); }
    const_iterator end() const { return constPosition(true); }
    const_iterator cbegin() const { return begin(); }
    const_iterator cend() const { return end(); }

protected:
    HeldView(const HeldView&) = default;
    ~HeldView() = default;

    static std::shared_ptr<ReferenceImpl> checked(std::shared_ptr<ReferenceImpl> chain) {
        heldArray<A>(chain);
        return chain;
    }
    const std::shared_ptr<ReferenceImpl>& requireKind() const {
        heldArray<A>(this->chain_);
        return this->chain_;
    }

private:
    const_iterator constPosition(bool atEnd) const {
        ArrayImpl& array = heldArray<A, NotEnoughIndicesProvidedException>(this->chain_);
        return typedIterator<const Element>(array, atEnd, false, this->chain_);
    }
};

/// Storing arrays of handle type `A` through the reference `Ref`.
template <class Ref, class A, class Base>
class HeldAssignment : public Base {
public:
    using Base::Base;
    HeldAssignment(const HeldAssignment&) = default;

    /// Stores an array, shared with the handle until one of them is written.
    Ref& operator=(const A& array) {
        storeArray(this->chain_, array);
        return static_cast<Ref&>(*this);
    }
    /// Stores the array that another element holds; never makes this reference refer elsewhere.
    /// @throws TypeMismatchException when it is none of this kind; index errors
    HeldAssignment& operator=(const HeldAssignment& other) {
        storeArray(this->chain_, castTo<A, true>(other.chain_));
        return *this;
    }
    template <class Other, std::enable_if_t<isArrayReference<Other>, int> = 0>
    Ref& operator=(const Other& other) {
        storeArray(this->chain_, castTo<A, true>(chainOf(other)));
        return static_cast<Ref&>(*this);
    }

protected:
    ~HeldAssignment() = default;
};

/// What a writable reference to an array of handle type `A` can do; see HeldView.
template <class Ref, class A, class Ext>
class HeldArray : public HeldAssignment<Ref, A, HeldView<A, Ext>> {
    using Assignment = HeldAssignment<Ref, A, HeldView<A, Ext>>;
    using View = HeldView<A, Ext>;
    using typename View::Element;

public:
    using ReadOnly = View;
    using iterator = TypedIterator<Element>;

    explicit HeldArray(std::shared_ptr<ReferenceImpl> chain) noexcept : Assignment(std::move(chain)) {}
    HeldArray(const ArrayElementRef<false>& element) : Assignment(View::checked(chainOf(element))) {}
    HeldArray(const Reference<Array>& element) : Assignment(View::checked(element.chain())) {}
    HeldArray(const HeldArray&) = default;
    HeldArray& operator=(const HeldArray&) = default; // stores
    using Assignment::operator=;

    /// An element of the array held. Everything on the way is made private.
    ElementRefOf<Element, false> operator[](std::size_t index) {
        View::requireKind();
        return ElementRefOf<Element, false>(createReferenceWithIndex<false>(this->chain_, index));
    }
    using View::operator[];

    /// The elements of the array held, for writing; the iterators keep the chain alive. Everything on the way
    /// is made private.
    iterator begin() { return position(false); }
    iterator end() { return position(true); }
    using View::begin;
    using View::end;

protected:
    ~HeldArray() = default;

private:
    iterator position(bool atEnd) {
        View::requireKind();
        this->chain_->prepareForWrite();
        ArrayImpl& array = heldArray<A, NotEnoughIndicesProvidedException>(this->chain_, true);
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

/// A cell or field that holds a sparse array. The stored values are walked and changed through
/// `SparseArray<T>`, which it converts to.
template <class T>
class Reference<SparseArray<T>>
    : public detail::HeldAssignment<Reference<SparseArray<T>>, SparseArray<T>, ArrayReferenceExt> {
    using Held = detail::HeldAssignment<Reference<SparseArray<T>>, SparseArray<T>, ArrayReferenceExt>;

public:
    /// What is left of it in a `Reference<const SparseArray<T>>`.
    using ReadOnly = ArrayReferenceExt;
    using Held::Held;
    using Held::operator=;
    /// @throws TypeMismatchException when the element holds no such array; index errors
    Reference(const ArrayElementRef<false>& element) : Reference(detail::chainOf(element)) {
        detail::heldArray<SparseArray<T>>(this->chain_);
    }
    Reference(const Reference<Array>& element) : Reference(element.chain()) {
        detail::heldArray<SparseArray<T>>(this->chain_);
    }
};

/// A cell or field, also one of an array that is const, whose array is only read: the queries, elements and
/// iterators of
/// `Reference<A>` that do so. `A` is a `TypedArray<T>`, `CharArray`, `StructArray`, `EnumArray`,
/// `ValueObjectArray` or
/// `SparseArray<T>`.
template <class A>
class Reference<const A> : public Reference<A>::ReadOnly, private detail::NotAssignable {
    using View = typename Reference<A>::ReadOnly;

public:
    using View::View;
    /// @throws TypeMismatchException when the element holds no array of this kind; index errors
    template <class Element, std::enable_if_t<detail::isArrayReference<Element>, int> = 0>
    Reference(const Element& element) : View(detail::chainOf(element)) {
        detail::heldArray<A>(this->chain_);
    }
};

/// A cell or field whose array, of any kind, is only read.
template <>
class Reference<const Array> : public ArrayReferenceExt, private detail::NotAssignable {
public:
    using ArrayReferenceExt::ArrayReferenceExt;
    /// Whatever the element holds; index errors are thrown at its first use.
    template <class Element, std::enable_if_t<detail::isArrayReference<Element>, int> = 0>
    Reference(const Element& element) : ArrayReferenceExt(detail::chainOf(element)) {}

    /// An element of the array held, one level deeper.
    /// @throws index errors of either level
    ArrayElementRef<true> operator[](std::size_t index) const {
        return ArrayElementRef<true>(detail::createConstReferenceWithIndex(chain_, index));
    }
};

} // namespace foundation::vexadata
