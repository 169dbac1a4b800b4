// All names of the library, without definitions. Headers that only pass handles and back-end objects along,
// the library's own and those of its users, include this one instead of others: it needs no standard header
// worth the name. Functions may be declared with all of these types, by value too; whoever defines or calls
// one, or has a member of one, includes the header of the type.
#pragma once

#include <foundation/vexadata/Export.hpp>

#include <cstddef>
#include <cstdint>

namespace vexa::data {

enum class MemoryLayout : std::int32_t;

namespace detail {
class RefCounted;
class ReferenceImpl;
class ArrayReferenceImpl;
class IteratorReference;
class IteratorImpl;
template <class T>
class ContiguousIteratorImpl;
template <class Order>
class NonPrimitiveIteratorImpl;
class ForwardIteratorImpl;
class VariableInfoImplData;
} // namespace detail

namespace impl {
class ArrayImpl;
class EmptyArrayImpl;
template <class T>
class TypedArrayImpl;
class StringArrayImpl;
class StructArrayImpl;
class EnumArrayImpl;
class ObjectArrayImpl;
class ArrayFactoryImpl;
class VexaClassIdentifierImpl;
class VexaIdentifierImpl;
class VexaPropertyIdentifierImpl;
class ClassInfoImpl;
class PropertyImpl;
class ObjectImpl;
class HandleObjectRefImpl;
} // namespace impl

} // namespace vexa::data

namespace vexa::engine {
/// A workspace of an engine, known to that engine alone.
class IWorkspaceContext;
} // namespace vexa::engine

namespace foundation::vexadata {

enum class ArrayType : std::int32_t;
struct ZVMID;
class Exception;

class Array;
template <class T>
class TypedArray;
class CharArray;
class StructArray;
class EnumArray;
class ValueObjectArray;
template <class T>
class SparseArray;
class ArrayFactory;

class StructElement;
class StructValue;
class Enumeration;
class Object;
class ValueObject;
class HandleObjectRef;
class ValueObjectRef;
class HandleRef;

template <class T>
class Reference;
template <bool isConst>
class ArrayElementRef;
template <bool isConst>
class HeldElementRef;
template <class T, bool isConst>
class ArrayElementTypedRef;
class ArrayReferenceExt;
class ReferenceHolder;

template <class T>
class TypedIterator;
template <class T>
class ForwardIterator;
template <template <class> class Iterator, class T>
class Range;
template <class T, std::size_t Rank>
class ArrayView;

class VexaClassIdentifier;
class VexaFieldIdentifier;
class VexaPropertyIdentifier;
class ClassInfo;
class Property;

class IVariableInfo;
class VariableInfo;
class ICustomWorkspace;
class InProcessCustomWorkspace;

namespace detail {
struct Access;
class ElementPosition;
} // namespace detail

} // namespace foundation::vexadata
