// The values that checks put into elements. A pattern is a sequence of values, numbered from 0.
#pragma once

#include <foundation/vexadata/Traits.hpp>

#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

namespace vexa::check {

/// `counting` tells each position from its neighbours, `extreme` goes through what is easily mistaken (the
/// largest and smallest, NaN, zeros of both signs, empty and missing texts, arrays of other kinds), and
/// `alike` differs in one part alone: one byte, the imaginary part, the last letter.
enum Pattern : std::size_t { counting, extreme, alike, numberOfPatterns };

std::string_view nameOf(Pattern pattern);

namespace detail {

template <class T>
constexpr bool isComplex = foundation::vexadata::detail::isComplexElement<T>;

template <class T>
T extremeNumber(std::size_t n) {
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>) {
        const std::array<T, 9> values{Limits::quiet_NaN(),
                                      T(-0.0),
                                      T(0),
                                      Limits::infinity(),
                                      Limits::max(),
                                      Limits::lowest(),
                                      Limits::min(),
                                      -Limits::denorm_min(),
                                      T(1)};
        return values[n % values.size()];
    } else {
        const std::array<T, 7> values{
            Limits::max(),        Limits::min(),           T(0), T(1), T(Limits::max() - 1),
            T(Limits::min() + 1), T(Limits::max() / 2 + 1)};
        return values[n % values.size()];
    }
}

/// Integers of which one byte at a time differs, numbers that differ in the last place.
template <class T>
T likeNumber(std::size_t n) {
    if constexpr (std::is_floating_point_v<T>)
        return T(1) + static_cast<T>(n) * std::numeric_limits<T>::epsilon();
    else
        return static_cast<T>((n / sizeof(T) % 127 + 1) << (8 * (n % sizeof(T))));
}

} // namespace detail

/// Value `n` of a pattern.
template <class T>
T valueAt(std::size_t pattern, std::size_t n) {
    if constexpr (std::is_same_v<T, bool>) {
        return pattern == counting ? n % 3 == 1 : pattern == extreme ? n % 2 == 0 : n % 7 == 5;
    } else if constexpr (detail::isComplex<T>) {
        using Part = typename T::value_type;
        switch (pattern) {
        case counting:
            return {static_cast<Part>(n + 1), static_cast<Part>(n + 50)};
        case extreme:
            return {detail::extremeNumber<Part>(n), detail::extremeNumber<Part>(n / 2 + 3)};
        default:
            return {Part(7), detail::likeNumber<Part>(n)};
        }
    } else {
        switch (pattern) {
        case counting:
            return static_cast<T>(n + 1);
        case extreme:
            return detail::extremeNumber<T>(n);
        default:
            return detail::likeNumber<T>(n);
        }
    }
}

/// The same for texts. Short ones, long ones, and with `extreme` some that are empty or missing.
vexa::data::optional<std::u16string> textAt(std::size_t pattern, std::size_t n);

/// A number whose value a writer can put in the place of value `n`: the next one that is not equal.
template <class Equal>
std::size_t anotherThan(std::size_t n, Equal equal) {
    std::size_t other = n + 1;
    while (equal(n, other) && other < n + 1000)
        ++other;
    return other;
}

} // namespace vexa::check
