// The interfaces of objects, classes and properties, what identifiers hold, and the functions with C linkage.
#include "Table.hpp"

#include <foundation/vexadata/ZVMID.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/object_functions.h>

#include <memory>
#include <string>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace vexa::data::detail;
using namespace vexa::data::impl;

template struct Interface<ObjectImpl, 16, 18>;
template struct Operation<2, ObjectImpl*() const, &ObjectImpl::sharedCopy>;
template struct Operation<3, const char*() const, &ObjectImpl::getEnumerationName>;
template struct Operation<4, ClassInfo() const, &ObjectImpl::getClassInfo>;
template struct Operation<5, std::shared_ptr<ArrayImpl>(VexaPropertyIdentifier) const,
                          &ObjectImpl::getProperty>;
template struct Operation<6, ReferenceImpl*(VexaPropertyIdentifier), &ObjectImpl::getPropertyReference>;
template struct Operation<7, ForwardIteratorImpl*(), &ObjectImpl::begin>;
template struct Operation<8, ForwardIteratorImpl*(), &ObjectImpl::end>;
template struct Operation<9, ForwardIteratorImpl*() const, &ObjectImpl::cbegin>;
template struct Operation<10, ForwardIteratorImpl*() const, &ObjectImpl::cend>;
template struct Operation<11, void(), &ObjectImpl::reservedOp12>;
template struct Operation<12, void(), &ObjectImpl::reservedOp13>;
template struct Operation<13, void(), &ObjectImpl::reservedOp14>;
template struct Operation<14, void(), &ObjectImpl::reservedOp15>;
template struct Operation<15, bool(const VexaPropertyIdentifier&) const, &ObjectImpl::hasProperty>;
template struct Operation<16, std::size_t() const, &ObjectImpl::numOfProperties>;
template struct Operation<17, std::vector<std::string>() const,
                          &ObjectImpl::getExternalRepresentationPropertyNames>;

template struct Interface<HandleObjectRefImpl, 8, 6>;
template struct Operation<2, void(), &HandleObjectRefImpl::reservedOp0>;
template struct Operation<3, ZVMID() const, &HandleObjectRefImpl::getZVMID>;
template struct Operation<4, long() const, &HandleObjectRefImpl::getId>;
template struct Operation<5, void() const, &HandleObjectRefImpl::addReference>;

template struct Interface<PropertyImpl, 16, 5>;
template struct Operation<2, const VexaPropertyIdentifier*() const, &PropertyImpl::getIdentifier>;
template struct Operation<3, std::shared_ptr<ArrayImpl>() const, &PropertyImpl::getValue>;
template struct Operation<4, ReferenceImpl*(), &PropertyImpl::getReference>;

template struct Interface<ClassInfoImpl, 16, 14>;
template struct Operation<2, void(), &ClassInfoImpl::reservedOp3>;
template struct Operation<3, std::shared_ptr<VexaClassIdentifierImpl>() const,
                          &ClassInfoImpl::getClassIdentifier>;
template struct Operation<4, ForwardIteratorImpl*() const, &ClassInfoImpl::beginProperties>;
template struct Operation<5, ForwardIteratorImpl*() const, &ClassInfoImpl::endProperties>;
template struct Operation<6, ForwardIteratorImpl*() const, &ClassInfoImpl::beginArrayProperties>;
template struct Operation<7, ForwardIteratorImpl*() const, &ClassInfoImpl::endArrayProperties>;
template struct Operation<8, ForwardIteratorImpl*() const, &ClassInfoImpl::beginSuperclasses>;
template struct Operation<9, ForwardIteratorImpl*() const, &ClassInfoImpl::endSuperclasses>;
template struct Operation<10, std::size_t() const, &ClassInfoImpl::getNumberOfProperties>;
template struct Operation<11, std::size_t() const, &ClassInfoImpl::getNumberOfArrayProperties>;
template struct Operation<12, void(), &ClassInfoImpl::reservedOp13>;
template struct Operation<13, void(ClassInfo&), &ClassInfoImpl::updateVexaPropertyIdentifiersClassInfo>;

static_assert(sizeof(VexaClassIdentifierImpl) == 48);
template struct Member<16, std::string, &VexaClassIdentifierImpl::name_>;
static_assert(sizeof(VexaIdentifierImpl) == 48);
template struct Member<16, std::string, &VexaIdentifierImpl::name_>;
static_assert(sizeof(VexaPropertyIdentifierImpl) == 96);
template struct Member<16, std::string, &VexaPropertyIdentifierImpl::propertyName_>;
template struct Member<48, std::string, &VexaPropertyIdentifierImpl::className_>;
template struct Member<80, std::weak_ptr<ClassInfoImpl>, &VexaPropertyIdentifierImpl::classLink_>;

static_assert(sizeof(ZVMID) == 16 && alignof(ZVMID) == 1 && std::is_trivially_copyable_v<ZVMID>);
template struct Member<0, unsigned char[16], &ZVMID::bytes>;

// Functions with C linkage, whose names tell nothing of their types.
template struct Function<void (*)(RefCounted*), &object_destroy_impl_x>;
template struct Function<ClassInfoImpl* (*)(ObjectImpl*), &object_get_class_info_x>;
template struct Function<ClassInfoImpl* (*)(ArrayImpl*), &object_array_get_class_info_x>;
template struct Function<bool (*)(ArrayImpl*), &object_array_is_heterogeneous_x>;
template struct Function<ForwardIteratorImpl* (*)(ReferenceImpl*), &object_reference_begin_x,
                         &object_reference_end_x>;
template struct Function<ClassInfoImpl* (*)(ReferenceImpl*), &object_reference_get_class_info_x>;
template struct Function<const char* (*)(ReferenceImpl*), &object_reference_get_enumeration_name_x>;
template struct Function<int (*)(ReferenceImpl*, ObjectImpl**), &object_reference_shared_copy_x,
                         &handle_object_ref_reference_shared_copy_x>;
template struct Function<void (*)(ReferenceImpl*, ObjectImpl*), &object_set_value_x>;
template struct Function<bool (*)(ReferenceImpl*, ReferenceImpl*), &object_reference_is_equal,
                         &handle_ref_is_equal_x>;
template struct Function<bool (*)(HandleObjectRefImpl*, HandleObjectRefImpl*), &handle_object_ref_is_equal_x>;
template struct Function<bool (*)(ReferenceImpl*, HandleObjectRefImpl*), &handle_ref_is_equal_to_object_x>;
template struct Function<int (*)(HandleObjectRefImpl*, long*), &handle_object_ref_get_id_x>;
template struct Function<int (*)(HandleObjectRefImpl*, ZVMID*), &handle_object_ref_get_zvm_id_x>;
template struct Function<int (*)(ReferenceImpl*, long*), &handle_ref_get_id_x>;
template struct Function<int (*)(ReferenceImpl*, ZVMID*), &handle_ref_get_zvm_id_x>;
template struct Function<void (*)(ReferenceImpl*, HandleObjectRefImpl*), &handle_ref_set_value_x>;

} // namespace contract
