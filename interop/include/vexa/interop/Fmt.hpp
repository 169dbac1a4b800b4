// Arrays, their elements and objects in the format strings of {fmt}: fmt::format("{} {:.3}", array,
// array[0]). Needs {fmt} 9; nothing else of the library includes this header.
#pragma once

#include <vexa/interop/detail/FormatText.hpp>

#include <fmt/format.h>
#include <fmt/ranges.h>

/// @cond formatters are found by {fmt} alone
/// Writes what `std::cout` does; `{:.N}` for N significant digits.
/// @throws fmt::format_error for anything else behind the colon; index errors; errors of the back-end
template <class T>
struct fmt::formatter<T, char, std::enable_if_t<vexa::interop::detail::isPrintable<T>>> {
    constexpr auto parse(fmt::format_parse_context& context) {
        auto at = context.begin();
        if (!digits_.read(at, context.end())) {
            throw fmt::format_error("arrays take {} and {:.N} alone");
        }
        return at;
    }
    template <class Context>
    auto format(const T& value, Context& context) const {
        const std::string text = digits_.textOf(value);
        return std::copy(text.begin(), text.end(), context.out());
    }

private:
    vexa::interop::detail::Digits digits_;
};

// Handles that {fmt} would write as ranges of elements.
template <class T>
struct fmt::is_range<foundation::vexadata::TypedArray<T>, char> : std::false_type {};
template <class T>
struct fmt::is_range<foundation::vexadata::SparseArray<T>, char> : std::false_type {};
template <>
struct fmt::is_range<foundation::vexadata::CharArray, char> : std::false_type {};
template <>
struct fmt::is_range<foundation::vexadata::StructArray, char> : std::false_type {};
template <>
struct fmt::is_range<foundation::vexadata::EnumArray, char> : std::false_type {};
template <>
struct fmt::is_range<foundation::vexadata::ValueObjectArray, char> : std::false_type {};
template <class T>
struct fmt::is_range<foundation::vexadata::Reference<T>, char> : std::false_type {};
template <class T, bool isConst>
struct fmt::is_range<foundation::vexadata::ArrayElementTypedRef<T, isConst>, char> : std::false_type {};
/// @endcond
