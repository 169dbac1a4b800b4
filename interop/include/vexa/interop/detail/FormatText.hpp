// What the formatters of {fmt} and of the standard library share.
#pragma once

#include <foundation/vexadata/Object.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/VexaData.hpp>

#include <sstream>
#include <string>
#include <type_traits>

namespace vexa::interop::detail {

namespace fv = foundation::vexadata;

/// What the library prints: arrays, objects, and handles to elements.
template <class T>
inline constexpr bool isPrintable = std::is_base_of_v<fv::Array, T> || std::is_base_of_v<fv::Object, T> ||
                                    fv::detail::isElementHandle<T> || fv::detail::isReference<T>;

/// What comes between the colon and the brace: nothing, or a point and the number of significant digits.
struct Digits {
    int precision = fv::PrintOptions().precision;

    /// Reads it, and returns where it ends.
    /// @return null when it is something else
    template <class Iterator>
    constexpr bool read(Iterator& at, Iterator end) {
        if (at == end || *at == '}') {
            return true;
        }
        if (*at != '.' || ++at == end || *at < '0' || *at > '9') {
            return false;
        }
        for (precision = 0; at != end && *at >= '0' && *at <= '9' && precision < 100; ++at) {
            precision = precision * 10 + (*at - '0');
        }
        return at == end || *at == '}';
    }

    /// The value as text.
    /// @throws index errors; errors of the back-end
    template <class T>
    std::string textOf(const T& value) const {
        std::ostringstream stream;
        stream.precision(precision);
        stream << value;
        return std::move(stream).str();
    }
};

} // namespace vexa::interop::detail
