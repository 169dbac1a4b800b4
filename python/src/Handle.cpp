#include "Handle.hpp"

#include "Module.hpp"

#include <vexa/data/impl/ArrayImpl.hpp>

#include <memory>

namespace vexa::python {

namespace {

using fv::ArrayType;

/// Addresses of arrays without elements: NumPy takes null for a wish to allocate.
alignas(16) const char noElements[16] = {};

template <class Object>
py::object make(fv::Array&& array) {
    return py::cast(std::make_unique<Object>(std::move(array)));
}

} // namespace

py::object wrap(fv::Array array) {
    const ArrayType type = array.getType();
    switch (type) {
    case ArrayType::UNKNOWN:
        return make<ArrayObject>(std::move(array));
    case ArrayType::CHAR:
        return make<CharObject>(std::move(array));
    case ArrayType::STRING:
        return make<StringObject>(std::move(array));
    case ArrayType::ENUM:
        return make<EnumObject>(std::move(array));
    case ArrayType::CELL:
        return make<CellObject>(std::move(array));
    case ArrayType::STRUCT:
        return make<StructObject>(std::move(array));
    case ArrayType::OBJECT:
    case ArrayType::VALUE_OBJECT:
    case ArrayType::HANDLE_OBJECT_REF:
        return make<ObjectsObject>(std::move(array));
    default:
        return fv::detail::isSparse(type) ? make<SparseObject>(std::move(array))
                                          : make<DenseObject>(std::move(array));
    }
}

fv::Array toArray(py::handle value) {
    if (py::isinstance<ArrayObject>(value)) {
        return value.cast<ArrayObject&>().value();
    }
    return pythonFunction("as_array")(value).cast<ArrayObject&>().value();
}

const std::vector<std::size_t>& extentsOf(const fv::Array& array) {
    return fv::detail::Access::impl(array)->getDimensions();
}

const void* dataOf(const fv::Array& array) {
    const void* data = fv::detail::Access::impl(array)->getUntypedDataPtr();
    return data == nullptr ? noElements : data;
}

void* writableDataOf(ArrayObject& self) {
    fv::detail::Access::unshare(self.array);
    const void* const before = dataOf(self.array);
    fv::detail::Access::impl(self.array)->unshare();
    const void* const data = dataOf(self.array);
    self.isWindow = self.isWindow && data == before; // else it has memory of its own now
    // Storage of a private array may be written; the interface hands it out as read-only because most callers
    // read.
    return const_cast<void*>(data);
}

} // namespace vexa::python
