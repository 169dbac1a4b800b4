// Values that cross or lie in clients' objects, back-ends' too: handles to arrays, objects and elements,
// iterators, names.
#include "Table.hpp"

#include <foundation/vexadata/InProcessCustomWorkspace.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/VexaData.hpp>

#include <array>
#include <complex>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace foundation::vexadata::detail;
using vexa::data::detail::ForwardIteratorImpl;
using vexa::data::detail::IteratorImpl;
using Chain = std::shared_ptr<ReferenceImpl>;
using Complex = std::complex<double>;
using DoubleRange = Range<TypedIterator, const double>;
using NameRange = Range<ForwardIterator, const VexaFieldIdentifier>;
using MatrixView = ArrayView<double, 2>;
using Buffer = buffer_ptr<double>;
using LentBuffer = std::unique_ptr<const double[], std::function<void(const double*)>>;

// names and text
template struct Values<32, 8, 32, Passed::inMemory, Enumeration>;
template struct Values<16, 8, 16, Passed::inMemory, VexaClassIdentifier, VexaFieldIdentifier,
                       VexaPropertyIdentifier>;
template struct Values<16, 8, 16, Passed::inRegisters, BorrowedText, Number>;
template struct Values<48, 8, 48, Passed::inRegisters, PrintOptions>;
template struct Values<72, 8, 72, Passed::inMemory, Printed>;
template struct Values<16, 1, 16, Passed::inRegisters, ZVMID>;

// handles
template struct Values<24, 8, 24, Passed::inMemory, Array, TypedArray<double>, TypedArray<Array>,
                       SparseArray<double>, CharArray, EnumArray, StructArray, ValueObjectArray, Object,
                       ValueObject, HandleObjectRef, VariableInfo>;
template struct Values<16, 8, 16, Passed::inMemory, ClassInfo, Property, ArrayFactory>;
template struct Values<112, 8, 112, Passed::inMemory, DefaultVariableInfoImpl>;
template struct Values<64, 8, 64, Passed::inMemory, InProcessCustomWorkspace>;

// element handles
template struct Values<64, 8, 64, Passed::inMemory, ElementPosition, HeldElements<false>,
                       ArrayElementRef<false>, ArrayElementRef<true>, ArrayElementTypedRef<double, false>,
                       ArrayElementTypedRef<double, true>, ArrayElementTypedRef<Complex, false>,
                       ArrayElementTypedRef<Complex, true>, ArrayElementTypedRef<String, false>,
                       ArrayElementTypedRef<String, true>, ArrayElementTypedRef<StructElement, false>,
                       ArrayElementTypedRef<StructElement, true>, ArrayElementTypedRef<Enumeration, false>,
                       ArrayElementTypedRef<Enumeration, true>, ArrayElementTypedRef<ValueObject, false>,
                       ArrayElementTypedRef<ValueObject, true>, ArrayElementTypedRef<HandleObjectRef, false>,
                       ArrayElementTypedRef<HandleObjectRef, true>, StructElement, StructRefExt,
                       VEXAStringReferenceExt>;
template struct Values<104, 8, 97, Passed::inMemory, HeldPosition>;
template struct Values<104, 8, 104, Passed::inMemory, HeldElementRef<false>, HeldElementRef<true>>;

// references
template struct Values<16, 8, 16, Passed::inMemory, ReferenceHolder, ArrayReferenceExt, ValueObjectRef,
                       HandleRef, Reference<double>, Reference<Complex>, Reference<Array>,
                       Reference<TypedArray<double>>, Reference<CharArray>, Reference<EnumArray>,
                       Reference<StructArray>, Reference<ValueObjectArray>, Reference<SparseArray<double>>,
                       Reference<const Array>, Reference<const TypedArray<double>>>;
template struct Values<64, 8, 64, Passed::inMemory, Reference<String>, Reference<StructElement>,
                       Reference<Enumeration>, Reference<ValueObject>, Reference<HandleObjectRef>>;

// iterators and views
template struct Values<24, 8, 24, Passed::inMemory, TypedIterator<double>>;
template struct Values<32, 8, 32, Passed::inMemory, TypedIterator<Array>, TypedIterator<const StructElement>,
                       NameRange>;
template struct Values<16, 8, 16, Passed::inMemory, ForwardIterator<const ClassInfo>,
                       ArrowProxy<Reference<Array>>>;
template struct Values<48, 8, 48, Passed::inMemory, DoubleRange>;
template struct Values<16, 8, 16, Passed::inRegisters, ElementCursor>;
template struct Values<56, 8, 56, Passed::inMemory, MatrixView>;

// ownership
template struct Values<1, 1, 0, Passed::inRegisters, ReleaseReference>;
template struct Values<24, 8, 24, Passed::inMemory, KeepAlive<Array>>;
template struct Values<16, 8, 16, Passed::inMemory, Buffer>;
template struct Values<40, 8, 40, Passed::inMemory, LentBuffer>;

// members, also of values that one side makes and the other takes apart
template struct Interface<Array, 24, 2>;
template struct Interface<Object, 24, 2>;
template struct Member<8, std::shared_ptr<ArrayImpl>, &Array::impl_>;
template struct Member<8, std::shared_ptr<vexa::data::impl::ObjectImpl>, &Object::impl_>;
template struct Member<0, std::shared_ptr<vexa::data::impl::ClassInfoImpl>, &ClassInfo::impl_>;
template struct Member<0, std::shared_ptr<vexa::data::impl::PropertyImpl>, &Property::impl_>;
template struct Member<0, std::shared_ptr<vexa::data::impl::ArrayFactoryImpl>, &ArrayFactory::impl_>;
template struct Member<0, std::shared_ptr<vexa::data::impl::VexaClassIdentifierImpl>,
                       &VexaClassIdentifier::impl_>;
template struct Member<0, std::shared_ptr<vexa::data::impl::VexaIdentifierImpl>, &VexaFieldIdentifier::impl_>;
template struct Member<0, std::shared_ptr<vexa::data::impl::VexaPropertyIdentifierImpl>,
                       &VexaPropertyIdentifier::impl_>;
template struct Member<0, std::string, &Enumeration::name_>;
template struct Member<0, const char16_t*, &BorrowedText::text>;
template struct Member<8, std::size_t, &BorrowedText::length>;
template struct Member<0, Number::Kind, &Number::kind>;
template struct Member<8, std::int64_t, &Number::whole>;
template struct Member<8, std::uint64_t, &Number::natural>;
template struct Member<8, double, &Number::real>;
template struct Member<0, Array, &Printed::array>;
template struct Member<24, PrintOptions, &Printed::options>;
template struct Member<0, int, &PrintOptions::precision>;
template struct Member<8, std::size_t, &PrintOptions::threshold>;
template struct Member<16, std::size_t, &PrintOptions::mostItems>;
template struct Member<24, std::size_t, &PrintOptions::edge>;
template struct Member<32, std::size_t, &PrintOptions::width>;
template struct Member<40, std::size_t, &PrintOptions::depth>;
template struct Member<0, ArrayImpl*, &ElementPosition::array_>;
template struct Member<8, const std::vector<std::size_t>*, &ElementPosition::dimensions_>;
template struct Member<16, ElementPosition::Way, &ElementPosition::way_>;
template struct Member<24, std::uint64_t, &ElementPosition::count_>;
template struct Member<32, std::uint64_t[3], &ElementPosition::indices_>;
template struct Member<56, ReferenceImpl*, &ElementPosition::chain_>;
// what inline code and the library hand each other of a position
template struct Values<64, 8, 64, Passed::inRegisters, ElementPosition::Parts>;
template struct Member<0, ArrayImpl*, &ElementPosition::Parts::array>;
template struct Member<8, const std::vector<std::size_t>*, &ElementPosition::Parts::dimensions>;
template struct Member<16, ElementPosition::Way, &ElementPosition::Parts::way>;
template struct Member<24, std::uint64_t, &ElementPosition::Parts::count>;
template struct Member<32, std::uint64_t[3], &ElementPosition::Parts::indices>;
template struct Member<56, ReferenceImpl*, &ElementPosition::Parts::chain>;
template struct Values<48, 8, 48, Passed::inRegisters, ElementPosition::Target>;
template struct Member<0, ArrayImpl*, &ElementPosition::Target::array>;
template struct Member<8, std::uint64_t, &ElementPosition::Target::index>;
template struct Member<16, const std::string*, &ElementPosition::Target::fieldName>;
template struct Member<24, std::uint64_t, &ElementPosition::Target::count>;
template struct Member<32, std::uint64_t, &ElementPosition::Target::first>;
template struct Member<40, std::uint64_t, &ElementPosition::Target::second>;
template struct Member<0, ElementPosition, &HeldPosition::holder_>;
template struct Member<64, std::uint64_t[3], &HeldPosition::indices_>;
template struct Member<88, std::uint64_t, &HeldPosition::count_>;
template struct Member<96, bool, &HeldPosition::writable_>;
template struct Member<0, ElementPosition, &HeldElements<false>::holder_>;
template struct Member<0, HeldPosition, &HeldElementRef<false>::position_>;
template struct Member<0, ElementPosition, &ArrayElementRef<false>::position_>;
template struct Member<0, ElementPosition, &ArrayElementTypedRef<double, false>::position_>;
template struct Member<0, ElementPosition, &ElementView<Enumeration>::position_>;
template struct Member<0, ElementPosition, &StructElement::position_>;
template struct Member<0, ElementPosition, &VEXAStringReferenceExt::position_>;
template struct Member<0, Chain, &ReferenceHolder::chain_>;
template struct Member<0, Chain, &ArrayReferenceExt::chain_>;
template struct Member<0, Chain, &Reference<double>::chain_>;
template struct Member<0, Chain, &ValueObjectRef::chain_>;
template struct Member<0, Chain, &HandleRef::chain_>;
template struct Member<0, std::shared_ptr<IteratorImpl>, &TypedIterator<double>::impl_>;
template struct Member<16, double*, &TypedIterator<double>::current_>;
template struct Member<16, ElementCursor, &TypedIterator<Array>::current_>;
template struct Values<24, 8, 24, Passed::inMemory, TypedIterator<double>::Parts>;
template struct Values<32, 8, 32, Passed::inMemory, TypedIterator<Array>::Parts>;
template struct Member<0, std::shared_ptr<IteratorImpl>, &TypedIterator<double>::Parts::impl>;
template struct Member<16, double*, &TypedIterator<double>::Parts::current>;
template struct Values<16, 8, 16, Passed::inRegisters, TypedIterator<double>::Outcome<std::ptrdiff_t>>;
template struct Member<0, std::ptrdiff_t, &TypedIterator<double>::Outcome<std::ptrdiff_t>::value>;
template struct Member<8, void*, &TypedIterator<double>::Outcome<std::ptrdiff_t>::error>;
template struct Member<0, ArrayImpl*, &ElementCursor::array>;
template struct Member<8, std::uint64_t, &ElementCursor::position>;
template struct Member<0, Reference<Array>, &ArrowProxy<Reference<Array>>::ref_>;
template struct Member<0, std::shared_ptr<ForwardIteratorImpl>, &ForwardIterator<const ClassInfo>::impl_>;
template struct Member<0, TypedIterator<const double>, &DoubleRange::begin_>;
template struct Member<24, TypedIterator<const double>, &DoubleRange::end_>;
template struct Member<0, double*, &MatrixView::data_>;
template struct Member<8, std::array<std::size_t, 2>, &MatrixView::extents_>;
template struct Member<24, std::array<std::size_t, 2>, &MatrixView::strides_>;
template struct Member<40, std::shared_ptr<const ArrayImpl>, &MatrixView::owner_>;
template struct Member<0, Array, &KeepAlive<Array>::owner>;

static_assert(std::is_same_v<String, std::optional<std::u16string>>);

} // namespace contract
