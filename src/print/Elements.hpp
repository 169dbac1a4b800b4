// Single elements as short texts: what the grid of a printed matrix and `std::cout << a[i]` are made of.
#pragma once

#include <foundation/vexadata/Print.hpp>

#include <cstddef>
#include <string>

namespace foundation::vexadata::print {

using vexa::data::impl::ArrayImpl;

/// How the texts of a kind of elements are aligned.
enum class Alignment { number, right, left };
Alignment alignmentOf(ArrayType type) noexcept;

/// True for numbers, logicals, characters, strings and members of enumerations: elements that fit into a
/// grid.
bool isScalarKind(ArrayType type) noexcept;

/// The element at a position of an array of such a kind: texts in quotes, "<missing>" and "<none>" for what
/// is not there.
std::string elementText(ArrayImpl& array, std::size_t index, const PrintOptions& options);

/// The stored value at position `index` among the non-zeros of a sparse array.
std::string storedText(const Array& sparse, std::size_t index, const PrintOptions& options);

/// Writes the element, of an array of such a kind, as the stream would write its value; text without quotes.
void writeScalar(std::ostream& stream, const detail::ElementPosition& element);

} // namespace foundation::vexadata::print
