/* Calls every function of object_functions.h as a program in C does and looks at what comes back. */
#include "Scene.h"

#include <stdio.h>
#include <string.h>

static int faults = 0;

static void expect(bool holds, const char* what) {
    if (!holds) {
        ++faults;
        printf("does not hold: %s\n", what);
    }
}
#define EXPECT(condition) expect(condition, #condition)

static void classes(struct scene* s) {
    vexa_class_info* const box = object_array_get_class_info_x(s->boxes);
    EXPECT(box != NULL && !object_array_is_heterogeneous_x(s->boxes));
    EXPECT(object_reference_get_class_info_x(s->box[0]) == box);
    EXPECT(object_reference_get_class_info_x(s->member) != box);
    EXPECT(object_reference_get_enumeration_name_x(s->box[0]) == NULL);
    EXPECT(strcmp(object_reference_get_enumeration_name_x(s->member), "red") == 0);

    vexa_iterator* const begin = object_reference_begin_x(s->box[0]);
    vexa_iterator* const end = object_reference_end_x(s->box[0]);
    EXPECT(begin != NULL && end != NULL && begin != end && scene_count((vexa_counted*)begin) == 1);
    object_destroy_impl_x((vexa_counted*)begin);
    object_destroy_impl_x((vexa_counted*)end);
    object_destroy_impl_x(NULL);
}

static void values(struct scene* s) {
    vexa_object* shared = NULL;
    EXPECT(!object_reference_is_equal(s->box[0], s->box[1]));
    EXPECT(object_reference_shared_copy_x(s->box[0], &shared) == 1 && shared != NULL);
    const int count = scene_count((vexa_counted*)shared);
    EXPECT(object_get_class_info_x(shared) == object_array_get_class_info_x(s->boxes));
    object_set_value_x(s->box[1], shared);
    EXPECT(object_reference_is_equal(s->box[0], s->box[1]));
    EXPECT(scene_count((vexa_counted*)shared) == count + 1);
    scene_release((vexa_counted*)shared);
}

static void handles(struct scene* s) {
    vexa_object* shared = NULL;
    vexa_zvm_id engine;
    long id = 0;
    EXPECT(handle_ref_get_id_x(s->handle[1], &id) == 1 && id == 8);
    EXPECT(handle_object_ref_get_id_x(s->nine, &id) == 1 && id == 9);
    EXPECT(handle_ref_get_id_x(NULL, &id) == 0 && handle_object_ref_get_id_x(NULL, &id) == 0 && id == 9);
    memset(&engine, 0, sizeof engine);
    EXPECT(handle_ref_get_zvm_id_x(s->handle[0], &engine) == 1);
    EXPECT(memcmp(engine.bytes, s->engine, sizeof engine.bytes) == 0);
    memset(&engine, 0, sizeof engine);
    EXPECT(handle_object_ref_get_zvm_id_x(s->nine, &engine) == 1);
    EXPECT(memcmp(engine.bytes, s->engine, sizeof engine.bytes) == 0);
    EXPECT(handle_ref_get_zvm_id_x(NULL, &engine) == 0 && handle_object_ref_get_zvm_id_x(NULL, &engine) == 0);

    EXPECT(!handle_ref_is_equal_x(s->handle[0], s->handle[1]));
    EXPECT(!handle_ref_is_equal_to_object_x(s->handle[0], s->nine));
    handle_ref_set_value_x(s->handle[0], s->nine);
    EXPECT(handle_ref_is_equal_to_object_x(s->handle[0], s->nine) &&
           handle_ref_is_equal_x(s->handle[0], s->handle[0]));
    EXPECT(handle_object_ref_is_equal_x(s->nine, s->nine) && !handle_object_ref_is_equal_x(s->nine, NULL));
    EXPECT(handle_object_ref_reference_shared_copy_x(s->handle[0], &shared) == 1 && shared != NULL);
    scene_release((vexa_counted*)shared);
}

int main(void) {
    struct scene scene = scene_create();
    classes(&scene);
    values(&scene);
    handles(&scene);
    EXPECT(!object_reference_is_equal(scene.outside, scene.box[0])); /* lets no error out */
    printf("%d faults\n", faults);
    return faults == 0 ? 0 : 1;
}
