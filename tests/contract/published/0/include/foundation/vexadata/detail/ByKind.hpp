// From the kind of an array, known at run time, to the type of its elements. Every place that decides by kind
// what a template is to do comes here, so that a new element type is added to PrimitiveTypes.inc, or to
// `withKind` below, and nowhere else.
#pragma once

#include <foundation/vexadata/Traits.hpp>

#include <complex>
#include <type_traits>

namespace foundation::vexadata::detail {

/// Stands for the arrays with elements `T` that are not sparse; carries the type without a value of it.
template <class T>
struct ElementTag {
    using type = T;
    static constexpr ArrayType arrayType = arrayTypeOf<T>;
    static constexpr bool isPrimitive = isPrimitiveElement<T>;
    static constexpr bool isSparse = false;
};
/// Stands for the sparse arrays with elements `T`.
template <class T>
struct SparseTag {
    using type = T;
    static constexpr ArrayType arrayType = sparseTypeOf<T>;
    static constexpr bool isPrimitive = false;
    static constexpr bool isSparse = true;
};
/// Stands for UNKNOWN, and for values that are no kind.
struct NoElementTag {
    static constexpr bool isPrimitive = false;
    static constexpr bool isSparse = false;
};

/// Calls `visit` with the tag of a kind and returns what it returns, which must be of one type for all tags.
/// An OBJECT array is one of value objects here.
template <class Visit>
decltype(auto) withKind(ArrayType type, Visit&& visit) {
    switch (type) {
#define VEXADATA_ELEMENT(T)                                                                                  \
    case arrayTypeOf<T>:                                                                                     \
        return visit(ElementTag<T>());
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
    case ArrayType::STRING:
        return visit(ElementTag<String>());
    case ArrayType::CELL:
        return visit(ElementTag<Array>());
    case ArrayType::STRUCT:
        return visit(ElementTag<StructElement>());
    case ArrayType::OBJECT:
    case ArrayType::VALUE_OBJECT:
        return visit(ElementTag<ValueObject>());
    case ArrayType::HANDLE_OBJECT_REF:
        return visit(ElementTag<HandleObjectRef>());
    case ArrayType::ENUM:
        return visit(ElementTag<Enumeration>());
    case ArrayType::SPARSE_LOGICAL:
        return visit(SparseTag<bool>());
    case ArrayType::SPARSE_DOUBLE:
        return visit(SparseTag<double>());
    case ArrayType::SPARSE_COMPLEX_DOUBLE:
        return visit(SparseTag<std::complex<double>>());
    default:
        return visit(NoElementTag());
    }
}

/// Calls `visit` with the tag of a primitive kind; false, without a call, for any other kind.
template <class Visit>
bool withPrimitive(ArrayType type, Visit&& visit) {
    return withKind(type, [&](auto tag) {
        if constexpr (tag.isPrimitive) {
            visit(tag);
        }
        return tag.isPrimitive;
    });
}

/// Calls `visit` with the tag of a sparse kind; false, without a call, for any other kind.
template <class Visit>
bool withSparse(ArrayType type, Visit&& visit) {
    return withKind(type, [&](auto tag) {
        if constexpr (tag.isSparse) {
            visit(tag);
        }
        return tag.isSparse;
    });
}

/// Calls `visit` with the tag of each primitive kind, in the order of PrimitiveTypes.inc.
template <class Visit>
void forEachPrimitive(Visit&& visit) {
#define VEXADATA_ELEMENT(T) visit(ElementTag<T>());
#include <foundation/vexadata/detail/PrimitiveTypes.inc>
}

} // namespace foundation::vexadata::detail
