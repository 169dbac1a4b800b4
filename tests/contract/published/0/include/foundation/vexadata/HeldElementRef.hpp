// Elements of the array that a cell or field holds, reached in place: what `cells[i].held()[j]` gives.
#pragma once

#include <foundation/vexadata/Reference.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// A cell or field, and indices into the array that it holds. That array is looked up at every use, so that it may be replaced
/// meanwhile: nothing is kept of it. With up to three indices, and as long as the array in a cell is the cell's alone, nothing is
/// allocated.
class VEXADATA_API HeldPosition {
public:
    /// `writable` when `forWrite` may be called.
    HeldPosition(ElementPosition holder, bool writable) noexcept
        : holder_(std::move(holder)), writable_(writable) {}

    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException; NotEnoughIndicesProvidedException when the
    /// element holds no array; index errors of the element
    void append(std::size_t index);

    /// For a use that is over before the array in the cell can be replaced.
    ElementPosition forRead() const;
    /// The same; everything on the way is made private.
    ElementPosition forWrite() const;
    /// Through the back-end's chain into the element, which follows what happens to it.
    ElementPosition kept() const;

private:
    static constexpr std::uint32_t capacity = 3;
    static constexpr std::uint32_t resolved =
        capacity + 1; // in place of a count: `holder_` is the element itself

    ElementPosition withIndices(ElementPosition position) const;

    ElementPosition holder_;
    std::uint64_t indices_[capacity] = {0, 0, 0};
    std::uint32_t count_ = 0;
    bool writable_;
};

} // namespace detail

/// An element of the array that a cell or field holds, or a partial subscript that needs further indices. Reads, writes, compares and combines as ArrayElementRef does. Valid while the handle that the cell was reached through lives, is not
/// reassigned and is not made private by a later write.
template <bool isConst>
class HeldElementRef : public detail::UntypedElement<HeldElementRef<isConst>, isConst> {
    using Untyped = detail::UntypedElement<HeldElementRef<isConst>, isConst>;

public:
    explicit HeldElementRef(detail::HeldPosition position) noexcept : position_(std::move(position)) {}
    HeldElementRef(const HeldElementRef&) = default;
    HeldElementRef(HeldElementRef&&) noexcept = default;
    ~HeldElementRef() = default;

    /// Appends an index.
    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    HeldElementRef operator[](std::size_t index) && {
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

    detail::HeldPosition position_;
};

/// The elements of the array that an element holds; see `ArrayElementRef::held`.
template <bool isConst>
class HeldElements {
public:
    explicit HeldElements(detail::ElementPosition holder) noexcept : holder_(std::move(holder)) {}

    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException; NotEnoughIndicesProvidedException when the
    /// element holds no array; index errors of the element
    HeldElementRef<isConst> operator[](std::size_t index) const {
        detail::HeldPosition position(holder_, !isConst);
        position.append(index);
        return HeldElementRef<isConst>(std::move(position));
    }

private:
    detail::ElementPosition holder_;
};

template <bool isConst>
HeldElements<isConst> ArrayElementRef<isConst>::held() const {
    return HeldElements<isConst>(position_);
}
inline HeldElements<false> Reference<Array>::held() {
    return HeldElements<false>(detail::ElementPosition(chain_));
}
inline HeldElements<true> Reference<Array>::held() const {
    return HeldElements<true>(detail::ElementPosition(chain_));
}

namespace detail {

template <bool isConst>
std::shared_ptr<ReferenceImpl> chainOf(const HeldElementRef<isConst>& element) {
    return element.kept().chain();
}

} // namespace detail

} // namespace foundation::vexadata
