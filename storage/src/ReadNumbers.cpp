// Numbers, logical values, characters and sparse matrices.
#include "ArrayReader.hpp"

#include <foundation/vexadata/Utf8.hpp>

#include <algorithm>
#include <complex>
#include <limits>
#include <stdexcept>
#include <utility>

namespace vexa::storage {

using Kind = Token::Kind;
using data::MemoryLayout;

namespace {

/// Elements as they lie in the file.
struct Stored {
    ArrayType type;
    TypedTag typed;
    std::size_t count;
    const unsigned char* data;
    std::size_t bytes;
};

/// What follows the tag of a typed array, or of complex numbers in one.
Stored readStored(ArrayReader& reader, const Token& first) {
    Lexer& lexer = reader.lexer();
    const bool isComplex = first.value == tag::complexNumbers;
    const Token tag = isComplex ? lexer.expect(Kind::tag, "the tag of a typed array") : first;
    const TypedTag typed = typedTag(tag.value);
    if (typed.type == ArrayType::UNKNOWN) {
        reader.unknownTag(tag);
    }
    const Token bytes = lexer.expect(Kind::bytes, "the bytes of a typed array");
    const std::size_t width = typed.size * (isComplex ? 2 : 1);
    if (bytes.value % width != 0) {
        lexer.failAt(bytes.offset, "expected elements of " + std::to_string(width) + " bytes, found " +
                                       std::to_string(bytes.value) + " bytes");
    }
    const ArrayType type = isComplex ? fv::detail::complexTypeOf(typed.type) : typed.type;
    return {type, typed, bytes.value / width, bytes.data, bytes.value};
}

void requireCount(ArrayReader& reader, std::size_t expected, std::size_t found) {
    if (found != expected) {
        reader.lexer().failAt(reader.lexer().position(), "expected " + std::to_string(expected) +
                                                             " elements before, found " +
                                                             std::to_string(found));
    }
}

void readBooleansTo(ArrayReader& reader, std::size_t count, bool* to) {
    for (std::size_t k = 0; k < count; ++k) {
        to[k] = reader.lexer().expect(Kind::boolean, "a logical value").value != 0;
        reader.itemCame();
    }
}

std::u16string unitsOf(ArrayReader& reader, const Token& text) {
    try {
        return fv::fromUtf8(text.text());
    } catch (const std::range_error& error) {
        reader.lexer().failAt(text.offset, error.what());
    }
}

} // namespace

fv::Array readTyped(ArrayReader& reader, const Token& tag, std::optional<Size> size, MemoryLayout layout) {
    const Stored stored = readStored(reader, tag);
    std::vector<std::size_t> dimensions{stored.count, 1};
    if (size) {
        requireCount(reader, size->count, stored.count);
        dimensions = std::move(size->dimensions);
    }
    return reader.payloads().dense(std::move(dimensions), stored.type, layout, stored.typed, stored.data);
}

fv::Array readBooleans(ArrayReader& reader, Size size, MemoryLayout layout) {
    reader.expectItems(size.count, "a list of logical values");
    auto values = reader.factory().createBuffer<bool>(size.count);
    readBooleansTo(reader, size.count, values.get());
    return reader.factory().createArrayFromBuffer<bool>(std::move(size.dimensions), std::move(values),
                                                        layout);
}

fv::Array readNumber(ArrayReader& reader, const Token& number) {
    const fv::ArrayFactory& factory = reader.factory();
    const auto mostSigned = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    switch (number.kind) {
    case Kind::real:
        return factory.createScalar(number.number);
    case Kind::single:
        return factory.createScalar(static_cast<float>(number.number));
    case Kind::boolean:
        return factory.createScalar(number.value != 0);
    case Kind::unsignedNumber:
        return number.value <= mostSigned
                   ? fv::Array(factory.createScalar(static_cast<std::int64_t>(number.value)))
                   : fv::Array(factory.createScalar(number.value));
    case Kind::negativeNumber:
        if (number.value <= mostSigned) {
            return factory.createScalar(-1 - static_cast<std::int64_t>(number.value));
        }
        [[fallthrough]];
    default:
        reader.lexer().fail(number, "an array");
    }
}

fv::Array readComplexNumber(ArrayReader& reader) {
    const Token pair = reader.lexer().expect(Kind::list, "the two parts of a complex number");
    if (pair.value != 2) {
        reader.lexer().fail(pair, "the two parts of a complex number");
    }
    const double real = reader.lexer().expect(Kind::real, "a part of a complex number").number;
    const double imaginary = reader.lexer().expect(Kind::real, "a part of a complex number").number;
    return reader.factory().createScalar(std::complex<double>(real, imaginary));
}

fv::Array readText(ArrayReader& reader, const Token& text) {
    return reader.factory().createCharArray(unitsOf(reader, text));
}

fv::Array readChars(ArrayReader& reader) {
    Lexer& lexer = reader.lexer();
    lexer.expectText("units");
    Token order = lexer.expect(Kind::tag, "the dimensions and units of characters");
    while (order.value == tag::selfDescribed) {
        order = lexer.expect(Kind::tag, "the dimensions and units of characters");
    }
    const Token pair = lexer.expect(Kind::list, "dimensions and units");
    if ((order.value != tag::rowMajor && order.value != tag::columnMajor) || pair.value != 2) {
        lexer.fail(order, "the dimensions and units of characters");
    }
    Size size = reader.readDimensions();
    const Stored units = readStored(reader, lexer.expect(Kind::tag, "the units of characters"));
    if (units.type != ArrayType::UINT16) {
        lexer.failAt(order.offset, "expected units of 16 bits, found other elements");
    }
    requireCount(reader, size.count, units.count);
    const bool isRowMajor = order.value == tag::rowMajor;
    return reader.payloads().dense(std::move(size.dimensions), ArrayType::CHAR,
                                   isRowMajor ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR,
                                   units.typed, units.data);
}

namespace {

using Places = fv::buffer_ptr<std::size_t>;

/// A typed array of counts; `count` is how many there are.
Places readPlaces(ArrayReader& reader, const char* key, std::size_t& count) {
    reader.lexer().expectText(key);
    const Stored stored = readStored(reader, reader.lexer().expect(Kind::tag, "a typed array of places"));
    if (stored.type != ArrayType::UINT64) {
        reader.lexer().failAt(reader.lexer().position(),
                              "expected places of 64 bits before, found other elements");
    }
    count = stored.count;
    auto places = reader.factory().createBuffer<std::size_t>(count);
    reader.payloads().copy(stored.typed, stored.data, stored.bytes, places.get());
    return places;
}

template <class T>
fv::buffer_ptr<T> readValues(ArrayReader& reader, std::size_t count) {
    const Token tag = reader.lexer().expect(Kind::tag, "the values of a sparse matrix");
    auto values = reader.factory().createBuffer<T>(count);
    if constexpr (std::is_same_v<T, bool>) {
        if (tag.value != tag::homogeneous) {
            reader.unknownTag(tag);
        }
        reader.expectItems(count, "the values of a sparse matrix");
        readBooleansTo(reader, count, values.get());
    } else {
        const Stored stored = readStored(reader, tag);
        if (stored.type != fv::detail::arrayTypeOf<T>) {
            reader.lexer().fail(tag, "values of the type of the sparse matrix");
        }
        requireCount(reader, count, stored.count);
        reader.payloads().copy(stored.typed, stored.data, stored.bytes, values.get());
    }
    return values;
}

/// Column starts that rise from 0 to the number of rows, all of which are in the matrix.
void requireColumns(ArrayReader& reader, const Size& size, const std::size_t* starts, std::size_t startCount,
                    const std::size_t* rows, std::size_t count) {
    const auto fail = [&](const char* what) { reader.lexer().failAt(reader.lexer().position(), what); };
    if (size.dimensions.size() != 2) {
        fail("expected two dimensions of a sparse matrix before");
    }
    if (startCount == 0 || startCount - 1 != size.dimensions[1]) {
        fail("expected one start more than columns of a sparse matrix before");
    }
    if (starts[0] != 0 || starts[startCount - 1] != count || !std::is_sorted(starts, starts + startCount)) {
        fail("expected column starts before that rise from 0 to the number of rows");
    }
    if (std::any_of(rows, rows + count, [&](std::size_t row) { return row >= size.dimensions[0]; })) {
        fail("expected rows before that are in the sparse matrix");
    }
}

} // namespace

fv::Array readSparse(ArrayReader& reader, ArrayType type) {
    Size size = reader.expectSize();
    std::size_t startCount = 0;
    std::size_t count = 0;
    Places starts = readPlaces(reader, "starts", startCount);
    Places rows = readPlaces(reader, "rows", count);
    requireColumns(reader, size, starts.get(), startCount, rows.get(), count);
    reader.lexer().expectText("values");
    const auto make = [&](auto zero) -> fv::Array {
        using T = decltype(zero);
        return reader.factory().createVEXASparseArray<T>(std::move(size.dimensions), count,
                                                         readValues<T>(reader, count), std::move(rows),
                                                         std::move(starts));
    };
    return type == ArrayType::SPARSE_LOGICAL  ? make(false)
           : type == ArrayType::SPARSE_DOUBLE ? make(0.0)
                                              : make(std::complex<double>());
}

} // namespace vexa::storage
