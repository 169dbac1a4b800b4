// Tensors of DLPack as arrays.
#include "Dlpack.hpp"
#include "Errors.hpp"
#include "Module.hpp"
#include "Numbers.hpp"
#include "Numpy.hpp"
#include "Owner.hpp"

#include <pybind11/stl.h>

#include <algorithm>
#include <limits>

namespace vexa::python {

namespace {

using fv::ArrayType;
using vexa::data::MemoryLayout;

constexpr ArrayType signedTypes[] = {ArrayType::INT8, ArrayType::INT16, ArrayType::INT32, ArrayType::INT64};
constexpr ArrayType unsignedTypes[] = {ArrayType::UINT8, ArrayType::UINT16, ArrayType::UINT32,
                                       ArrayType::UINT64};

ArrayType integerType(const ArrayType (&types)[4], unsigned bits) {
    switch (bits) {
    case 8:
        return types[0];
    case 16:
        return types[1];
    case 32:
        return types[2];
    case 64:
        return types[3];
    default:
        return ArrayType::UNKNOWN;
    }
}

ArrayType typeOf(const dlpack::DataType& type) {
    if (type.lanes != 1) {
        return ArrayType::UNKNOWN;
    }
    switch (type.code) {
    case dlpack::signedInteger:
        return integerType(signedTypes, type.bits);
    case dlpack::unsignedInteger:
        return integerType(unsignedTypes, type.bits);
    case dlpack::real:
        return type.bits == 64 ? ArrayType::DOUBLE : type.bits == 32 ? ArrayType::SINGLE : ArrayType::UNKNOWN;
    case dlpack::complex:
        return type.bits == 128  ? ArrayType::COMPLEX_DOUBLE
               : type.bits == 64 ? ArrayType::COMPLEX_SINGLE
                                 : ArrayType::UNKNOWN;
    case dlpack::logical:
        return type.bits == 8 ? ArrayType::LOGICAL : ArrayType::UNKNOWN;
    default:
        return ArrayType::UNKNOWN;
    }
}

ArrayType requireType(const dlpack::Tensor& tensor) {
    const ArrayType type = typeOf(tensor.type);
    if (tensor.device.type != dlpack::cpu) {
        raise(PyExc_BufferError, "the tensor lies on the DLPack device (" +
                                     std::to_string(tensor.device.type) + ", " +
                                     std::to_string(tensor.device.id) + "), not in memory of the CPU");
    }
    if (type == ArrayType::UNKNOWN) {
        raise(PyExc_BufferError, "no kind of arrays has elements of the DLPack type code " +
                                     std::to_string(tensor.type.code) + ", " +
                                     std::to_string(tensor.type.bits) + " bits, " +
                                     std::to_string(tensor.type.lanes) + " lanes");
    }
    return type;
}

std::vector<std::size_t> dimensionsOf(const dlpack::Tensor& tensor) {
    std::vector<std::size_t> dimensions;
    for (std::int32_t k = 0; k < tensor.dimensions; ++k) {
        if (tensor.shape[k] < 0) {
            raise(PyExc_BufferError, "the tensor has an extent of " + std::to_string(tensor.shape[k]));
        }
        dimensions.push_back(static_cast<std::size_t>(tensor.shape[k]));
    }
    dimensions.resize(std::max<std::size_t>(dimensions.size(), 2), 1);
    return dimensions;
}

/// Whether the elements lie side by side in the order of a layout.
bool liesIn(const dlpack::Tensor& tensor, MemoryLayout layout) {
    if (tensor.strides == nullptr) {
        return layout == MemoryLayout::ROW_MAJOR || tensor.dimensions <= 1;
    }
    std::int64_t expected = 1;
    for (std::int32_t step = 0; step < tensor.dimensions; ++step) {
        const std::int32_t k = layout == MemoryLayout::ROW_MAJOR ? tensor.dimensions - 1 - step : step;
        if (tensor.shape[k] > 1 && tensor.strides[k] != expected) {
            return false;
        }
        expected *= std::max<std::int64_t>(tensor.shape[k], 1);
    }
    return true;
}

std::optional<MemoryLayout> layoutOf(const dlpack::Tensor& tensor) {
    if (liesIn(tensor, MemoryLayout::COLUMN_MAJOR)) {
        return MemoryLayout::COLUMN_MAJOR;
    }
    return liesIn(tensor, MemoryLayout::ROW_MAJOR) ? std::optional(MemoryLayout::ROW_MAJOR) : std::nullopt;
}

std::string stridesText(const dlpack::Tensor& tensor) {
    std::string text;
    for (std::int32_t k = 0; k < tensor.dimensions; ++k) {
        text += (k == 0 ? "" : ", ") + std::to_string(tensor.strides[k]);
    }
    return '(' + text + ')';
}

/// Tests what has to be true of the elements, without a change of hands.
void requireElements(ArrayType type, const void* data, const std::vector<std::size_t>& dimensions) {
    std::size_t count = 1;
    for (const std::size_t extent : dimensions) {
        count *= extent;
    }
    if (count != 0 && !isAligned(type, data)) {
        raise(PyExc_BufferError, "the memory cannot be shared: the elements are not aligned");
    }
    const std::size_t wrong = type == ArrayType::LOGICAL ? findWrongTruth(data, count) : count;
    if (wrong != count) {
        raise(PyExc_BufferError,
              "the memory cannot be shared: byte " + std::to_string(wrong) + " is no truth value");
    }
}

template <class Form>
struct DropTensor {
    void operator()(Form* form) const noexcept {
        if (form->deleter != nullptr) {
            withInterpreter([&] { form->deleter(form); });
        }
    }
};

/// Takes the tensor out of its capsule, once everything about it has been tested.
template <class Form>
std::shared_ptr<void> take(py::handle capsule, Form* form, const char* used) {
    PyCapsule_SetName(capsule.ptr(), used);
    PyCapsule_SetDestructor(capsule.ptr(), nullptr);
    return std::shared_ptr<Form>(form, DropTensor<Form>());
}

template <class Form>
py::object fromTensor(py::handle capsule, Form* form, const char* used, bool isReadOnly) {
    const dlpack::Tensor& tensor = form->tensor;
    const ArrayType type = requireType(tensor);
    std::vector<std::size_t> dimensions = dimensionsOf(tensor);
    const std::optional<MemoryLayout> layout = layoutOf(tensor);
    if (!layout) {
        raise(PyExc_BufferError, "the memory cannot be shared: elements with the strides " +
                                     stridesText(tensor) + " do not lie side by side");
    }
    void* const data = static_cast<char*>(tensor.data) + tensor.byteOffset;
    requireElements(type, data, dimensions);
    using Writers = Memory::Writers;
    return adoptMemory({type, std::move(dimensions), data, take(capsule, form, used), *layout,
                        isReadOnly ? Writers::others : Writers::everybody});
}

py::object fromCapsule(const py::object& capsule) {
    if (PyCapsule_IsValid(capsule.ptr(), dlpack::versionedName) != 0) {
        auto* form = static_cast<dlpack::ManagedVersioned*>(
            PyCapsule_GetPointer(capsule.ptr(), dlpack::versionedName));
        if (form->version.major != 1) {
            raise(PyExc_BufferError,
                  "version " + std::to_string(form->version.major) + " of DLPack is not known");
        }
        return fromTensor(capsule, form, dlpack::usedVersionedName, (form->flags & dlpack::readOnly) != 0);
    }
    if (PyCapsule_IsValid(capsule.ptr(), dlpack::capsuleName) != 0) {
        auto* form = static_cast<dlpack::Managed*>(PyCapsule_GetPointer(capsule.ptr(), dlpack::capsuleName));
        return fromTensor(capsule, form, dlpack::usedName, false);
    }
    raise(PyExc_BufferError, "__dlpack__ gave " + typeName(capsule) + ", no capsule with an unused tensor");
}

/// Calls `function` with what it names; empty after an error, which is then set.
py::object call(const py::object& function, py::handle options) {
    const py::tuple none;
    return py::reinterpret_steal<py::object>(PyObject_Call(function.ptr(), none.ptr(), options.ptr()));
}

/// Producers of before version 1.0 do not know `max_version`, and raise TypeError.
py::object askForCapsule(py::handle producer) {
    const py::object function = producer.attr("__dlpack__");
    py::object capsule = call(function, py::dict(py::arg("max_version") = py::make_tuple(1, 0)));
    if (!capsule && PyErr_ExceptionMatches(PyExc_TypeError) != 0) {
        PyErr_Clear();
        capsule = call(function, py::dict());
    }
    requireNoError();
    return capsule;
}

py::object fromDlpack(py::handle producer) {
    if (!py::hasattr(producer, "__dlpack__")) {
        raise(PyExc_TypeError, typeName(producer) + " has no __dlpack__");
    }
    if (py::hasattr(producer, "__dlpack_device__")) {
        const auto device = producer.attr("__dlpack_device__")().cast<std::pair<int, int>>();
        if (device.first != dlpack::cpu) {
            raise(PyExc_BufferError, "the tensor lies on the DLPack device (" + std::to_string(device.first) +
                                         ", " + std::to_string(device.second) +
                                         "), not in memory of the CPU");
        }
    }
    return fromCapsule(askForCapsule(producer));
}

} // namespace

void addDlpack(py::module_& module) {
    addDlpackExport(module);
    module.def(
        "from_dlpack", &fromDlpack, py::arg("value"),
        "An array over the memory of an object that has __dlpack__, never a copy. While the other side can "
        "write the\nmemory, the array is a window onto it: what is taken from it (copies, elements of "
        "cells) is a copy.\nRaises BufferError for memory that is no array's, and names device, type or "
        "strides.");
}

} // namespace vexa::python
