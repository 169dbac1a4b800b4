#include "ThrowingBackEnd.hpp"

#include "support/ForwardingBackEnd.hpp"
#include "support/ForwardingFactory.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <stdexcept>

namespace failure {

namespace {

using support::ArrayImpl;
using support::ForwardIteratorImpl;
using support::Inner;
using support::IteratorImpl;
using support::ReferenceImpl;

struct Countdown {
    std::size_t left = 0; // 0: nothing fails
    Failing failing = Failing::operation;
    Thrown thrown = Thrown::libraryError;
    bool done = false;
};
constinit thread_local Countdown countdown;

/// Whether a step of this kind fails now.
bool fails(Failing kind) {
    if (kind != countdown.failing || countdown.left == 0 || --countdown.left > 0) {
        return false;
    }
    return countdown.done = true;
}

void countDown(Failing kind) {
    if (!fails(kind)) {
        return;
    }
    switch (countdown.thrown) {
    case Thrown::libraryError:
        throw foundation::vexadata::TypeMismatchException();
    case Thrown::standardError:
        throw std::runtime_error("the back-end failed");
    case Thrown::foreignType:
        throw Foreign();
    }
}

/// A wrapper around what an operation has made, if it has made anything.
template <class Wrapper, class T>
T* wrapAs(T* made) {
    Inner<T> inner(made);
    return inner == nullptr ? nullptr : new Wrapper(std::move(inner));
}

class Chain final : public ReferenceImpl {
public:
    explicit Chain(Inner<ReferenceImpl> inner) : ReferenceImpl(*inner), inner_(std::move(inner)) {}
    ArrayImpl* getArrayImpl() const override { return (*inner_).getArrayImpl(); }
    void prepareForWrite() override { inner_->prepareForWrite(); }

private:
    Inner<ReferenceImpl> inner_;
};

class Sequence final : public ForwardIteratorImpl {
public:
    explicit Sequence(Inner<ForwardIteratorImpl> inner) : inner_(std::move(inner)) {}
    ForwardIteratorImpl* clone() const override { return wrapAs<Sequence>(inner_->clone()); }
    vexa::data::detail::RefCounted* get() const override { return inner_->get(); }
    bool equal(const ForwardIteratorImpl* other) const override {
        return inner_->equal(static_cast<const Sequence*>(other)->inner_.get());
    }
    void increment() override { inner_->increment(); }

private:
    Inner<ForwardIteratorImpl> inner_;
};

/// Arrays whose iterators and element references are wrappers too.
template <class Base>
class Wrapping : public Base {
public:
    using Base::Base;
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        return wrapAs<support::ForwardingIterator>(Base::beginIterator(unused, writable));
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        return wrapAs<support::ForwardingIterator>(Base::endIterator(unused, writable));
    }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& name,
                                          bool forWrite) override {
        return wrapAs<Chain>(Base::createElementReference(index, name, forWrite));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override { return new Wrapping(std::move(copy)); }
};

class Structs final : public Wrapping<support::ForwardingStructs> {
public:
    using Wrapping::Wrapping;
    ForwardIteratorImpl* fieldNamesBegin() override { return wrapAs<Sequence>(Wrapping::fieldNamesBegin()); }
    ForwardIteratorImpl* fieldNamesEnd() override { return wrapAs<Sequence>(Wrapping::fieldNamesEnd()); }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        return wrapAs<support::ForwardingIterator>(Wrapping::createFieldValuesIterator(index, atEnd));
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override { return new Structs(std::move(copy)); }
};

class Class final : public support::ForwardingClass {
public:
    using ForwardingClass::ForwardingClass;
    ForwardIteratorImpl* beginProperties() const override {
        return wrapAs<Sequence>(ForwardingClass::beginProperties());
    }
    ForwardIteratorImpl* endProperties() const override {
        return wrapAs<Sequence>(ForwardingClass::endProperties());
    }
};

struct Kinds : support::ForwardingKinds {
    template <class T>
    using Numbers = Wrapping<support::ForwardingNumbers<T>>;
    using Cells = Wrapping<support::ForwardingCells>;
    using Strings = Wrapping<support::ForwardingStrings>;
    using Structs = failure::Structs;
    using Enums = Wrapping<support::ForwardingEnums>;
    using Sparse = Wrapping<support::ForwardingSparse>;
    using Objects = Wrapping<support::ForwardingObjects>;
    using Class = failure::Class;
};

} // namespace

foundation::vexadata::ArrayFactory throwingFactory() {
    support::beforeOperation = [] { countDown(Failing::operation); };
    support::beforeQuery = [] { countDown(Failing::query); };
    support::giveNull = [] { return fails(Failing::result); };
    auto* factory = new support::ForwardingBackEndFactory<Kinds>(
        Inner<support::ArrayFactoryImpl>(support::ArrayFactoryImpl::getDefaultFactory()));
    return foundation::vexadata::ArrayFactory(
        foundation::vexadata::detail::Access::createSharedPtr<support::ArrayFactoryImpl>(factory));
}

void failAt(std::size_t number, Failing failing, Thrown thrown) noexcept {
    countdown = {number, failing, thrown, false};
}
void failNothing() noexcept { countdown.left = 0; }
bool hasFailed() noexcept { return countdown.done; }

} // namespace failure
