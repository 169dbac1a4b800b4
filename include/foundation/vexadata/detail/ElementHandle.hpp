// What `ArrayElementTypedRef`, `ArrayElementRef` and `HeldElementRef` have in common: how they hold their
// position and grow by an index.
#pragma once

#include <foundation/vexadata/detail/ElementPosition.hpp>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace foundation::vexadata::detail {

/// The handles whose array's kind is known at run time only.
template <class Ref>
inline constexpr bool isUntypedElement = false;
template <bool isConst>
inline constexpr bool isUntypedElement<ArrayElementRef<isConst>> = true;
template <bool isConst>
inline constexpr bool isUntypedElement<HeldElementRef<isConst>> = true;
/// Those of them that are a place in an array and nothing more.
template <class Ref>
inline constexpr bool isPlainElement = false;
template <bool isConst>
inline constexpr bool isPlainElement<ArrayElementRef<isConst>> = true;

/// Further indices on the element handle `Ref`: a temporary one grows, a named one is copied and stays as it
/// is.
template <class Ref>
class Indexing {
public:
    /// Appends an index.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException,
    /// TooManyIndicesProvidedException
    VEXADATA_INLINE Ref operator[](std::size_t index) && {
        Ref& self = static_cast<Ref&>(*this);
        Access::position(self).append(index);
        return std::move(self);
    }
    Ref operator[](std::size_t index) const& {
        Ref longer(static_cast<const Ref&>(*this));
        Access::position(longer).append(index);
        return longer;
    }
};

/// For handles that only read: an assignment to one could only be a write that goes nowhere.
struct NotAssignable {
    NotAssignable() = default;
    NotAssignable(const NotAssignable&) = default;
    NotAssignable& operator=(const NotAssignable&) = delete;
    ~NotAssignable() = default;
};

/// A handle to an element that is read as a value of type `T`.
template <class T>
class ElementView {
public:
    explicit ElementView(ElementPosition position) noexcept : position_(std::move(position)) {}
    explicit ElementView(const std::shared_ptr<ReferenceImpl>& chain) noexcept : position_(chain) {}

    /// @throws index errors; errors of the back-end
    operator T() const { return position_.template value<T>(); }

protected:
    friend struct Access;
    ElementView(const ElementView&) = default;
    ElementView(ElementView&&) noexcept = default;
    ElementView& operator=(const ElementView&) = delete;
    ~ElementView() = default;

    ElementPosition position_;
};

/// The writable handle `Ref` to an element that `View` reads as a `T`. The array is made private before the
/// index is looked at. Assigning another element writes its value; it never makes the handle refer elsewhere.
/// @throws index errors; errors of the back-end
template <class Ref, class View, class T>
class WritableElement : public View {
public:
    using View::View;
    WritableElement(const WritableElement&) = default;

    Ref& operator=(T value) {
        this->position_.template setValue<T>(std::move(value));
        return static_cast<Ref&>(*this);
    }
    WritableElement& operator=(const WritableElement& other) {
        *this = static_cast<T>(other);
        return *this;
    }
    template <class Other,
              std::enable_if_t<std::is_base_of_v<ElementView<T>, Other> || isUntypedElement<Other>, int> = 0>
    Ref& operator=(const Other& other) {
        return *this = static_cast<T>(other);
    }

    /// Exchanges the values. Found by argument alone: `std::swap` by its full name would lose one of them.
    friend void swap(Ref a, Ref b) {
        T value = a;
        a = static_cast<T>(b);
        b = std::move(value);
    }

protected:
    ~WritableElement() = default;
};

/// The place of an element handle, all of whose indices are there and in range.
/// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
template <class Ref>
ElementPosition completePosition(const Ref& element) {
    ElementPosition position = Access::position(element);
    position.linearIndex();
    return position;
}
/// The same, of an array with elements `T`.
/// @throws TypeMismatchException; index errors
template <class T, class Ref>
ElementPosition completePosition(const Ref& element) {
    if (!acceptsType<T>(Access::position(element).array()->getType())) {
        raise<TypeMismatchException>();
    }
    return completePosition(element);
}

} // namespace foundation::vexadata::detail
