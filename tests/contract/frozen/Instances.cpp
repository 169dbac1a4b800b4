// The types of the exported functions that come for each element type.
#include "Table.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <complex>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace foundation::vexadata::detail;
using vexa::data::MemoryLayout;
using vexa::data::detail::ContiguousIteratorImpl;
using vexa::data::detail::InPlace;
using vexa::data::impl::DenseArrayImpl;
using Sizes = std::vector<std::size_t>;
using Chain = std::shared_ptr<vexa::data::detail::ReferenceImpl>;
using Text = std::optional<std::u16string>;
template <class T>
using Owned = std::unique_ptr<T, void (*)(void*)>;
template <class T>
using Lent = std::unique_ptr<const T[], std::function<void(const T*)>>;
template <class T, bool isConst>
using Element =
    std::conditional_t<std::is_same_v<T, Array>, ArrayElementRef<isConst>, ArrayElementTypedRef<T, isConst>>;

#define VEXADATA_ELEMENT(T)                                                                                  \
    template struct Function<TypedIterator<T> (TypedArray<T>::*)(), &TypedArray<T>::begin,                   \
                             &TypedArray<T>::end>;                                                           \
    template struct Function<TypedIterator<const T> (TypedArray<T>::*)() const, &TypedArray<T>::begin,       \
                             &TypedArray<T>::end, &TypedArray<T>::cbegin, &TypedArray<T>::cend>;             \
    template struct Function < TypedArray<T>& (TypedArray<T>::*)(const Array&), &TypedArray<T>::operator=>;  \
    template struct Function < Element<T, false> (TypedArray<T>::*)(std::size_t),                            \
        &TypedArray<T>::operator[]>;                                                                         \
    template struct Function < Element<T, true> (TypedArray<T>::*)(std::size_t) const,                       \
        &TypedArray<T>::operator[]>;                                                                         \
    template struct Function<Owned<T[]> (TypedArray<T>::*)(), &TypedArray<T>::release>;                      \
    template struct Function<ArrayType (*)(const Array&), &TypedArray<T>::typeOf>;                           \
    template struct Function<void (*)(const Array&), &TypedArray<T>::requireType>;                           \
    template struct Function<const bool*, &TypedArray<T>::endsByCount>;                                      \
    template struct Function<TypedArray<T> (ArrayFactory::*)(Sizes) const, &ArrayFactory::createArray<T>>;   \
    template struct Function<TypedArray<T> (ArrayFactory::*)(std::initializer_list<std::size_t>) const,      \
                             &ArrayFactory::createArray<T>>;                                                 \
    template struct Function<TypedArray<T> (*)(Chain), &castTo<TypedArray<T>, false>,                        \
                             &castTo<TypedArray<T>, true>>;                                                  \
    template struct Function<void (*)(Chain, bool), &validateReference<T>>;                                  \
    template struct Function<Range<TypedIterator, const T> (*)(const Array&), &getReadOnlyElements<T>>;      \
    template struct Function<Range<TypedIterator, const T> (*)(const Reference<Array>&),                     \
                             &getReadOnlyElements<T>>;                                                       \
    template struct Function<Range<TypedIterator, T> (*)(Array&), &getWritableElements<T>>;                  \
    template struct Function<Range<TypedIterator, T> (*)(Reference<Array>&), &getWritableElements<T>>;
#include <foundation/vexadata/detail/ElementTypes.inc>

#define VEXADATA_ELEMENT(T)                                                                                  \
    template struct Function<TypedArray<T> (ArrayFactory::*)(Sizes, const T*, std::size_t) const,            \
                             &ArrayFactory::createArrayWithData<T>>;                                         \
    template struct Function<TypedArray<T> (ArrayFactory::*)(Sizes, Owned<T[]>, MemoryLayout) const,         \
                             &ArrayFactory::createArrayFromBuffer<T>>;                                       \
    template struct Function<Owned<T[]> (ArrayFactory::*)(std::size_t) const,                                \
                             &ArrayFactory::createBuffer<T>>;                                                \
    template struct Function<TypedArray<T> (ArrayFactory::*)(T) const, &ArrayFactory::createScalar<T>>;      \
    template struct Function<Lent<T> (*)(TypedArray<T>), &getBufferPtr<T>>;                                  \
    template struct Function<T (*)(Chain), &getValue<T>>;                                                    \
    template struct Function<void (*)(Chain, T), &setTypedElement<T>>;                                       \
    template struct Function<T* (ContiguousIteratorImpl<T>::*)() const,                                      \
                             &ContiguousIteratorImpl<T>::current>;                                           \
    template struct Function<bool (ContiguousIteratorImpl<T>::*)() const,                                    \
                             &ContiguousIteratorImpl<T>::holdsReference>;                                    \
    template struct Function<DenseArrayImpl<T>* (*)(Sizes &&), &DenseArrayImpl<T>::zeros>;                   \
    template struct Function<DenseArrayImpl<T>* (*)(std::size_t, std::size_t), &DenseArrayImpl<T>::zeros>;   \
    template struct Function<DenseArrayImpl<T>* (*)(Sizes&&, Owned<void>, MemoryLayout),                     \
                             &DenseArrayImpl<T>::adopt>;                                                     \
    template struct Function<DenseArrayImpl<T>* (*)(Sizes&&, T*, std::shared_ptr<void>, MemoryLayout),       \
                             &DenseArrayImpl<T>::adopt>;                                                     \
    template struct Function<std::shared_ptr<void> (DenseArrayImpl<T>::*)() const,                           \
                             &DenseArrayImpl<T>::owner>;                                                     \
    template struct Function<DenseArrayImpl<T>* (*)(Sizes&&, const void*, std::size_t),                      \
                             &DenseArrayImpl<T>::withData>;                                                  \
    template struct Function<const InPlace<T>& (DenseArrayImpl<T>::*)() const, &DenseArrayImpl<T>::inPlace>; \
    template struct Function < void (*)(void*), &DenseArrayImpl<T>::operator delete>;
#include <foundation/vexadata/detail/PrimitiveTypes.inc>

#define VEXADATA_SPARSE(T)                                                                                   \
    template struct Function < SparseArray<T>& (SparseArray<T>::*)(const Array&),                            \
        &SparseArray<T>::operator=>;                                                                         \
    template struct Function < SparseArray<T>& (SparseArray<T>::*)(Array &&), &SparseArray<T>::operator=>;   \
    template struct Function<TypedIterator<T> (SparseArray<T>::*)(), &SparseArray<T>::begin,                 \
                             &SparseArray<T>::end>;                                                          \
    template struct Function<TypedIterator<const T> (SparseArray<T>::*)() const, &SparseArray<T>::begin,     \
                             &SparseArray<T>::end, &SparseArray<T>::cbegin, &SparseArray<T>::cend>;          \
    template struct Function<const std::size_t* (SparseArray<T>::*)() const, &SparseArray<T>::getIr,         \
                             &SparseArray<T>::getJc>;                                                        \
    template struct Function<std::size_t (SparseArray<T>::*)() const, &SparseArray<T>::getCols,              \
                             &SparseArray<T>::getRows, &SparseArray<T>::getNumberOfNonZeroElements>;         \
    template struct Function<std::pair<std::size_t, std::size_t> (SparseArray<T>::*)(                        \
                                 const TypedIterator<T>&),                                                   \
                             &SparseArray<T>::getIndex>;                                                     \
    template struct Function<std::pair<std::size_t, std::size_t> (SparseArray<T>::*)(                        \
                                 const TypedIterator<const T>&) const,                                       \
                             &SparseArray<T>::getIndex>;                                                     \
    template struct Function<ArrayType (*)(const Array&), &SparseArray<T>::typeOf>;                          \
    template struct Function<void (*)(const Array&), &SparseArray<T>::requireType>;                          \
    template struct Function<SparseArray<T> (ArrayFactory::*)(Sizes, std::size_t, Owned<T[]>,                \
                                                              Owned<std::size_t[]>, Owned<std::size_t[]>)    \
                                 const,                                                                      \
                             &ArrayFactory::createSparseArray<T>, &ArrayFactory::createVEXASparseArray<T>>;
VEXADATA_SPARSE(bool)
VEXADATA_SPARSE(double)
VEXADATA_SPARSE(std::complex<double>)
#undef VEXADATA_SPARSE

#define VEXADATA_LISTED(T)                                                                                   \
    template struct Function<TypedArray<T> (ArrayFactory::*)(Sizes, std::initializer_list<T>) const,         \
                             &ArrayFactory::createArray<T>>;
VEXADATA_LISTED(bool)
VEXADATA_LISTED(double)
VEXADATA_LISTED(float)
VEXADATA_LISTED(std::int8_t)
VEXADATA_LISTED(std::uint8_t)
VEXADATA_LISTED(std::int16_t)
VEXADATA_LISTED(std::uint16_t)
VEXADATA_LISTED(std::int32_t)
VEXADATA_LISTED(std::uint32_t)
VEXADATA_LISTED(std::int64_t)
VEXADATA_LISTED(std::uint64_t)
#undef VEXADATA_LISTED

#define VEXADATA_TEXT(T)                                                                                     \
    template struct Function<TypedArray<Text> (ArrayFactory::*)(T) const, &ArrayFactory::createScalar<T>>;
VEXADATA_TEXT(Text)
VEXADATA_TEXT(std::string)
VEXADATA_TEXT(std::u16string)
VEXADATA_TEXT(const char*)
VEXADATA_TEXT(const char16_t*)
#undef VEXADATA_TEXT

template struct Function<Enumeration (*)(Chain), &getValue<Enumeration>>;
template struct Function<ValueObject (*)(Chain), &getValue<ValueObject>>;
template struct Function<void (*)(Chain, Text), &setTypedElement<Text>>;
template struct Function<void (*)(Chain, Enumeration), &setTypedElement<Enumeration>>;

} // namespace contract
