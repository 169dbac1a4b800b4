// Errors as text for people. The umbrella header does not include this one.
//
// The errors of the library are no `std::exception`, so that handlers for that one do not catch them by
// accident; programs that want one kind of error for everything, a log or a test framework use what is here.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/Print.hpp>

#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace foundation::vexadata {

/// The text of what was thrown: of an error of the library, of a `std::exception`, or "unknown error"; empty
/// when nothing was.
inline std::string message_of(const std::exception_ptr& error) {
    if (error == nullptr) {
        return {};
    }
    try {
        std::rethrow_exception(error);
    } catch (const Exception& thrown) {
        return thrown.what();
    } catch (const std::exception& thrown) {
        return thrown.what();
    } catch (...) {
        return "unknown error";
    }
}

/// Calls `f` and returns what it returns. An error of the library leaves as a `std::runtime_error` with the
/// same text, and with the error itself nested in it (`std::rethrow_if_nested`); all else leaves as it is.
template <class F>
decltype(auto) withStandardErrors(F&& f) {
    try {
        return std::forward<F>(f)();
    } catch (const Exception& error) {
        std::throw_with_nested(std::runtime_error(error.what()));
    }
}

namespace detail {

inline std::string indexText(const std::vector<std::size_t>& indices) {
    std::string text;
    for (const std::size_t index : indices) {
        text += '[' + std::to_string(index) + ']';
    }
    return text;
}

/// Which index is out of range, or which rule the indices break; empty when they lead to an element.
inline std::string indexFault(const Array& array, std::vector<std::size_t> indices) {
    const std::vector<std::size_t> extents = array.getDimensions();
    if (array.isEmpty()) {
        return "the array has no elements";
    }
    if (indices.size() == 1 && extents.size() == 2 && extents[0] == 1) {
        indices.insert(indices.begin(), 0); // a single index into a row
    } else if (indices.size() == 1 && extents.size() == 2 && extents[1] == 1) {
        indices.push_back(0);
    }
    for (std::size_t k = 0; k < indices.size() && k < extents.size(); ++k) {
        if (indices[k] >= extents[k]) {
            return "index " + std::to_string(indices[k]) + " of dimension " + std::to_string(k + 1) +
                   " is not below " + std::to_string(extents[k]);
        }
    }
    for (std::size_t k = extents.size(); k < indices.size(); ++k) {
        if (indices[k] != 0) {
            return "index " + std::to_string(indices[k]) + " is for dimension " + std::to_string(k + 1) +
                   ", and there are " + std::to_string(extents.size());
        }
    }
    return indices.size() < extents.size() ? std::to_string(indices.size()) + " of " +
                                                 std::to_string(extents.size()) + " indices were given"
                                           : std::string();
}

} // namespace detail

namespace detail {

inline std::string explained(std::string message, const Array& array,
                             const std::vector<std::size_t>& indices) {
    while (!message.empty() && message.back() == '.') {
        message.pop_back();
    }
    message += ": " + indexText(indices) + (indices.empty() ? "" : " of ") + dimensionText(array) + ' ' +
               kindName(array.getType());
    const std::string fault = indices.empty() ? std::string() : indexFault(array, indices);
    return fault.empty() ? message : message + ": " + fault;
}

} // namespace detail

/// The message of an error, what the array is, and which of these indices, counted from 0, does not lead into
/// it:
///
///     Array index is out of range: [5][1] of 3x4 double: index 5 of dimension 1 is not below 3
///
/// Without indices, or when they lead to an element, the last part is missing.
/// @throws std::bad_alloc; errors of the back-end
inline std::string explain(const Exception& error, const Array& array,
                           const std::vector<std::size_t>& indices = {}) {
    return detail::explained(error.what(), array, indices);
}
/// The same of whatever was thrown, by `message_of`.
inline std::string explain(const std::exception_ptr& error, const Array& array,
                           const std::vector<std::size_t>& indices = {}) {
    return detail::explained(message_of(error), array, indices);
}

} // namespace foundation::vexadata
