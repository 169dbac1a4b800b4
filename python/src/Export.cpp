// Arrays as NumPy's.
#include "Errors.hpp"
#include "Kinds.hpp"
#include "Numpy.hpp"

namespace vexa::python {

namespace {

/// Marks the memory of values, which nobody writes.
constexpr const char* valueCapsule = "vexadata.value";

void dropValue(PyObject* capsule) {
    delete static_cast<fv::Array*>(PyCapsule_GetPointer(capsule, valueCapsule));
}
void dropWindow(PyObject* capsule) {
    delete static_cast<Window*>(PyCapsule_GetPointer(capsule, "vexadata.window"));
}

/// A capsule that owns `object`.
template <class T>
py::object keep(std::unique_ptr<T> object, const char* name, PyCapsule_Destructor drop) {
    auto capsule = py::reinterpret_steal<py::object>(PyCapsule_New(object.get(), name, drop));
    if (!capsule) {
        throw py::error_already_set();
    }
    object.release();
    return capsule;
}

/// A NumPy array over the memory of `array`, which `base` keeps alive.
py::object newArray(const fv::Array& array, void* data, py::object base, bool writable) {
    const auto& numpy = py::detail::npy_api::get();
    const fv::ArrayType type = array.getType();
    py::ssize_t shape[mostDimensions];
    py::ssize_t strides[mostDimensions];
    fillStrides(array, formatOf(type).size, shape, strides);
    const py::handle dtype = dtypeOf(type).inc_ref(); // the call takes one over
    const int flags = writable ? py::detail::npy_api::NPY_ARRAY_WRITEABLE_ : 0;
    auto made = py::reinterpret_steal<py::object>(numpy.PyArray_NewFromDescr_(
        numpy.PyArray_Type_, dtype.ptr(), static_cast<int>(extentsOf(array).size()), shape, strides, data,
        flags, nullptr));
    if (!made || numpy.PyArray_SetBaseObject_(made.ptr(), base.release().ptr()) != 0) {
        throw py::error_already_set();
    }
    return made;
}

} // namespace

void fillStrides(const fv::Array& array, std::size_t itemSize, py::ssize_t* shape, py::ssize_t* strides) {
    const std::vector<std::size_t>& extents = extentsOf(array);
    if (extents.size() > mostDimensions) {
        raise(PyExc_ValueError, std::to_string(extents.size()) + " dimensions; NumPy has " +
                                    std::to_string(mostDimensions) + " at most");
    }
    const bool byRow = array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR;
    auto step = static_cast<py::ssize_t>(itemSize);
    for (std::size_t k = 0; k < extents.size(); ++k) {
        const std::size_t dimension = byRow ? extents.size() - 1 - k : k;
        shape[dimension] = static_cast<py::ssize_t>(extents[dimension]);
        strides[dimension] = step;
        step *= std::max<py::ssize_t>(shape[dimension], 1); // an array without elements has some, too
    }
}

py::object exportReadOnly(fv::Array array) {
    auto kept = std::make_unique<fv::Array>(std::move(array));
    const fv::Array& value = *kept;
    return newArray(value, const_cast<void*>(dataOf(value)), keep(std::move(kept), valueCapsule, &dropValue),
                    false);
}

py::object exportWritable(py::object self) {
    auto& held = self.cast<ArrayObject&>();
    void* const data = writableDataOf(held);
    return newArray(held.array, data, keep(std::make_unique<Window>(self), "vexadata.window", &dropWindow),
                    true);
}

} // namespace vexa::python
