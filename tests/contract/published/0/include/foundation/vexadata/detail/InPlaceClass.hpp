// Which classes of arrays handles recognise, so that they reach the elements without asking the back-end.
#pragma once

#include <foundation/vexadata/Forward.hpp>
#include <foundation/vexadata/Traits.hpp>
#include <foundation/vexadata/detail/TypeInformation.hpp>
#include <vexa/data/impl/DenseArrayImpl.hpp>
#include <vexa/data/impl/InPlaceArrayImpl.hpp>
#include <vexa/data/impl/StringArrayImpl.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <atomic>
#include <cstddef>

namespace foundation::vexadata::detail {

using vexa::data::impl::ArrayImpl;
using vexa::data::impl::TypedArrayImpl;

/// The class of arrays of elements `T` that handles recognise, and what is public of it.
template <class T, bool isPrimitive = isPrimitiveElement<T>>
struct InPlaceClass {
    static constexpr bool exists = false;
};
template <class T>
struct InPlaceClass<T, true> {
    static constexpr bool exists = true;
    using Base = vexa::data::impl::DenseArrayImpl<T>;
    VEXADATA_INLINE static bool recognises(const ArrayImpl& array) noexcept { return isExactly<Base>(array); }
};
/// One that a back-end has named.
template <class Interface, class T, vexa::data::detail::RecognisedKind kind>
struct NamedInPlaceClass {
    static constexpr bool exists = true;
    using Base = vexa::data::impl::InPlaceArrayImpl<Interface, T>;
    VEXADATA_INLINE static bool recognises(const ArrayImpl& array) noexcept {
        return typeInformationOf(array) ==
               vexa::data::detail::recognisedClasses[static_cast<std::size_t>(kind)].load(
                   std::memory_order_relaxed);
    }
};
template <>
struct InPlaceClass<Array, false>
    : NamedInPlaceClass<TypedArrayImpl<Array>, Array, vexa::data::detail::RecognisedKind::CELLS> {};
/// Where a text or a record lies is known; what is in it, the back-end is asked.
template <>
struct InPlaceClass<String, false> : NamedInPlaceClass<vexa::data::impl::StringArrayImpl, const void,
                                                       vexa::data::detail::RecognisedKind::STRINGS> {};
template <>
struct InPlaceClass<StructElement, false> : NamedInPlaceClass<vexa::data::impl::StructArrayImpl, const void,
                                                              vexa::data::detail::RecognisedKind::STRUCTS> {};

} // namespace foundation::vexadata::detail
