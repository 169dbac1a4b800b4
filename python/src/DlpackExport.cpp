// Arrays as tensors of DLPack.
#include "Dlpack.hpp"
#include "Errors.hpp"
#include "Kinds.hpp"
#include "Module.hpp"
#include "Numpy.hpp"
#include "Owner.hpp"

#include <pybind11/stl.h>

#include <utility>

namespace vexa::python {

namespace {

using fv::ArrayType;

dlpack::DataType dataTypeOf(const fv::Array& array) {
    const ElementFormat& format = formatOf(array.getType());
    const auto bits = static_cast<std::uint8_t>(8 * format.size);
    switch (format.dtype == nullptr ? '\0' : format.dtype[0]) {
    case '?':
        return {dlpack::logical, bits, 1};
    case 'i':
        return {dlpack::signedInteger, bits, 1};
    case 'u':
        return {dlpack::unsignedInteger, bits, 1};
    case 'f':
        return {dlpack::real, bits, 1};
    case 'c':
        return {dlpack::complex, bits, 1};
    default:
        raise(PyExc_BufferError, "DLPack has no type for the elements of " + describe(array));
    }
}

/// What a tensor of ours keeps alive: a value, or a window for a consumer that may write.
template <class Form>
struct Exported {
    Form form{};
    fv::Array value;
    std::unique_ptr<Window> window;
    std::int64_t shape[mostDimensions];
    std::int64_t strides[mostDimensions];

    static void drop(Form* form) {
        // Whoever drops it needs no GIL; a window belongs to a Python object.
        auto* self = static_cast<Exported*>(form->context);
        if (self->window == nullptr) {
            delete self;
        } else {
            withInterpreter([&] { delete self; });
        }
    }
};

template <class Form>
void describeTensor(const fv::Array& array, void* data, Exported<Form>& exported) {
    dlpack::Tensor& tensor = exported.form.tensor;
    tensor.type = dataTypeOf(array);
    tensor.data = data;
    tensor.device = {dlpack::cpu, 0};
    tensor.dimensions = static_cast<std::int32_t>(extentsOf(array).size());
    py::ssize_t shape[mostDimensions];
    py::ssize_t strides[mostDimensions];
    fillStrides(array, 1, shape, strides);
    std::copy(shape, shape + tensor.dimensions, exported.shape);
    std::copy(strides, strides + tensor.dimensions, exported.strides);
    tensor.shape = exported.shape;
    tensor.strides = exported.strides;
    exported.form.context = &exported;
    exported.form.deleter = &Exported<Form>::drop;
}

/// A capsule that nobody has taken the tensor out of drops it.
template <class Form>
void dropUnused(PyObject* capsule, const char* name) {
    if (PyCapsule_IsValid(capsule, name) != 0) {
        auto* form = static_cast<Form*>(PyCapsule_GetPointer(capsule, name));
        form->deleter(form);
    }
}
void dropPlain(PyObject* capsule) { dropUnused<dlpack::Managed>(capsule, dlpack::capsuleName); }
void dropVersioned(PyObject* capsule) {
    dropUnused<dlpack::ManagedVersioned>(capsule, dlpack::versionedName);
}

template <class Form>
py::object intoCapsule(std::unique_ptr<Exported<Form>> exported, const char* name,
                       PyCapsule_Destructor drop) {
    auto capsule = py::reinterpret_steal<py::object>(PyCapsule_New(&exported->form, name, drop));
    if (!capsule) {
        throw py::error_already_set();
    }
    exported.release();
    return capsule;
}

/// A consumer that knows of read-only memory gets a value.
py::object exportVersioned(const ArrayObject& self, bool copy) {
    auto exported = std::make_unique<Exported<dlpack::ManagedVersioned>>();
    exported->value = self.value();
    void* data = const_cast<void*>(dataOf(exported->value));
    exported->form.version = {1, 0};
    exported->form.flags = copy ? dlpack::isCopied : dlpack::readOnly;
    if (copy) {
        ArrayObject own(std::move(exported->value));
        data = writableDataOf(own);
        exported->value = std::move(own.array);
    }
    describeTensor(exported->value, data, *exported);
    return intoCapsule(std::move(exported), dlpack::versionedName, &dropVersioned);
}

/// Any other may write, and gets a window.
py::object exportPlain(const py::object& self) {
    auto& held = self.cast<ArrayObject&>();
    dataTypeOf(held.array); // raises before anything changes
    auto exported = std::make_unique<Exported<dlpack::Managed>>();
    void* const data = writableDataOf(held);
    exported->window = std::make_unique<Window>(self);
    describeTensor(held.array, data, *exported);
    return intoCapsule(std::move(exported), dlpack::capsuleName, &dropPlain);
}

using Pair = std::optional<std::pair<int, int>>;

py::object toDlpack(const py::object& self, py::handle stream, Pair maxVersion, Pair device, Copy copy) {
    if (!stream.is_none()) {
        raise(PyExc_ValueError, "memory of the CPU has no streams, but stream is not None");
    }
    if (device && *device != std::pair<int, int>(dlpack::cpu, 0)) {
        raise(PyExc_BufferError, "device (" + std::to_string(device->first) + ", " +
                                     std::to_string(device->second) +
                                     "): arrays lie in memory of the CPU, (1, 0)");
    }
    const auto& held = self.cast<const ArrayObject&>();
    if (maxVersion && maxVersion->first >= 1) {
        if (copy && !*copy && held.isAliased()) {
            raise(PyExc_BufferError, "others can write the memory: a tensor that does not change is a copy");
        }
        return exportVersioned(held, copy.value_or(false));
    }
    return exportPlain(copy.value_or(false) ? wrap(held.value()) : self);
}

} // namespace

void addDlpackExport(py::module_& module) {
    const py::object c = module.attr("DenseArray");
    c.attr("__dlpack__") = py::cpp_function(
        &toDlpack, py::name("__dlpack__"), py::is_method(c), py::kw_only(), py::arg("stream") = py::none(),
        py::arg("max_version") = py::none(), py::arg("dl_device") = py::none(), py::arg("copy") = py::none(),
        "The memory for consumers of DLPack. One that knows read-only tensors (max_version of 1 and above) gets "
        "a value,\nany other a window, as numpy(writable=True) gives.");
    c.attr("__dlpack_device__") =
        py::cpp_function([](const ArrayObject&) { return py::make_tuple(dlpack::cpu, 0); },
                         py::name("__dlpack_device__"), py::is_method(c), "(1, 0): memory of the CPU.");
}

} // namespace vexa::python
