#include "Indices.hpp"

#include "Errors.hpp"

namespace vexa::python {

namespace {

using Dimensions = std::vector<std::size_t>;

bool isVector(const Dimensions& dimensions) {
    return dimensions.size() == 2 && (dimensions[0] == 1 || dimensions[1] == 1);
}

py::ssize_t toIndex(py::handle index) {
    if (PyBool_Check(index.ptr()) || PySlice_Check(index.ptr()) || !PyIndex_Check(index.ptr())) {
        raise(PyExc_TypeError, "an index is a number, not " + typeName(index) +
                                   "; parts of a numeric array: numpy.asarray(a)[...]");
    }
    const py::ssize_t number = PyNumber_AsSsize_t(index.ptr(), PyExc_IndexError);
    if (number == -1 && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    return number;
}

std::string indexText(const std::vector<py::ssize_t>& indices) {
    std::string text;
    for (const py::ssize_t index : indices) {
        text += (text.empty() ? "" : ", ") + std::to_string(index);
    }
    return '[' + text + ']';
}

/// Counts negative indices from the end.
Dimensions fromStart(const fv::Array& array, const Dimensions& extents,
                     const std::vector<py::ssize_t>& indices) {
    Dimensions positions;
    for (std::size_t k = 0; k < indices.size(); ++k) {
        const std::size_t position = static_cast<std::size_t>(indices[k]) + (indices[k] < 0 ? extents[k] : 0);
        if (position >= extents[k]) {
            raise("EArrayIndexOutOfRange", "index " + std::to_string(indices[k]) + " in " +
                                               indexText(indices) + " is outside of dimension " +
                                               std::to_string(k) + " of " + describe(array));
        }
        positions.push_back(position);
    }
    return positions;
}

Dimensions toIndices(const fv::Array& array, const Dimensions& extents, py::handle key) {
    if (!PyTuple_Check(key.ptr())) {
        const py::ssize_t index = toIndex(key);
        if (!isVector(extents)) {
            raise("NotEnoughIndicesProvidedException",
                  "one index for " + describe(array) + ", which takes " + std::to_string(extents.size()));
        }
        return fromStart(array, extents,
                         extents[0] == 1 ? std::vector<py::ssize_t>{0, index}
                                         : std::vector<py::ssize_t>{index, 0});
    }
    const auto tuple = py::reinterpret_borrow<py::tuple>(key);
    if (tuple.size() != extents.size()) {
        raise(tuple.size() < extents.size() ? "NotEnoughIndicesProvidedException"
                                            : "TooManyIndicesProvidedException",
              std::to_string(tuple.size()) + " indices for " + describe(array) + ", which takes " +
                  std::to_string(extents.size()));
    }
    std::vector<py::ssize_t> indices;
    for (const py::handle index : tuple) {
        indices.push_back(toIndex(index));
    }
    return fromStart(array, extents, indices);
}

} // namespace

std::size_t positionOf(const fv::Array& array, py::handle key) {
    const Dimensions& extents = extentsOf(array);
    const Dimensions indices = toIndices(array, extents, key);
    const bool byRow = array.getMemoryLayout() == vexa::data::MemoryLayout::ROW_MAJOR;
    std::size_t position = 0;
    for (std::size_t k = 0; k < extents.size(); ++k) {
        const std::size_t dimension = byRow ? k : extents.size() - 1 - k;
        position = position * extents[dimension] + indices[dimension];
    }
    return position;
}

std::pair<std::size_t, std::size_t> placeOf(const fv::Array& matrix, py::handle key) {
    const Dimensions indices = toIndices(matrix, extentsOf(matrix), key);
    return {indices[0], indices[1]};
}

std::size_t lengthOf(const fv::Array& array) {
    if (!array.isEmpty() && !isVector(extentsOf(array))) {
        raise(PyExc_TypeError, describe(array) + " is neither row nor column: it has a size and a shape, and "
                                                 "elements() walks it");
    }
    return array.getNumberOfElements();
}

std::vector<std::size_t> toDimensions(py::handle shape) {
    const auto extentOf = [](py::handle extent) {
        const py::ssize_t number = toIndex(extent);
        if (number < 0) {
            raise(PyExc_ValueError, "an extent of " + std::to_string(number));
        }
        return static_cast<std::size_t>(number);
    };
    if (PyIndex_Check(shape.ptr())) {
        return {extentOf(shape), 1};
    }
    Dimensions dimensions;
    for (const py::handle extent : py::reinterpret_borrow<py::object>(shape)) {
        dimensions.push_back(extentOf(extent));
    }
    dimensions.resize(std::max<std::size_t>(dimensions.size(), 2), 1);
    return dimensions;
}

py::tuple fromDimensions(const std::vector<std::size_t>& dimensions) {
    py::tuple shape(dimensions.size());
    for (std::size_t k = 0; k < dimensions.size(); ++k) {
        shape[k] = py::int_(dimensions[k]);
    }
    return shape;
}

} // namespace vexa::python
