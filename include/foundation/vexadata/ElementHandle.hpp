// What all element handles have in common.
#pragma once

#include <foundation/vexadata/ElementPosition.hpp>

#include <cstddef>
#include <utility>

namespace foundation::vexadata::detail {

/// Further indices on the element handle `Ref`: a temporary one grows, a named one is copied and stays as it is.
template <class Ref>
class Indexing {
public:
    /// Appends an index.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    [[gnu::always_inline]] Ref operator[](std::size_t index) && {
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
