// Handles and references to enumeration arrays.
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
    // As many bytes as the array has elements, not as the name has: kept, see docs/decisions.md.
    return detail::copied(name, array.getNumberOfElements());
}

bool detail::memberIsNamed(const ArrayImpl& array, std::size_t index, const std::string& name) noexcept {
    return array.castToString(index, noFieldName) == name;
}

} // namespace foundation::vexadata
