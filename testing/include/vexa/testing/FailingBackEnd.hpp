// A back-end in front of another one, each of whose operations can be made to fail: those of the factory, of
// arrays, objects and classes, of iterators and of index chains.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace vexa::testing {

/// A hook that lets one step fail. Steps are counted down from the call of `failAt`, over all doubles that
/// share the hook. Not synchronised: one thread at a time.
class FailingHook : public Hook {
public:
    /// What fails: an operation, by throwing; a query that must not throw, by throwing all the same; an
    /// operation that gives a pointer, by giving null.
    enum class Failing { operation, query, result };

    /// From now on, step number `number` (1 is the next one) of those that may fail so fails, once. `fail` is
    /// called to throw; a result that fails needs none.
    void failAt(std::size_t number, Failing failing = Failing::operation,
                void (*fail)() = &failOrdinarily) noexcept {
        left_ = number;
        failing_ = failing;
        fail_ = fail;
        failed_ = false;
    }
    /// From now on nothing fails. What `hasFailed` says stays.
    void failNothing() noexcept { left_ = 0; }
    /// Whether the failure asked for has happened.
    bool hasFailed() const noexcept { return failed_; }

    /// Throws std::runtime_error.
    [[noreturn]] static void failOrdinarily() { throw std::runtime_error("the back-end failed"); }

    void operation(const Call&) override {
        if (isTime(Failing::operation)) {
            fail_();
        }
    }
    void query(const Call&) override {
        if (isTime(Failing::query)) {
            fail_();
        }
    }
    bool givesNull() override { return isTime(Failing::result); }

private:
    bool isTime(Failing failing) noexcept {
        if (failing != failing_ || left_ == 0 || --left_ > 0) {
            return false;
        }
        failed_ = true;
        return true;
    }

    std::size_t left_ = 0;
    Failing failing_ = Failing::operation;
    void (*fail_)() = &failOrdinarily;
    bool failed_ = false;
};

namespace detail {

/// A double around what an operation has made, if it has made anything.
template <class Wrapper, class T>
T* wrapAs(T* made, const std::shared_ptr<Hook>& hook) {
    Inner<T> inner(made);
    return inner == nullptr ? nullptr : new Wrapper(std::move(inner), hook);
}

} // namespace detail

/// An array whose iterators and chains are doubles too.
template <class Base>
class ForwardingThroughout : public Base {
public:
    using Base::Base;

    IteratorImpl* beginIterator(void* unused, bool writable) override {
        return detail::wrapAs<ForwardingIterator>(Base::beginIterator(unused, writable), this->hook());
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        return detail::wrapAs<ForwardingIterator>(Base::endIterator(unused, writable), this->hook());
    }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& name,
                                          bool forWrite) override {
        return detail::wrapAs<ForwardingChain>(Base::createElementReference(index, name, forWrite),
                                               this->hook());
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingThroughout(std::move(copy), this->hook());
    }
};

/// The same for struct arrays, with the iterators over field names and field values.
class ForwardingStructsThroughout : public ForwardingThroughout<ForwardingStructs> {
public:
    using ForwardingThroughout::ForwardingThroughout;

    ForwardIteratorImpl* fieldNamesBegin() override {
        return detail::wrapAs<ForwardingSequence>(ForwardingThroughout::fieldNamesBegin(), hook());
    }
    ForwardIteratorImpl* fieldNamesEnd() override {
        return detail::wrapAs<ForwardingSequence>(ForwardingThroughout::fieldNamesEnd(), hook());
    }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        return detail::wrapAs<ForwardingIterator>(
            ForwardingThroughout::createFieldValuesIterator(index, atEnd), hook());
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        return new ForwardingStructsThroughout(std::move(copy), hook());
    }
};

/// A class whose lists of properties are walked with doubles.
class ForwardingClassThroughout : public ForwardingClass {
public:
    using ForwardingClass::ForwardingClass;

    ForwardIteratorImpl* beginProperties() const override {
        return detail::wrapAs<ForwardingSequence>(ForwardingClass::beginProperties(), hook());
    }
    ForwardIteratorImpl* endProperties() const override {
        return detail::wrapAs<ForwardingSequence>(ForwardingClass::endProperties(), hook());
    }
};

/// The doubles whose iterators and chains are doubles too.
struct ForwardingKindsThroughout : ForwardingKinds {
    /// One class for each kind of array, and for classes.
    template <class T>
    using Numbers = ForwardingThroughout<ForwardingNumbers<T>>;
    using Cells = ForwardingThroughout<ForwardingCells>;
    using Strings = ForwardingThroughout<ForwardingStrings>;
    using Structs = ForwardingStructsThroughout;
    using Enums = ForwardingThroughout<ForwardingEnums>;
    using Sparse = ForwardingThroughout<ForwardingSparse>;
    using Objects = ForwardingThroughout<ForwardingObjects>;
    using Class = ForwardingClassThroughout;
};

/// A factory in front of the default one of this process, for sweeps: let the first step fail, then the
/// second, until the operation asks for fewer steps.
///
///     auto hook = std::make_shared<FailingHook>();
///     ArrayFactory factory = failingFactory(hook);
///     hook->failAt(1);
///     factory.createScalar(1.0); // throws what the back-end throws
/// @throws std::logic_error when there is no default factory
inline fv::ArrayFactory failingFactory(std::shared_ptr<FailingHook> hook) {
    return forwardingFactory<ForwardingKindsThroughout>(std::move(hook));
}

} // namespace vexa::testing
