#include "Kinds.hpp"

#include "Errors.hpp"

#include <algorithm>
#include <iterator>

namespace vexa::python {

namespace {

using fv::ArrayType;

// NumPy has no complex integers: pairs of integers stand for them.
constexpr ElementFormat formats[] = {
    {ArrayType::LOGICAL, "?", "?", 1},
    {ArrayType::CHAR, "H", "u2", 2},
    {ArrayType::DOUBLE, "d", "f8", 8},
    {ArrayType::SINGLE, "f", "f4", 4},
    {ArrayType::INT8, "b", "i1", 1},
    {ArrayType::UINT8, "B", "u1", 1},
    {ArrayType::INT16, "h", "i2", 2},
    {ArrayType::UINT16, "H", "u2", 2},
    {ArrayType::INT32, "i", "i4", 4},
    {ArrayType::UINT32, "I", "u4", 4},
    {ArrayType::INT64, "l", "i8", 8},
    {ArrayType::UINT64, "L", "u8", 8},
    {ArrayType::COMPLEX_DOUBLE, "Zd", "c16", 16},
    {ArrayType::COMPLEX_SINGLE, "Zf", "c8", 8},
    {ArrayType::COMPLEX_INT8, "T{b:real:b:imag:}", nullptr, 2},
    {ArrayType::COMPLEX_UINT8, "T{B:real:B:imag:}", nullptr, 2},
    {ArrayType::COMPLEX_INT16, "T{h:real:h:imag:}", nullptr, 4},
    {ArrayType::COMPLEX_UINT16, "T{H:real:H:imag:}", nullptr, 4},
    {ArrayType::COMPLEX_INT32, "T{i:real:i:imag:}", nullptr, 8},
    {ArrayType::COMPLEX_UINT32, "T{I:real:I:imag:}", nullptr, 8},
    {ArrayType::COMPLEX_INT64, "T{l:real:l:imag:}", nullptr, 16},
    {ArrayType::COMPLEX_UINT64, "T{L:real:L:imag:}", nullptr, 16},
};
constexpr std::size_t kinds = std::size(formats);

constexpr std::size_t distance = 10; // from a kind of numbers to its complex partner

ArrayType partOf(ArrayType complex) {
    return static_cast<ArrayType>(static_cast<std::size_t>(complex) - distance);
}

py::dtype makeDtype(const ElementFormat& format) {
    if (format.dtype != nullptr) {
        return py::dtype(std::string(format.dtype));
    }
    const char* part = formatOf(partOf(format.type)).dtype;
    py::list fields;
    fields.append(py::make_tuple("real", part));
    fields.append(py::make_tuple("imag", part));
    return py::dtype::from_args(fields);
}

/// The kind for a pair of integers called `real` and `imag`, one behind the other.
ArrayType pairKindOf(const py::dtype& dtype) {
    for (std::size_t k = 0; k < kinds; ++k) {
        if (formats[k].dtype == nullptr && formats[k].size == static_cast<std::size_t>(dtype.itemsize()) &&
            dtypeOf(formats[k].type).equal(dtype)) {
            return formats[k].type;
        }
    }
    return ArrayType::UNKNOWN;
}

/// The kind for a dtype of this letter and size; characters are no numbers.
ArrayType numberKindOf(char letter, std::size_t size) {
    const auto* found =
        std::find_if(std::begin(formats), std::end(formats), [&](const ElementFormat& format) {
            return format.dtype != nullptr && format.dtype[0] == letter && format.size == size &&
                   format.type != ArrayType::CHAR;
        });
    return found == std::end(formats) ? ArrayType::UNKNOWN : found->type;
}

} // namespace

const ElementFormat& formatOf(ArrayType type) {
    if (!fv::detail::isPrimitive(type)) {
        raise(PyExc_TypeError, "elements of this kind lie in no memory that can be shared");
    }
    // In the order of their numbers, among which that of strings is left out.
    return formats[static_cast<std::size_t>(type) - (type > ArrayType::STRING ? 2 : 1)];
}

py::handle dtypeOf(ArrayType type) {
    static py::handle made[kinds]; // under the GIL; never freed, since the interpreter may be gone then
    const auto k = static_cast<std::size_t>(&formatOf(type) - formats);
    if (!made[k]) {
        made[k] = makeDtype(formats[k]).release();
    }
    return made[k];
}

ArrayType kindOf(const py::dtype& dtype) {
    const char letter = dtype.kind();
    switch (letter) {
    case 'b':
        return ArrayType::LOGICAL;
    case 'f':
    case 'i':
    case 'u':
    case 'c':
        return numberKindOf(letter, static_cast<std::size_t>(dtype.itemsize()));
    case 'V':
        return pairKindOf(dtype);
    default:
        return ArrayType::UNKNOWN;
    }
}

bool isNative(const py::dtype& dtype) {
    if (dtype.kind() == 'V') {
        return true; // told by the comparison of the fields
    }
    const char order = dtype.byteorder();
    return order == '=' || order == '|';
}

} // namespace vexa::python
