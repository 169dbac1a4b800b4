#include "Variable.hpp"

#include <foundation/vexadata/BufferAccess.hpp>
#include <foundation/vexadata/TypedArray.hpp>

#include <cmath>
#include <utility>

namespace vexa::inspect {

using foundation::vexadata::Array;
using foundation::vexadata::ArrayFactory;
using foundation::vexadata::ArrayType;
using foundation::vexadata::TypedArray;
using vexa::data::MemoryLayout;

namespace {

Array makeLogical(NumberBuffer& values, ArrayFactory& factory) {
    const std::size_t rows = values.size();
    auto storage = factory.createBuffer<bool>(rows);
    for (std::size_t k = 0; k < rows; ++k)
        storage[k] = values.data()[k] != 0;
    values.clear();
    return factory.createArrayFromBuffer<bool>({rows, 1}, std::move(storage), MemoryLayout::COLUMN_MAJOR);
}

Array makeArray(Column& column, ArrayFactory& factory) {
    NumberBuffer& values = column.values();
    const std::size_t rows = values.size();
    if (column.kind() == Column::Kind::text) return {};
    if (column.kind() == Column::Kind::logical && column.missing() == 0) return makeLogical(values, factory);
    if (rows == 0) return factory.createArray<double>({0, 1});
    return factory.createArrayFromBuffer<double>({rows, 1}, values.release(), MemoryLayout::COLUMN_MAJOR);
}

std::vector<double> presentNumbers(const TypedArray<double>& array) {
    const auto numbers = foundation::vexadata::getBufferPtr<double>(array);
    const std::size_t count = array.getNumberOfElements();
    std::vector<double> present;
    present.reserve(count);
    for (std::size_t k = 0; k < count; ++k)
        if (!std::isnan(numbers[k])) present.push_back(numbers[k]);
    return present;
}

} // namespace

Variable makeVariable(Column& column, std::size_t rows, ArrayFactory& factory) {
    return {column.name(), rows, column.missing(), makeArray(column, factory)};
}

std::vector<double> presentValues(const Variable& variable) {
    switch (variable.array.getType()) {
    case ArrayType::DOUBLE:
        return presentNumbers(variable.array);
    case ArrayType::LOGICAL: {
        const TypedArray<bool> truths = variable.array;
        return {truths.begin(), truths.end()};
    }
    default:
        return {};
    }
}

std::string typeName(const Variable& variable) {
    switch (variable.array.getType()) {
    case ArrayType::DOUBLE:
        return "double";
    case ArrayType::LOGICAL:
        return "logical";
    default:
        return "text";
    }
}

std::string dimensionText(const Variable& variable) {
    if (variable.array.getType() == ArrayType::UNKNOWN) return std::to_string(variable.rows) + "x1";
    std::string text;
    for (const std::size_t extent : variable.array.getDimensions()) {
        if (!text.empty()) text += 'x';
        text += std::to_string(extent);
    }
    return text;
}

} // namespace vexa::inspect
