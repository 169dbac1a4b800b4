// Arrays of NumPy as ours.
#include "Errors.hpp"
#include "Kinds.hpp"
#include "Numpy.hpp"
#include "Owner.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/client/Adoption.hpp>

#include <algorithm>
#include <cstdint>

namespace vexa::python {

namespace {

using vexa::data::MemoryLayout;

using Numpy = py::detail::npy_api;

/// Memory that never changes: `bytes`, and what our own arrays lent for reading.
bool neverChanges(py::handle owner) {
    if (PyMemoryView_Check(owner.ptr())) {
        const Py_buffer* view = PyMemoryView_GET_BUFFER(owner.ptr());
        return view->readonly != 0 && view->obj != nullptr &&
               (PyBytes_Check(view->obj) || py::isinstance<ArrayObject>(view->obj));
    }
    return PyBytes_Check(owner.ptr()) || PyCapsule_IsValid(owner.ptr(), "vexadata.value") != 0;
}

/// Whether nobody can write the memory of an array: what NumPy owns may be written through views that were
/// made before it became read-only.
bool isFixed(py::handle object) {
    const auto& numpy = Numpy::get();
    py::object next = py::reinterpret_borrow<py::object>(object);
    while (next && numpy.PyArray_Check_(next.ptr())) {
        const auto array = py::reinterpret_borrow<py::array>(next);
        if (array.writeable()) {
            return false;
        }
        next = array.base();
    }
    return next && neverChanges(next);
}

std::string dtypeName(const py::array& source) { return py::str(source.dtype()).cast<std::string>(); }

/// Raises TypeError, and says what to do, when no kind of arrays has elements of the dtype.
fv::ArrayType requireKind(const py::array& source) {
    const fv::ArrayType type = kindOf(source.dtype());
    if (type == fv::ArrayType::UNKNOWN) {
        raise(PyExc_TypeError, "no kind of arrays has elements of the dtype " + dtypeName(source) +
                                   "; convert it first, with astype() for example");
    }
    return type;
}

std::vector<std::size_t> dimensionsOf(const py::array& source) {
    std::vector<std::size_t> dimensions(source.shape(), source.shape() + source.ndim());
    dimensions.resize(std::max<std::size_t>(dimensions.size(), 2), 1); // a vector becomes a column
    return dimensions;
}

std::string stridesText(const py::array& source) {
    std::string text;
    for (py::ssize_t k = 0; k < source.ndim(); ++k) {
        text += (k == 0 ? "" : ", ") + std::to_string(source.strides(k));
    }
    return '(' + text + ')';
}

/// Why the memory cannot be that of an array; empty when it can.
std::string obstacle(const py::array& source, fv::ArrayType type) {
    const int contiguous = py::array::c_style | py::array::f_style;
    if (!isNative(source.dtype())) {
        return "the dtype " + dtypeName(source) + " has the other byte order";
    }
    if ((source.flags() & contiguous) == 0) {
        return "elements with the strides " + stridesText(source) + " do not lie side by side";
    }
    if (!isAligned(type, source.data())) {
        return "the elements are not aligned";
    }
    if (type == fv::ArrayType::LOGICAL) {
        const auto count = static_cast<std::size_t>(source.size());
        const std::size_t wrong = findWrongTruth(source.data(), count);
        if (wrong != count) {
            return "byte " + std::to_string(wrong) + " is no truth value";
        }
    }
    return {};
}

/// NumPy's order of elements side by side; vectors lie in both.
MemoryLayout layoutOf(const py::array& source) {
    return (source.flags() & py::array::f_style) != 0 ? MemoryLayout::COLUMN_MAJOR : MemoryLayout::ROW_MAJOR;
}

/// NumPy copies, with strides, byte orders and whatever else it knows, into memory of ours.
py::object copied(const py::array& source, fv::ArrayType type) {
    const bool byRow =
        (source.flags() & py::array::c_style) != 0 && (source.flags() & py::array::f_style) == 0;
    const MemoryLayout layout = byRow ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR;
    const fv::ArrayFactory factory;
    const auto count = static_cast<std::size_t>(source.size());
    auto buffer = factory.createBuffer(type, count);
    const auto size = static_cast<py::ssize_t>(formatOf(type).size);
    const std::vector<py::ssize_t> shape(source.shape(), source.shape() + source.ndim());
    if (count != 0) {
        const auto dtype = py::reinterpret_borrow<py::dtype>(dtypeOf(type));
        // With a base, so that NumPy looks at the memory instead of copying it.
        const py::array target(
            dtype, shape, byRow ? py::detail::c_strides(shape, size) : py::detail::f_strides(shape, size),
            buffer.get(), py::none());
        if (Numpy::get().PyArray_CopyInto_(target.ptr(), source.ptr()) != 0) {
            throw py::error_already_set();
        }
    }
    if (type == fv::ArrayType::LOGICAL) { // bytes that are neither 0 nor 1 are true
        auto* bytes = static_cast<unsigned char*>(buffer.get());
        std::transform(bytes, bytes + count, bytes, [](unsigned char b) -> unsigned char { return b != 0; });
    }
    return wrap(factory.createArrayFromBuffer(dimensionsOf(source), type, std::move(buffer), layout));
}

/// An array over the memory, which has an obstacle or none.
py::object share(const py::array& source, fv::ArrayType type, const std::string& obstacle, bool fixed) {
    if (!obstacle.empty()) {
        raise(PyExc_ValueError, "the memory cannot be shared: " + obstacle);
    }
    using Writers = Memory::Writers;
    const Writers others = source.writeable() ? Writers::everybody : Writers::others;
    return adoptMemory({type, dimensionsOf(source), const_cast<void*>(source.data()),
                        ownerOf(py::reinterpret_borrow<py::object>(source)), layoutOf(source),
                        fixed ? Writers::nobody : others});
}

} // namespace

std::size_t findWrongTruth(const void* data, std::size_t count) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    return static_cast<std::size_t>(
        std::find_if(bytes, bytes + count, [](unsigned char b) { return b > 1; }) - bytes);
}

bool isAligned(fv::ArrayType type, const void* data) {
    const bool isComplex = type >= fv::ArrayType::COMPLEX_DOUBLE && type <= fv::ArrayType::COMPLEX_UINT64;
    const std::size_t alignment = formatOf(type).size / (isComplex ? 2 : 1);
    return reinterpret_cast<std::uintptr_t>(data) % alignment == 0;
}

py::object adoptMemory(Memory memory) {
    const auto adopt = [&]() -> fv::Array {
        if (memory.writers == Memory::Writers::everybody) {
            return vexa::client::adopt(std::move(memory.dimensions), memory.type, memory.data,
                                       std::move(memory.owner), memory.layout);
        }
        return vexa::client::adoptReadOnly(std::move(memory.dimensions), memory.type, memory.data,
                                           std::move(memory.owner), memory.layout);
    };
    py::object array = wrap(adopt());
    array.cast<ArrayObject&>().isWindow = memory.writers != Memory::Writers::nobody;
    return array;
}

py::object fromNumpy(const py::array& source, Copy copy) {
    const fv::ArrayType type = requireKind(source);
    const bool fixed = !copy.value_or(false) && isFixed(source);
    if (copy.value_or(!fixed)) {
        return copied(source, type);
    }
    const std::string why = obstacle(source, type);
    if (!why.empty() && !copy.has_value()) {
        return copied(source, type);
    }
    return share(source, type, why, fixed);
}

py::object freeze(const py::array& source) {
    const fv::ArrayType type = requireKind(source);
    const std::string why = obstacle(source, type);
    const auto& numpy = Numpy::get();
    for (py::object next = source; why.empty() && next && numpy.PyArray_Check_(next.ptr());
         next = py::reinterpret_borrow<py::array>(next).base()) {
        if (py::reinterpret_borrow<py::array>(next).writeable()) {
            next.attr("setflags")(py::arg("write") = false);
        }
    }
    return share(source, type, why, true);
}

} // namespace vexa::python
