// The handle of any array, and the rule of equality.
#include "Equality.hpp"

#include <foundation/vexadata/Array.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>

namespace foundation::vexadata {

Array::Array() noexcept : impl_(vexa::data::impl::EmptyArrayImpl::processWide()) {}
Array::~Array() = default;

bool operator==(const Array& a, const Array& b) noexcept {
    return detail::equal(*detail::Access::impl(a), *detail::Access::impl(b));
}

bool isSparse(const Array& array) { return detail::isSparse(array.getType()); }

bool detail::equal(const ArrayImpl& a, const ArrayImpl& b) {
    if (&a == &b || a.getArrayID() == b.getArrayID()) {
        return true; // before dimensions are looked at: all empty arrays have identity 0
    }
    return a.getDimensions() == b.getDimensions() && a.getType() == b.getType() && a.isEqual(&b);
}

} // namespace foundation::vexadata
