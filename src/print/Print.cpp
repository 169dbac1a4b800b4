// Stream operators and the texts that describe an array: names of kinds, dimensions.
#include "Elements.hpp"
#include "Printer.hpp"

#include <foundation/vexadata/ObjectElement.hpp>

#include <ostream>

namespace foundation::vexadata {

namespace {

void writeText(std::ostream& stream, const std::string& text) {
    stream.width(0);
    stream << text;
}

PrintOptions optionsOf(const std::ostream& stream) {
    PrintOptions options;
    options.precision = static_cast<int>(stream.precision());
    return options;
}

/// An element that is no scalar: a record, an object, or one that holds an array.
std::string structuredText(const detail::ElementPosition& element, const PrintOptions& options) {
    print::Printer printer(options);
    const ArrayType type = element.array()->getType();
    if (!element.fieldName().empty() || type == ArrayType::CELL) {
        printer.array("", detail::castTo<Array, true>(element.chain()));
    } else if (type == ArrayType::STRUCT) {
        printer.record(StructElement(element));
    } else if (detail::acceptsType<ValueObject>(type)) {
        printer.object("", element.value<ValueObject>());
    } else {
        detail::raise<TypeMismatchException>();
    }
    return printer.text();
}

} // namespace

std::string toText(const Array& array, const PrintOptions& options) {
    print::Printer printer(options);
    printer.array("", array);
    return printer.text();
}

std::string toText(const Object& object, const PrintOptions& options) {
    ValueObject shared;
    detail::Access::impl(shared) = detail::Access::impl(object);
    print::Printer printer(options);
    printer.object("", shared);
    return printer.text();
}

std::ostream& operator<<(std::ostream& stream, const Object& object) {
    writeText(stream, toText(object, optionsOf(stream)));
    return stream;
}

std::ostream& operator<<(std::ostream& stream, const Array& array) {
    writeText(stream, toText(array, optionsOf(stream)));
    return stream;
}

std::ostream& operator<<(std::ostream& stream, const Printed& printed) {
    writeText(stream, toText(printed.array, printed.options));
    return stream;
}

const char* kindName(ArrayType type) noexcept {
    static constexpr const char* names[] = {"unknown",        "logical",        "char",
                                            "string",         "double",         "single",
                                            "int8",           "uint8",          "int16",
                                            "uint16",         "int32",          "uint32",
                                            "int64",          "uint64",         "complex double",
                                            "complex single", "complex int8",   "complex uint8",
                                            "complex int16",  "complex uint16", "complex int32",
                                            "complex uint32", "complex int64",  "complex uint64",
                                            "cell",           "struct",         "object",
                                            "object",         "handle object",  "enumeration",
                                            "sparse logical", "sparse double",  "sparse complex double"};
    const auto index = static_cast<std::uint32_t>(type);
    return index < std::size(names) ? names[index] : names[0];
}

std::string dimensionText(const Array& array) {
    std::string text;
    for (const std::size_t extent : detail::Access::impl(array)->getDimensions()) { // the handle copies them
        text += text.empty() ? "" : "x";
        text += std::to_string(extent);
    }
    return text;
}

namespace detail {

void printElement(std::ostream& stream, const ElementPosition& element) {
    const bool isField = !element.fieldName().empty();
    if (!isField && print::isScalarKind(element.array()->getType())) {
        print::writeScalar(stream, element);
    } else {
        writeText(stream, structuredText(element, optionsOf(stream)));
    }
}

} // namespace detail

} // namespace foundation::vexadata
