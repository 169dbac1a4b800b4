// `Reference<T>` and `Reference<Array>`: elements that were checked when the reference was formed and can be
// kept. References to arrays of a known kind are in ArrayReference.hpp; what `a[i][j]` gives, to be used at
// once, is an `ArrayElementTypedRef` or `ArrayElementRef`.
#pragma once

#include <foundation/vexadata/ArrayElementRef.hpp>
#include <foundation/vexadata/ArrayElementTypedRef.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace foundation::vexadata {

/// Adopts a chain handed out by a back-end, with the one reference that it carries. Null gives an empty
/// holder.
class ReferenceHolder {
public:
    /// @throws std::bad_alloc after dropping the reference
    explicit ReferenceHolder(detail::ReferenceImpl* chain) : chain_(detail::Access::createSharedPtr(chain)) {}

    /// Null when it was made of null.
    const std::shared_ptr<detail::ReferenceImpl>& chain() const noexcept { return chain_; }

private:
    std::shared_ptr<detail::ReferenceImpl> chain_;
};

/// Queries about the array that an element holds, answered without copying it. The element is resolved at the
/// first query. Every query throws NotEnoughIndicesProvidedException when the element holds no array or lacks
/// indices, and EArrayIndexOutOfRange.
class VEXADATA_API ArrayReferenceExt {
public:
    /// Shares a chain.
    explicit ArrayReferenceExt(std::shared_ptr<detail::ReferenceImpl> chain) noexcept
        : chain_(std::move(chain)) {}

    /// As of `Array`, for the array that the element holds.
    ArrayType getType() const;
    std::vector<std::size_t> getDimensions() const;
    std::size_t getNumberOfElements() const;
    bool isEmpty() const;
    std::uint64_t getArrayID() const;

    /// The chain of the element.
    const std::shared_ptr<detail::ReferenceImpl>& chain() const noexcept { return chain_; }

protected:
    /// Never null.
    std::shared_ptr<detail::ReferenceImpl> chain_;
};

/// A writable element of a primitive array. Valid while the array handle that it came from lives, is not
/// reassigned and is not made private by a later write; inside cells and fields also only while no array on
/// the way to it is replaced or shared with another handle. The index is tested when the reference is formed;
/// each use tests that the array still has the kind and the dimensions it had then, as it has not after
/// `release()`, or when something else was put into the cell or field.
///
/// @throws TypeMismatchException, EArrayIndexOutOfRange from every use when it has not
template <class T>
class Reference : public detail::ComplexComparison<Reference<T>, T, detail::isComplexElement<T>>,
                  public detail::CompoundAssignment<Reference<T>, T> {
public:
    /// Takes over a chain that is known to be complete.
    explicit Reference(std::shared_ptr<detail::ReferenceImpl> chain) noexcept : chain_(std::move(chain)) {}
    explicit Reference(const detail::ElementPosition& element) : Reference(element.chain()) {}
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    Reference(const ArrayElementTypedRef<T, false>& element)
        : Reference(detail::Access::position(element).chain()) {
        detail::validateReference<T>(chain_, true);
    }
    /// @throws TypeMismatchException when the array is not one of elements `T`; index errors
    Reference(const ArrayElementRef<false>& element) : Reference(detail::Access::position(element).chain()) {
        if (!detail::acceptsType<T>(chain_->getArrayImpl()->getType())) {
            detail::raise<TypeMismatchException>();
        }
        detail::validateReference<T>(chain_, true);
    }
    Reference(const Reference&) =
        default; // there is no moving: assignment writes, also to one that was moved from
    ~Reference() = default;

    /// Reads the element.
    operator T() const {
        detail::requireUnchanged<T>(*chain_);
        return detail::getValue<T>(chain_);
    }
    template <class U, detail::IfOtherComplex<T, U> = 0>
    operator U() const {
        return U(static_cast<T>(*this));
    }

    /// Writes the element.
    Reference& operator=(const T& value) {
        detail::requireUnchanged<T>(*chain_);
        detail::setTypedElement<T>(chain_, value);
        return *this;
    }
    /// @throws NonAsciiCharInInputDataException for a byte above 127
    template <class Narrow, detail::IfNarrow<T, Narrow> = 0>
    Reference& operator=(Narrow unit) {
        return *this = detail::widened(static_cast<char>(unit));
    }
    /// Writes the other element's value; never makes this reference refer elsewhere.
    Reference& operator=(const Reference& other) { return *this = static_cast<T>(other); }
    template <bool isConst>
    Reference& operator=(const ArrayElementTypedRef<T, isConst>& other) {
        return *this = static_cast<T>(other);
    }
    template <class Other, std::enable_if_t<detail::isUntypedElement<Other>, int> = 0>
    Reference& operator=(const Other& other) {
        return *this = static_cast<T>(other);
    }

    /// Exchanges the values. Found by argument alone: `std::swap` by its full name would lose one of them.
    friend void swap(Reference a, Reference b) {
        const T value = a;
        a = static_cast<T>(b);
        b = value;
    }

    /// The chain of the element.
    const std::shared_ptr<detail::ReferenceImpl>& chain() const noexcept { return chain_; }

private:
    std::shared_ptr<detail::ReferenceImpl> chain_;
};

/// An element that holds an array: a cell or a field. May be formed with fewer indices than the array has
/// dimensions; the first use then fails.
template <>
class VEXADATA_API Reference<Array> : public ArrayReferenceExt {
public:
    /// Nothing is tested before the first use.
    explicit Reference(std::shared_ptr<detail::ReferenceImpl> chain) noexcept
        : ArrayReferenceExt(std::move(chain)) {}
    explicit Reference(const detail::ElementPosition& element) : ArrayReferenceExt(element.chain()) {}
    Reference(const ArrayElementRef<false>& element)
        : ArrayReferenceExt(detail::Access::position(element).chain()) {}
    Reference(const Reference&) =
        default; // there is no moving: assignment writes, also to one that was moved from
    ~Reference() = default;

    /// Stores an array, shared with the handle until one of them is written.
    /// @throws CantAssignArrayToThisArrayException when elements hold no arrays; index errors
    Reference& operator=(const Array& array);
    /// Stores the array that the other element holds; never makes this reference refer elsewhere.
    /// @throws TypeMismatchException when the other element holds none
    Reference& operator=(const Reference& other);
    template <class Other, std::enable_if_t<detail::isArrayReference<Other>, int> = 0>
    Reference& operator=(const Other& other) {
        detail::storeArray(chain_, detail::castTo<Array, true>(chainOf(other)));
        return *this;
    }

    /// Does not compile: cells and fields hold arrays.
    template <class Value, std::enable_if_t<detail::isPlainValue<Value>, int> = 0>
    Reference& operator=(const Value&) {
        static_assert(!std::is_same_v<Value, Value>,
                      "a cell or field holds an array: assign factory.createScalar(value), or "
                      "factory.createCharArray(text)");
        return *this;
    }

    /// An element of the array held, one level deeper. The writable form makes everything on the way private.
    /// @throws index errors of either level
    ArrayElementRef<false> operator[](std::size_t index) {
        return ArrayElementRef<false>(detail::ElementPosition::inside(chain_, index));
    }
    ArrayElementRef<true> operator[](std::size_t index) const {
        return ArrayElementRef<true>(detail::createConstReferenceWithIndex(chain_, index));
    }

    /// The way into the array that the element holds, as `ArrayElementRef::held`.
    HeldElements<false> held();
    HeldElements<true> held() const;

    /// Exchanges the arrays held. Found by argument alone: `std::swap` by its full name would lose one of
    /// them.
    friend VEXADATA_API void swap(Reference a, Reference b);

    /// A field of the record that this reference stands for. A reference that is a field already stands for
    /// an array and not for a record: index that array first.
    /// @throws CanOnlyUseOneStringIndexException on a field; TypeMismatchException when the array is no
    /// struct array; index errors; errors of the back-end
    Reference operator[](const std::string& fieldName) {
        return detail::fieldOf(detail::ElementPosition(chain_), fieldName, std::false_type());
    }
    const Array operator[](const std::string& fieldName) const;
};

namespace detail {

/// The chain of any reference.
template <class T>
std::shared_ptr<ReferenceImpl> chainOf(const Reference<T>& reference) {
    return reference.chain();
}
template <bool isConst>
std::shared_ptr<ReferenceImpl> chainOf(const ArrayElementRef<isConst>& element) {
    return Access::position(element).chain();
}
template <class T, bool isConst>
std::shared_ptr<ReferenceImpl> chainOf(const ArrayElementTypedRef<T, isConst>& element) {
    return Access::position(element).chain();
}

} // namespace detail

} // namespace foundation::vexadata
