#include "Backend.hpp"

namespace vexa::check {

Owned<ArrayImpl> Backend::array(ArrayType type, const Dimensions& dimensions) const {
    return adopt(factory_->createArrayImpl(type, dimensions), "createArrayImpl");
}

namespace {

Iterator made(IteratorImpl* iterator, std::string_view operation) {
    if (iterator == nullptr) fail(std::string(operation) + " returns null");
    return Iterator(iterator);
}

} // namespace

Iterator beginOf(ArrayImpl& array, bool writable) {
    return made(array.beginIterator(nullptr, writable), "beginIterator");
}
Iterator endOf(ArrayImpl& array, bool writable) {
    return made(array.endIterator(nullptr, writable), "endIterator");
}

std::string describe(ArrayType type, const Dimensions& dimensions) {
    return show(dimensions) + " " + std::string(nameOf(type)) + " array";
}

std::size_t positionOf(const ArrayImpl& matrix, std::size_t row, std::size_t column) {
    const Dimensions& dimensions = matrix.getDimensions();
    return matrix.getMemoryLayout() == data::MemoryLayout::ROW_MAJOR ? row * dimensions.at(1) + column
                                                                     : row + column * dimensions.at(0);
}

void expectOneReference(std::string_view what, const data::detail::RefCounted& object) {
    expectEqual("the reference count of " + std::string(what), object.referenceCount(), 1);
}

} // namespace vexa::check
