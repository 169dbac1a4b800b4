/* What the program in C calls the functions on; made in C++ and alive until the process ends. */
#ifndef SCENE_H
#define SCENE_H

#include <vexa/data/object_functions.h>

#ifdef __cplusplus
extern "C" {
#endif

struct scene {
    vexa_array* boxes;         /* two value objects of one class with one property */
    vexa_reference* box[2];    /* elements of it; the second holds another width */
    vexa_reference* member;    /* an element that is Color.red */
    vexa_reference* handle[2]; /* two handle objects of one engine, numbers 7 and 8 */
    vexa_reference* outside;   /* an element beyond the end of its array */
    vexa_handle_object* nine;  /* a handle object of the same engine, number 9 */
    unsigned char engine[16];
};

struct scene scene_create(void);
int scene_count(const vexa_counted* object); /* its references */
void scene_release(const vexa_counted* object);

#ifdef __cplusplus
}
#endif
#endif
