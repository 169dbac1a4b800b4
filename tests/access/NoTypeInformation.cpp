// Compiled with -fno-rtti, except under sanitizers, which read type information themselves.
#include "support/NoTypeInformation.hpp"

#include <foundation/vexadata/ClassInfo.hpp>
#include <vexa/data/impl/TypedArrayImpl.hpp>
#include <vexa/testing/BareArray.hpp>
#include <vexa/testing/PointerIterator.hpp>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace vexa::data::impl;
using vexa::data::detail::IteratorImpl;

class Row final : public vexa::testing::BareArray<TypedArrayImpl<double>, ArrayType::DOUBLE, 3> {
    struct Iterator final : vexa::testing::PointerIterator<Iterator, double> {
        using PointerIterator::PointerIterator;
    };

public:
    vexa::data::impl::ArrayImpl* sharedCopy() const override { return new Row(*this); }
    IteratorImpl* beginIterator(void*, bool) override { return new Iterator(values_); }
    IteratorImpl* endIterator(void*, bool) override { return new Iterator(values_ + 3); }
    double* getElementAddress(std::size_t index, const std::string&, bool) override {
        return values_ + index;
    }
    void setElementValue(std::size_t index, const std::string&, double value) override {
        values_[index] = value;
    }
    const double* getTypedDataPtr() const override { return values_; }

private:
    double values_[3] = {1, 2, 3};
};

class Plain final : public ObjectImpl {
public:
    ObjectImpl* sharedCopy() const override { return new Plain; }
    const char* getEnumerationName() const override { return nullptr; }
    foundation::vexadata::ClassInfo getClassInfo() const override { throw std::logic_error("no class"); }
    std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier) const override { return nullptr; }
    vexa::data::detail::ReferenceImpl* getPropertyReference(VexaPropertyIdentifier) override {
        return nullptr;
    }
    vexa::data::detail::ForwardIteratorImpl* begin() override { return nullptr; }
    vexa::data::detail::ForwardIteratorImpl* end() override { return nullptr; }
    vexa::data::detail::ForwardIteratorImpl* cbegin() const override { return nullptr; }
    vexa::data::detail::ForwardIteratorImpl* cend() const override { return nullptr; }
    bool hasProperty(const VexaPropertyIdentifier&) const override { return false; }
    std::size_t numOfProperties() const override { return 0; }
    std::vector<std::string> getExternalRepresentationPropertyNames() const override { return {}; }
};

} // namespace

vexa::data::impl::ArrayImpl* support::rowWithoutTypeInformation() { return new Row; }
vexa::data::impl::ObjectImpl* support::objectWithoutTypeInformation() { return new Plain; }
