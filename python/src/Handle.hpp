// What the Python objects of this module hold.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/detail/Access.hpp>

#include <pybind11/pybind11.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace vexa::python {

namespace py = pybind11;
namespace fv = foundation::vexadata;

/// An array, and whether somebody else may write its memory.
///
/// What leaves the object as a value (a copy of the handle, an element of a cell, read-only memory for NumPy)
/// never changes afterwards. As long as nobody else can write the memory, values share it, and a write
/// through this object gives it memory of its own. While somebody can, values are copies; the handle stays
/// the only one, so that writes through it go where the others look. All of it happens under the GIL.
struct ArrayObject {
    explicit ArrayObject(fv::Array held) noexcept : array(std::move(held)) {}

    fv::Array array;
    std::size_t writers = 0; ///< writable windows onto the memory that were handed out and live
    bool isWindow = false;   ///< the memory is that of another library, which can write it

    bool isAliased() const noexcept { return isWindow || writers != 0; }
    /// The array as a value. Throws std::bad_alloc when it has to be copied and cannot be.
    fv::Array value() const {
        fv::Array value = array;
        if (isAliased()) {
            fv::detail::Access::unshare(value);
        }
        return value;
    }
};

// One class for each class of Python; what they do is in functions.
struct DenseObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct CharObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct StringObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct EnumObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct CellObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct StructObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct ObjectsObject : ArrayObject {
    using ArrayObject::ArrayObject;
};
struct SparseObject : ArrayObject {
    using ArrayObject::ArrayObject;
};

/// A new Python object of the class for the kind of the array.
py::object wrap(fv::Array array);

/// The array that a Python object holds or can be converted to, by the rules of `vexadata.array`.
fv::Array toArray(py::handle value);

/// Lets `f` write through the typed handle of the array. `f` must not call Python, which could look at the
/// object meanwhile.
template <class Handle, class F>
void write(ArrayObject& self, F&& f) {
    struct Lent {
        explicit Lent(ArrayObject& owner) : owner_(owner), handle(std::move(owner.array)) {}
        ~Lent() { owner_.array = std::move(handle); }
        Lent(const Lent&) = delete;
        Lent& operator=(const Lent&) = delete;

        ArrayObject& owner_;
        Handle handle;
    } lent(self);
    std::forward<F>(f)(lent.handle);
}

/// The dimensions, valid as long as the array is; without a copy.
const std::vector<std::size_t>& extentsOf(const fv::Array& array);
/// First element in storage; not null without elements either. For arrays of primitive elements.
const void* dataOf(const fv::Array& array);
/// The same for writing; the array is made private first.
void* writableDataOf(ArrayObject& self);

} // namespace vexa::python
