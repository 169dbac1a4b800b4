#include <foundation/vexadata/Array.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>

namespace foundation::vexadata {

Array::Array() noexcept : impl_(vexa::data::impl::EmptyArrayImpl::processWide()) {}
Array::~Array() = default;

bool operator==(const Array& a, const Array& b) noexcept {
    const auto& left = detail::Access::impl(a);
    const auto& right = detail::Access::impl(b);
    if (left == right) {
        return true;
    }
    if (left->getArrayID() == right->getArrayID()) {
        return true; // before dimensions are looked at: all empty arrays have identity 0
    }
    return left->getDimensions() == right->getDimensions() && left->getType() == right->getType() &&
           left->isEqual(right.get());
}

} // namespace foundation::vexadata
