// The functions with C linkage. They work on raw back-end pointers and make handles only inside.
#include "../access/ChainTarget.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/ObjectElement.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>
#include <vexa/data/object_functions.h>

#include <utility>

namespace fv = foundation::vexadata;
using fv::HandleObjectRef;
using fv::ValueObject;
using fv::detail::Access;
using vexa::data::detail::ChainTarget;
using vexa::data::detail::targetForWrite;
using vexa::data::detail::targetOf;
using vexa::data::impl::ObjectArrayImpl;

namespace {

ObjectArrayImpl& objects(vexa_array* array) { return static_cast<ObjectArrayImpl&>(*array); }
ObjectArrayImpl& objects(const ChainTarget& target) { return objects(target.array); }

/// The object of an element, empty when there is none.
ValueObject valueAt(vexa_reference* reference) {
    const ChainTarget element = targetOf(*reference);
    return ValueObject(objects(element).getElementObject(element.index));
}

/// The handle in an element. It lives as long as the element.
HandleObjectRef& handleAt(vexa_reference* reference) {
    const ChainTarget element = targetOf(*reference);
    return *objects(element).getElementAddress(element.index, fv::detail::noFieldName, false);
}
const vexa_handle_object* handleObjectAt(vexa_reference* reference) {
    return fv::detail::handleObject(handleAt(reference));
}
const vexa_handle_object& existingHandleAt(vexa_reference* reference) {
    const vexa_handle_object* object = handleObjectAt(reference);
    if (object == nullptr) {
        throw fv::EArrayInvalidHandleRef();
    }
    return *object;
}

/// An object with a reference for the caller.
vexa_object* shared(const fv::Object& handle) {
    vexa_object* object = Access::impl(handle).get();
    if (object != nullptr) {
        object->retain();
    }
    return object;
}

/// An empty handle when reading the element throws: comparisons with C linkage report no errors.
ValueObject valueOrNothing(vexa_reference* reference) noexcept {
    try {
        return valueAt(reference);
    } catch (...) {
        return ValueObject();
    }
}

} // namespace

void object_destroy_impl_x(vexa_counted* object) { delete object; }

// The handles here are temporary. The class information that they lead to lives as long as its object.
vexa_class_info* object_get_class_info_x(vexa_object* object) {
    const fv::ClassInfo classInfo = object->getClassInfo();
    return Access::impl(classInfo).get();
}

vexa_class_info* object_array_get_class_info_x(vexa_array* array) {
    const fv::ClassInfo classInfo = objects(array).getClassInfo();
    return Access::impl(classInfo).get();
}

bool object_array_is_heterogeneous_x(vexa_array* array) { return objects(array).isHeterogeneous(); }

vexa_iterator* object_reference_begin_x(vexa_reference* reference) {
    const ChainTarget element = targetOf(*reference);
    return objects(element).beginElementProperties(element.index);
}

vexa_iterator* object_reference_end_x(vexa_reference* reference) {
    const ChainTarget element = targetOf(*reference);
    return objects(element).endElementProperties(element.index);
}

vexa_class_info* object_reference_get_class_info_x(vexa_reference* reference) {
    const ValueObject object = valueAt(reference);
    vexa_object* impl = Access::impl(object).get();
    return impl == nullptr ? nullptr : object_get_class_info_x(impl);
}

const char* object_reference_get_enumeration_name_x(vexa_reference* reference) {
    const ValueObject object = valueAt(reference);
    const vexa_object* impl = Access::impl(object).get();
    return impl == nullptr ? nullptr : impl->getEnumerationName();
}

int object_reference_shared_copy_x(vexa_reference* reference, vexa_object** object) {
    *object = shared(valueAt(reference));
    return 1;
}

void object_set_value_x(vexa_reference* reference, vexa_object* value) {
    const ChainTarget element = targetForWrite(*reference);
    objects(element).setElementObject(element.index, value);
}

bool object_reference_is_equal(vexa_reference* a, vexa_reference* b) {
    const ValueObject left = valueOrNothing(a);
    const ValueObject right = valueOrNothing(b);
    try {
        return left == right;
    } catch (...) {
        return false;
    }
}

bool handle_object_ref_is_equal_x(vexa_handle_object* a, vexa_handle_object* b) {
    return fv::detail::sameHandleObject(a, b);
}

bool handle_ref_is_equal_x(vexa_reference* a, vexa_reference* b) {
    const vexa_handle_object* left = handleObjectAt(a);
    return fv::detail::sameHandleObject(left, handleObjectAt(b));
}

bool handle_ref_is_equal_to_object_x(vexa_reference* reference, vexa_handle_object* object) {
    return fv::detail::sameHandleObject(handleObjectAt(reference), object);
}

int handle_object_ref_get_id_x(vexa_handle_object* object, long* id) {
    if (object == nullptr) {
        return 0;
    }
    *id = object->getId();
    return 1;
}

int handle_object_ref_get_zvm_id_x(vexa_handle_object* object, vexa_zvm_id* engine) {
    if (object == nullptr) {
        return 0;
    }
    *engine = object->getZVMID();
    return 1;
}

int handle_ref_get_id_x(vexa_reference* reference, long* id) {
    if (reference == nullptr) {
        return 0;
    }
    *id = existingHandleAt(reference).getId();
    return 1;
}

int handle_ref_get_zvm_id_x(vexa_reference* reference, vexa_zvm_id* engine) {
    if (reference == nullptr) {
        return 0;
    }
    *engine = existingHandleAt(reference).getZVMID();
    return 1;
}

int handle_object_ref_reference_shared_copy_x(vexa_reference* reference, vexa_object** object) {
    *object = shared(handleAt(reference));
    return 1;
}

void handle_ref_set_value_x(vexa_reference* reference, vexa_handle_object* value) {
    auto* object = dynamic_cast<vexa_object*>(value);
    object->retain();
    HandleObjectRef handle(object);
    const ChainTarget element = targetForWrite(*reference);
    objects(element).setElementValue(element.index, fv::detail::noFieldName, std::move(handle));
}
