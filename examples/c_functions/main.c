/* Objects from C: the functions of object_functions.h over pointers that somebody else made. */
#include "scene.h"

#include <stdio.h>

int main(void) {
    struct scene* scene = scene_create();
    vexa_reference* first = scene_element(scene, 0);
    vexa_reference* second = scene_element(scene, 1);
    vexa_reference* handle = scene_handle(scene);
    vexa_object* shared = NULL;
    long id = 0;

    printf("heterogeneous: %d\n", object_array_is_heterogeneous_x(scene_array(scene)));
    printf("equal: %d\n", object_reference_is_equal(first, second));
    object_reference_shared_copy_x(first, &shared);
    object_set_value_x(second, shared);
    printf("equal after storing: %d\n", object_reference_is_equal(first, second));
    scene_release(shared);

    printf("a handle there: %d", handle_ref_get_id_x(handle, &id));
    printf(", number %ld\n", id);
    printf("a handle nowhere: %d\n", handle_ref_get_id_x(NULL, &id));
    scene_destroy(scene);
    return 0;
}
