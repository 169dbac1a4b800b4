// Reserved operations of object arrays.
#include <vexa/data/impl/ObjectArrayImpl.hpp>

namespace vexa::data::impl {

ObjectArrayImpl::~ObjectArrayImpl() = default;

void ObjectArrayImpl::reservedOp51() {}
void ObjectArrayImpl::reservedOp52() {}
void ObjectArrayImpl::reservedOp53() {}
void ObjectArrayImpl::reservedOp54() {}
void ObjectArrayImpl::reservedOp61() {}
void ObjectArrayImpl::reservedOp62() {}
void ObjectArrayImpl::reservedOp63() {}
void ObjectArrayImpl::reservedOp64() {}
void ObjectArrayImpl::reservedOp65() {}

} // namespace vexa::data::impl
