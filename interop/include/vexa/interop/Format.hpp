// Arrays, their elements and objects in the standard library's format strings: std::format("{} {:.3}", array,
// array[0]). Needs C++20 and a standard library that has the header format; nothing else of the library
// includes this header.
#pragma once

#include <vexa/interop/detail/FormatText.hpp>

#include <algorithm>
#include <format>

/// @cond formatters are found by the library alone
/// Writes what `std::cout` does; `{:.N}` for N significant digits.
/// @throws std::format_error for anything else behind the colon; index errors; errors of the back-end
template <class T>
requires vexa::interop::detail::isPrintable<T>
struct std::formatter<T, char> {
    constexpr auto parse(std::format_parse_context& context) {
        auto at = context.begin();
        if (!digits_.read(at, context.end())) {
            throw std::format_error("arrays take {} and {:.N} alone");
        }
        return at;
    }
    template <class Context>
    auto format(const T& value, Context& context) const {
        return std::ranges::copy(digits_.textOf(value), context.out()).out;
    }

private:
    vexa::interop::detail::Digits digits_;
};

#if defined(__cpp_lib_format_ranges)
// Handles that the library would write as ranges of elements.
template <class T>
constexpr std::range_format std::format_kind<foundation::vexadata::TypedArray<T>> =
    std::range_format::disabled;
template <class T>
constexpr std::range_format std::format_kind<foundation::vexadata::SparseArray<T>> =
    std::range_format::disabled;
template <>
constexpr std::range_format std::format_kind<foundation::vexadata::CharArray> = std::range_format::disabled;
template <>
constexpr std::range_format std::format_kind<foundation::vexadata::StructArray> = std::range_format::disabled;
template <>
constexpr std::range_format std::format_kind<foundation::vexadata::EnumArray> = std::range_format::disabled;
template <>
constexpr std::range_format std::format_kind<foundation::vexadata::ValueObjectArray> =
    std::range_format::disabled;
template <class T>
constexpr std::range_format std::format_kind<foundation::vexadata::Reference<T>> =
    std::range_format::disabled;
template <class T, bool isConst>
constexpr std::range_format std::format_kind<foundation::vexadata::ArrayElementTypedRef<T, isConst>> =
    std::range_format::disabled;
#endif
/// @endcond
