/** @file
 * Objects for callers that hold back-end pointers only: functions with C linkage. The header is C as well as C++.
 *
 * Pointers passed in are borrowed: no function drops their reference, and what an element comes to hold gets one more. Unless a
 * function says otherwise they must not be null. A reference is resolved to its array and the position of its element; what goes wrong with that, or in the
 * back-end, leaves the function as a C++ exception (object_reference_is_equal excepted). What is returned is borrowed
 * from the object it came from, and valid while that lives, unless a function says otherwise. Functions that fill an
 * out-parameter return 1 when they have, and 0, leaving it alone, when the handle passed in is null. */
#ifndef VEXA_DATA_OBJECT_FUNCTIONS_H
#define VEXA_DATA_OBJECT_FUNCTIONS_H

#ifdef __cplusplus
#    include <foundation/vexadata/Forward.hpp>
#    include <foundation/vexadata/ZVMID.hpp>
/** What the functions take: classes of the contract, and the same by name alone in C. */
typedef vexa::data::detail::RefCounted vexa_counted;
typedef vexa::data::detail::ReferenceImpl vexa_reference;
typedef vexa::data::detail::ForwardIteratorImpl vexa_iterator;
typedef vexa::data::impl::ArrayImpl vexa_array;
typedef vexa::data::impl::ClassInfoImpl vexa_class_info;
typedef vexa::data::impl::ObjectImpl vexa_object;
typedef vexa::data::impl::HandleObjectRefImpl vexa_handle_object;
typedef foundation::vexadata::ZVMID vexa_zvm_id;
#    define VEXA_FUNCTION extern "C" VEXADATA_API
#else
#    include <stdbool.h>
typedef struct vexa_counted vexa_counted;
typedef struct vexa_reference vexa_reference;
typedef struct vexa_iterator vexa_iterator;
typedef struct vexa_array vexa_array;
typedef struct vexa_class_info vexa_class_info;
typedef struct vexa_object vexa_object;
typedef struct vexa_handle_object vexa_handle_object;
typedef struct {
    unsigned char bytes[16];
} vexa_zvm_id;
#    define VEXA_FUNCTION extern
#endif

/** Destroys the object at once, whatever its count. Null is ignored. */
VEXA_FUNCTION void object_destroy_impl_x(vexa_counted* object);

/** The class of an object. */
VEXA_FUNCTION vexa_class_info* object_get_class_info_x(vexa_object* object);

/** The class of an object array. */
VEXA_FUNCTION vexa_class_info* object_array_get_class_info_x(vexa_array* array);

/** Whether the elements of an object array are of different classes. */
VEXA_FUNCTION bool object_array_is_heterogeneous_x(vexa_array* array);

/** Iterators over the properties of an element. New ones: the caller releases their one reference. */
VEXA_FUNCTION vexa_iterator* object_reference_begin_x(vexa_reference* reference);
VEXA_FUNCTION vexa_iterator* object_reference_end_x(vexa_reference* reference);

/** The class of an element; null for an element without object. */
VEXA_FUNCTION vexa_class_info* object_reference_get_class_info_x(vexa_reference* reference);

/** Name of the enumeration member that an element is; null when it is none, or has no object. */
VEXA_FUNCTION const char* object_reference_get_enumeration_name_x(vexa_reference* reference);

/** The object of an element, not a copy, with a reference added for the caller; null for an element without object.
 * Returns 1. */
VEXA_FUNCTION int object_reference_shared_copy_x(vexa_reference* reference, vexa_object** object);

/** Stores an object into an element, whose array is made private first. The element adds a reference of its own. */
VEXA_FUNCTION void object_set_value_x(vexa_reference* reference, vexa_object* value);

/** Equality of two elements as value objects. Lets no exception out: a side that cannot be resolved counts as absent, an
 * error in the comparison as unequal. With a side absent, the answer is whether both are. */
VEXA_FUNCTION bool object_reference_is_equal(vexa_reference* a, vexa_reference* b);

/** Whether two handle objects are the same one: the same number in the same engine instance. Either may be null; two nulls are
 * equal. */
VEXA_FUNCTION bool handle_object_ref_is_equal_x(vexa_handle_object* a, vexa_handle_object* b);

/** The same for elements; one that holds no handle object counts as null. */
VEXA_FUNCTION bool handle_ref_is_equal_x(vexa_reference* a, vexa_reference* b);
VEXA_FUNCTION bool handle_ref_is_equal_to_object_x(vexa_reference* reference, vexa_handle_object* object);

/** Number and engine instance of a handle object, which may be null: then 0 is returned. */
VEXA_FUNCTION int handle_object_ref_get_id_x(vexa_handle_object* object, long* id);
VEXA_FUNCTION int handle_object_ref_get_zvm_id_x(vexa_handle_object* object, vexa_zvm_id* engine);

/** The same for an element. The reference may be null: then 0 is returned. Throws EArrayInvalidHandleRef when the element holds
 * no handle object. */
VEXA_FUNCTION int handle_ref_get_id_x(vexa_reference* reference, long* id);
VEXA_FUNCTION int handle_ref_get_zvm_id_x(vexa_reference* reference, vexa_zvm_id* engine);

/** The handle object of an element, not a copy, with a reference added for the caller; null for an element without object.
 * Returns 1. */
VEXA_FUNCTION int handle_object_ref_reference_shared_copy_x(vexa_reference* reference, vexa_object** object);

/** Stores a handle object into an element, whose array is made private first. The element adds a reference of its own. */
VEXA_FUNCTION void handle_ref_set_value_x(vexa_reference* reference, vexa_handle_object* value);

#undef VEXA_FUNCTION
#endif
