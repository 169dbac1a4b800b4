// The buffer protocol. Memory that is asked for without a wish to write it is a value, which never changes;
// who wishes to write gets the array itself, made private.
#include "Errors.hpp"
#include "Kinds.hpp"
#include "Numpy.hpp"

#include <memory>
#include <new>

namespace vexa::python {

namespace {

/// What lives as long as the buffer is lent.
struct Lending {
    fv::Array array;                ///< for reading
    std::unique_ptr<Window> window; ///< for writing
    py::ssize_t shape[mostDimensions];
    py::ssize_t strides[mostDimensions];
};

bool wants(int flags, int what) { return (flags & what) == what; }

/// Contiguous in the order of C, of Fortran, or, for a single vector, of both.
void requireOrder(const fv::Array& array, const Py_buffer& view, int flags) {
    const bool anyOrder =
        wants(flags, PyBUF_STRIDES) && !wants(flags, PyBUF_C_CONTIGUOUS) && !wants(flags, PyBUF_F_CONTIGUOUS);
    const char order = wants(flags, PyBUF_F_CONTIGUOUS) ? 'F' : 'C'; // without strides, that of C is meant
    if (!anyOrder && !wants(flags, PyBUF_ANY_CONTIGUOUS) && PyBuffer_IsContiguous(&view, order) == 0) {
        raise(PyExc_BufferError,
              "the elements of " + describe(array) + " do not lie in the order of " + order);
    }
}

void describe(Py_buffer& view, const fv::Array& array, Lending& lending) {
    const ElementFormat& format = formatOf(array.getType());
    fillStrides(array, format.size, lending.shape, lending.strides);
    view.ndim = static_cast<int>(extentsOf(array).size());
    view.itemsize = static_cast<py::ssize_t>(format.size);
    view.len = view.itemsize * static_cast<py::ssize_t>(array.getNumberOfElements());
    view.format = const_cast<char*>(format.format); // the interface of C has no constants
    view.shape = lending.shape;
    view.strides = lending.strides;
    view.suboffsets = nullptr;
}

/// Leaves out what was not asked for.
void reduce(Py_buffer& view, int flags) {
    if (!wants(flags, PyBUF_FORMAT)) {
        view.format = nullptr;
    }
    if (!wants(flags, PyBUF_STRIDES)) {
        view.strides = nullptr;
    }
    if (!wants(flags, PyBUF_ND)) {
        view.shape = nullptr;
        view.ndim = 1;
    }
}

void lend(py::object self, Py_buffer& view, int flags) {
    auto& held = self.cast<ArrayObject&>();
    auto lending = std::make_unique<Lending>();
    const bool writable = wants(flags, PyBUF_WRITABLE);
    if (writable) {
        view.buf = writableDataOf(held);
        lending->window = std::make_unique<Window>(self);
    } else {
        lending->array = held.value();
        view.buf = const_cast<void*>(dataOf(lending->array));
    }
    const fv::Array& array = writable ? held.array : lending->array;
    describe(view, array, *lending);
    requireOrder(array, view, flags);
    reduce(view, flags);
    view.readonly = writable ? 0 : 1;
    view.internal = lending.release();
    view.obj = self.release().ptr();
}

/// Lets no C++ exception through to the interpreter.
extern "C" int getBuffer(PyObject* self, Py_buffer* view, int flags) {
    try {
        *view = Py_buffer{};
        lend(py::reinterpret_borrow<py::object>(self), *view, flags);
        return 0;
    } catch (py::error_already_set& error) {
        error.restore();
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (...) {
        PyErr_SetString(PyExc_BufferError, "the array cannot lend its memory");
    }
    view->obj = nullptr;
    return -1;
}

extern "C" void releaseBuffer(PyObject*, Py_buffer* view) { delete static_cast<Lending*>(view->internal); }

} // namespace

void addBufferProtocol(PyHeapTypeObject* type) {
    type->ht_type.tp_as_buffer = &type->as_buffer;
    type->as_buffer.bf_getbuffer = &getBuffer;
    type->as_buffer.bf_releasebuffer = &releaseBuffer;
}

} // namespace vexa::python
