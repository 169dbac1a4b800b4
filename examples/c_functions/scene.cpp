// Makes the objects that the example in C works on.
#include "scene.h"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>

using namespace foundation::vexadata;
using Chain = std::shared_ptr<vexa_reference>;

namespace {

template <class A>
Chain element(A& array, std::size_t index) {
    return Reference<typename A::value_type>(array[index]).chain();
}

} // namespace

struct scene {
    ArrayFactory factory;
    ClassInfo classInfo = factory.createClassInfo("Box", {"width"});
    ValueObjectArray boxes = factory.createValueObjectArray({1, 2}, classInfo);
    TypedArray<HandleObjectRef> handles = factory.createArray<HandleObjectRef>({1, 1});
    Chain elements[2];
    Chain handle;

    scene() {
        ValueObject box = factory.createValueObject(classInfo);
        box["width"] = factory.createScalar(3.0);
        boxes[0] = box;
        handles[0] = factory.createHandleObjectRef(ZVMID{{1}}, 99);
        elements[0] = element(boxes, 0);
        elements[1] = element(boxes, 1);
        handle = element(handles, 0);
    }
};

struct scene* scene_create(void) {
    return new scene;
}
void scene_destroy(struct scene* scene) { delete scene; }
vexa_array* scene_array(struct scene* scene) { return detail::Access::impl(scene->boxes).get(); }
vexa_reference* scene_element(struct scene* scene, int index) { return scene->elements[index].get(); }
vexa_reference* scene_handle(struct scene* scene) { return scene->handle.get(); }
void scene_release(vexa_object* object) { object->release(); }
