// `HeldElementRef`: an element of the array that a cell or field holds, reached in place: what
// `cells[i].held()[j]` gives. The cell or field itself is an `ArrayElementRef`.
#pragma once

#include <foundation/vexadata/Reference.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// A cell or field, and indices into the array that it holds. That array is looked up at every use, so that
/// it may be replaced meanwhile: nothing is kept of it, and nothing is tested before. With up to three
/// indices, and as long as the array in a cell is the cell's alone, nothing is allocated.
class VEXADATA_API HeldPosition {
public:
    /// A first index. `writable` when `forWrite` may be called.
    VEXADATA_INLINE HeldPosition(ElementPosition holder, bool writable, std::size_t index) noexcept
        : holder_(std::move(holder)), indices_{index, 0, 0}, count_(1), writable_(writable) {}
    HeldPosition(const HeldPosition&) = default;
    VEXADATA_INLINE HeldPosition(HeldPosition&& other) noexcept
        : holder_(std::move(other.holder_)),
          indices_{other.indices_[0], other.indices_[1], other.indices_[2]},
          count_(other.count_),
          writable_(other.writable_) {}
    VEXADATA_INLINE ~HeldPosition() {}

    /// From the fourth index on, all are tested.
    /// @throws index errors; NotEnoughIndicesProvidedException when the element holds no array
    VEXADATA_INLINE void append(std::size_t index) {
        if (count_ < capacity) {
            indices_[count_++] = index;
        } else {
            appendFurther(index);
        }
    }

    /// The element, when it is reached in place; null otherwise, and when it is not there.
    template <class T>
    VEXADATA_INLINE T* tryInPlace(bool forWrite) const noexcept {
        const Array* cell = count_ <= 2 ? holder_.template tryInPlace<Array>() : nullptr;
        return cell == nullptr ? nullptr : elementOf<T>(*cell, forWrite);
    }

    /// For a use that is over before the array in the cell can be replaced.
    ElementPosition forRead() const;
    /// The same; everything on the way is made private.
    ElementPosition forWrite() const;
    /// Through the back-end's chain into the element, which follows what happens to it.
    ElementPosition kept() const;

private:
    static constexpr std::uint64_t capacity = 3;
    static constexpr std::uint64_t resolved =
        capacity + 1; // in place of a count: `holder_` is the element itself

    /// An array that others share is copied before a write, which is not done here.
    template <class T, class Cell>
    VEXADATA_INLINE T* elementOf(const Cell& cell, bool forWrite) const noexcept {
        const std::shared_ptr<ArrayImpl>& array = Access::impl(cell);
        const bool reached = array != nullptr && InPlaceClass<T>::recognises(*array) &&
                             (!forWrite || Access::isPrivate(array));
        return reached ? static_cast<const typename InPlaceClass<T>::Base*>(array.get())
                             ->inPlace()
                             .element(count_, indices_[0], indices_[1])
                       : nullptr;
    }
    void appendFurther(std::size_t index);
    ElementPosition withIndices(ElementPosition position) const;

    ElementPosition holder_;
    std::uint64_t indices_[capacity];
    std::uint64_t count_;
    bool writable_;
};

} // namespace detail

/// An element of the array that a cell or field holds, or a partial subscript that needs further indices.
/// Reads, writes, compares and combines as ArrayElementRef does. Valid while the handle that the cell was
/// reached through lives, is not reassigned and is not made private by a later write.
template <bool isConst>
class HeldElementRef : public detail::UntypedElement<HeldElementRef<isConst>, isConst> {
    using Untyped = detail::UntypedElement<HeldElementRef<isConst>, isConst>;

public:
    /// For `operator[]` of HeldElements.
    VEXADATA_INLINE explicit HeldElementRef(detail::HeldPosition position) noexcept
        : position_(std::move(position)) {}
    HeldElementRef(const HeldElementRef&) = default;
    VEXADATA_INLINE HeldElementRef(HeldElementRef&& other) noexcept : position_(std::move(other.position_)) {}
    VEXADATA_INLINE ~HeldElementRef() {}

    /// Appends an index. It is tested when the element is used.
    VEXADATA_INLINE HeldElementRef operator[](std::size_t index) && {
        position_.append(index);
        return std::move(*this);
    }
    HeldElementRef operator[](std::size_t index) const& { return HeldElementRef(*this)[index]; }
    using Untyped::operator[];

    /// The way into the array that this element holds in its turn.
    HeldElements<isConst> held() const { return HeldElements<isConst>(kept()); }

    /// Writes the other element's content; never makes this handle refer elsewhere.
    HeldElementRef& operator=(const HeldElementRef& other) { return this->copyFrom(other); }
    using Untyped::operator=;

    /// A handle of the ordinary kind to the element.
    operator ArrayElementRef<isConst>() const { return ArrayElementRef<isConst>(kept()); }
    /// @throws TypeMismatchException when the array is not one of elements `T`; index errors
    template <class T>
    operator Reference<T>() const {
        static_assert(!isConst, "this reference is read-only: its array is const");
        return Reference<T>(ArrayElementRef<false>(kept()));
    }

    /// Where the element lies, for a handle that is kept.
    detail::ElementPosition kept() const { return position_.kept(); }

private:
    friend Untyped;
    detail::ElementPosition forRead() const { return position_.forRead(); }
    detail::ElementPosition forWrite() const { return position_.forWrite(); }
    template <class T>
    VEXADATA_INLINE const T* tryRecognised() const noexcept {
        return position_.template tryInPlace<T>(false);
    }
    template <class T>
    VEXADATA_INLINE T* tryRecognisedForWrite() const noexcept {
        return position_.template tryInPlace<T>(true);
    }

    detail::HeldPosition position_;
};

/// The elements of the array that an element holds; see `ArrayElementRef::held`.
template <bool isConst>
class HeldElements {
public:
    /// For `held` of the element handles.
    VEXADATA_INLINE explicit HeldElements(detail::ElementPosition holder) noexcept
        : holder_(std::move(holder)) {}
    VEXADATA_INLINE ~HeldElements() {}
    HeldElements(const HeldElements&) = default;

    /// An element, or a partial subscript that needs further indices. The indices are tested when the element
    /// is used.
    VEXADATA_INLINE HeldElementRef<isConst> operator[](std::size_t index) const& {
        return HeldElementRef<isConst>(detail::HeldPosition(holder_, !isConst, index));
    }
    VEXADATA_INLINE HeldElementRef<isConst> operator[](std::size_t index) && {
        return HeldElementRef<isConst>(detail::HeldPosition(std::move(holder_), !isConst, index));
    }

private:
    detail::ElementPosition holder_;
};

template <bool isConst>
VEXADATA_INLINE inline HeldElements<isConst> ArrayElementRef<isConst>::held() const& {
    return HeldElements<isConst>(position_);
}
template <bool isConst>
VEXADATA_INLINE inline HeldElements<isConst> ArrayElementRef<isConst>::held() && {
    return HeldElements<isConst>(std::move(position_));
}
inline HeldElements<false> Reference<Array>::held() {
    return HeldElements<false>(detail::ElementPosition(chain_));
}
inline HeldElements<true> Reference<Array>::held() const {
    return HeldElements<true>(detail::ElementPosition(chain_));
}

namespace detail {

/// The array in a cell that is reached in place, with one reference for the caller; null for other elements.
VEXADATA_API ArrayImpl* shareInPlace(const ElementPosition& cell) noexcept;

/// The array that an element holds, as a handle of type `A` that shares it with the element.
/// @throws TypeMismatchException when the element holds no array or one of another kind; index errors
template <class A, class Ref>
A heldAs(const Ref& element) {
    if constexpr (isPlainElement<Ref>) {
        if (ArrayImpl* array = shareInPlace(Access::position(element))) {
            if (HandleType<A>::accepts(array->getType())) {
                return A(array);
            }
            array->release();
            raise<TypeMismatchException>();
        }
    }
    return castTo<A, true>(chainOf(element));
}

template <bool isConst>
std::shared_ptr<ReferenceImpl> chainOf(const HeldElementRef<isConst>& element) {
    return element.kept().chain();
}

} // namespace detail

} // namespace foundation::vexadata
