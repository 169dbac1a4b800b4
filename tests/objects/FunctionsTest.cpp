// The functions with C linkage, each through its exported symbol.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/data/detail/ReferenceImpl.hpp>
#include <vexa/data/impl/ClassInfoImpl.hpp>
#include <vexa/data/impl/ObjectImpl.hpp>
#include <vexa/data/object_functions.h>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace {

using namespace foundation::vexadata;
using detail::Access;
using vexa::data::detail::ArrayReferenceImpl;
using Chain = std::shared_ptr<vexa_reference>;

/// A function by its exported name, with the type that the header declares.
#define EXPORTED(name) exported<decltype(name)>(#name)
template <class F>
F* exported(const char* name) {
    auto* symbol = reinterpret_cast<F*>(dlsym(RTLD_DEFAULT, name));
    EXPECT_NE(symbol, nullptr) << name;
    return symbol;
}

class Functions : public testing::Test {
protected:
    Functions() {
        first["x"] = factory.createScalar(1.0);
        values[0] = first;
        values[1] = factory.createEnumerationObject("Color", "Red");
        handles[0] = handle;
    }
    template <class A>
    static Chain at(A& array, std::uint64_t index) {
        Chain chain =
            Access::createSharedPtr<vexa_reference>(new ArrayReferenceImpl(Access::impl(array).get()));
        chain->addIndex(index);
        return chain;
    }
    static vexa_handle_object* handleOf(const Object& object) {
        return dynamic_cast<vexa_handle_object*>(Access::impl(object).get());
    }

    ArrayFactory factory;
    ClassInfo info = factory.createClassInfo("Thing", {"x", "y"});
    ValueObject first = factory.createValueObject(info);
    TypedArray<ValueObject> values = factory.createArray<ValueObject>({1, 4});
    HandleObjectRef handle = factory.createHandleObjectRef({{1, 2, 3}}, 42);
    HandleObjectRef same = factory.createHandleObjectRef({{1, 2, 3}}, 42);
    HandleObjectRef other = factory.createHandleObjectRef({{1, 2, 4}}, 42);
    TypedArray<HandleObjectRef> handles = factory.createArray<HandleObjectRef>({1, 3});
};

TEST_F(Functions, AnswerAboutClasses) {
    const auto* object = Access::impl(first).get();
    vexa_class_info* described = EXPORTED(object_get_class_info_x)(const_cast<vexa_object*>(object));
    EXPECT_EQ(described, Access::impl(info).get());
    const auto count = described->referenceCount();
    EXPECT_EQ(EXPORTED(object_reference_get_class_info_x)(at(values, 0).get()), described);
    EXPECT_EQ(EXPORTED(object_array_get_class_info_x)(Access::impl(values).get()), described);
    EXPECT_EQ(described->referenceCount(), count) << "borrowed";
    EXPECT_TRUE(EXPORTED(object_array_is_heterogeneous_x)(Access::impl(values).get()));
    const ValueObjectArray things = factory.createValueObjectArray({1, 2}, info);
    EXPECT_FALSE(EXPORTED(object_array_is_heterogeneous_x)(Access::impl(things).get()));
    EXPECT_STREQ(EXPORTED(object_reference_get_enumeration_name_x)(at(values, 1).get()), "Red");
    EXPECT_EQ(EXPORTED(object_reference_get_enumeration_name_x)(at(values, 0).get()), nullptr);
    EXPECT_THROW(EXPORTED(object_reference_get_enumeration_name_x)(at(values, 4).get()),
                 EArrayIndexOutOfRange);
}

TEST_F(Functions, WalkShareAndStoreObjects) {
    vexa_iterator* const made = EXPORTED(object_reference_begin_x)(at(values, 0).get());
    EXPECT_EQ(made->referenceCount(), 1U);
    ForwardIterator<Property> begin(made);
    const ForwardIterator<Property> end(EXPORTED(object_reference_end_x)(at(values, 0).get()));
    EXPECT_EQ((*begin).getPropertyName(), "x");
    EXPECT_EQ(++(++begin), end);

    vexa_object* shared = nullptr;
    EXPECT_EQ(EXPORTED(object_reference_shared_copy_x)(at(values, 0).get(), &shared), 1);
    const ValueObject held(shared);
    EXPECT_EQ(held, first);
    EXPECT_EQ(EXPORTED(object_reference_shared_copy_x)(at(values, 3).get(), &shared), 1);
    EXPECT_EQ(shared, nullptr);

    const auto before = Access::impl(first)->referenceCount();
    EXPORTED(object_set_value_x)(at(values, 2).get(), Access::impl(first).get());
    EXPECT_EQ(Access::impl(first)->referenceCount(), before + 1) << "the element adds its own";
    EXPECT_EQ(ValueObject(values[2]), first);
    EXPECT_THROW(EXPORTED(object_set_value_x)(at(values, 9).get(), Access::impl(first).get()),
                 EArrayIndexOutOfRange);

    const auto equal = EXPORTED(object_reference_is_equal);
    EXPECT_TRUE(equal(at(values, 0).get(), at(values, 2).get()));
    EXPECT_FALSE(equal(at(values, 0).get(), at(values, 3).get()));
    EXPECT_TRUE(equal(at(values, 3).get(), at(values, 3).get()));
    EXPECT_FALSE(equal(at(values, 0).get(), at(values, 9).get())) << "a side that fails counts as absent";
    EXPECT_TRUE(equal(at(values, 9).get(), at(values, 8).get())) << "and two of them as equal";
    values[2] = factory.createValueObject(factory.createClassInfo("Less", {"y"}));
    EXPECT_FALSE(equal(at(values, 0).get(), at(values, 2).get())) << "an error in the comparison";

    auto* doomed = new ValueObject(factory.createValueObject(info));
    vexa_object* raw = Access::impl(*doomed).get();
    raw->retain();
    raw->retain();
    delete doomed;
    EXPORTED(object_destroy_impl_x)(raw); // whatever its count
    EXPORTED(object_destroy_impl_x)(nullptr);
}

TEST_F(Functions, FindNothingInAnElementWithoutObject) {
    EXPECT_EQ(EXPORTED(object_reference_get_class_info_x)(at(values, 3).get()), nullptr);
    EXPECT_EQ(EXPORTED(object_reference_get_enumeration_name_x)(at(values, 3).get()), nullptr);
    const ForwardIterator<Property> begin(EXPORTED(object_reference_begin_x)(at(values, 3).get()));
    const ForwardIterator<Property> end(EXPORTED(object_reference_end_x)(at(values, 3).get()));
    EXPECT_EQ(begin, end);
    const ValueObjectRef none{Reference<ValueObject>(values[3])};
    EXPECT_TRUE(none.getExternalRepresentationPropertyNames().empty());
    using vexa::client::UnknownPropertyException;
    EXPECT_TRUE(support::throwsExactly<UnknownPropertyException>(
        [&] { none.getProp("Base.x", false); },
        "Unknown property 'Base.x': there is no class that could have it"));
}

TEST_F(Functions, CompareAndReadHandles) {
    const auto equal = EXPORTED(handle_object_ref_is_equal_x);
    EXPECT_TRUE(equal(handleOf(handle), handleOf(same)));
    EXPECT_FALSE(equal(handleOf(handle), handleOf(other)));
    EXPECT_TRUE(equal(nullptr, nullptr));
    EXPECT_FALSE(equal(handleOf(handle), nullptr));

    long id = -1;
    ZVMID engine{};
    EXPECT_EQ(EXPORTED(handle_object_ref_get_id_x)(nullptr, &id), 0);
    EXPECT_EQ(EXPORTED(handle_ref_get_id_x)(nullptr, &id), 0);
    EXPECT_EQ(EXPORTED(handle_object_ref_get_zvm_id_x)(nullptr, &engine), 0);
    EXPECT_EQ(EXPORTED(handle_ref_get_zvm_id_x)(nullptr, &engine), 0);
    EXPECT_EQ(id, -1);
    EXPECT_EQ(EXPORTED(handle_object_ref_get_id_x)(handleOf(handle), &id), 1);
    EXPECT_EQ(id, 42);
    EXPECT_EQ(EXPORTED(handle_object_ref_get_zvm_id_x)(handleOf(other), &engine), 1);
    EXPECT_EQ(engine, (ZVMID{{1, 2, 4}}));
    id = 0;
    EXPECT_EQ(EXPORTED(handle_ref_get_id_x)(at(handles, 0).get(), &id), 1);
    EXPECT_EQ(EXPORTED(handle_ref_get_zvm_id_x)(at(handles, 0).get(), &engine), 1);
    EXPECT_EQ(id, 42);
    EXPECT_EQ(engine, (ZVMID{{1, 2, 3}}));
    try {
        EXPORTED(handle_ref_get_id_x)(at(handles, 1).get(), &id);
        ADD_FAILURE() << "an element without handle object has no number";
    } catch (const EArrayInvalidHandleRef& error) {
        EXPECT_STREQ(error.what(), "The HandleObjectRef does not refer to a handle.");
    }
    EXPECT_THROW(EXPORTED(handle_ref_get_zvm_id_x)(at(handles, 1).get(), &engine), EArrayInvalidHandleRef);
    EXPECT_THROW(EXPORTED(handle_ref_get_id_x)(at(handles, 5).get(), &id), EArrayIndexOutOfRange);

    EXPORTED(handle_ref_set_value_x)(at(handles, 2).get(), handleOf(same));
    EXPECT_TRUE(HandleObjectRef(handles[2]) == handle);
    EXPECT_TRUE(EXPORTED(handle_ref_is_equal_x)(at(handles, 0).get(), at(handles, 2).get()));
    EXPECT_FALSE(EXPORTED(handle_ref_is_equal_x)(at(handles, 0).get(), at(handles, 1).get()));
    EXPECT_TRUE(EXPORTED(handle_ref_is_equal_to_object_x)(at(handles, 2).get(), handleOf(handle)));
    EXPECT_FALSE(EXPORTED(handle_ref_is_equal_to_object_x)(at(handles, 2).get(), nullptr));
    vexa_object* shared = nullptr;
    EXPECT_EQ(EXPORTED(handle_object_ref_reference_shared_copy_x)(at(handles, 2).get(), &shared), 1);
    EXPECT_TRUE(HandleObjectRef(shared) == handle);
}

} // namespace
