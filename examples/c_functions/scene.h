/* What the example in C is given to work on. */
#ifndef SCENE_H
#define SCENE_H

#include <vexa/data/object_functions.h>

#ifdef __cplusplus
extern "C" {
#endif

struct scene;
struct scene* scene_create(void);
void scene_destroy(struct scene* scene);
vexa_array* scene_array(struct scene* scene);
vexa_reference* scene_element(struct scene* scene, int index); /* lives as long as the scene */
vexa_reference* scene_handle(struct scene* scene);             /* lives as long as the scene */
void scene_release(vexa_object* object);

#ifdef __cplusplus
}
#endif
#endif
