// The functions with C linkage among the operations that are made to fail.
#include "World.hpp"

#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/object_functions.h>

namespace failure {

namespace {

using detail::Access;
vexa_handle_object* handleIn(const HandleObjectRef& handle) {
    return dynamic_cast<vexa_handle_object*>(Access::impl(handle).get());
}

} // namespace

std::shared_ptr<vexa_reference> elementOf(const Array& array, std::uint64_t index) {
    using vexa::data::detail::ArrayReferenceImpl;
    auto chain = Access::createSharedPtr<vexa_reference>(new ArrayReferenceImpl(Access::impl(array).get()));
    chain->addIndex(index);
    return chain;
}

Family cFunctions() {
    return {
        "CFunctions",
        {
            {"object_get_class_info_x",
             [](World& w) { object_get_class_info_x(Access::impl(w.object()).get()); }},
            {"object_array_get_class_info_x",
             [](World& w) { object_array_get_class_info_x(Access::impl(w.objects()).get()); }},
            {"object_array_is_heterogeneous_x",
             [](World& w) { object_array_is_heterogeneous_x(Access::impl(w.objects()).get()); }},
            {"object_reference_begin_x",
             [](World& w) {
                 Access::createSharedPtr(object_reference_begin_x(elementOf(w.objects(), 0).get()));
                 Access::createSharedPtr(object_reference_end_x(elementOf(w.objects(), 0).get()));
             }},
            {"object_reference_get_class_info_x",
             [](World& w) { object_reference_get_class_info_x(elementOf(w.objects(), 0).get()); }},
            {"object_reference_get_enumeration_name_x",
             [](World& w) { object_reference_get_enumeration_name_x(elementOf(w.objects(), 0).get()); }},
            {"object_reference_shared_copy_x",
             [](World& w) {
                 vexa_object* object = nullptr;
                 object_reference_shared_copy_x(elementOf(w.objects(), 0).get(), &object);
                 Access::createSharedPtr(object);
             }},
            {"object_set_value_x",
             [](World& w) {
                 object_set_value_x(elementOf(w.objects(), 1).get(), Access::impl(w.object()).get());
             }},
            {"object_reference_is_equal",
             [](World& w) {
                 object_reference_is_equal(elementOf(w.objects(), 0).get(), elementOf(w.objects(), 1).get());
             },
             true},
            {"handle_object_ref_is_equal_x",
             [](World& w) {
                 const HandleObjectRef handle = std::as_const(w.handles())[0];
                 handle_object_ref_is_equal_x(handleIn(handle), handleIn(handle));
             }},
            {"handle_ref_is_equal_x",
             [](World& w) {
                 handle_ref_is_equal_x(elementOf(w.handles(), 0).get(), elementOf(w.handles(), 1).get());
             }},
            {"handle_ref_is_equal_to_object_x",
             [](World& w) {
                 const HandleObjectRef handle = std::as_const(w.handles())[0];
                 handle_ref_is_equal_to_object_x(elementOf(w.handles(), 0).get(), handleIn(handle));
             }},
            {"handle_ref_get_id_x",
             [](World& w) {
                 long id = 0;
                 vexa_zvm_id engine{};
                 handle_ref_get_id_x(elementOf(w.handles(), 0).get(), &id);
                 handle_ref_get_zvm_id_x(elementOf(w.handles(), 0).get(), &engine);
             }},
            {"handle_object_ref_reference_shared_copy_x",
             [](World& w) {
                 vexa_object* object = nullptr;
                 handle_object_ref_reference_shared_copy_x(elementOf(w.handles(), 0).get(), &object);
                 Access::createSharedPtr(object);
             }},
            {"handle_ref_set_value_x",
             [](World& w) {
                 const HandleObjectRef handle = std::as_const(w.handles())[0];
                 handle_ref_set_value_x(elementOf(w.handles(), 1).get(), handleIn(handle));
             }},
        },
    };
}

} // namespace failure
