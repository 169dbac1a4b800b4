// A back-end of rows of three doubles, built with hidden visibility.
#include "BackEnd.hpp"

#include <vexa/data/detail/ContiguousIteratorImpl.hpp>
#include <vexa/data/impl/ArrayFactoryImpl.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>
#include <vexa/testing/BareArray.hpp>

#include <algorithm>
#include <memory>

using namespace vexa::data;
using foundation::vexadata::ArrayType;

namespace {

constexpr std::size_t length = 3;

class Row final : public vexa::testing::BareArray<impl::TypedArrayImpl<double>, ArrayType::DOUBLE, length> {
    using Iterator = detail::ContiguousIteratorImpl<double>;

public:
    impl::ArrayImpl* sharedCopy() const override { return new Row(*this); }
    detail::IteratorImpl* beginIterator(void*, bool) override { return new Iterator(values_); }
    detail::IteratorImpl* endIterator(void*, bool) override { return new Iterator(values_ + length); }
    double* getElementAddress(std::size_t index, const std::string&, bool) override {
        return values_ + index;
    }
    void setElementValue(std::size_t index, const std::string&, double value) override {
        values_[index] = value;
    }
    const double* getTypedDataPtr() const override { return values_; }
    const void* getUntypedDataPtr() const override { return values_; }
    std::uint64_t getArrayID() const override { return reinterpret_cast<std::uintptr_t>(this); }
    bool isEqual(const impl::ArrayImpl* other) const override {
        return std::equal(values_, values_ + length, static_cast<const Row*>(other)->values_);
    }

private:
    double values_[length] = {0, 0, 0};
};

class Factory final : public impl::ArrayFactoryImpl {
    using Deleter = void (*)(void*);

public:
    impl::ArrayImpl* createArrayImpl(ArrayType type, Dimensions dimensions) override {
        if (type != ArrayType::DOUBLE || dimensions != Dimensions{1, length})
            throw foundation::vexadata::InvalidArrayTypeException();
        return new Row;
    }
    impl::ArrayImpl* createArrayWithDataImpl(ArrayType type, Dimensions dimensions, const void* data,
                                             std::size_t count) override {
        impl::ArrayImpl* const row = createArrayImpl(type, std::move(dimensions));
        std::copy_n(static_cast<const double*>(data), std::min(count, length),
                    static_cast<Row*>(row)->getElementAddress(0, {}, false));
        return row;
    }
    void createBufferImpl(void*& data, Deleter& deleter, ArrayType, std::size_t count) override {
        createUntypedBufferImpl(data, deleter, count * sizeof(double));
    }
    void createUntypedBufferImpl(void*& data, Deleter& deleter, std::size_t count) override {
        data = ::operator new(count);
        deleter = [](void* buffer) { ::operator delete(buffer); };
    }
    impl::ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, ArrayType type,
                                               impl::Buffer<void> buffer, MemoryLayout) override {
        return createArrayWithDataImpl(type, std::move(dimensions), buffer.get(), length);
    }
};

const bool registered = impl::ArrayFactoryImpl::registerVexaFactoryFunction(
    []() -> impl::ArrayFactoryImpl* { return new Factory; });

} // namespace

std::vector<Thrower> throwersOfBackEnd() { return AllErrors::throwers(); }

std::vector<bool> caughtByBackEnd(Thrower thrower) { return AllErrors::caughtBy(thrower); }
