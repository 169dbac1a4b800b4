// Sparse matrices, as compressed columns.
#include "Errors.hpp"
#include "Indices.hpp"
#include "Kinds.hpp"
#include "Module.hpp"
#include "Numbers.hpp"
#include "Numpy.hpp"
#include "Owner.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <pybind11/stl.h>

#include <algorithm>
#include <complex>
#include <mutex>
#include <unordered_map>

namespace vexa::python {

namespace {

/// Calls `f` with the typed handle of a sparse array, which shares it.
template <class F>
decltype(auto) withSparse(const SparseObject& self, F&& f) {
    switch (self.array.getType()) {
    case fv::ArrayType::SPARSE_LOGICAL:
        return f(fv::SparseArray<bool>(self.array));
    case fv::ArrayType::SPARSE_DOUBLE:
        return f(fv::SparseArray<double>(self.array));
    default:
        return f(fv::SparseArray<std::complex<double>>(self.array));
    }
}

/// NumPy's array over a part of a sparse array, which it keeps alive. Read-only.
template <class T>
py::object part(const fv::Array& array, py::handle dtype, const T* data, std::size_t count) {
    static const char nothing[16] = {};
    auto kept = std::make_unique<fv::Array>(array);
    py::capsule owner(kept.get(), "vexadata.value", [](PyObject* capsule) {
        delete static_cast<fv::Array*>(PyCapsule_GetPointer(capsule, "vexadata.value"));
    });
    kept.release();
    const void* memory = data == nullptr ? static_cast<const void*>(nothing) : data;
    py::array result(py::reinterpret_borrow<py::dtype>(dtype), {static_cast<py::ssize_t>(count)}, {}, memory,
                     owner);
    py::detail::array_proxy(result.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return result;
}

/// (values, rows, column starts), all over the memory of the array, or of a copy while others can write that.
/// Indices are of 64 bits, and as none is negative they are the same with and without sign.
py::tuple parts(const SparseObject& self) {
    const SparseObject value(self.value());
    return withSparse(value, [&](const auto& matrix) {
        using T = typename std::decay_t<decltype(matrix)>::value_type;
        const std::size_t count = matrix.getNumberOfNonZeroElements();
        const py::handle index = dtypeOf(fv::ArrayType::INT64);
        const T* values = matrix.cbegin().operator->();
        return py::make_tuple(part(value.array, dtypeOf(fv::detail::arrayTypeOf<T>), values, count),
                              part(value.array, index, matrix.getIr(), count),
                              part(value.array, index, matrix.getJc(), matrix.getCols() + 1));
    });
}

py::object element(const SparseObject& self, py::handle key) {
    const auto [row, column] = placeOf(self.array, key);
    return withSparse(self, [&, row = row, column = column](const auto& matrix) -> py::object {
        using T = typename std::decay_t<decltype(matrix)>::value_type;
        const std::size_t* rows = matrix.getIr();
        const std::size_t* starts = matrix.getJc();
        const std::size_t* last = rows + starts[column + 1];
        const std::size_t* found = std::lower_bound(rows + starts[column], last, row);
        const T value = found != last && *found == row ? matrix.cbegin().operator->()[found - rows] : T();
        return fromNumber(value);
    });
}

// --- from SciPy ------------------------------------------------------------------------------------------

/// The buffers that sparse arrays take over come with a bare function that frees them. Here it finds who
/// keeps the memory alive. Two owners of one address keep the same memory alive, so that it does not matter
/// which of them goes first.
class LentBuffers {
public:
    /// Never destroyed, since arrays of static storage may go after it would.
    static LentBuffers& instance() {
        static auto* const buffers = new LentBuffers;
        return *buffers;
    }
    void add(void* data, std::shared_ptr<void> owner) {
        const std::lock_guard lock(mutex_);
        owners_.emplace(data, std::move(owner));
    }
    static void drop(void* data) {
        std::shared_ptr<void> owner; // goes outside of the lock: it may wait for the GIL
        LentBuffers& buffers = instance();
        const std::lock_guard lock(buffers.mutex_);
        const auto found = buffers.owners_.find(data);
        owner = std::move(found->second);
        buffers.owners_.erase(found);
    }

private:
    std::mutex mutex_;
    std::unordered_multimap<void*, std::shared_ptr<void>> owners_;
};

template <class T>
fv::buffer_ptr<T> lent(const py::array& source) {
    void* data = const_cast<void*>(source.data());
    LentBuffers::instance().add(data, ownerOf(py::reinterpret_borrow<py::object>(source)));
    return {static_cast<T*>(data), &LentBuffers::drop};
}

template <class T>
fv::buffer_ptr<T> copyOf(const py::array& source, py::handle dtype, fv::buffer_ptr<T> buffer) {
    if (source.size() != 0) {
        const py::array target(py::reinterpret_borrow<py::dtype>(dtype), {source.size()}, {}, buffer.get(),
                               py::none());
        if (py::detail::npy_api::get().PyArray_CopyInto_(target.ptr(), source.ptr()) != 0) {
            throw py::error_already_set();
        }
    }
    return buffer;
}

struct Columns {
    std::vector<std::size_t> shape;
    py::array values;
    py::array rows;
    py::array starts;
};

/// Why the three arrays cannot be those of a sparse array as they are; empty when they can. What the library
/// would put in order in place is not to be put in order in somebody else's memory.
template <class T>
std::string obstacle(const Columns& columns) {
    const auto liesRight = [](const py::array& part, fv::ArrayType type) {
        return kindOf(part.dtype()) == type && isNative(part.dtype()) &&
               (part.flags() & py::array::c_style) != 0 && isAligned(type, part.data());
    };
    if (!liesRight(columns.values, fv::detail::arrayTypeOf<T>)) {
        return "values of the dtype " + py::str(columns.values.dtype()).cast<std::string>();
    }
    for (const py::array* indices : {&columns.rows, &columns.starts}) {
        if (!liesRight(*indices, fv::ArrayType::INT64)) {
            return "indices of the dtype " + py::str(indices->dtype()).cast<std::string>() +
                   ", and not int64";
        }
    }
    const auto* values = static_cast<const T*>(columns.values.data());
    const auto* rows = static_cast<const std::int64_t*>(columns.rows.data());
    const auto count = static_cast<std::size_t>(columns.values.size());
    for (std::size_t k = 0; k < count; ++k) {
        if (values[k] == T() || (k != 0 && rows[k] == rows[k - 1])) {
            return "a stored zero, or neighbours in one row (value " + std::to_string(k) + ")";
        }
    }
    return {};
}

/// Rows have to rise within each column, where the library would sort them.
std::string disorder(const Columns& columns) {
    const auto* rows = static_cast<const std::int64_t*>(columns.rows.data());
    const auto* starts = static_cast<const std::int64_t*>(columns.starts.data());
    for (std::size_t column = 0; column < columns.shape[1]; ++column) {
        const std::int64_t first = std::clamp<std::int64_t>(starts[column], 0, columns.rows.size());
        const std::int64_t last = std::clamp<std::int64_t>(starts[column + 1], first, columns.rows.size());
        if (!std::is_sorted(rows + first, rows + last)) {
            return "rows of column " + std::to_string(column) + " that are not sorted";
        }
    }
    return {};
}

template <class T>
py::object shared(const Columns& columns) {
    const auto count = static_cast<std::size_t>(columns.values.size());
    auto values = lent<T>(columns.values);
    auto rows = lent<std::size_t>(columns.rows);
    auto starts = lent<std::size_t>(columns.starts);
    py::object array = wrap(fv::ArrayFactory().createVEXASparseArray<T>(
        columns.shape, count, std::move(values), std::move(rows), std::move(starts)));
    array.cast<SparseObject&>().isWindow = true;
    return array;
}

template <class T>
py::object copied(const Columns& columns) {
    const fv::ArrayFactory factory;
    const auto count = static_cast<std::size_t>(columns.values.size());
    const py::handle index = dtypeOf(fv::ArrayType::UINT64);
    auto values =
        copyOf<T>(columns.values, dtypeOf(fv::detail::arrayTypeOf<T>), factory.createBuffer<T>(count));
    auto rows = copyOf<std::size_t>(columns.rows, index, factory.createBuffer<std::size_t>(count));
    auto starts =
        copyOf<std::size_t>(columns.starts, index, factory.createBuffer<std::size_t>(columns.shape[1] + 1));
    return wrap(factory.createVEXASparseArray<T>(columns.shape, count, std::move(values), std::move(rows),
                                                 std::move(starts)));
}

template <class T>
py::object fromColumns(const Columns& columns, Copy copy) {
    if (copy.value_or(true)) {
        return copied<T>(columns);
    }
    std::string why = obstacle<T>(columns);
    if (why.empty()) {
        why = disorder(columns);
    }
    if (!why.empty()) {
        raise(PyExc_ValueError, "the memory cannot be shared: " + why);
    }
    return shared<T>(columns);
}

/// One dimension each, and as many elements as belong together: what the library cannot test.
void requireSizes(const Columns& columns) {
    if (columns.shape.size() != 2) {
        raise("EInvalidDimensionsInSparseArray",
              "a sparse matrix of " + std::to_string(columns.shape.size()) + " dimensions");
    }
    const bool isFlat = columns.values.ndim() == 1 && columns.rows.ndim() == 1 && columns.starts.ndim() == 1;
    if (!isFlat || columns.rows.size() != columns.values.size() ||
        static_cast<std::size_t>(columns.starts.size()) != columns.shape[1] + 1) {
        raise(PyExc_ValueError, "a sparse matrix of " + std::to_string(columns.shape[1]) + " columns has " +
                                    std::to_string(columns.values.size()) + " values, " +
                                    std::to_string(columns.rows.size()) + " rows and " +
                                    std::to_string(columns.starts.size()) + " column starts");
    }
}

py::object sparse(py::handle shape, const py::array& values, const py::array& rows, const py::array& starts,
                  Copy copy) {
    const Columns columns{toDimensions(shape), values, rows, starts};
    requireSizes(columns);
    switch (kindOf(values.dtype())) {
    case fv::ArrayType::LOGICAL:
        return fromColumns<bool>(columns, copy);
    case fv::ArrayType::DOUBLE:
        return fromColumns<double>(columns, copy);
    case fv::ArrayType::COMPLEX_DOUBLE:
        return fromColumns<std::complex<double>>(columns, copy);
    default:
        raise(PyExc_TypeError, "sparse arrays hold bool, float64 or complex128, not " +
                                   py::str(values.dtype()).cast<std::string>() +
                                   "; convert the matrix first, with astype() for example");
    }
}

} // namespace

void addSparse(py::module_& module) {
    py::class_<SparseObject, ArrayObject> c(
        module, "SparseArray",
        "A matrix that stores its non-zeros only, column by column: of double, "
        "complex double or logical.\nIts elements are read one by one, or "
        "all of them through to_scipy().");
    c.def("__getitem__", &element, py::arg("key"), "The element s[i, j], 0 where none is stored.");
    c.def_property_readonly(
        "nnz",
        [](const SparseObject& self) {
            return withSparse(self, [](const auto& matrix) { return matrix.getNumberOfNonZeroElements(); });
        },
        "Number of stored values.");
    c.def_property_readonly(
        "is_window", [](const SparseObject& self) { return self.isWindow; },
        "Whether the memory belongs to somebody else who can write it.");
    c.def(
        "parts", &parts,
        "(values, rows, starts): NumPy arrays over the memory of the matrix in compressed columns, read-only.\n"
        "Indices are int64; column j has the values from starts[j] to starts[j + 1].");
    module.def("_sparse", &sparse, py::arg("shape"), py::arg("values"), py::arg("rows"), py::arg("starts"),
               py::arg("copy"));
}

} // namespace vexa::python
