// References to the array in a cell, field or property.
#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/Reference.hpp>

namespace foundation::vexadata {

namespace {

const vexa::data::impl::ArrayImpl& held(const std::shared_ptr<detail::ReferenceImpl>& chain) {
    return detail::elementArray<NotEnoughIndicesProvidedException>(chain);
}

} // namespace

ArrayType ArrayReferenceExt::getType() const { return held(chain_).getType(); }
std::vector<std::size_t> ArrayReferenceExt::getDimensions() const { return held(chain_).getDimensions(); }
std::size_t ArrayReferenceExt::getNumberOfElements() const { return held(chain_).getNumberOfElements(); }
bool ArrayReferenceExt::isEmpty() const { return held(chain_).isEmpty(); }
std::uint64_t ArrayReferenceExt::getArrayID() const { return held(chain_).getArrayID(); }

Reference<Array>& Reference<Array>::operator=(const Array& array) {
    detail::storeArray(chain_, array);
    return *this;
}

void swap(Reference<Array> a, Reference<Array> b) {
    const Array array = a;
    a = b;
    b = array;
}

Reference<Array>& Reference<Array>::operator=(const Reference& other) {
    return *this = detail::castTo<Array, true>(other.chain_);
}

} // namespace foundation::vexadata
