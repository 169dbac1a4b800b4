// The rows of the frozen tables. Each row is an explicit instantiation, which may name private members; types
// are compared when it is compiled, places when the program starts. Needs no library, so that anybody can
// build and run it.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace contract {

enum class Kind { operation, member, interface };

struct Row {
    Kind kind;
    const char* name; // of the function that made the row, which tells what the row is about
    std::ptrdiff_t expected;
    const void* pointer; // the pointer to the member that the row is about
};

/// Keeps a row until the program starts.
bool add(const Row& row);

/// The same for the types of functions, which were compared when they were compiled.
bool addTypes(int count);

/// The same for the address of a function or variable, which is the first word of a pointer to it.
bool addAddress(const void* pointer);
template <class Pointer>
bool addFunction(Pointer function) {
    return addAddress(&function);
}

template <class>
struct MemberType;
template <class Type, class Class>
struct MemberType<Type Class::*> {
    using type = Type;
};

/// A virtual operation: its slot, its type and its name. An operation stands in the table of the class that
/// declares it first.
template <int slot, class Signature, auto operation>
struct Operation {
    static_assert(std::is_same_v<typename MemberType<decltype(operation)>::type, Signature>);
    static constexpr auto pointer = operation;
    static bool make() { return add({Kind::operation, __PRETTY_FUNCTION__, slot, &pointer}); }
    static inline const bool made = make();
};

/// A data member: its offset, its type and its name.
template <std::ptrdiff_t offset, class Type, auto member>
struct Member {
    static_assert(std::is_same_v<typename MemberType<decltype(member)>::type, Type>);
    static constexpr auto pointer = member;
    static bool make() { return add({Kind::member, __PRETTY_FUNCTION__, offset, &pointer}); }
    static inline const bool made = make();
};

/// What a derived interface adds comes right behind the last operation.
template <class I>
struct Extended : I {
    virtual void added();
};

/// An interface: its size, and the number of its slots, so that an operation more or less at its end shows.
template <class I, std::size_t size, int slots>
struct Interface {
    static_assert(sizeof(I) == size && std::has_virtual_destructor_v<I>);
    static constexpr auto pointer = &Extended<I>::added;
    static bool make() { return add({Kind::interface, __PRETTY_FUNCTION__, slots, &pointer}); }
    static inline const bool made = make();
};

/// A class that derives from `Base`, so that a pointer to one is a pointer to the other.
template <class Class, class Base, std::size_t size,
          class = decltype(static_cast<Class*>(std::declval<Base*>()))>
struct Derived {
    static_assert(sizeof(Class) == size && std::is_base_of_v<Base, Class> &&
                  std::is_convertible_v<Class*, Base*>);
};

/// How a function takes and gives a value: a copy of its own in registers, or the address of one in memory.
enum class Passed { inRegisters, inMemory };

/// Where a derived class puts what it adds: at the end, or in the padding there.
template <class T>
struct Followed : T {
    char next;
};

/// Values that cross or lie in clients' objects: their size, their alignment, the end of their members, how
/// they are passed.
template <std::size_t size, std::size_t alignment, std::ptrdiff_t end, Passed passed, class... Types>
struct Values {
    static_assert(((sizeof(Types) == size && alignof(Types) == alignment) && ...));
    static_assert((((passed == Passed::inRegisters) == (std::is_trivially_copy_constructible_v<Types> &&
                                                        std::is_trivially_destructible_v<Types>)) &&
                   ...));
    template <class T>
    struct One {
        static constexpr auto pointer = &Followed<T>::next;
        static bool make() { return add({Kind::member, __PRETTY_FUNCTION__, end, &pointer}); }
    };
    static inline const bool made = (One<Types>::make() && ...);
};

/// Functions and variables that the library exports, all of one type. Overloads are told apart by it. A
/// program that is linked with the library keeps their addresses too, to see which of the exports have no
/// row.
template <class Type, Type... functions>
struct Function {
#ifdef VEXADATA_CONTRACT_LINKED
    static inline const bool made = (addFunction(functions) && ...);
#else
    static inline const bool made = addTypes(sizeof...(functions));
#endif
};

} // namespace contract
