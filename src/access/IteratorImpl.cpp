// Reserved operations of iterators.
#include <vexa/data/detail/IteratorImpl.hpp>

namespace vexa::data::detail {

void IteratorImpl::reservedOp9() {}
void IteratorImpl::reservedOp12() {}

} // namespace vexa::data::detail
