#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/detail/Text.hpp>
#include <vexa/data/impl/EnumArrayImpl.hpp>

namespace foundation::vexadata {

using vexa::data::impl::EnumArrayImpl;

EnumArray::~EnumArray() = default;

std::string EnumArray::getClassName() const noexcept {
    return detail::copied(static_cast<const EnumArrayImpl&>(*impl_).getClassName());
}

std::string EnumArrayExt::getClassName() const {
    const auto& array = static_cast<const EnumArrayImpl&>(
        detail::heldArray<EnumArray, NotEnoughIndicesProvidedException>(chain_));
    const char* name = array.getClassName();
    return detail::copied(
        name, array.getNumberOfElements()); // the elements' number, not the name's length: kept so
}

bool detail::memberIsNamed(const ArrayImpl& array, std::size_t index, const std::string& name) noexcept {
    return array.castToString(index, noFieldName) == name;
}

} // namespace foundation::vexadata
