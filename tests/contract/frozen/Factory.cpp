// The interface of factories.
#include "Table.hpp"

#include <vexa/data/impl/ArrayFactoryImpl.hpp>

#include <complex>
#include <memory>
#include <string>
#include <vector>

namespace contract {

using namespace foundation::vexadata;
using namespace vexa::data;
using namespace vexa::data::impl;
using Sizes = std::vector<std::size_t>;
using Texts = std::vector<std::string>;
template <class T>
using Owned = std::unique_ptr<T, void (*)(void*)>;
using Deleter = void (*)(void*);
using Properties = std::vector<VexaPropertyIdentifier>;

template struct Interface<ArrayFactoryImpl, 16, 27>;
template struct Operation<2, ArrayImpl*(ArrayType, Sizes), &ArrayFactoryImpl::createArrayImpl>;
template struct Operation<
    3, ArrayImpl*(Sizes, std::size_t, Owned<bool[]>, Owned<std::size_t[]>, Owned<std::size_t[]>),
    &ArrayFactoryImpl::createSparseLogicalImpl>;
template struct Operation<
    4, ArrayImpl*(Sizes, std::size_t, Owned<double[]>, Owned<std::size_t[]>, Owned<std::size_t[]>),
    &ArrayFactoryImpl::createSparseDoubleImpl>;
template struct Operation<5,
                          ArrayImpl*(Sizes, std::size_t, Owned<std::complex<double>[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createSparseComplexDoubleImpl>;
template struct Operation<
    6, ArrayImpl*(Sizes, std::size_t, Owned<bool[]>, Owned<std::size_t[]>, Owned<std::size_t[]>),
    &ArrayFactoryImpl::createVexaSparseLogicalImpl>;
template struct Operation<
    7, ArrayImpl*(Sizes, std::size_t, Owned<double[]>, Owned<std::size_t[]>, Owned<std::size_t[]>),
    &ArrayFactoryImpl::createVexaSparseDoubleImpl>;
template struct Operation<8,
                          ArrayImpl*(Sizes, std::size_t, Owned<std::complex<double>[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createVexaSparseComplexDoubleImpl>;
template struct Operation<9, void(), &ArrayFactoryImpl::reservedOp8>;
template struct Operation<10, ArrayImpl*(ArrayType, Sizes, const void*, std::size_t),
                          &ArrayFactoryImpl::createArrayWithDataImpl>;
template struct Operation<11, ArrayImpl*(Sizes, Texts), &ArrayFactoryImpl::createStructArrayImpl>;
template struct Operation<12,
                          ClassInfoImpl*(const VexaClassIdentifier&, const Properties&, const Properties&,
                                         const std::vector<ClassInfo>&),
                          &ArrayFactoryImpl::createClassInfoImpl>;
template struct Operation<13, ObjectImpl*(ClassInfoImpl*), &ArrayFactoryImpl::createValueObjectImpl>;
template struct Operation<14, ArrayImpl*(ObjectImpl*), &ArrayFactoryImpl::createValueObjectScalarImpl>;
template struct Operation<15, ArrayImpl*(Sizes, ClassInfoImpl*),
                          &ArrayFactoryImpl::createValueObjectArrayImpl>;
template struct Operation<16, ObjectImpl*(ZVMID, long), &ArrayFactoryImpl::createHandleObjectRefImpl>;
template struct Operation<17, ObjectImpl*(const std::string&, const std::string&),
                          &ArrayFactoryImpl::createEnumerationObjectImpl>;
template struct Operation<18, void(), &ArrayFactoryImpl::reservedOp17>;
template struct Operation<19, void(), &ArrayFactoryImpl::reservedOp18>;
template struct Operation<20, void(), &ArrayFactoryImpl::reservedOp19>;
template struct Operation<21, ArrayImpl*(Sizes, std::string, Texts), &ArrayFactoryImpl::createEnumArrayImpl>;
template struct Operation<22, void(), &ArrayFactoryImpl::reservedOp21>;
template struct Operation<23, void(), &ArrayFactoryImpl::reservedOp22>;
template struct Operation<24, void(void*&, Deleter&, ArrayType, std::size_t),
                          &ArrayFactoryImpl::createBufferImpl>;
template struct Operation<25, void(void*&, Deleter&, std::size_t),
                          &ArrayFactoryImpl::createUntypedBufferImpl>;
template struct Operation<26, ArrayImpl*(Sizes, ArrayType, Owned<void>, MemoryLayout),
                          &ArrayFactoryImpl::createArrayFromBufferImpl>;

} // namespace contract
