/* What object_functions.h says to C: the types of its functions, results included, and of its values. Compiled as C11 only;
 * Objects.cpp holds the same for C++. */
#include <vexa/data/object_functions.h>

#include <stddef.h>

#define TYPE_IS(type, ...)                                                                                   \
    _Static_assert(_Generic((__VA_ARGS__), type : 1, default : 0), #__VA_ARGS__ ": another type")

TYPE_IS(void (*)(vexa_counted*), &object_destroy_impl_x);
TYPE_IS(vexa_class_info* (*)(vexa_object*), &object_get_class_info_x);
TYPE_IS(vexa_class_info* (*)(vexa_array*), &object_array_get_class_info_x);
TYPE_IS(bool (*)(vexa_array*), &object_array_is_heterogeneous_x);
TYPE_IS(vexa_iterator* (*)(vexa_reference*), &object_reference_begin_x);
TYPE_IS(vexa_iterator* (*)(vexa_reference*), &object_reference_end_x);
TYPE_IS(vexa_class_info* (*)(vexa_reference*), &object_reference_get_class_info_x);
TYPE_IS(const char* (*)(vexa_reference*), &object_reference_get_enumeration_name_x);
TYPE_IS(int (*)(vexa_reference*, vexa_object**), &object_reference_shared_copy_x);
TYPE_IS(void (*)(vexa_reference*, vexa_object*), &object_set_value_x);
TYPE_IS(bool (*)(vexa_reference*, vexa_reference*), &object_reference_is_equal);
TYPE_IS(bool (*)(vexa_handle_object*, vexa_handle_object*), &handle_object_ref_is_equal_x);
TYPE_IS(bool (*)(vexa_reference*, vexa_reference*), &handle_ref_is_equal_x);
TYPE_IS(bool (*)(vexa_reference*, vexa_handle_object*), &handle_ref_is_equal_to_object_x);
TYPE_IS(int (*)(vexa_handle_object*, long*), &handle_object_ref_get_id_x);
TYPE_IS(int (*)(vexa_handle_object*, vexa_zvm_id*), &handle_object_ref_get_zvm_id_x);
TYPE_IS(int (*)(vexa_reference*, long*), &handle_ref_get_id_x);
TYPE_IS(int (*)(vexa_reference*, vexa_zvm_id*), &handle_ref_get_zvm_id_x);
TYPE_IS(int (*)(vexa_reference*, vexa_object**), &handle_object_ref_reference_shared_copy_x);
TYPE_IS(void (*)(vexa_reference*, vexa_handle_object*), &handle_ref_set_value_x);

/* Types of their own, of which only pointers are passed. */
TYPE_IS(struct vexa_counted*, (vexa_counted*)NULL);
TYPE_IS(struct vexa_reference*, (vexa_reference*)NULL);
TYPE_IS(struct vexa_iterator*, (vexa_iterator*)NULL);
TYPE_IS(struct vexa_array*, (vexa_array*)NULL);
TYPE_IS(struct vexa_class_info*, (vexa_class_info*)NULL);
TYPE_IS(struct vexa_object*, (vexa_object*)NULL);
TYPE_IS(struct vexa_handle_object*, (vexa_handle_object*)NULL);

_Static_assert(sizeof(vexa_zvm_id) == 16 && _Alignof(vexa_zvm_id) == 1 && offsetof(vexa_zvm_id, bytes) == 0,
               "vexa_zvm_id");
TYPE_IS(unsigned char (*)[16], &((vexa_zvm_id*)NULL)->bytes);
_Static_assert(sizeof(bool) == 1 && sizeof(long) == 8, "results and numbers");
