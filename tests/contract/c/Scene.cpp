#include "Scene.h"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>

#include <algorithm>
#include <memory>
#include <vector>

using namespace foundation::vexadata;

namespace {

template <class A>
vexa_reference* element(A& array, std::size_t index) {
    static std::vector<std::shared_ptr<vexa_reference>> kept;
    kept.push_back(Reference<typename A::value_type>(array[index]).chain());
    return kept.back().get();
}

} // namespace

struct scene scene_create(void) {
    static ArrayFactory factory;
    static const ClassInfo box = factory.createClassInfo("Box", {"width"});
    static ValueObjectArray boxes = factory.createValueObjectArray({1, 2}, box);
    boxes[0] = factory.createValueObject(box);
    ValueObject wide = factory.createValueObject(box);
    wide["width"] = factory.createScalar(3.0);
    boxes[1] = wide;
    static ValueObjectArray members =
        factory.createValueObjectScalar(factory.createEnumerationObject("Color", "red"));
    constexpr ZVMID engine = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
    static TypedArray<HandleObjectRef> handles = factory.createArray<HandleObjectRef>({1, 2});
    handles[0] = factory.createHandleObjectRef(engine, 7);
    handles[1] = factory.createHandleObjectRef(engine, 8);
    static const HandleObjectRef nine = factory.createHandleObjectRef(engine, 9);

    struct scene made = {};
    made.boxes = detail::Access::impl(boxes).get();
    made.member = element(members, 0);
    for (const std::size_t k : {0U, 1U}) {
        made.box[k] = element(boxes, k);
        made.handle[k] = element(handles, k);
    }
    static vexa::data::detail::ArrayReferenceImpl outside(made.boxes, 5);
    made.outside = &outside;
    made.nine = dynamic_cast<vexa_handle_object*>(detail::Access::impl(nine).get());
    std::copy(std::begin(engine.bytes), std::end(engine.bytes), made.engine);
    return made;
}

int scene_count(const vexa_counted* object) { return static_cast<int>(object->referenceCount()); }
void scene_release(const vexa_counted* object) { object->release(); }
