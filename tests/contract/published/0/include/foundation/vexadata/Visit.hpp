// Deciding by the kind of an array, as `std::visit` decides by the alternative of a variant.
#pragma once

#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/ValueObjectArray.hpp>
#include <foundation/vexadata/detail/ByKind.hpp>

#include <type_traits>
#include <utility>

namespace foundation::vexadata {

namespace detail {

/// The handle for the arrays of a tag; void for no kind.
template <class Tag>
struct VisitedHandle {
    using type = void;
};
template <class T>
struct VisitedHandle<ElementTag<T>> {
    using type = TypedArray<T>;
};
template <>
struct VisitedHandle<ElementTag<char16_t>> {
    using type = CharArray;
};
template <>
struct VisitedHandle<ElementTag<StructElement>> {
    using type = StructArray;
};
template <>
struct VisitedHandle<ElementTag<ValueObject>> {
    using type = ValueObjectArray;
};
template <>
struct VisitedHandle<ElementTag<Enumeration>> {
    using type = EnumArray;
};
template <class T>
struct VisitedHandle<SparseTag<T>> {
    using type = SparseArray<T>;
};

template <class T>
struct ReturnedType {
    using type = T;
};
/// Stands for the type that `f` returns for the first of the handles that it takes.
template <class F, class Handle, class... Others>
constexpr auto visitResult() {
    if constexpr (std::is_invocable_v<F&, Handle>) {
        return ReturnedType<std::invoke_result_t<F&, Handle>>();
    } else {
        static_assert(sizeof...(Others) != 0, "f takes none of the handles that visit hands out");
        return visitResult<F, Others...>();
    }
}

// clang-format off
template <class F>
using ResultOfVisit = typename decltype(visitResult<F,
#define VEXADATA_ELEMENT(T) typename VisitedHandle<ElementTag<T>>::type,
#include <foundation/vexadata/detail/ElementTypes.inc>
    SparseArray<bool>, SparseArray<double>, SparseArray<std::complex<double>>>())::type;
// clang-format on

} // namespace detail

/// Calls `f` with the typed handle of the kind that `array` has, and returns what it returns:
///
/// | kind | handle |
/// |---|---|
/// | logical, numeric, complex | `TypedArray<T>` |
/// | character | `CharArray` |
/// | string, cell | `TypedArray<String>`, `TypedArray<Array>` |
/// | struct | `StructArray` |
/// | enumeration | `EnumArray` |
/// | object, value object | `ValueObjectArray` |
/// | handle object | `TypedArray<HandleObjectRef>` |
/// | sparse | `SparseArray<T>` |
///
/// `f` is a function object; several functions, one for each kind that matters, are made one by deriving from
/// all of them. A call operator that is a template must compile for every handle that it takes. All of them
/// return the same type.
///
/// The handle shares the array with `array`, so that a write through it makes a copy. To write in place, move
/// the array in and return the handle: `array = visit(std::move(array), f);`.
///
/// Costs a virtual call and a jump; allocates nothing. The thread rule is that of the handles.
///
/// @throws InvalidArrayTypeException for a kind that `f` does not take, and for the empty array, which has
/// none; what `f` throws
template <class F>
detail::ResultOfVisit<F> visit(Array array, F&& f) {
    using Result = detail::ResultOfVisit<F>;
    return detail::withKind(array.getType(), [&](auto tag) -> Result {
        using Handle = typename detail::VisitedHandle<decltype(tag)>::type;
        if constexpr (std::is_invocable_v<F&, Handle>) {
            static_assert(std::is_same_v<std::invoke_result_t<F&, Handle>, Result>,
                          "f returns different types for different kinds");
            return f(Handle(std::move(array)));
        } else {
            detail::raise<InvalidArrayTypeException>();
        }
    });
}

} // namespace foundation::vexadata
