// Reserved operations of class information.
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>

namespace vexa::data {

detail::ForwardIteratorImpl::~ForwardIteratorImpl() = default;

impl::ClassInfoImpl::~ClassInfoImpl() = default;
void impl::ClassInfoImpl::reservedOp3() {}
void impl::ClassInfoImpl::reservedOp13() {}

} // namespace vexa::data
