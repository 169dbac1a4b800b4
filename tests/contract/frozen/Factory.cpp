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

template struct Interface<ArrayFactoryImpl, 16, afterDestructor + 26>;
template struct Operation<afterDestructor + 1, ArrayImpl*(ArrayType, Sizes),
                          &ArrayFactoryImpl::createArrayImpl>;
template struct Operation<afterDestructor + 2,
                          ArrayImpl*(Sizes, std::size_t, Owned<bool[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createSparseLogicalImpl>;
template struct Operation<afterDestructor + 3,
                          ArrayImpl*(Sizes, std::size_t, Owned<double[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createSparseDoubleImpl>;
template struct Operation<afterDestructor + 4,
                          ArrayImpl*(Sizes, std::size_t, Owned<std::complex<double>[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createSparseComplexDoubleImpl>;
template struct Operation<afterDestructor + 5,
                          ArrayImpl*(Sizes, std::size_t, Owned<bool[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createVexaSparseLogicalImpl>;
template struct Operation<afterDestructor + 6,
                          ArrayImpl*(Sizes, std::size_t, Owned<double[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createVexaSparseDoubleImpl>;
template struct Operation<afterDestructor + 7,
                          ArrayImpl*(Sizes, std::size_t, Owned<std::complex<double>[]>, Owned<std::size_t[]>,
                                     Owned<std::size_t[]>),
                          &ArrayFactoryImpl::createVexaSparseComplexDoubleImpl>;
template struct Operation<afterDestructor + 8, void(), &ArrayFactoryImpl::reservedOp8>;
template struct Operation<afterDestructor + 9, ArrayImpl*(ArrayType, Sizes, const void*, std::size_t),
                          &ArrayFactoryImpl::createArrayWithDataImpl>;
template struct Operation<afterDestructor + 10, ArrayImpl*(Sizes, Texts),
                          &ArrayFactoryImpl::createStructArrayImpl>;
template struct Operation<afterDestructor + 11,
                          ClassInfoImpl*(const VexaClassIdentifier&, const Properties&, const Properties&,
                                         const std::vector<ClassInfo>&),
                          &ArrayFactoryImpl::createClassInfoImpl>;
template struct Operation<afterDestructor + 12, ObjectImpl*(ClassInfoImpl*),
                          &ArrayFactoryImpl::createValueObjectImpl>;
template struct Operation<afterDestructor + 13, ArrayImpl*(ObjectImpl*),
                          &ArrayFactoryImpl::createValueObjectScalarImpl>;
template struct Operation<afterDestructor + 14, ArrayImpl*(Sizes, ClassInfoImpl*),
                          &ArrayFactoryImpl::createValueObjectArrayImpl>;
template struct Operation<afterDestructor + 15, ObjectImpl*(ZVMID, long),
                          &ArrayFactoryImpl::createHandleObjectRefImpl>;
template struct Operation<afterDestructor + 16, ObjectImpl*(const std::string&, const std::string&),
                          &ArrayFactoryImpl::createEnumerationObjectImpl>;
template struct Operation<afterDestructor + 17, void(), &ArrayFactoryImpl::reservedOp17>;
template struct Operation<afterDestructor + 18, void(), &ArrayFactoryImpl::reservedOp18>;
template struct Operation<afterDestructor + 19, void(), &ArrayFactoryImpl::reservedOp19>;
template struct Operation<afterDestructor + 20, ArrayImpl*(Sizes, std::string, Texts),
                          &ArrayFactoryImpl::createEnumArrayImpl>;
template struct Operation<afterDestructor + 21, void(), &ArrayFactoryImpl::reservedOp21>;
template struct Operation<afterDestructor + 22, void(), &ArrayFactoryImpl::reservedOp22>;
template struct Operation<afterDestructor + 23, void(void*&, Deleter&, ArrayType, std::size_t),
                          &ArrayFactoryImpl::createBufferImpl>;
template struct Operation<afterDestructor + 24, void(void*&, Deleter&, std::size_t),
                          &ArrayFactoryImpl::createUntypedBufferImpl>;
template struct Operation<afterDestructor + 25, ArrayImpl*(Sizes, ArrayType, Owned<void>, MemoryLayout),
                          &ArrayFactoryImpl::createArrayFromBufferImpl>;

} // namespace contract
