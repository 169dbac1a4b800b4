// Memory shared with NumPy and with whatever speaks the buffer protocol.
#pragma once

#include "Handle.hpp"

#include <foundation/vexadata/ArrayType.hpp>

#include <pybind11/numpy.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace vexa::python {

/// How NumPy says whether to copy: nothing for "if needed".
using Copy = std::optional<bool>;

/// NumPy's most, and more than anybody uses.
inline constexpr std::size_t mostDimensions = 32;

/// Distances in bytes between neighbours along each dimension, as the elements of the array lie.
/// Raises ValueError for more dimensions than NumPy has.
void fillStrides(const fv::Array& array, std::size_t itemSize, py::ssize_t* shape, py::ssize_t* strides);

/// A NumPy array over the memory of the array, which it keeps alive. Read-only.
py::object exportReadOnly(fv::Array array);
/// The same for writing; the array is made private first, and not shared while the window lives.
py::object exportWritable(py::object self);

/// A writable window onto the array of a Python object, which it keeps alive; counted in it.
class Window {
public:
    explicit Window(py::object self) : self_(std::move(self)) { ++held().writers; }
    ~Window() { --held().writers; }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

private:
    ArrayObject& held() const { return self_.cast<ArrayObject&>(); }

    py::object self_;
};

/// Foreign memory with elements of a primitive kind.
struct Memory {
    enum class Writers {
        nobody,   ///< it never changes any more
        others,   ///< not we, but others may
        everybody ///< others and we
    };

    fv::ArrayType type;
    std::vector<std::size_t> dimensions; ///< two at least
    void* data;
    std::shared_ptr<void> owner;
    vexa::data::MemoryLayout layout;
    Writers writers;
};

/// Where a truth value lies that is neither 0 nor 1; `count` when there is none.
std::size_t findWrongTruth(const void* data, std::size_t count);
/// Whether elements of a primitive kind may begin there.
bool isAligned(fv::ArrayType type, const void* data);

/// An array over the memory. One that others can write becomes a window: see ArrayObject.
py::object adoptMemory(Memory memory);

/// An array of the elements of a NumPy array, by the rules of `vexadata.array`.
py::object fromNumpy(const py::array& source, Copy copy);

/// The same over its memory, of which the caller says that nobody writes it any more; makes NumPy's array and
/// those that it is a part of read-only.
py::object freeze(const py::array& source);

/// Adds the buffer protocol to a class.
void addBufferProtocol(PyHeapTypeObject* type);

} // namespace vexa::python
