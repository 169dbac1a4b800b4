// Reserved operations of objects.
#include <vexa/data/impl/ObjectImpl.hpp>

namespace vexa::data::impl {

PropertyImpl::~PropertyImpl() = default;

ObjectImpl::~ObjectImpl() = default;
void ObjectImpl::reservedOp12() {}
void ObjectImpl::reservedOp13() {}
void ObjectImpl::reservedOp14() {}
void ObjectImpl::reservedOp15() {}

HandleObjectRefImpl::~HandleObjectRefImpl() = default;
void HandleObjectRefImpl::reservedOp0() {}
void HandleObjectRefImpl::addReference() const {}

} // namespace vexa::data::impl
