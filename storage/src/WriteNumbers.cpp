// Numbers, logical values, characters and sparse matrices.
#include "ArrayWriter.hpp"

#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <vexa/data/detail/IteratorImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>

#include <complex>
#include <string_view>
#include <type_traits>

namespace vexa::storage {

namespace {

template <class T>
const T* elements(const ArrayImpl& array) {
    return static_cast<const data::impl::TypedArrayImpl<T>&>(array).getTypedDataPtr();
}
bool isRowMajor(const ArrayImpl& array) { return array.getMemoryLayout() == data::MemoryLayout::ROW_MAJOR; }

/// Whether the array is one by one and column-major, so that a number alone says the same.
bool isPlainScalar(const ArrayImpl& array) {
    return array.getNumberOfElements() == 1 && array.getDimensions().size() == 2 && !isRowMajor(array);
}

bool putScalar(Output& out, double value) {
    if (value != value) { // the bits of one that is no number shall stay
        return false;
    }
    out.take(cbor_encode_double(value, out.room(longestHead), longestHead));
    return true;
}
bool putScalar(Output& out, float value) {
    if (value != value) {
        return false;
    }
    out.take(cbor_encode_single(value, out.room(longestHead), longestHead));
    return true;
}
bool putScalar(Output& out, std::int64_t value) {
    if (value >= 0) {
        putUnsigned(out, static_cast<std::uint64_t>(value));
    } else { // CBOR has -1 - n
        out.take(
            cbor_encode_negint(static_cast<std::uint64_t>(-1 - value), out.room(longestHead), longestHead));
    }
    return true;
}
bool putScalar(Output& out, const std::complex<double>& value) {
    if (value != value) {
        return false;
    }
    putTag(out, tag::complexNumber);
    putArray(out, 2);
    return putScalar(out, value.real()) && putScalar(out, value.imag());
}
/// Of the other types a number does not tell which it is.
template <class T>
bool putScalar(Output&, const T&) {
    return false;
}

void putValues(Output& out, const bool* values, std::size_t count) { putBooleans(out, values, count); }
template <class T>
void putValues(Output& out, const T* values, std::size_t count) {
    putTypedHead(out, fv::detail::arrayTypeOf<T>, count * sizeof(T));
    out.write(values, count * sizeof(T));
}

} // namespace

template <class T>
void putNumbers(Output& out, const ArrayImpl& array) {
    const T* const values = elements<T>(array);
    if (isPlainScalar(array) && putScalar(out, *values)) {
        return;
    }
    const std::size_t bytes = array.getNumberOfElements() * sizeof(T);
    putNumbersHead(out, isRowMajor(array), array.getDimensions(), array.getType(), bytes);
    out.write(values, bytes);
}

void putLogical(Output& out, const ArrayImpl& array) {
    const bool* const values = elements<bool>(array);
    if (isPlainScalar(array)) {
        putBool(out, *values);
        return;
    }
    putTag(out, isRowMajor(array) ? tag::rowMajor : tag::columnMajor);
    putArray(out, 2);
    putDimensions(out, array.getDimensions());
    putBooleans(out, values, array.getNumberOfElements());
}

void putChars(Output& out, const ArrayImpl& array) {
    const std::vector<std::size_t>& dimensions = array.getDimensions();
    const std::u16string_view text(elements<char16_t>(array), array.getNumberOfElements());
    const bool isRow = dimensions.size() == 2 && dimensions[0] == 1 && !isRowMajor(array);
    if (isRow && putUtf16IfText(out, text)) {
        return;
    }
    putMap(out, 2);
    putText(out, "kind");
    putText(out, nameOf(ArrayType::CHAR));
    putText(out, "units");
    putNumbersHead(out, isRowMajor(array), dimensions, ArrayType::CHAR, text.size() * sizeof(char16_t));
    out.write(text.data(), text.size() * sizeof(char16_t));
}

namespace {

/// The stored values of a sparse matrix. The iterators of handles end the process when memory runs out.
template <class T>
const T* storedValues(const ArrayImpl& array) {
    auto& unchanged = const_cast<ArrayImpl&>(array);
    const std::unique_ptr<data::detail::IteratorImpl> first(unchanged.beginIterator(nullptr, false));
    return static_cast<const T*>(first->getElementAddress());
}

} // namespace

template <class T>
void putSparse(Output& out, const ArrayImpl& array) {
    const auto matrix = handleOf<fv::SparseArray<T>>(array);
    const std::size_t count = matrix.getNumberOfNonZeroElements();
    putKind(out, 5, array.getType(), array.getDimensions());
    putText(out, "starts");
    putValues<std::uint64_t>(out, matrix.getJc(), matrix.getCols() + 1);
    putText(out, "rows");
    putValues<std::uint64_t>(out, matrix.getIr(), count);
    putText(out, "values");
    putValues(out, storedValues<T>(array), count);
}

#define VEXADATA_ELEMENT(T) template void putNumbers<T>(Output&, const ArrayImpl&);
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
template void putSparse<bool>(Output&, const ArrayImpl&);
template void putSparse<double>(Output&, const ArrayImpl&);
template void putSparse<std::complex<double>>(Output&, const ArrayImpl&);

} // namespace vexa::storage
