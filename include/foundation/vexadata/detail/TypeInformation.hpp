// What class a back-end object is. Back-ends may be built without type information (-fno-rtti); `typeid` and
// `dynamic_cast` read it unseen and crash on their objects, so that the library asks here.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <cstring>
#include <type_traits>
#include <typeinfo>

namespace foundation::vexadata::detail {

/// Address of the type information of an object's class; null when the class was built without.
///
/// By the Itanium C++ ABI such an object begins with the address of its vtable, whose preceding word is the
/// address of the type information.
template <class T>
VEXADATA_INLINE inline const void* typeInformationOf(const T& object) noexcept {
    static_assert(std::is_polymorphic_v<T>, "only classes with virtual operations carry type information");
    const void* const* vtable = nullptr;
    std::memcpy(&vtable, static_cast<const void*>(&object), sizeof vtable);
    return vtable[-1];
}

/// Whether `object` is a `Class` itself, not of a class derived from it. Compares addresses, never names: the
/// type information of a class that a shared library exports exists once in a process. Callers that are built
/// without type information recognise nothing, which costs them time and nothing else.
template <class Class, class T>
VEXADATA_INLINE inline bool isExactly(const T& object) noexcept {
#ifdef __cpp_rtti
    return typeInformationOf(object) == static_cast<const void*>(&typeid(Class));
#else
    static_cast<void>(object);
    return false;
#endif
}

/// `dynamic_cast<To*>(object)`; null also when the object's class was built without type information.
template <class To, class From>
To* dynamicCast(From* object) noexcept {
    return object == nullptr || typeInformationOf(*object) == nullptr ? nullptr : dynamic_cast<To*>(object);
}

} // namespace foundation::vexadata::detail
