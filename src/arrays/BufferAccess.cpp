// Buffers of arrays whose kind is known at run time only; iterators that keep their chain alive.
#include <foundation/vexadata/BufferAccess.hpp>

namespace foundation::vexadata {

namespace {

/// Kinds for which the untyped access throws MustBePrimitiveTypeException; complex ones are among them
/// although their elements are primitive. Other kinds without a buffer are "unknown".
bool isKnownWithoutBuffer(ArrayType type) noexcept {
    const auto value = static_cast<std::uint32_t>(type);
    return value == 3 || (value >= 14 && value <= 29 && type != ArrayType::OBJECT);
}

bool isRealPrimitive(ArrayType type) noexcept {
    return detail::isPrimitive(type) && type < ArrayType::COMPLEX_DOUBLE;
}

} // namespace

std::unique_ptr<const void, std::function<void(const void*)>> getBufferPtr(Array array) {
    const ArrayType type = array.getType();
    if (isKnownWithoutBuffer(type)) {
        detail::raise<MustBePrimitiveTypeException>();
    }
    if (!isRealPrimitive(type)) {
        detail::raise<EArrayUnknownDataType>();
    }
    const void* data = detail::Access::impl(array)->getUntypedDataPtr();
    std::function<void(const void*)> keepAlive = detail::KeepAlive<Array>{std::move(array)};
    return {data, std::move(keepAlive)};
}

std::unique_ptr<vexa::data::detail::IteratorImpl> detail::iteratorOf(
    ArrayImpl& array, bool atEnd, bool writable, const std::shared_ptr<ReferenceImpl>& chain) {
    std::unique_ptr<vexa::data::detail::IteratorImpl> it(atEnd ? array.endIterator(nullptr, writable)
                                                               : array.beginIterator(nullptr, writable));
    if (chain != nullptr) {
        chain->retain(); // the iterator adopts this reference
        it->saveReference(chain.get());
    }
    return it;
}

} // namespace foundation::vexadata
