// Doubles of iterators and of index chains.
#pragma once

#include <vexa/testing/Double.hpp>

#include <cstdint>
#include <memory>
#include <utility>

namespace vexa::testing {

using vexa::data::detail::ForwardIteratorImpl;
using vexa::data::detail::IteratorImpl;
using vexa::data::detail::ReferenceImpl;

/// An iterator over an array. Those that it is compared with must be of this class too. Typed iterators move
/// by pointer over the library's own contiguous iterators alone: in front of one this double makes them ask
/// at every step.
class ForwardingIterator : public IteratorImpl, public Double<IteratorImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingIterator(Inner<IteratorImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : Double(std::move(inner), std::move(hook)) {}

    IteratorImpl* clone() const override {
        return given(wrapCopy(Inner<IteratorImpl>(passOn("clone").clone())));
    }
    void advance(std::int64_t count) override { passOn("advance", count).advance(count); }
    bool isEqual(const IteratorImpl& other) const override {
        return passOn("isEqual").isEqual(*below(&other));
    }
    std::int64_t distanceTo(const IteratorImpl& other) const override {
        return passOn("distanceTo").distanceTo(*below(&other));
    }
    void decrement() override { passOn("decrement").decrement(); }
    void increment() override { passOn("increment").increment(); }
    ReferenceImpl* createReference() override { return given(passOn("createReference").createReference()); }
    /// The hook does not see it: whoever is asked owns the chain already.
    void saveReference(ReferenceImpl* chain) override { wrapped().saveReference(chain); }
    void* getElementAddress() override { return given(passOn("getElementAddress").getElementAddress()); }

protected:
    /// What `clone` gives around a copy of the inner iterator.
    virtual IteratorImpl* wrapCopy(Inner<IteratorImpl> copy) const {
        return new ForwardingIterator(std::move(copy), hook());
    }
};

/// An iterator over names, classes or properties. Those that it is compared with must be of this class too.
class ForwardingSequence : public ForwardIteratorImpl, public Double<ForwardIteratorImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingSequence(Inner<ForwardIteratorImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : Double(std::move(inner), std::move(hook)) {}

    ForwardIteratorImpl* clone() const override {
        return given(wrapCopy(Inner<ForwardIteratorImpl>(passOn("clone").clone())));
    }
    vexa::data::detail::RefCounted* get() const override { return given(passOn("get").get()); }
    bool equal(const ForwardIteratorImpl* other) const override {
        return passOn("equal").equal(below(other));
    }
    void increment() override { passOn("increment").increment(); }

protected:
    /// What `clone` gives around a copy of the inner iterator.
    virtual ForwardIteratorImpl* wrapCopy(Inner<ForwardIteratorImpl> copy) const {
        return new ForwardingSequence(std::move(copy), hook());
    }
};

/// A chain to an element, with the indices and the position of the inner one when it was made. Where the
/// array is and what is done before a write is asked of the inner chain.
class ForwardingChain : public ReferenceImpl, public Double<ReferenceImpl> {
public:
    /// Takes over the one reference to `inner`.
    explicit ForwardingChain(Inner<ReferenceImpl> inner, std::shared_ptr<Hook> hook = nullptr)
        : ReferenceImpl(*inner), Double(std::move(inner), std::move(hook)) {}

    vexa::data::impl::ArrayImpl* getArrayImpl() const override { return wrapped().getArrayImpl(); }
    void prepareForWrite() override { passOn("prepareForWrite").prepareForWrite(); }
};

} // namespace vexa::testing
