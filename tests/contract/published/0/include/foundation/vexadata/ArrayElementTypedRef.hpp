// `ArrayElementTypedRef<T, isConst>`: what `a[i][j]` of a `TypedArray<T>` gives, to be used at once. Elements
// of an array whose kind is not known have `ArrayElementRef`; an element that is kept is a `Reference<T>`
// (Reference.hpp).
#pragma once

#include <foundation/vexadata/detail/ElementHandle.hpp>
#include <foundation/vexadata/detail/Text.hpp>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// Enables what elements `T` give for `U`, another type that arrays of `T` are made for: complex `long long`
/// for complex
/// `std::int64_t`, which no conversion of the language leads to.
template <class T, class U>
using IfOtherComplex = std::enable_if_t<isComplexElement<T> && !std::is_same_v<T, U> &&
                                            std::is_same_v<typename vexa::data::GetReturnType<U>::type, T>,
                                        int>;
/// Enables what characters take of narrow text, which the language would widen with its sign.
template <class T, class Narrow>
using IfNarrow = std::enable_if_t<std::is_same_v<T, char16_t> && isNarrowUnit<Narrow>, int>;

/// Comparisons that arithmetic elements get by conversion and complex ones have to be given.
template <class Ref, class T, bool enabled>
struct ComplexComparison {};
template <class Ref, class T>
struct ComplexComparison<Ref, T, true> {
    friend bool operator==(const Ref& a, const T& b) { return static_cast<T>(a) == b; }
    friend bool operator==(const T& a, const Ref& b) { return a == static_cast<T>(b); }
    friend bool operator!=(const Ref& a, const T& b) { return !(a == b); }
    friend bool operator!=(const T& a, const Ref& b) { return !(a == b); }
};

/// Compound assignment: one read and one write of the element. As the language's own, it is computed in the
/// common type of both sides, so that `words[0] /= 0.5` doubles.
template <class Ref, class T>
class CompoundAssignment {
    template <class U>
    using IfBothReal = std::enable_if_t<
        std::is_arithmetic_v<T> && std::is_arithmetic_v<U> && !std::is_same_v<T, U> && !isNarrowUnit<U>, int>;
    template <class U>
    using IfNumber =
        std::enable_if_t<std::is_arithmetic_v<U> && !std::is_same_v<U, bool> && !std::is_same_v<U, char16_t>,
                         int>;

public:
    Ref& operator+=(const T& value) { return self() = static_cast<T>(current() + value); }
    Ref& operator-=(const T& value) { return self() = static_cast<T>(current() - value); }
    Ref& operator*=(const T& value) { return self() = static_cast<T>(current() * value); }
    Ref& operator/=(const T& value) { return self() = static_cast<T>(current() / value); }
    template <class U = T, IfNumber<U> = 0>
    Ref& operator++() {
        return *this += T(1);
    }
    template <class U = T, IfNumber<U> = 0>
    Ref& operator--() {
        return *this -= T(1);
    }
    /// The value before.
    template <class U = T, IfNumber<U> = 0>
    T operator++(int) {
        const T before = current();
        ++*this;
        return before;
    }
    template <class U = T, IfNumber<U> = 0>
    T operator--(int) {
        const T before = current();
        --*this;
        return before;
    }
    template <class U, IfBothReal<U> = 0>
    Ref& operator+=(U value) {
        return self() = static_cast<T>(current() + value);
    }
    template <class U, IfBothReal<U> = 0>
    Ref& operator-=(U value) {
        return self() = static_cast<T>(current() - value);
    }
    template <class U, IfBothReal<U> = 0>
    Ref& operator*=(U value) {
        return self() = static_cast<T>(current() * value);
    }
    template <class U, IfBothReal<U> = 0>
    Ref& operator/=(U value) {
        return self() = static_cast<T>(current() / value);
    }

private:
    Ref& self() noexcept { return static_cast<Ref&>(*this); }
    T current() { return static_cast<T>(self()); }
};

} // namespace detail

/// What `TypedArray<T>::operator[]` returns: an element, or a partial subscript that needs further indices.
/// Reads and writes go to the array at the moment of conversion or assignment; bounds are tested then.
/// Further `[]` append indices: on a named handle they give a new one and leave it as it is. Valid while the
/// array handle that it came from lives, is not reassigned and is not made private by a later write. Holds
/// its indices in place. Not synchronised.
template <class T, bool isConst>
class ArrayElementTypedRef
    : public detail::Indexing<ArrayElementTypedRef<T, isConst>>,
      public detail::ComplexComparison<ArrayElementTypedRef<T, isConst>, T, detail::isComplexElement<T>>,
      public detail::CompoundAssignment<ArrayElementTypedRef<T, isConst>, T> {
public:
    /// For `operator[]` of the handles.
    VEXADATA_INLINE explicit ArrayElementTypedRef(detail::ElementPosition position) noexcept
        : position_(std::move(position)) {}
    /// Shares the chain of an element that is known already.
    explicit ArrayElementTypedRef(const std::shared_ptr<detail::ReferenceImpl>& chain) noexcept
        : position_(chain) {}
    ArrayElementTypedRef(const ArrayElementTypedRef&) = default;
    VEXADATA_INLINE ArrayElementTypedRef(ArrayElementTypedRef&& other) noexcept
        : position_(std::move(other.position_)) {}
    VEXADATA_INLINE ~ArrayElementTypedRef() {}

    /// Reads the element.
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    VEXADATA_INLINE operator T() const { return position_.template value<T>(); }
    template <class U, detail::IfOtherComplex<T, U> = 0>
    operator U() const {
        return U(static_cast<T>(*this));
    }

    /// Writes the element.
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange; errors of the back-end
    VEXADATA_INLINE ArrayElementTypedRef& operator=(const T& value) {
        static_assert(!isConst, "this reference is read-only: its array is const");
        position_.template setValue<T>(value);
        return *this;
    }
    /// @throws NonAsciiCharInInputDataException for a byte above 127; as the form before
    template <class Narrow, detail::IfNarrow<T, Narrow> = 0>
    ArrayElementTypedRef& operator=(Narrow unit) {
        return *this = detail::widened(static_cast<char>(unit));
    }
    /// Writes the other element's value; never makes this handle refer elsewhere.
    ArrayElementTypedRef& operator=(const ArrayElementTypedRef& other) {
        return *this = static_cast<T>(other);
    }
    template <bool otherIsConst>
    ArrayElementTypedRef& operator=(const ArrayElementTypedRef<T, otherIsConst>& other) {
        return *this = static_cast<T>(other);
    }

private:
    friend struct detail::Access;
    detail::ElementPosition position_;
};

namespace detail {

/// Element type of a reference; void for other types.
template <class Ref>
struct ElementOf {
    using type = void;
};
template <class T>
struct ElementOf<Reference<T>> {
    using type = T;
};
template <class T, bool isConst>
struct ElementOf<ArrayElementTypedRef<T, isConst>> {
    using type = T;
};

template <class A, class B>
using IfComplexReferences =
    std::enable_if_t<isComplexElement<typename ElementOf<A>::type> &&
                         std::is_same_v<typename ElementOf<A>::type, typename ElementOf<B>::type>,
                     int>;

} // namespace detail

/// Equality of two elements of complex arrays, through any kinds of references.
/// @throws index errors
template <class A, class B, detail::IfComplexReferences<A, B> = 0>
bool operator==(const A& a, const B& b) {
    using T = typename detail::ElementOf<A>::type;
    return static_cast<T>(a) == static_cast<T>(b);
}
template <class A, class B, detail::IfComplexReferences<A, B> = 0>
bool operator!=(const A& a, const B& b) {
    return !(a == b);
}

} // namespace foundation::vexadata
