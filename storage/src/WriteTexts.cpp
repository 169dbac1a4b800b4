// Strings and enumerations, in column-major order whatever their own.
#include "ArrayWriter.hpp"
#include "Order.hpp"

#include <vexa/data/impl/EnumArrayImpl.hpp>

namespace vexa::storage {

namespace {

/// Calls `put` with the place of each element in storage, in column-major order.
template <class Put>
void inColumnMajorOrder(const ArrayImpl& array, Put put) {
    const bool isRowMajor = array.getMemoryLayout() == data::MemoryLayout::ROW_MAJOR;
    const std::size_t count = array.getNumberOfElements();
    for (std::size_t k = 0; k < count; ++k) {
        put(isRowMajor ? rowMajorPlace(array.getDimensions(), k) : k);
    }
}

} // namespace

void putStrings(Output& out, const ArrayImpl& array) {
    putKind(out, 3, array.getType(), array.getDimensions());
    putText(out, "values");
    putArray(out, array.getNumberOfElements());
    inColumnMajorOrder(array, [&](std::size_t place) {
        const char16_t* text = nullptr;
        std::size_t length = 0;
        array.getStringElement(place, text, length);
        if (text == nullptr) {
            putNull(out);
        } else {
            putUtf16(out, {text, length});
        }
    });
}

void putEnum(Output& out, const ArrayImpl& array) {
    const auto& members = static_cast<const data::impl::EnumArrayImpl&>(array);
    putKind(out, 4, array.getType(), array.getDimensions());
    putText(out, "class");
    putName(out, members.getClassName());
    putText(out, "values");
    putArray(out, array.getNumberOfElements());
    inColumnMajorOrder(array, [&](std::size_t place) { putName(out, members.getEnumNameAt(place)); });
}

} // namespace vexa::storage
