// Layout: matrices as grids page by page, non-zeros as a list, records and cells below their labels; long
// arrays lose their middle.
#include "Printer.hpp"

#include "Elements.hpp"
#include "Text.hpp"
#include "TextGrid.hpp"

#include <foundation/vexadata/Object.hpp>
#include <foundation/vexadata/ObjectElement.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <vexa/data/detail/IndexRules.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>

#include <optional>

namespace foundation::vexadata::print {

namespace {

using Dimensions = std::vector<std::size_t>;
using Indices = std::vector<std::uint64_t>;

/// The positions to show of `count`, in order; an empty entry stands for those that are left out.
std::vector<std::optional<std::size_t>> shown(std::size_t count, bool cut, std::size_t edge) {
    std::vector<std::optional<std::size_t>> positions;
    const bool gap = cut && count > 2 * edge;
    for (std::size_t k = 0; k < count; ++k) {
        if (gap && k == edge) {
            positions.emplace_back();
            k = count - edge;
        }
        if (k < count) {
            positions.emplace_back(k);
        }
    }
    return positions;
}

/// The indices of element `number` in column-major order, leaving out the first `skipped` dimensions.
Indices indicesOf(const Dimensions& dimensions, std::size_t number, std::size_t skipped) {
    Indices indices(dimensions.size(), 0);
    for (std::size_t k = skipped; k < dimensions.size(); ++k) {
        indices[k] = number % dimensions[k];
        number /= dimensions[k];
    }
    return indices;
}

std::size_t positionOf(const ArrayImpl& array, const Indices& indices) {
    return vexa::data::detail::positionOf(array.getDimensions(), indices.data(), array.getMemoryLayout());
}

std::string inBrackets(std::size_t index) {
    std::string text(1, '[');
    text += std::to_string(index);
    text += ']';
    return text;
}

/// "[2]" in a row or column, "[1][2]" elsewhere.
std::string subscript(const Dimensions& dimensions, const Indices& indices) {
    if (vexa::data::detail::isVector(dimensions)) {
        return inBrackets(indices[0] + indices[1]);
    }
    std::string text;
    for (const std::size_t index : indices) {
        text += inBrackets(index);
    }
    return text;
}

std::string pageTitle(const Indices& indices) {
    std::string title = "[:][:]";
    for (std::size_t k = 2; k < indices.size(); ++k) {
        title += inBrackets(indices[k]);
    }
    return title;
}

GridCell cellOf(std::string text, Alignment alignment) {
    switch (alignment) {
    case Alignment::left:
        return leftCell(std::move(text));
    case Alignment::right:
        return rightCell(std::move(text));
    default:
        return numberCell(std::move(text));
    }
}

bool isRowOfCharacters(const Array& array) {
    const Dimensions& dimensions = detail::Access::impl(array)->getDimensions();
    return array.getType() == ArrayType::CHAR && dimensions.size() == 2 && dimensions[0] == 1;
}

std::string rowOfCharacters(const Array& array, const PrintOptions& options) {
    ArrayImpl& impl = *detail::Access::impl(array);
    std::u16string text;
    for (std::size_t k = 0; k < array.getNumberOfElements() && k <= options.width; ++k) {
        text += detail::readElement<char16_t>(impl, k, detail::noFieldName);
    }
    return quoted(text, '\'', options.width);
}

/// "3x4 double".
std::string heading(const Array& array) {
    std::string text = dimensionText(array);
    text += ' ';
    text += kindName(array.getType());
    if (array.getType() == ArrayType::ENUM) {
        const auto& impl = static_cast<vexa::data::impl::EnumArrayImpl&>(*detail::Access::impl(array));
        const char* name = impl.getClassName();
        text += name == nullptr ? "" : std::string(" ") + name;
    } else if (isSparse(array)) {
        const std::size_t count = detail::Access::impl(array)->getNumberOfNonZeroElements();
        text += ", " + std::to_string(count) + (count == 1 ? " non-zero" : " non-zeros");
    }
    return text;
}

/// The text of an array that is printed on the line of its label: scalars, rows of characters, arrays without
/// elements. Absent for others.
std::optional<std::string> shortText(const Array& array, const PrintOptions& options) {
    if (array.getType() == ArrayType::UNKNOWN) {
        return "empty";
    }
    if (isRowOfCharacters(array)) {
        return rowOfCharacters(array, options);
    }
    if (array.isEmpty()) {
        return heading(array);
    }
    if (isScalarKind(array.getType()) && array.getNumberOfElements() == 1) {
        return elementText(*detail::Access::impl(array), 0, options);
    }
    return std::nullopt;
}

std::string objectHeading(const Object& object) {
    if (detail::Access::impl(object) == nullptr) {
        return "<none>";
    }
    const vexa::data::impl::HandleObjectRefImpl* handle = detail::handleObject(object);
    return handle == nullptr ? "object" : std::string("handle ").append(std::to_string(handle->getId()));
}

std::string labelled(const std::string& label, const std::string& text) {
    return label.empty() ? text : label + " " + text;
}

} // namespace

std::string Printer::text() const {
    std::string text;
    for (const std::string& line : lines_) {
        text += text.empty() ? "" : "\n";
        text += line;
    }
    return text;
}

template <class Walk>
void Printer::deeper(Walk walk) {
    indent_ += "  ";
    ++level_;
    if (level_ <= options_.depth) {
        walk();
    } else {
        line("...");
    }
    --level_;
    indent_.resize(indent_.size() - 2);
}

std::size_t Printer::threshold() const noexcept {
    return level_ > 1 ? options_.threshold / 10 : options_.threshold; // level 1 is inside the array itself
}

void Printer::array(const std::string& label, const Array& array) {
    if (const std::optional<std::string> text = shortText(array, options_)) {
        line(labelled(label, *text));
        return;
    }
    line(labelled(label, heading(array)));
    deeper([&] { contents(array); });
}

void Printer::contents(const Array& array) {
    if (isScalarKind(array.getType())) {
        matrix(*detail::Access::impl(array));
    } else if (isSparse(array)) {
        nonZeros(array);
    } else {
        items(array);
    }
}

void Printer::matrix(ArrayImpl& array) {
    const Dimensions& dimensions = array.getDimensions();
    const bool cut = array.getNumberOfElements() > threshold();
    const std::size_t pages = array.getNumberOfElements() / (dimensions[0] * dimensions[1]);
    for (const auto number : shown(pages, cut, options_.edge)) {
        if (!number) {
            line("...");
            continue;
        }
        if (dimensions.size() > 2) {
            line(pageTitle(indicesOf(dimensions, *number, 2)));
        }
        page(array, *number, cut);
    }
}

void Printer::page(ArrayImpl& array, std::size_t number, bool cut) {
    const Dimensions& dimensions = array.getDimensions();
    const Alignment alignment = alignmentOf(array.getType());
    Indices indices = indicesOf(dimensions, number, 2);
    const auto rows = shown(dimensions[0], cut, options_.edge);
    TextGrid grid;
    for (const auto column : shown(dimensions[1], cut, options_.edge)) {
        TextGrid::Column cells{column ? std::to_string(*column) : "...", {}};
        for (const auto row : rows) {
            if (row && column) {
                indices[0] = *row;
                indices[1] = *column;
                const std::size_t position = positionOf(array, indices);
                cells.cells.push_back(cellOf(elementText(array, position, options_), alignment));
            } else {
                cells.cells.push_back(
                    cellOf("...", alignment == Alignment::number ? Alignment::right : alignment));
            }
        }
        grid.add(std::move(cells));
    }
    for (std::string& text : grid.lines(indent_, options_.width)) {
        lines_.push_back(std::move(text));
    }
}

void Printer::nonZeros(const Array& array) {
    const ArrayImpl& impl = *detail::Access::impl(array);
    const std::size_t count = impl.getNumberOfNonZeroElements();
    const Alignment alignment =
        array.getType() == ArrayType::SPARSE_COMPLEX_DOUBLE ? Alignment::right : Alignment::number;
    TextGrid::Column places{"", {}};
    TextGrid::Column values{"", {}};
    for (const auto k : shown(count, count > threshold(), options_.edge)) {
        if (k) {
            const auto [row, column] = impl.getIndex(*k);
            places.cells.push_back(leftCell(inBrackets(row).append(inBrackets(column))));
            values.cells.push_back(cellOf(storedText(array, *k, options_), alignment));
        } else {
            places.cells.push_back(leftCell("..."));
            values.cells.push_back(leftCell(""));
        }
    }
    TextGrid grid;
    grid.add(std::move(places));
    grid.add(std::move(values));
    for (std::string& text : grid.lines(indent_, options_.width)) {
        lines_.push_back(std::move(text));
    }
}

void Printer::items(const Array& array) {
    const std::size_t count = array.getNumberOfElements();
    for (const auto number : shown(count, count > options_.mostItems, options_.edge)) {
        if (number) {
            item(array, *number);
        } else {
            line("...");
        }
    }
}

void Printer::item(const Array& array, std::size_t number) {
    ArrayImpl& impl = *detail::Access::impl(array);
    const Indices indices = indicesOf(impl.getDimensions(), number, 0);
    const std::string label = subscript(impl.getDimensions(), indices);
    const auto position = detail::ElementPosition::at(&impl, positionOf(impl, indices));
    if (array.getType() == ArrayType::CELL) {
        this->array(label, Array(ArrayElementRef<true>(position)));
    } else if (array.getType() == ArrayType::STRUCT) {
        if (array.getNumberOfElements() == 1) {
            record(StructElement(position));
            return;
        }
        line(label);
        deeper([&] { record(StructElement(position)); });
    } else {
        object(label, position.value<ValueObject>());
    }
}

void Printer::record(const StructElement& record) {
    auto name = record.getFieldNames().begin();
    for (const Array value : record) {
        array((*name).getString() + ":", value);
        ++name;
    }
}

void Printer::object(const std::string& label, const ValueObject& object) {
    line(labelled(label, objectHeading(object)));
    if (detail::Access::impl(object) == nullptr || detail::handleObject(object) != nullptr) {
        return;
    }
    deeper([&] {
        for (auto property = object.cbegin(); property != object.cend(); ++property) {
            array((*property).getPropertyName() + ":", (*property).castToArray());
        }
    });
}

} // namespace foundation::vexadata::print
