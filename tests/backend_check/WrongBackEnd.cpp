// A back-end that passes everything on to the embedded one, but for the one thing that the environment
// variable VEXADATA_FAULT names: an operation and how it is wrong. faults.cmake lists them; what any
// operation can do wrong is in Faults.hpp.

#include "Faults.hpp"

#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/Identity.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <map>
#include <numeric>
#include <thread>

namespace {

using namespace vexa::testing;
using namespace wrong;
using vexa::data::detail::RefCounted;
using vexa::data::impl::PropertyImpl;

ArrayFactoryImpl& factoryInside();

// --- iterators

/// `prefix` begins the names of its operations.
class WrongIterator : public ForwardingIterator {
public:
    WrongIterator(const char* prefix, Inner<IteratorImpl> inner, Inner<IteratorImpl> start, bool armed)
        : ForwardingIterator(std::move(inner)), prefix_(prefix), start_(std::move(start)), armed_(armed) {}

    bool isEqual(const IteratorImpl& other) const override {
        if (is(name("isEqual"), "only-itself")) return this == &other;
        if (is(name("isEqual"), "up-to")) return distanceTo(other) >= 0;
        return truth(name("isEqual"), ForwardingIterator::isEqual(other));
    }
    std::int64_t distanceTo(const IteratorImpl& other) const override {
        const std::int64_t distance = ForwardingIterator::distanceTo(other);
        if (is(name("distanceTo"), "backwards")) return -distance;
        if (is(name("distanceTo"), "positive")) return std::abs(distance);
        if (is(name("distanceTo"), "bytes")) return distance * 8;
        return is(name("distanceTo"), "byte") ? static_cast<signed char>(distance) : distance;
    }
    void decrement() override {
        if (!is(name("decrement"), "ignored")) ForwardingIterator::decrement();
        back_ = true;
    }
    void increment() override {
        ForwardingIterator::increment();
        if (is(name("increment"), "twice")) ForwardingIterator::increment();
    }
    void advance(std::int64_t count) override {
        if (is(name("advance"), "forward-only")) count = std::max<std::int64_t>(count, 0);
        if (is(name("advance"), "at-least-one") && count == 0) count = 1;
        if (is(name("advance"), "byte")) count = static_cast<signed char>(count);
        ForwardingIterator::advance(count);
        back_ = back_ || count < 0;
    }
    void saveReference(ReferenceImpl* chain) override {
        if (is(name("saveReference"), "ignored")) return chain->release();
        ForwardingIterator::saveReference(counted(name("saveReference"), chain));
    }
    void* getElementAddress() override {
        if (is(name("getElementAddress"), "first")) return start_->getElementAddress();
        if (is(name("getElementAddress"), "null")) return nullptr;
        if (is(name("getElementAddress"), "lags-going-back") && back_) return next()->getElementAddress();
        return ForwardingIterator::getElementAddress();
    }
    ReferenceImpl* createReference() override {
        if (is(name("createReference"), "first")) return start_->createReference();
        if (is(name("createReference"), "lags-going-back") && back_) return next()->createReference();
        return counted(name("createReference"), ForwardingIterator::createReference());
    }

protected:
    IteratorImpl* wrapCopy(Inner<IteratorImpl> copy) const override {
        Inner<IteratorImpl> start(start_->clone());
        if (is(name("clone"), "at-begin")) copy.reset(start_->clone());
        if (is(name("clone"), "null")) return nullptr;
        if (is(name("clone"), "sometimes-leaked") && ++clones_ % 50 == 0) start_->clone();
        return counted(name("clone"), new WrongIterator(prefix_, std::move(copy), std::move(start), armed_));
    }

private:
    Operation name(const char* operation) const { return {armed_ ? prefix_ : "no ", operation}; }

    Inner<IteratorImpl> next() const {
        Inner<IteratorImpl> one(wrapped().clone());
        one->increment();
        return one;
    }

    static inline int clones_ = 0;
    bool back_ = false; // whether it ever went back
    const char* prefix_;
    Inner<IteratorImpl> start_;
    bool armed_;
};

IteratorImpl* wrongIterator(const char* prefix, Inner<IteratorImpl> made, Inner<IteratorImpl> start,
                            bool armed) {
    return new WrongIterator(prefix, std::move(made), std::move(start), armed);
}

class WrongForward : public ForwardingSequence {
public:
    WrongForward(const char* prefix, Inner<ForwardIteratorImpl> inner)
        : ForwardingSequence(std::move(inner)), prefix_(prefix) {}

    ForwardIteratorImpl* clone() const override {
        if (is(name("clone"), "itself")) return retained(const_cast<WrongForward*>(this));
        return counted(name("clone"), ForwardingSequence::clone());
    }
    RefCounted* get() const override {
        return passed(name("get"), [&]() -> RefCounted* {
            RefCounted* object = counted(name("get"), ForwardingSequence::get());
            return is(name("get"), "renamed") ? other(object) : object;
        });
    }
    bool equal(const ForwardIteratorImpl* other) const override {
        return truth(name("equal"), ForwardingSequence::equal(other));
    }
    void increment() override {
        ForwardingSequence::increment();
        if (is(name("increment"), "twice")) ForwardingSequence::increment();
    }

protected:
    ForwardIteratorImpl* wrapCopy(Inner<ForwardIteratorImpl> copy) const override {
        return new WrongForward(prefix_, std::move(copy));
    }

private:
    static RefCounted* other(RefCounted* object) {
        object->release();
        return new vexa::data::impl::VexaIdentifierImpl("other");
    }
    Operation name(const char* operation) const { return {prefix_, operation}; }

    const char* prefix_;
};

ForwardIteratorImpl* wrongForward(const char* prefix, const char* operation, ForwardIteratorImpl* made) {
    Inner<ForwardIteratorImpl> inner(made);
    if (is(operation, "late")) inner->increment();
    return counted(operation, new WrongForward(prefix, std::move(inner)));
}

// --- arrays of any kind

/// A chain that leads where it led when it was made, whatever is going to be written.
class LooseChain : public ReferenceImpl {
public:
    explicit LooseChain(ArrayImpl* array) : array_(array) {
        bind(array->getDimensions(), array->getMemoryLayout());
    }
    ArrayImpl* getArrayImpl() const override { return array_; }

private:
    ArrayImpl* array_;
};

/// A chain that forgets to make the storage of what it leads to exclusive.
class UnreadyChain : public LooseChain {
public:
    using LooseChain::LooseChain;
    void prepareForWrite() override {}
};

/// A chain that does not look whether its indices still mean something.
class TrustingChain : public ReferenceImpl {
public:
    explicit TrustingChain(Inner<ReferenceImpl> inner) : inner_(std::move(inner)) {
        bind(inner_->getArrayImpl()->getDimensions(), inner_->getArrayImpl()->getMemoryLayout());
    }
    ArrayImpl* getArrayImpl() const override { return inner_->getArrayImpl(); }
    void prepareForWrite() override { inner_->prepareForWrite(); }

private:
    Inner<ReferenceImpl> inner_;
};

/// When a fault shows: what the array is, or has been through.
struct History {
    bool isCopy = false;
    mutable std::atomic<bool> copied{false};
    mutable std::atomic<bool> compared{false};
    mutable bool iterated = false;
    bool written = false;
};

bool meets(fv::ArrayType type, const std::vector<std::size_t>& extents, MemoryLayout layout,
           const History& history) {
    const std::string_view when = condition();
    const std::size_t count =
        std::accumulate(extents.begin(), extents.end(), std::size_t(1), std::multiplies<>());
    const bool matrix = extents.size() == 2;
    if (when == "scalar") return count == 1;
    if (when == "empty") return count == 0;
    if (when == "row") return matrix && extents[0] == 1 && count > 1;
    if (when == "column") return matrix && extents[1] == 1 && count > 1;
    if (when == "square") return matrix && extents[0] == extents[1] && count > 1;
    if (when == "cube") return extents.size() == 3;
    if (when == "hypercube") return extents.size() > 3;
    if (when == "beyond-256") return count > 256;
    if (when == "large") return count > 1000;
    if (when == "larger") return count > 40000;
    if (when == "rows") return layout == MemoryLayout::ROW_MAJOR;
    if (when == "copy") return history.isCopy;
    if (when == "copied") return history.copied;
    if (when == "compared") return history.compared;
    if (when == "iterated") return history.iterated;
    if (when == "written") return history.written;
    if (when == "written-copy") return history.isCopy && history.written;
    if (when == "copied-and-written") return history.copied && history.written;
    if (when.substr(0, 5) == "type-")
        return static_cast<int>(type) == std::atoi(std::string(when.substr(5)).c_str());
    return true;
}

/// What a creator is about to make.
class Making {
public:
    Making(fv::ArrayType type, std::vector<std::size_t> extents, MemoryLayout layout)
        : type_(type), extents_(std::move(extents)), layout_(layout) {
        current = this;
    }
    ~Making() { current = nullptr; }
    Making(const Making&) = delete;
    Making& operator=(const Making&) = delete;
    bool isMeant() const { return meets(type_, extents_, layout_, {}); }
    static inline thread_local const Making* current = nullptr;

private:
    fv::ArrayType type_;
    std::vector<std::size_t> extents_;
    MemoryLayout layout_;
};

/// An array or object that was stored somewhere and may go on writing there.
struct Follower {
    bool follows = false;
};
/// What `operation` was given to store follows what is stored, if that is the fault.
template <class T>
void mayFollow(bool isFault, T* stored) {
    if (auto* follower = isFault ? dynamic_cast<Follower*>(stored) : nullptr) follower->follows = true;
}
/// What is inside the double in a handle, which goes on writing there.
fv::Array followed(const fv::Array& stored) {
    ArrayImpl* const array = fv::detail::Access::impl(stored).get();
    mayFollow(true, array);
    return fv::Array(retained(Double<ArrayImpl>::below(array)));
}
/// Whether a double is to part from what it wraps before a write. A fault shows what it does, whatever would be
/// prepared.
bool parts(const Follower& array) {
    const std::size_t slash = chosen().find('/');
    return slash == chosen().npos || chosen() == "cow/right" ||
           (chosen().substr(slash) == "/follows" && !array.follows);
}

/// `Self` is the class of copies.
template <class Base, class Self>
class Wrong : public Base, public Follower {
public:
    using Base::Base;

    // The functions of Faults.hpp, for arrays that meet the condition.
    bool armed() const { return condition().empty() || meets(); }
    bool meets() const {
        const ArrayImpl& array = this->wrapped();
        return ::meets(array.getType(), array.getDimensions(), array.getMemoryLayout(), history_);
    }
    template <class... Names>
    bool is(const Names&... names) const {
        return armed() && wrong::is(names...);
    }
    const char* named(const char* operation) const { return armed() ? operation : ""; }
    bool isOf(std::string_view name) const { return armed() && wrong::isOf(name); }
    std::size_t place(std::string_view name, std::size_t k, std::size_t count) const {
        return armed() ? wrong::place(name, k, count) : k;
    }
    std::size_t number(std::string_view name, std::size_t n) const {
        return armed() ? wrong::number(name, n) : n;
    }
    bool truth(std::string_view name, bool answer) const {
        return armed() ? wrong::truth(name, answer) : answer;
    }
    std::string text(std::string_view name, std::string given) const {
        return armed() ? wrong::text(name, std::move(given)) : given;
    }
    const char* lent(std::string_view name, const char* given) const {
        return armed() ? wrong::lent(name, given) : given;
    }
    template <class T>
    T* counted(std::string_view name, T* object) const {
        return armed() ? wrong::counted(name, object) : object;
    }
    template <class F>
    auto passed(std::string_view name, F call) const {
        return armed() ? wrong::passed(name, call) : call();
    }

    ArrayImpl* sharedCopy() const override {
        return passed("sharedCopy", [&]() -> ArrayImpl* {
            if (shares()) return new Self(Inner<ArrayImpl>(retained(&this->wrapped())));
            if (is("sharedCopy", "takes-storage") && !exposed_) {
                Inner<ArrayImpl> theirs(retained(&this->wrapped()));
                const_cast<Wrong*>(this)->move();
                return new Self(std::move(theirs));
            }
            if (is("sharedCopy", "itself")) return retained(const_cast<Wrong*>(this));
            if (is("sharedCopy", "null-without-memory")) return nullOnFailure();
            ArrayImpl* copy = counted("sharedCopy", Base::sharedCopy());
            history_.copied = true;
            return copy;
        });
    }
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        return wrongElements(Base::beginIterator(unused, writable));
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        IteratorImpl* end = wrongElements(Base::endIterator(unused, writable));
        history_.iterated = true;
        if (is("endIterator", "early") && !this->wrapped().isEmpty()) end->decrement();
        return end;
    }
    fv::ArrayType getType() const override {
        const fv::ArrayType type = Base::getType();
        return is("getType", "signed") && type == fv::ArrayType::UINT32 ? fv::ArrayType::INT32 : type;
    }
    MemoryLayout getMemoryLayout() const override {
        if (is("getMemoryLayout", "none")) return MemoryLayout::NONE;
        return is("getMemoryLayout", "column-major") ? MemoryLayout::COLUMN_MAJOR : Base::getMemoryLayout();
    }
    const std::vector<std::size_t>& getDimensions() const override {
        if (moved_ != nullptr) return moved_->getDimensions(); // they stay where they are
        if (!isOf("getDimensions")) return Base::getDimensions();
        passed("getDimensions", [] {});
        static std::vector<std::size_t> shared;
        std::vector<std::size_t>& kept =
            is("getDimensions", "one-for-all") ? shared : dimensions_[asked_++ % 2];
        const std::vector<std::size_t>& right = Base::getDimensions();
        const bool turns = is("getDimensions", "transposed") ||
                           (is("getDimensions", "transposed-once-written") && history_.written);
        kept.assign(right.begin(), right.end());
        if (turns) std::reverse(kept.begin(), kept.end());
        if (is("getDimensions", "word"))
            for (std::size_t& extent : kept)
                extent %= 65536;
        return is("getDimensions", "moving") || is("getDimensions", "one-for-all") ? kept
                                                                                   : (dimensions_[0] = kept);
    }
    std::size_t getNumberOfElements() const override {
        return number("getNumberOfElements", Base::getNumberOfElements());
    }
    bool isEmpty() const override {
        if (is("isEmpty", "without-rows")) return Base::getDimensions()[0] == 0;
        return truth("isEmpty", Base::isEmpty());
    }
    std::uint64_t getArrayID() const override {
        if (is("getArrayID", "crash")) std::raise(SIGSEGV);
        if (is("getArrayID", "constant")) return 7;
        if (is("getArrayID", "of-dimensions")) return 1 + Base::getDimensions()[0];
        if (is("getArrayID", "zero")) return 0;
        if (is("getArrayID", "kept-by-copies")) return kept_ != 0 ? kept_ : kept_ = Base::getArrayID();
        if (is("getArrayID", "anew")) return static_cast<std::uint64_t>(++asked_) + 1000000;
        return number("getArrayID", Base::getArrayID());
    }
    void unshare() override {
        passed("unshare", [&] { Base::unshare(); });
        history_.written = true;
    }
    bool isEqual(const ArrayImpl* other) const override {
        if (is("isEqual", "throws-int")) throw 42;
        if (is("isEqual", "same-class") && dynamic_cast<const Self*>(other) == nullptr) return false;
        if (is("isEqual", "itself-only")) return this == other;
        if (is("isEqual", "remembered")) return remembered_ = remembered_ || Base::isEqual(other);
        if (is("isEqual", "same-object-is-different") && this == other) return false;
        if (is("isEqual", "nests-true-without-memory") && Base::getType() == fv::ArrayType::CELL) try {
                mayThrow();
            } catch (const std::bad_alloc&) {
                return true;
            }
        if (is("isEqual", "true-without-memory")) try {
                mayThrow();
            } catch (const std::bad_alloc&) {
                return true;
            }
        bool equal = passed("isEqual", [&] { return truth("isEqual", Base::isEqual(other)); });
        if (is("isEqual", "moves-storage") && !exposed_) const_cast<Wrong*>(this)->move();
        if (is("isEqual", "loses-when-unequal") && !equal) lose();
        history_.compared = true;
        return equal;
    }
    void assignElementArray(std::size_t index, const std::string& field, ArrayImpl* array) override {
        if (is("assignElementArray", "leaked")) array->retain();
        if (is("assignElementArray", "own-only") && Double<ArrayImpl>::below(array) == array) return;
        if (is("assignElementArray", "copied") && array->referenceCount() > 1) {
            Inner<ArrayImpl> copy(array->sharedCopy());
            return Base::assignElementArray(index, field, copy.get());
        }
        if (is("assignElementArray", "empty-ignored") && array->isEmpty()) return;
        mayFollow(is("assignElementArray", "follows"), array);
        static int depth = 0;
        if (is("assignElementArray", "300-times") && ++depth > 300) throw std::length_error("too deep");
        if (is("assignElementArray", "holds-itself"))
            return this->wrapped().assignElementArray(index, field, array);
        if (is("assignElementArray", "itself-lost") && array->referenceCount() == 1) {
            const Inner<ReferenceImpl> here(Base::createElementReference(index, field, false));
            const Inner<ArrayImpl> nothing(new vexa::data::impl::EmptyArrayImpl);
            if (here != nullptr && here->getArrayImpl() == array) array = nothing.get();
            return Base::assignElementArray(index, field, array);
        }
        passed("assignElementArray", [&] {
            Base::assignElementArray(
                place("assignElementArray", index, this->wrapped().getNumberOfElements()), field, array);
        });
        if (is("assignElementArray", "not-retained")) array->release();
        if (is("assignElementArray", "spills") && index != 0) Base::assignElementArray(0, field, array);
    }
    ReferenceImpl* createElementReference(std::size_t index, const std::string& field,
                                          bool forWrite) override {
        index = place("createElementReference", index, this->wrapped().getNumberOfElements());
        if (is("createElementReference", "read-only")) forWrite = false;
        ReferenceImpl* chain = passed("createElementReference",
                                      [&] { return Base::createElementReference(index, field, forWrite); });
        if (chain == nullptr)
            return is("createElementReference", "never-null") ? new LooseChain(this) : nullptr;
        const bool loose = is("createElementReference", "loose") ||
                           (is("createElementReference", "loose-for-reading") && !forWrite) ||
                           (is("createElementReference", "loose-for-writing") && forWrite);
        if (loose) {
            const Inner<ReferenceImpl> owner(chain);
            return new LooseChain(chain->getArrayImpl());
        }
        if (is("createElementReference", "never-unshares")) {
            const Inner<ReferenceImpl> owner(chain);
            return new UnreadyChain(chain->getArrayImpl());
        }
        if (is("createElementReference", "always-copies") && forWrite) {
            const Inner<ArrayImpl> copy(chain->getArrayImpl()->sharedCopy());
            Base::assignElementArray(index, field, copy.get());
        }
        if (is("createElementReference", "never-stale"))
            return new TrustingChain(Inner<ReferenceImpl>(chain));
        if (is("createElementReference", "retains")) retain_(chain->getArrayImpl());
        return counted("createElementReference", chain);
    }
    std::string castToString(std::size_t index, const std::string& field) const override {
        return passed("castToString", [&] { return Base::castToString(index, field); });
    }
    void setString(std::size_t index, const std::string& field, std::string value) override {
        passed("setString", [&] { Base::setString(index, field, std::move(value)); });
    }
    const std::size_t* getJc() const override {
        return passed("getJc", [&] { return Base::getJc(); });
    }
    std::size_t getRows() const override {
        return passed("getRows", [&] { return Base::getRows(); });
    }
    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override {
        return passed("getIndex", [&] { return Base::getIndex(k); });
    }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        passed("copyOutBuffer", [&] { Base::copyOutBuffer(data, deleter); });
    }
    ReferenceImpl* forwardingOp(std::size_t index, const std::string& field) override {
        return is("forwardingOp", "null")
                   ? nullptr
                   : Base::forwardingOp(place("forwardingOp", index, this->wrapped().getNumberOfElements()),
                                        field);
    }

protected:
    ArrayImpl* wrapCopy(Inner<ArrayImpl> copy) const override {
        auto* made = new Self(std::move(copy));
        made->kept_ = kept_;
        made->history_.isCopy = true;
        return made;
    }

    void prepareWrite() override {
        if (parts(*this)) Base::prepareWrite();
    }

    /// Goes on with storage elsewhere. What was lent before is gone.
    void move() {
        Inner<ArrayImpl> elsewhere(this->wrapped().sharedCopy());
        if (moved_ == nullptr) { // keeps the dimensions
            moved_.reset(
                factoryInside().createArrayImpl(fv::ArrayType::LOGICAL, this->wrapped().getDimensions()));
        }
        this->rewrap(std::move(elsewhere));
    }
    IteratorImpl* wrongElements(IteratorImpl* made) {
        if (chosen().substr(0, 9) != "elements.") return made;
        Inner<IteratorImpl> iterator(made);
        Inner<IteratorImpl> start(Base::beginIterator(nullptr, false));
        return wrongIterator("elements.", std::move(iterator), std::move(start), armed());
    }

    static void lose() {
        static char* volatile lost;
        lost = new char[24];
        static_cast<void>(lost);
    }

    mutable std::uint64_t kept_ = 0;
    bool exposed_ = false; // to iterators that write
    History history_;

private:
    bool shares() const {
        const ArrayImpl& array = this->wrapped();
        return is("sharedCopy", "shares") ||
               (is("sharedCopy", "shares-large") && array.getNumberOfElements() > 256) ||
               (is("sharedCopy", "shares-scalars") && array.getNumberOfElements() == 1) ||
               (is("sharedCopy", "shares-rows") && array.getMemoryLayout() == MemoryLayout::ROW_MAJOR) ||
               (is("sharedCopy", "shares-copies") && history_.isCopy) ||
               (is("sharedCopy", "shares-cubes") && array.getDimensions().size() > 2);
    }
    ArrayImpl* nullOnFailure() const {
        try {
            return Base::sharedCopy();
        } catch (const std::bad_alloc&) {
            return nullptr;
        }
    }
    static void retain_(ArrayImpl* array) { array->retain(); }

    mutable std::vector<std::size_t> dimensions_[2];
    mutable int asked_ = 0;
    mutable bool remembered_ = false;
    Inner<ArrayImpl> moved_; // of the dimensions that were lent
};

// --- numbers

template <class T>
bool sameReal(const T& a, const T& b) {
    if constexpr (fv::detail::isComplexElement<T>)
        return a.real() == b.real();
    else
        return a == b;
}

/// "cow/..." shares storage until it is written; "cow/right" does it as it should be done.
template <class T>
class WrongNumbers : public Wrong<ForwardingNumbers<T>, WrongNumbers<T>> {
    using Base = Wrong<ForwardingNumbers<T>, WrongNumbers<T>>;

public:
    using Base::Base;
    using Base::counted, Base::is, Base::isOf, Base::number, Base::passed, Base::place;
    using Base::exposed_, Base::kept_;

    ArrayImpl* sharedCopy() const override {
        // Iterators and addresses that were handed out for writing may still write.
        if (isOf("cow") && (!exposed_ || is("cow", "exposed")))
            return new WrongNumbers(Inner<ArrayImpl>(retained(&this->wrapped())));
        return Base::sharedCopy();
    }
    const std::vector<std::size_t>& getDimensions() const override {
        if (is("releaseBuffer", "moves-dimensions") && released_) return dimensions_ = Base::getDimensions();
        return before_ == nullptr ? Base::getDimensions()
                                  : before_->getDimensions(); // they stay where they are
    }
    std::uint64_t getArrayID() const override {
        if (is("getArrayID", "kept-when-released")) {
            if (kept_ == 0) kept_ = vexa::data::detail::nextIdentity();
            return kept_;
        }
        if (!isOf("cow")) return Base::getArrayID();
        return reinterpret_cast<std::uintptr_t>(this); // of arrays that live together
    }
    void unshare() override {
        separate("unshare");
        kept_ = 0;
        Base::unshare();
    }
    IteratorImpl* beginIterator(void* unused, bool writable) override {
        if (writable) {
            separate("begin");
            kept_ = 0;
        }
        exposed_ = exposed_ || writable;
        return passed("beginIterator", [&] { return wrong(Base::beginIterator(unused, writable)); });
    }
    IteratorImpl* endIterator(void* unused, bool writable) override {
        if (writable) separate("end");
        exposed_ = exposed_ || writable;
        return passed("endIterator", [&] { return wrong(Base::endIterator(unused, writable)); });
    }
    T* getElementAddress(std::size_t index, const std::string& field, bool forWrite) override {
        const std::size_t count = this->wrapped().getNumberOfElements();
        if (is("getElementAddress", "next-column") && count > 0)
            index = (index + this->wrapped().getDimensions()[0]) % count;
        return Base::getElementAddress(place("getElementAddress", index, count), field, forWrite);
    }
    void setElementValue(std::size_t index, const std::string& field, T value) override {
        const std::size_t count = this->wrapped().getNumberOfElements();
        if (is("setElementValue", "ignored") || (is("setElementValue", "last-ignored") && index + 1 == count))
            return;
        if (is("setElementValue", "real-only"))
            if constexpr (fv::detail::isComplexElement<T>) value = T(value.real(), 0);
        if (is("setElementValue", "float"))
            if constexpr (std::is_same_v<T, double>) value = static_cast<double>(static_cast<float>(value));
        if (is("setElementValue", "no-nan") && !(value == value)) value = T();
        passed("setElementValue",
               [&] { Base::setElementValue(place("setElementValue", index, count), field, value); });
        if (is("setElementValue", "spills")) Base::setElementValue(0, field, value);
    }
    const T* getTypedDataPtr() const override {
        return is("getTypedDataPtr", "null") ? nullptr
                                             : Base::getTypedDataPtr() + number("getTypedDataPtr", 0);
    }
    const void* getUntypedDataPtr() const override {
        return is("getUntypedDataPtr", "elsewhere") ? this : Base::getUntypedDataPtr();
    }
    bool isEqual(const ArrayImpl* other) const override {
        const T* a = Base::getTypedDataPtr();
        const auto* theirs = dynamic_cast<const TypedArrayImpl<T>*>(other);
        const std::size_t count = this->wrapped().getNumberOfElements();
        if (theirs == nullptr || count == 0 || !isOf("isEqual")) return Base::isEqual(other);
        const bool sameLayout = other->getMemoryLayout() == Base::getMemoryLayout();
        if (!sameLayout && !is("isEqual", "storage")) return Base::isEqual(other);
        const T* b = theirs->getTypedDataPtr();
        if (is("isEqual", "bytes")) return std::memcmp(a, b, count * sizeof(T)) == 0;
        if (is("isEqual", "first")) return a[0] == b[0];
        if (is("isEqual", "but-last")) return std::equal(a, a + count - 1, b);
        if (is("isEqual", "first-256")) return std::equal(a, a + std::min<std::size_t>(count, 256), b);
        if (is("isEqual", "ends-and-middle"))
            return a[0] == b[0] && a[count / 2] == b[count / 2] && a[count - 1] == b[count - 1];
        if (is("isEqual", "in-any-order") && count < 1000)
            return std::is_permutation(a, a + count, b, b + count);
        if (is("isEqual", "but-fifth"))
            return std::equal(a, a + std::min<std::size_t>(count, 4), b) &&
                   std::equal(a + std::min<std::size_t>(count, 5), a + count,
                              b + std::min<std::size_t>(count, 5));
        if (is("isEqual", "real")) return std::equal(a, a + count, b, sameReal<T>);
        if (is("isEqual", "storage")) return std::equal(a, a + count, b);
        if (is("isEqual", "not-less"))
            return !std::lexicographical_compare(a, a + count, b, b + count, [](const T& x, const T& y) {
                return std::abs(sizeRank(x)) < std::abs(sizeRank(y));
            });
        return Base::isEqual(other);
    }
    void copyOutBuffer(void*& data, void (*&deleter)(void*)) const override {
        passed("copyOutBuffer", [&] { Base::copyOutBuffer(data, deleter); });
        const std::size_t count = this->wrapped().getNumberOfElements();
        if (is("copyOutBuffer", "no-deleter")) deleter = nullptr;
        if (is("copyOutBuffer", "half") && count > 1)
            std::fill_n(static_cast<T*>(data) + count / 2, count - count / 2, T());
        if (!is("copyOutBuffer", "own-storage")) return;
        deleter(data);
        data = const_cast<T*>(Base::getTypedDataPtr());
        deleter = [](void*) {};
    }
    void releaseBuffer(void*& data, void (*&deleter)(void*)) override {
        separate("release");
        if (is("releaseBuffer", "kept")) { // hands over what it goes on using
            data = const_cast<T*>(Base::getTypedDataPtr());
            deleter = [](void*) {};
            return;
        }
        if (is("releaseBuffer", "once") && released_) std::raise(SIGSEGV);
        released_ = true;
        if (is("releaseBuffer", "moves-dimensions")) dimensions_ = this->getDimensions();
        passed("releaseBuffer", [&] { Base::releaseBuffer(data, deleter); });
        before_.reset();
        if (is("releaseBuffer", "no-deleter")) deleter = nullptr;
        if (is("releaseBuffer", "never-freed")) deleter = [](void*) {};
    }

private:
    static double sizeRank(const T& value) {
        if constexpr (fv::detail::isComplexElement<T>)
            return static_cast<double>(value.real());
        else
            return static_cast<double>(value);
    }
    /// Makes the storage this object's alone, unless `step` is the one that forgets to.
    void separate(std::string_view step) {
        if (!isOf("cow") || is("cow", step) || this->wrapped().referenceCount() == 1) return;
        Inner<ArrayImpl> own(this->wrapped().sharedCopy());
        if (before_ == nullptr) before_.reset(retained(&this->wrapped()));
        this->rewrap(std::move(own));
    }
    IteratorImpl* wrong(IteratorImpl* made) {
        Inner<IteratorImpl> iterator(made);
        Inner<IteratorImpl> start(this->wrapped().beginIterator(nullptr, false));
        return wrongIterator("iterator.", std::move(iterator), std::move(start), this->armed());
    }

    bool released_ = false;
    mutable std::vector<std::size_t> dimensions_;
    Inner<ArrayImpl> before_; // the array that was shared, for its dimensions
};

// --- cells, texts, members, records

class WrongCells : public Wrong<ForwardingCells, WrongCells> {
public:
    using Wrong::Wrong;

    void setElementValue(std::size_t index, const std::string& field, fv::Array value) override {
        if (is("cells.setElementValue", "ignored")) return;
        if (is("cells.setElementValue", "follows")) value = followed(value);
        Wrong::setElementValue(place("cells.setElementValue", index, wrapped().getNumberOfElements()), field,
                               std::move(value));
    }
    fv::Array* getElementAddress(std::size_t index, const std::string& field, bool forWrite) override {
        return Wrong::getElementAddress(
            place("cells.getElementAddress", index, wrapped().getNumberOfElements()), field, forWrite);
    }
};

class WrongStrings : public Wrong<ForwardingStrings, WrongStrings> {
public:
    using Wrong::Wrong;

    void getStringElement(std::size_t index, const char16_t*& text, std::size_t& length) const override {
        Wrong::getStringElement(place("getStringElement", index, wrapped().getNumberOfElements()), text,
                                length);
        if (!isOf("getStringElement")) return;
        if (is("getStringElement", "missing-is-empty") && text == nullptr) text = u"";
        if (is("getStringElement", "empty-is-missing") && length == 0) text = nullptr;
        if (is("getStringElement", "cut")) length = std::min<std::size_t>(length, 100);
        if (is("getStringElement", "byte-length")) length %= 256;
        if (is("getStringElement", "word-length")) length %= 65536;
        if (text == nullptr) return;
        if (is("getStringElement", "until-nul")) length = std::min(length, std::u16string(text).size());
        static std::u16string kept;
        kept.assign(text, length);
        if (is("getStringElement", "narrow"))
            for (char16_t& unit : kept)
                unit &= 0xff;
        if (is("getStringElement", "one-buffer") || is("getStringElement", "narrow")) text = kept.data();
    }
    std::string castToString(std::size_t index, const std::string& field) const override {
        if (is("castToString", "lenient")) {
            const char16_t* units = nullptr;
            std::size_t length = 0;
            Wrong::getStringElement(index, units, length);
            return units == nullptr ? "" : std::string(units, units + length);
        }
        return passed("castToString",
                      [&] { return text("castToString", Wrong::castToString(index, field)); });
    }
    void setString(std::size_t index, const std::string& field, std::string value) override {
        if (is("setString", "ignored")) return;
        if (is("setString", "unsigned"))
            return Wrong::setStringElement(
                index, field,
                std::u16string(reinterpret_cast<const unsigned char*>(value.data()),
                               reinterpret_cast<const unsigned char*>(value.data()) + value.size()));
        if (is("setString", "until-nul")) value = value.c_str();
        Wrong::setString(index, field, std::move(value));
    }
    void setStringElement(std::size_t index, const std::string& field, fv::String value) override {
        if (is("setStringElement", "half")) {
            Wrong::setStringElement(index, field, {});
            mayThrow();
        }
        static std::vector<std::u16string> kept;
        if (is("setStringElement", "grows") && value) kept.push_back(*value);
        if (is("setStringElement", "until-nul") && value) value = std::u16string(value->c_str());
        if (is("setStringElement", "missing-ignored") && !value) return;
        if (is("setStringElement", "short") && value) value->resize(std::min<std::size_t>(value->size(), 7));
        passed("setStringElement", [&] {
            Wrong::setStringElement(place("setStringElement", index, wrapped().getNumberOfElements()), field,
                                    std::move(value));
        });
    }
    bool isEqual(const ArrayImpl* other) const override {
        if (is("isEqual", "begins-alike")) {
            for (std::size_t k = 0; k < wrapped().getNumberOfElements(); ++k)
                if (shortText(*this, k) != shortText(*other, k)) return false;
            return true;
        }
        const bool lengths = is("isEqual", "lengths");
        if (!lengths && !is("isEqual", "missing-is-empty")) return Wrong::isEqual(other);
        for (std::size_t k = 0; k < wrapped().getNumberOfElements(); ++k) {
            const char16_t* text[2]{};
            std::size_t length[2]{};
            Wrong::getStringElement(k, text[0], length[0]);
            other->getStringElement(k, text[1], length[1]);
            if (length[0] != length[1] || (!lengths && std::u16string_view(text[0], length[0]) !=
                                                           std::u16string_view(text[1], length[1])))
                return false;
        }
        return true;
    }

private:
    /// Sixteen units and the length.
    static std::pair<std::u16string_view, std::size_t> shortText(const ArrayImpl& array, std::size_t k) {
        const char16_t* text = nullptr;
        std::size_t length = 12345;
        array.getStringElement(k, text, length);
        if (text == nullptr) return {{}, 12345};
        return {std::u16string_view(text, std::min<std::size_t>(length, 16)), length};
    }
};

class WrongEnums : public Wrong<ForwardingEnums, WrongEnums> {
public:
    using Wrong::Wrong;

    const char* getEnumNameAt(std::size_t index) const override {
        return lent("getEnumNameAt",
                    Wrong::getEnumNameAt(place("getEnumNameAt", index, wrapped().getNumberOfElements())));
    }
    std::string castToString(std::size_t index, const std::string& field) const override {
        while (is("castToString", "endless"))
            ::usleep(1000);
        return text(
            "enum.castToString",
            Wrong::castToString(place("enum.castToString", index, wrapped().getNumberOfElements()), field));
    }
    void setString(std::size_t index, const std::string& field, std::string value) override {
        if (!is("enum.setString", "ignored"))
            Wrong::setString(place("enum.setString", index, wrapped().getNumberOfElements()), field,
                             std::move(value));
    }
    void setElementValue(std::size_t index, const std::string& field, fv::Enumeration value) override {
        if (!is("enum.setElementValue", "ignored")) Wrong::setElementValue(index, field, std::move(value));
    }
    const char* getClassName() const override { return lent("getClassName", Wrong::getClassName()); }
    bool isEqual(const ArrayImpl* other) const override {
        if (is("isEqual", "codes") && getNumberOfElements() < 1000)
            return codes(*this) == codes(static_cast<const EnumArrayImpl&>(*other));
        if (!is("isEqual", "members-only")) return Wrong::isEqual(other);
        for (std::size_t k = 0; k < wrapped().getNumberOfElements(); ++k)
            if (std::strcmp(getEnumNameAt(k), static_cast<const EnumArrayImpl*>(other)->getEnumNameAt(k)) !=
                0)
                return false;
        return true;
    }

private:
    /// For each element the place where its member came first.
    static std::vector<std::size_t> codes(const EnumArrayImpl& array) {
        std::vector<std::size_t> found;
        for (std::size_t k = 0; k < array.getNumberOfElements(); ++k) {
            std::size_t first = 0;
            while (std::strcmp(array.getEnumNameAt(first), array.getEnumNameAt(k)) != 0)
                ++first;
            found.push_back(first);
        }
        return found;
    }
};

class WrongStructs : public Wrong<ForwardingStructs, WrongStructs> {
public:
    using Wrong::Wrong;

    ArrayImpl* getField(std::size_t index, const std::string& field) const override {
        if (is("getField", "unknown-is-empty") && field == "nowhere")
            return new vexa::data::impl::EmptyArrayImpl;
        return passed("getField", [&] {
            return counted("getField",
                           Wrong::getField(place("getField", index, wrapped().getNumberOfElements()), field));
        });
    }
    void setFieldValues(std::size_t index, std::vector<fv::Array> values) override {
        if (is("setFieldValues", "reversed")) std::reverse(values.begin(), values.end());
        if (is("setFieldValues", "leaked") && !values.empty()) fv::detail::Access::impl(values[0])->retain();
        if (is("setFieldValues", "follows"))
            std::transform(values.begin(), values.end(), values.begin(), followed);
        if (is("setFieldValues", "itself-lost"))
            for (std::size_t k = 0; k < values.size(); ++k) {
                const Inner<ArrayImpl> held(Wrong::getField(index, names()[k]));
                if (held.get() == fv::detail::Access::impl(values[k]).get()) values[k] = fv::Array();
            }
        if (is("setFieldValues", "first-only") && values.size() > 1) {
            for (std::size_t k = 1; k < values.size(); ++k)
                values[k] = fv::Array(Inner<ArrayImpl>(Wrong::getField(index, names()[k])).detach());
        }
        if (is("setFieldValues", "half") && values.size() > 1) {
            Wrong::assignElementArray(index, names()[0], fv::detail::Access::impl(values[0]).get());
            mayThrow();
        }
        passed("setFieldValues", [&] {
            Wrong::setFieldValues(place("setFieldValues", index, wrapped().getNumberOfElements()),
                                  std::move(values));
        });
    }
    void setElementValue(std::size_t index, const std::string& field, fv::StructElement value) override {
        if (!is("records.setElementValue", "ignored")) Wrong::setElementValue(index, field, std::move(value));
    }
    std::size_t getNumFields() const override { return number("getNumFields", Wrong::getNumFields()); }
    ForwardIteratorImpl* fieldNamesBegin() override {
        return passed("fieldNamesBegin", [&] {
            return wrongForward("names.", named("fieldNamesBegin"), Wrong::fieldNamesBegin());
        });
    }
    ForwardIteratorImpl* fieldNamesEnd() override {
        return wrongForward("names.", named("fieldNamesEnd"), Wrong::fieldNamesEnd());
    }
    IteratorImpl* createFieldValuesIterator(std::size_t index, bool atEnd) override {
        index = place("createFieldValuesIterator", index, wrapped().getNumberOfElements());
        if (is("createFieldValuesIterator", "begin-only")) atEnd = false;
        return passed("createFieldValuesIterator", [&] {
            Inner<IteratorImpl> iterator(Wrong::createFieldValuesIterator(index, atEnd));
            Inner<IteratorImpl> start(Wrong::createFieldValuesIterator(index, false));
            return wrongIterator("values.", std::move(iterator), std::move(start), armed());
        });
    }
    bool isEqual(const ArrayImpl* other) const override {
        if (is("isEqual", "trusts-others") && dynamic_cast<const WrongStructs*>(other) == nullptr)
            return true;
        if (!is("isEqual", "first-field")) return Wrong::isEqual(other);
        auto& mine = const_cast<WrongStructs&>(*this);
        const auto* theirs = static_cast<const StructArrayImpl*>(other);
        for (std::size_t k = 0; k < wrapped().getNumberOfElements() && !mine.names().empty(); ++k)
            if (fv::Array(Wrong::getField(k, mine.names()[0])) !=
                fv::Array(theirs->getField(k, mine.names()[0])))
                return false;
        return true;
    }

private:
    std::vector<std::string> names() {
        std::vector<std::string> found;
        const Inner<ForwardIteratorImpl> end(Wrong::fieldNamesEnd());
        for (const Inner<ForwardIteratorImpl> here(Wrong::fieldNamesBegin()); !here->equal(end.get());
             here->increment())
            found.push_back(fv::VexaFieldIdentifier(here->get()).getString());
        return found;
    }
};

// --- sparse matrices

class WrongSparse : public Wrong<ForwardingSparse, WrongSparse> {
public:
    using Wrong::Wrong;

    std::pair<std::size_t, std::size_t> getIndex(std::size_t k) const override {
        passed("getIndex", [] {});
        const auto found = Wrong::getIndex(place("getIndex", k, wrapped().getNumberOfNonZeroElements()));
        if (is("getIndex", "swapped")) return {found.second, found.first};
        if (is("getIndex", "from-one")) return {found.first + 1, found.second + 1};
        return is("getIndex", "int-row") ? std::pair{found.first % (std::size_t(1) << 32), found.second}
                                         : found;
    }
    const std::size_t* getJc() const override {
        if (is("getJc", "one-buffer")) return copy(jc_, Wrong::getJc(), Wrong::getCols() + 1);
        return Wrong::getJc() + (is("getJc", "shifted") ? 1 : 0);
    }
    const std::size_t* getIr() const override {
        if (is("getIr", "exits")) ::_exit(0);
        if (is("getIr", "one-buffer")) return copy(ir_, Wrong::getIr(), Wrong::getNumberOfNonZeroElements());
        return is("getIr", "of-columns") ? Wrong::getJc() : Wrong::getIr();
    }
    std::size_t getRows() const override {
        return is("getRows", "columns") ? Wrong::getCols() : number("getRows", Wrong::getRows());
    }
    std::size_t getCols() const override {
        return is("getCols", "rows") ? Wrong::getRows() : number("getCols", Wrong::getCols());
    }
    std::size_t getNumberOfNonZeroElements() const override {
        return number("getNumberOfNonZeroElements", Wrong::getNumberOfNonZeroElements());
    }
    bool isEqual(const ArrayImpl* other) const override {
        const std::size_t count = Wrong::getNumberOfNonZeroElements();
        if (is("isEqual", "stored-zeros") && count != other->getNumberOfNonZeroElements()) return false;
        if (is("isEqual", "places-only"))
            return count == other->getNumberOfNonZeroElements() &&
                   std::equal(Wrong::getIr(), Wrong::getIr() + count, other->getIr()) &&
                   std::equal(Wrong::getJc(), Wrong::getJc() + Wrong::getCols() + 1, other->getJc());
        if (is("isEqual", "non-zero-count")) return count == other->getNumberOfNonZeroElements();
        return Wrong::isEqual(other);
    }

private:
    static const std::size_t* copy(std::vector<std::size_t>& buffer, const std::size_t* from,
                                   std::size_t count) {
        buffer.reserve(200000);
        buffer.assign(from, from + count);
        return buffer.data();
    }
    static inline std::vector<std::size_t> jc_, ir_;
};

// --- objects

/// A reference to a property that forgets to make the value the property's own.
class SharingReference : public ReferenceImpl {
public:
    explicit SharingReference(Inner<ReferenceImpl> inner) : inner_(std::move(inner)) { setKnownIndex(0); }
    ArrayImpl* getArrayImpl() const override { return inner_->getArrayImpl(); }
    ArrayImpl* getElementArray(bool) override { return inner_->getElementArray(false); }
    ArrayImpl* getElementArrayForCopy() override { return inner_->getElementArrayForCopy(); }
    void setArray(ArrayImpl* array) override { inner_->setArray(array); }

private:
    Inner<ReferenceImpl> inner_;
};

/// A chain to a property that calls the value the array that it refers into.
class PosingReference : public ReferenceImpl {
public:
    explicit PosingReference(Inner<ReferenceImpl> inner) : inner_(std::move(inner)) { setKnownIndex(0); }
    ArrayImpl* getArrayImpl() const override { return inner_->getElementArray(false); }
    ArrayImpl* getElementArray(bool forWrite) override { return inner_->getElementArray(forWrite); }
    void setArray(ArrayImpl* array) override { inner_->setArray(array); }

private:
    Inner<ReferenceImpl> inner_;
};

/// A reference to a property that stores what is inside a double, as all other ways to store do.
class StoringReference : public ReferenceImpl {
public:
    StoringReference(Inner<ReferenceImpl> inner, bool follows) : inner_(std::move(inner)), follows_(follows) {
        setKnownIndex(0);
    }
    ArrayImpl* getArrayImpl() const override { return inner_->getArrayImpl(); }
    void prepareForWrite() override { inner_->prepareForWrite(); }
    ArrayImpl* getElementArray(bool forWrite) override { return inner_->getElementArray(forWrite); }
    ArrayImpl* getElementArrayForCopy() override { return inner_->getElementArrayForCopy(); }
    void setArray(ArrayImpl* array) override {
        mayFollow(follows_, array);
        inner_->setArray(Double<ArrayImpl>::below(array));
    }

private:
    Inner<ReferenceImpl> inner_;
    bool follows_;
};

ReferenceImpl* toProperty(const char* operation, ReferenceImpl* made) {
    Inner<ReferenceImpl> inner(made);
    if (is(operation, "poses-as-element")) return new PosingReference(std::move(inner));
    if (is(operation, "shares")) return new SharingReference(std::move(inner));
    if (is(operation, "holds-itself")) return inner.detach();
    return counted(operation, new StoringReference(std::move(inner), is(operation, "follows")));
}

/// One property of an object, wrapped while it is walked over.
class WrongProperty : public PropertyImpl {
public:
    explicit WrongProperty(Inner<RefCounted> inner) : inner_(std::move(inner)) {}
    const VexaPropertyIdentifier* getIdentifier() const override {
        static const VexaPropertyIdentifier first = *view().getIdentifier();
        return is("property.getIdentifier", "first")  ? &first
               : is("property.getIdentifier", "null") ? nullptr
                                                      : view().getIdentifier();
    }
    std::shared_ptr<ArrayImpl> getValue() const override {
        std::shared_ptr<ArrayImpl> value = view().getValue();
        if (is("property.getValue", "leaked")) value->retain();
        return is("property.getValue", "null") ? nullptr : value;
    }
    ReferenceImpl* getReference() override {
        if (is("property.getReference", "loose")) return new Loose(view().getValue());
        return toProperty("property.getReference", view().getReference());
    }

private:
    /// Gives the value as it is, whoever else has it.
    class Loose : public ReferenceImpl {
    public:
        explicit Loose(std::shared_ptr<ArrayImpl> value) : value_(std::move(value)) {}
        ArrayImpl* getArrayImpl() const override { return value_.get(); }
        ArrayImpl* getElementArray(bool) override { return value_.get(); }

    private:
        std::shared_ptr<ArrayImpl> value_;
    };
    PropertyImpl& view() const { return dynamic_cast<PropertyImpl&>(*inner_); }
    Inner<RefCounted> inner_;
};

class WrongProperties : public ForwardingSequence {
public:
    using ForwardingSequence::ForwardingSequence;
    ForwardIteratorImpl* clone() const override {
        return counted("properties.clone", ForwardingSequence::clone());
    }
    RefCounted* get() const override {
        if (is("properties.get", "one-view"))
            return ForwardingSequence::get(); // the inner one gives one view again and again
        return passed("properties.get", [&] {
            return counted("properties.get", new WrongProperty(Inner<RefCounted>(ForwardingSequence::get())));
        });
    }
    bool equal(const ForwardIteratorImpl* other) const override {
        return truth("properties.equal", ForwardingSequence::equal(other));
    }
    void increment() override {
        if (!is("properties.increment", "ignored")) ForwardingSequence::increment();
    }

protected:
    ForwardIteratorImpl* wrapCopy(Inner<ForwardIteratorImpl> copy) const override {
        return new WrongProperties(std::move(copy));
    }
};

ForwardIteratorImpl* walk(const char* operation, ForwardIteratorImpl* made) {
    Inner<ForwardIteratorImpl> inner(made);
    if (is(operation, "late")) inner->increment();
    return passed(operation, [&] { return counted(operation, new WrongProperties(std::move(inner))); });
}

/// A class of the same name, and no more.
fv::ClassInfo bareClass(const fv::ClassInfo& info) {
    return fv::ClassInfo(factoryInside().createClassInfoImpl(
        fv::VexaClassIdentifier(info.getClassIdentifier().getString()), {}, {}, {}));
}

class WrongObjects : public Wrong<ForwardingObjects, WrongObjects> {
public:
    using Wrong::Wrong;

    ObjectImpl* getElementObject(std::size_t index) const override {
        return passed("getElementObject", [&] {
            ObjectImpl* object =
                counted("getElementObject", Wrong::getElementObject(at("getElementObject", index)));
            if (is("getElementObject", "none-is-an-error") && object == nullptr)
                throw std::out_of_range("no object");
            return object;
        });
    }
    void setElementObject(std::size_t index, ObjectImpl* object) override {
        if (is("setElementObject", "ignored")) return;
        if (is("setElementObject", "itself-lost") &&
            Inner<ObjectImpl>(Wrong::getElementObject(index)).get() == ForwardingObject::below(object))
            object = nullptr;
        if (is("setElementObject", "leaked")) ForwardingObject::below(object)->retain();
        mayFollow(is("setElementObject", "follows"), object);
        if (is("setElementObject", "holds-itself"))
            return dynamic_cast<ObjectArrayImpl&>(wrapped()).setElementObject(index, object);
        if (is("setElementObject", "refuses-silently")) try {
                return Wrong::setElementObject(index, object);
            } catch (...) {
                return;
            }
        passed("setElementObject", [&] { Wrong::setElementObject(at("setElementObject", index), object); });
    }
    void setElementValue(std::size_t index, const std::string& field, fv::HandleObjectRef value) override {
        if (is("objects.setElementValue", "ignored")) return;
        mayFollow(is("objects.setElementValue", "follows"), fv::detail::Access::impl(value).get());
        Wrong::setElementObject(at("objects.setElementValue", index), fv::detail::Access::impl(value).get());
        static_cast<void>(field);
    }
    fv::HandleObjectRef* getElementAddress(std::size_t index, const std::string& field,
                                           bool forWrite) override {
        return Wrong::getElementAddress(at("objects.getElementAddress", index), field, forWrite);
    }
    const fv::HandleObjectRef* getTypedDataPtr() const override {
        return is("objects.getTypedDataPtr", "null") ? nullptr : Wrong::getTypedDataPtr();
    }
    fv::Array getElementProperty(std::size_t index, VexaPropertyIdentifier id) const override {
        if (is("getElementProperty", "needs-an-object") &&
            Inner<ObjectImpl>(Wrong::getElementObject(index)) == nullptr)
            std::raise(SIGSEGV);
        if (is("getElementProperty", "x")) id = VexaPropertyIdentifier("x");
        return passed("getElementProperty", [&] {
            return Wrong::getElementProperty(at("getElementProperty", index), std::move(id));
        });
    }
    ForwardIteratorImpl* beginElementProperties(std::size_t index) override {
        if (is("beginElementProperties", "shared"))
            return walk(named("beginElementProperties"),
                        Inner<ObjectImpl>(Wrong::getElementObject(index))->begin());
        if (is("beginElementProperties", "needs-an-object") &&
            Inner<ObjectImpl>(Wrong::getElementObject(index)) == nullptr)
            return nullptr;
        return walk(named("beginElementProperties"),
                    Wrong::beginElementProperties(at("beginElementProperties", index)));
    }
    ForwardIteratorImpl* endElementProperties(std::size_t index) override {
        return walk(named("endElementProperties"), Wrong::endElementProperties(index));
    }
    bool isHeterogeneous() const override {
        const bool mixed = truth("isHeterogeneous", Wrong::isHeterogeneous());
        return is("isHeterogeneous", "for-good") ? mixed_ = mixed_ || mixed : mixed;
    }
    fv::ClassInfo getClassInfo() const override {
        const fv::ClassInfo info = Wrong::getClassInfo();
        return is("objects.getClassInfo", "bare") ? bareClass(info) : info;
    }
    fv::Array getArrayProperty(VexaPropertyIdentifier id) const override {
        if (is("getArrayProperty", "empty")) return {};
        return passed("getArrayProperty", [&] { return Wrong::getArrayProperty(std::move(id)); });
    }
    ReferenceImpl* getArrayPropertyReference(VexaPropertyIdentifier id) override {
        return toProperty(named("getArrayPropertyReference"),
                          Wrong::getArrayPropertyReference(is("getArrayPropertyReference", "unit")
                                                               ? VexaPropertyIdentifier("unit")
                                                               : std::move(id)));
    }
    ForwardIteratorImpl* beginArrayProp() override {
        return walk(named("beginArrayProp"), Wrong::beginArrayProp());
    }
    ForwardIteratorImpl* endArrayProp() override {
        return walk(named("endArrayProp"), Wrong::endArrayProp());
    }
    ForwardIteratorImpl* cbeginArrayProp() const override {
        return walk(named("cbeginArrayProp"), is("cbeginArrayProp", "writes")
                                                  ? const_cast<WrongObjects*>(this)->Wrong::beginArrayProp()
                                                  : Wrong::cbeginArrayProp());
    }
    ForwardIteratorImpl* cendArrayProp() const override {
        return walk(named("cendArrayProp"), is("cbeginArrayProp", "writes")
                                                ? const_cast<WrongObjects*>(this)->Wrong::endArrayProp()
                                                : Wrong::cendArrayProp());
    }
    bool hasArrayProperty(const VexaPropertyIdentifier& id) const override {
        if (is("hasArrayProperty", "of-any-class") &&
            Wrong::hasArrayProperty(VexaPropertyIdentifier(id.getPropertyName())))
            return true;
        return truth("hasArrayProperty", Wrong::hasArrayProperty(id));
    }
    std::size_t numOfArrayProperties() const override {
        return number("numOfArrayProperties", Wrong::numOfArrayProperties());
    }
    bool isExternalDimensionsSet() const override {
        return truth("isExternalDimensionsSet", Wrong::isExternalDimensionsSet());
    }
    std::vector<std::string> getExternalRepresentationArrayPropertyNames() const override {
        std::vector<std::string> names = Wrong::getExternalRepresentationArrayPropertyNames();
        if (is("getExternalRepresentationArrayPropertyNames", "none")) names.clear();
        return names;
    }
    bool isEqualArrayProperties(const ArrayImpl* other) const override {
        return truth("isEqualArrayProperties", Wrong::isEqualArrayProperties(other));
    }
    bool isEqual(const ArrayImpl* other) const override {
        if (is("isEqual", "dimensions-ignored") && getDimensions() != other->getDimensions()) return true;
        const char* mine = lastMember(*this);
        const char* others = lastMember(*other);
        if (is("isEqual", "no-members") && mine != nullptr) return false;
        if (is("isEqual", "member-names") && mine != nullptr && others != nullptr)
            return std::strcmp(mine, others) == 0;
        if (!is("isEqual", "first-property")) return Wrong::isEqual(other);
        for (std::size_t k = 0; k < wrapped().getNumberOfElements(); ++k)
            if (Wrong::getElementProperty(k, VexaPropertyIdentifier("x")) !=
                static_cast<const ObjectArrayImpl*>(other)->getElementProperty(k,
                                                                               VexaPropertyIdentifier("x")))
                return false;
        return true;
    }

private:
    mutable bool mixed_ = false;

    /// The name of the member in the last element; null when there is none.
    static const char* lastMember(const ArrayImpl& array) {
        const auto& objects = static_cast<const ObjectArrayImpl&>(array);
        const std::size_t count = array.getNumberOfElements();
        const Inner<ObjectImpl> last(count == 0 ? nullptr : objects.getElementObject(count - 1));
        return last == nullptr ? nullptr : last->getEnumerationName();
    }
    std::size_t at(const char* operation, std::size_t index) const {
        return place(operation, index, wrapped().getNumberOfElements());
    }
};

class WrongObject : public ForwardingObject, public Follower {
public:
    using ForwardingObject::ForwardingObject;

    ObjectImpl* sharedCopy() const override {
        if (is("object.sharedCopy", "shares"))
            return new WrongObject(Inner<ObjectImpl>(retained(&wrapped())));
        return passed("object.sharedCopy",
                      [&] { return counted("object.sharedCopy", ForwardingObject::sharedCopy()); });
    }
    const char* getEnumerationName() const override {
        return lent("getEnumerationName", ForwardingObject::getEnumerationName());
    }
    std::shared_ptr<ArrayImpl> getProperty(VexaPropertyIdentifier id) const override {
        if (is("getProperty", "first-letter")) id = alike(id);
        return passed("getProperty", [&] {
            if (is("getProperty", "x") && hasProperty(VexaPropertyIdentifier("x")))
                id = VexaPropertyIdentifier("x");
            if (is("getProperty", "unqualified") && ForwardingObject::hasProperty(id))
                id = VexaPropertyIdentifier(id.getPropertyName());
            if (is("getProperty", "unknown-is-empty") && !ForwardingObject::hasProperty(id))
                return fv::detail::Access::createSharedPtr<ArrayImpl>(new vexa::data::impl::EmptyArrayImpl);
            std::shared_ptr<ArrayImpl> value = ForwardingObject::getProperty(std::move(id));
            if (is("getProperty", "leaked")) value->retain();
            return is("getProperty", "null") ? nullptr : value;
        });
    }
    ReferenceImpl* getPropertyReference(VexaPropertyIdentifier id) override {
        if (is("getPropertyReference", "x")) id = VexaPropertyIdentifier("x");
        return passed("getPropertyReference", [&] {
            return toProperty("getPropertyReference", ForwardingObject::getPropertyReference(std::move(id)));
        });
    }
    fv::ClassInfo getClassInfo() const override {
        const fv::ClassInfo info = ForwardingObject::getClassInfo();
        return is("object.getClassInfo", "bare") ? bareClass(info) : info;
    }
    ForwardIteratorImpl* begin() override { return walk("object.begin", ForwardingObject::begin()); }
    ForwardIteratorImpl* end() override { return walk("object.end", ForwardingObject::end()); }
    ForwardIteratorImpl* cbegin() const override {
        return walk("object.cbegin",
                    is("object.cbegin", "writes") ? wrapped().begin() : ForwardingObject::cbegin());
    }
    ForwardIteratorImpl* cend() const override {
        return walk("object.cend",
                    is("object.cbegin", "writes") ? wrapped().end() : ForwardingObject::cend());
    }
    bool hasProperty(const VexaPropertyIdentifier& id) const override {
        if (is("hasProperty", "of-any-class"))
            return ForwardingObject::hasProperty(id) ||
                   ForwardingObject::hasProperty(VexaPropertyIdentifier(id.getPropertyName()));
        if (is("hasProperty", "first-letter") && ForwardingObject::hasProperty(alike(id))) return true;
        return truth("hasProperty", ForwardingObject::hasProperty(id));
    }
    std::size_t numOfProperties() const override {
        return number("numOfProperties", ForwardingObject::numOfProperties());
    }
    std::vector<std::string> getExternalRepresentationPropertyNames() const override {
        std::vector<std::string> names = ForwardingObject::getExternalRepresentationPropertyNames();
        if (is("getExternalRepresentationPropertyNames", "reversed"))
            std::reverse(names.begin(), names.end());
        return names;
    }

protected:
    ObjectImpl* wrapCopy(Inner<ObjectImpl> copy) const override { return new WrongObject(std::move(copy)); }
    void prepareWrite() override {
        if (parts(*this)) ForwardingObject::prepareWrite();
    }

private:
    /// The first property whose name begins with the same letter.
    VexaPropertyIdentifier alike(const VexaPropertyIdentifier& id) const {
        for (const std::string& name : ForwardingObject::getExternalRepresentationPropertyNames())
            if (name[0] == id.getExternalPropertyName()[0]) return VexaPropertyIdentifier(name);
        return id;
    }
};

class WrongHandleObject : public ForwardingHandleObject {
public:
    using ForwardingHandleObject::ForwardingHandleObject;
    long getId() const override {
        const long id = ForwardingHandleObject::getId();
        if (is("getId", "zero")) return 0;
        if (is("getId", "positive")) return std::max(id, 0L);
        return is("getId", "int") ? static_cast<int>(id) : id;
    }
    vexa::data::impl::ZVMID getZVMID() const override {
        vexa::data::impl::ZVMID engine = ForwardingHandleObject::getZVMID();
        if (is("getZVMID", "four-bytes")) std::memset(engine.bytes + 4, 0, 12);
        if (is("getZVMID", "fifteen-bytes")) engine.bytes[15] = 0;
        return engine;
    }
    void addReference() const override {
        ForwardingHandleObject::addReference();
        if (is("addReference", "counted")) retain();
    }
    ObjectImpl* sharedCopy() const override {
        return counted("handle.sharedCopy", is("handle.sharedCopy", "no-handle")
                                                ? new WrongObject(Inner<ObjectImpl>(retained(&wrapped())))
                                                : ForwardingHandleObject::sharedCopy());
    }

protected:
    ObjectImpl* wrapCopy(Inner<ObjectImpl> copy) const override {
        return new WrongHandleObject(std::move(copy));
    }
};

class WrongClass : public ForwardingClass {
public:
    using ForwardingClass::ForwardingClass;

    std::shared_ptr<vexa::data::impl::VexaClassIdentifierImpl> getClassIdentifier() const override {
        if (is("getClassIdentifier", "null")) return nullptr;
        if (is("getClassIdentifier", "leaked")) ForwardingClass::getClassIdentifier()->retain();
        static const auto first = ForwardingClass::getClassIdentifier();
        return is("getClassIdentifier", "first") ? first : ForwardingClass::getClassIdentifier();
    }
    ForwardIteratorImpl* beginProperties() const override {
        return wrongForward("class.", "beginProperties",
                            is("beginProperties", "array-properties")
                                ? ForwardingClass::beginArrayProperties()
                                : ForwardingClass::beginProperties());
    }
    ForwardIteratorImpl* endProperties() const override {
        return wrongForward("class.", "endProperties", ForwardingClass::endProperties());
    }
    ForwardIteratorImpl* beginArrayProperties() const override {
        return wrongForward("class.", "beginArrayProperties", ForwardingClass::beginArrayProperties());
    }
    ForwardIteratorImpl* endArrayProperties() const override {
        return wrongForward("class.", "endArrayProperties", ForwardingClass::endArrayProperties());
    }
    ForwardIteratorImpl* beginSuperclasses() const override {
        return wrongForward("class.", "beginSuperclasses", ForwardingClass::beginSuperclasses());
    }
    ForwardIteratorImpl* endSuperclasses() const override {
        return wrongForward("class.", "endSuperclasses", ForwardingClass::endSuperclasses());
    }
    std::size_t getNumberOfProperties() const override {
        return number("getNumberOfProperties", ForwardingClass::getNumberOfProperties());
    }
    std::size_t getNumberOfArrayProperties() const override {
        return number("getNumberOfArrayProperties", ForwardingClass::getNumberOfArrayProperties());
    }
    void updateVexaPropertyIdentifiersClassInfo(fv::ClassInfo& classInfo) override {
        if (!is("updateVexaPropertyIdentifiersClassInfo", "ignored"))
            ForwardingClass::updateVexaPropertyIdentifiersClassInfo(classInfo);
    }
};

struct WrongKinds {
    template <class T>
    using Numbers = WrongNumbers<T>;
    using Cells = WrongCells;
    using Strings = WrongStrings;
    using Structs = WrongStructs;
    using Enums = WrongEnums;
    using Sparse = WrongSparse;
    using Objects = WrongObjects;
    using Object = WrongObject;
    using HandleObject = WrongHandleObject;
    using Class = WrongClass;
};

// --- the factory

class WrongFactory : public ForwardingFactory<WrongKinds> {
    using Base = ForwardingFactory;
    using Type = fv::ArrayType;

public:
    using Base::Base;

    ArrayImpl* createArrayImpl(fv::ArrayType type, Dimensions dimensions) override {
        const Making making(type, dimensions, MemoryLayout::COLUMN_MAJOR);
        if (is("createArrayImpl", "any-type") && static_cast<int>(type) == 77) type = fv::ArrayType::DOUBLE;
        if (is("createArrayImpl", "wraps") && dimensions.size() == 2 &&
            dimensions[0] > (std::size_t(1) << 59))
            dimensions[0] = 1;
        ArrayImpl* array =
            passed("createArrayImpl", [&] { return Base::createArrayImpl(type, std::move(dimensions)); });
        if (is("createArrayImpl", "starts-at-one") && type == fv::ArrayType::DOUBLE && !array->isEmpty())
            *static_cast<double*>(const_cast<void*>(array->getUntypedDataPtr())) = 1;
        return counted("createArrayImpl", array);
    }
    ArrayImpl* createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        const Making making(type, dimensions, MemoryLayout::COLUMN_MAJOR);
        if (is("createArrayWithDataImpl", "needs-data") && data == nullptr)
            throw std::invalid_argument("no data");
        if (is("createArrayWithDataImpl", "aliases") && count > 0)
            return counted("createArrayWithDataImpl", Base::createArrayFromBufferImpl(
                                                          std::move(dimensions), type,
                                                          Buffer<void>(const_cast<void*>(data), [](void*) {}),
                                                          MemoryLayout::COLUMN_MAJOR));
        if (is("createArrayWithDataImpl", "rows")) { // takes rows one after another
            Inner<ArrayImpl> made(Base::createArrayWithDataImpl(type, dimensions, data, count));
            if (type != fv::ArrayType::DOUBLE || dimensions.size() != 2) return made.detach();
            auto* to = static_cast<double*>(const_cast<void*>(made->getUntypedDataPtr()));
            for (std::size_t k = 0; k < count; ++k)
                to[k / dimensions[1] + k % dimensions[1] * dimensions[0]] =
                    static_cast<const double*>(data)[k];
            return made.detach();
        }
        count = number("createArrayWithDataImpl", count);
        return passed("createArrayWithDataImpl", [&] {
            return counted("createArrayWithDataImpl",
                           Base::createArrayWithDataImpl(type, std::move(dimensions), data, count));
        });
    }
    ArrayImpl* createStructArrayImpl(Dimensions dimensions, Names fields) override {
        const Making making(Type::STRUCT, dimensions, MemoryLayout::COLUMN_MAJOR);
        if (is("createStructArrayImpl", "no-fields")) fields.clear();
        if (is("createStructArrayImpl", "reversed")) std::reverse(fields.begin(), fields.end());
        if (is("createStructArrayImpl", "sorted")) std::sort(fields.begin(), fields.end());
        if (is("createStructArrayImpl", "short"))
            for (std::string& field : fields)
                field.resize(std::min<std::size_t>(field.size(), 31));
        return passed("createStructArrayImpl", [&] {
            return counted("createStructArrayImpl",
                           Base::createStructArrayImpl(std::move(dimensions), std::move(fields)));
        });
    }
    ArrayImpl* createEnumArrayImpl(Dimensions dimensions, std::string className, Names members) override {
        const Making making(Type::ENUM, dimensions, MemoryLayout::COLUMN_MAJOR);
        if (is("createEnumArrayImpl", "needs-members") && members.empty() && dimensions[0] != 0)
            throw std::invalid_argument("no members");
        if (is("createEnumArrayImpl", "sorted")) std::sort(members.begin(), members.end());
        return passed("createEnumArrayImpl", [&] {
            return counted("createEnumArrayImpl",
                           Base::createEnumArrayImpl(std::move(dimensions),
                                                     text("createEnumArrayImpl", std::move(className)),
                                                     std::move(members)));
        });
    }
    ArrayImpl* createSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                      Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) override {
        if (is("createSparseDoubleImpl", "needs-buffers") && values == nullptr)
            throw std::invalid_argument("no values");
        if (is("createSparseDoubleImpl", "trusts-buffers") && columns == nullptr) count = 0;
        disorder("createSparseDoubleImpl", count, values, rows, columns);
        return passed("createSparseDoubleImpl", [&] {
            return Base::createSparseDoubleImpl(std::move(dimensions),
                                                number("createSparseDoubleImpl", count), std::move(values),
                                                std::move(rows), std::move(columns));
        });
    }
    ArrayImpl* createSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                       Buffer<std::size_t[]> rows, Buffer<std::size_t[]> columns) override {
        disorder("createSparseLogicalImpl", count, values, rows, columns);
        return Base::createSparseLogicalImpl(std::move(dimensions), count, std::move(values), std::move(rows),
                                             std::move(columns));
    }
    ArrayImpl* createSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                             Buffer<std::complex<double>[]> values,
                                             Buffer<std::size_t[]> rows,
                                             Buffer<std::size_t[]> columns) override {
        if (is("createSparseComplexDoubleImpl", "real"))
            for (std::size_t k = 0; k < count; ++k)
                values[k] = values[k].real();
        disorder("createSparseComplexDoubleImpl", count, values, rows, columns);
        return Base::createSparseComplexDoubleImpl(std::move(dimensions), count, std::move(values),
                                                   std::move(rows), std::move(columns));
    }
    ArrayImpl* createVexaSparseLogicalImpl(Dimensions dimensions, std::size_t count, Buffer<bool[]> values,
                                           Buffer<std::size_t[]> rows,
                                           Buffer<std::size_t[]> starts) override {
        disorder("createVexaSparseLogicalImpl", count, values, rows, starts);
        return Base::createVexaSparseLogicalImpl(std::move(dimensions), count, std::move(values),
                                                 std::move(rows), std::move(starts));
    }
    ArrayImpl* createVexaSparseDoubleImpl(Dimensions dimensions, std::size_t count, Buffer<double[]> values,
                                          Buffer<std::size_t[]> rows, Buffer<std::size_t[]> starts) override {
        disorder("createVexaSparseDoubleImpl", count, values, rows, starts);
        return Base::createVexaSparseDoubleImpl(std::move(dimensions), count, std::move(values),
                                                std::move(rows), std::move(starts));
    }
    ArrayImpl* createVexaSparseComplexDoubleImpl(Dimensions dimensions, std::size_t count,
                                                 Buffer<std::complex<double>[]> values,
                                                 Buffer<std::size_t[]> rows,
                                                 Buffer<std::size_t[]> starts) override {
        disorder("createVexaSparseComplexDoubleImpl", count, values, rows, starts);
        return Base::createVexaSparseComplexDoubleImpl(std::move(dimensions), count, std::move(values),
                                                       std::move(rows), std::move(starts));
    }
    ClassInfoImpl* createClassInfoImpl(const fv::VexaClassIdentifier& name,
                                       const std::vector<VexaPropertyIdentifier>& properties,
                                       const std::vector<VexaPropertyIdentifier>& arrayProperties,
                                       const std::vector<fv::ClassInfo>& above) override {
        using Lists = std::vector<std::vector<VexaPropertyIdentifier>>;
        static std::map<std::string, Lists> known;
        if (is("createClassInfoImpl", "by-name")) {
            const Lists& lists =
                known.emplace(name.getString(), Lists{properties, arrayProperties}).first->second;
            return Base::createClassInfoImpl(name, lists[0], lists[1], above);
        }
        if (is("createClassInfoImpl", "no-z"))
            for (const VexaPropertyIdentifier& id : properties)
                if (id.getPropertyName()[0] == 'Z') throw std::invalid_argument("no name");
        const bool exchanged = is("createClassInfoImpl", "exchanged");
        const std::vector<fv::ClassInfo> none;
        if (is("createClassInfoImpl", "superclass-leaked") && !above.empty())
            ForwardingClass::below(fv::detail::Access::impl(above[0]).get())->retain();
        return counted(
            "createClassInfoImpl",
            Base::createClassInfoImpl(name, exchanged ? arrayProperties : properties,
                                      exchanged ? properties : arrayProperties,
                                      is("createClassInfoImpl", "no-superclasses") ? none : above));
    }
    ObjectImpl* createValueObjectImpl(ClassInfoImpl* classInfo) override {
        if (is("createValueObjectImpl", "any-class") && classInfo == nullptr)
            return createEnumerationObjectImpl("None", "none");
        if (is("createValueObjectImpl", "class-leaked")) ForwardingClass::below(classInfo)->retain();
        return passed("createValueObjectImpl", [&] {
            return counted("createValueObjectImpl", Base::createValueObjectImpl(classInfo));
        });
    }
    ArrayImpl* createValueObjectScalarImpl(ObjectImpl* object) override {
        if (is("createValueObjectScalarImpl", "object-leaked")) object->retain();
        if (is("createValueObjectScalarImpl", "needs-an-object") && object == nullptr) return nullptr;
        return counted("createValueObjectScalarImpl", Base::createValueObjectScalarImpl(object));
    }
    ArrayImpl* createValueObjectArrayImpl(Dimensions dimensions, ClassInfoImpl* classInfo) override {
        return counted("createValueObjectArrayImpl",
                       Base::createValueObjectArrayImpl(std::move(dimensions), classInfo));
    }
    ObjectImpl* createHandleObjectRefImpl(vexa::data::impl::ZVMID engine, long id) override {
        if (is("createHandleObjectRefImpl", "refuses-with-null")) return nullptr;
        if (is("createHandleObjectRefImpl", "one-engine")) engine = {{1}};
        static std::map<long, Inner<ObjectImpl>> known;
        if (is("createHandleObjectRefImpl", "by-id")) {
            auto& one = known[id];
            if (one == nullptr) one.reset(Base::createHandleObjectRefImpl(engine, id));
            return one->sharedCopy();
        }
        return passed("createHandleObjectRefImpl", [&] {
            return counted("createHandleObjectRefImpl", Base::createHandleObjectRefImpl(engine, id));
        });
    }
    ObjectImpl* createEnumerationObjectImpl(const std::string& className,
                                            const std::string& member) override {
        if (is("createEnumerationObjectImpl", "exchanged"))
            return Base::createEnumerationObjectImpl(member, className);
        static std::map<std::string, Inner<ObjectImpl>> known;
        if (is("createEnumerationObjectImpl", "by-member")) {
            auto& one = known[member];
            if (one == nullptr) one.reset(Base::createEnumerationObjectImpl(className, member));
            return one->sharedCopy();
        }
        return passed("createEnumerationObjectImpl", [&] {
            return counted(
                "createEnumerationObjectImpl",
                Base::createEnumerationObjectImpl(className, text("createEnumerationObjectImpl", member)));
        });
    }
    void createBufferImpl(void*& data, void (*&deleter)(void*), fv::ArrayType type,
                          std::size_t count) override {
        if (is("createBufferImpl", "bytes") && count > 8) { // room for so many bytes instead of elements
            data = std::malloc(count);
            deleter = &std::free;
            return;
        }
        passed("createBufferImpl",
               [&] { Base::createBufferImpl(data, deleter, type, number("createBufferImpl", count)); });
        if (is("createBufferImpl", "no-deleter")) deleter = nullptr;
        if (isOf("createArrayFromBufferImpl")) given_ = data;
        static Buffer<void> kept(nullptr, &std::free);
        if (is("createBufferImpl", "one-buffer")) {
            deleter(data);
            if (kept == nullptr) kept.reset(std::malloc(4000000));
            data = kept.get();
            deleter = [](void*) {};
        }
    }
    void createUntypedBufferImpl(void*& data, void (*&deleter)(void*), std::size_t count) override {
        passed("createUntypedBufferImpl", [&] {
            Base::createUntypedBufferImpl(data, deleter,
                                          is("createUntypedBufferImpl", "byte") ? count % 256 : count);
        });
        if (is("createUntypedBufferImpl", "null")) {
            if (count > 6) data = nullptr;
        }
    }
    ArrayImpl* createArrayFromBufferImpl(Dimensions dimensions, fv::ArrayType type, Buffer<void> buffer,
                                         MemoryLayout layout) override {
        const char* name = "createArrayFromBufferImpl";
        const Making making(type, dimensions, layout);
        if (is(name, "needs-buffer") && buffer == nullptr) throw std::invalid_argument("no buffer");
        if (is(name, "trusts-buffer") && buffer == nullptr) return Base::createArrayImpl(type, dimensions);
        if (is(name, "not-its-own") && buffer.get() == given_) throw std::invalid_argument("an own buffer");
        const auto free = buffer.get_deleter();
        void* memory = buffer.get();
        if (is(name, "never-freed")) buffer.get_deleter() = [](void*) {};
        if (is(name, "rows-are-columns")) layout = MemoryLayout::COLUMN_MAJOR;
        if (is(name, "lost-without-memory")) {
            void* held = buffer.release();
            mayThrow(); // and then the buffer is lost
            buffer.reset(held);
        }
        if (is(name, "refused-is-kept") && type == fv::ArrayType::CELL) buffer.release();
        if (is(name, "anything") && type == fv::ArrayType::CELL)
            return Base::createArrayImpl(type, dimensions);
        ArrayImpl* array = passed(name, [&] {
            return Base::createArrayFromBufferImpl(std::move(dimensions), type, std::move(buffer), layout);
        });
        if (is(name, "freed-twice")) free(memory);
        return counted(name, array);
    }

private:
    static inline void* given_ = nullptr; // the last buffer that was created

    /// The first two change places, with their buffers' consent or without; or a buffer is never freed.
    template <class T>
    static void disorder(const char* name, std::size_t count, Buffer<T[]>& values,
                         Buffer<std::size_t[]>& rows, Buffer<std::size_t[]>& columns) {
        if (is(name, "values-exchanged") && count > 1) std::swap(values[0], values[count - 1]);
        if (is(name, "rows-16-bits"))
            for (std::size_t k = 0; k < count; ++k)
                rows[k] %= 65536;
        if (is(name, "rows-of-six"))
            for (std::size_t k = 0; k < count; ++k)
                rows[k] = std::min<std::size_t>(rows[k], rows[k] < 60 ? 0 : rows[k]);
        if (is(name, "rows-from-one"))
            for (std::size_t k = 0; k < count; ++k)
                rows[k] = rows[k] == 0 ? 0 : rows[k] - 1;
        if (is(name, "rows-never-freed")) rows.get_deleter() = [](void*) {};
        if (is(name, "columns-never-freed")) columns.get_deleter() = [](void*) {};
    }
};

/// As little as a back-end can be: double arrays and the creators that have to be there.
class DoublesOnlyFactory : public ArrayFactoryImpl {
public:
    explicit DoublesOnlyFactory(Inner<ArrayFactoryImpl> factory) : inner_(std::move(factory)) {}

    ArrayImpl* createArrayImpl(fv::ArrayType type, Dimensions dimensions) override {
        requireDouble(type);
        return inner_->createArrayImpl(type, std::move(dimensions));
    }
    ArrayImpl* createArrayWithDataImpl(fv::ArrayType type, Dimensions dimensions, const void* data,
                                       std::size_t count) override {
        requireDouble(type);
        return inner_->createArrayWithDataImpl(type, std::move(dimensions), data, count);
    }
    void createBufferImpl(void*&, void (*&)(void*), fv::ArrayType, std::size_t) override {
        fv::detail::raise<fv::MustBePrimitiveTypeException>();
    }
    void createUntypedBufferImpl(void*&, void (*&)(void*), std::size_t) override { throw "none"; }
    ArrayImpl* createArrayFromBufferImpl(Dimensions, fv::ArrayType, Buffer<void>, MemoryLayout) override {
        fv::detail::raise<fv::MustBePrimitiveTypeException>();
    }

private:
    static void requireDouble(fv::ArrayType type) {
        if (type != fv::ArrayType::DOUBLE) fv::detail::raise<fv::InvalidArrayTypeException>();
    }

    Inner<ArrayFactoryImpl> inner_;
};

ArrayFactoryImpl* inner = nullptr;
std::atomic<int> factories{0};
ArrayFactoryImpl& factoryInside() { return *inner; }

ArrayFactoryImpl* wrongFactory() {
    if (chosen() == "doubles-only") return new DoublesOnlyFactory(Inner<ArrayFactoryImpl>(retained(inner)));
    ++factories;
    const auto fresh = [] { return new WrongFactory(Inner<ArrayFactoryImpl>(retained(inner))); };
    static ArrayFactoryImpl* const one = fresh();
    static int asked = 0;
    if (is("factory", "once")) return ++asked == 1 ? fresh() : nullptr;
    if (is("factory", "not-retained")) return one;
    if (is("factory", "retained-twice")) return retained(retained(one));
    if (is("factory", "throws-again") && ++asked > 1) throw std::runtime_error("one at a time");
    return counted("factory", fresh());
}

/// The embedded back-end has registered itself as the client's when this library is loaded; the engine's
/// place goes first.
const bool registered = [] {
    if (chosen() == "crash-on-load") std::raise(SIGSEGV);
    if (chosen() == "throws-on-load") throw std::runtime_error("no licence");
    inner = ArrayFactoryImpl::getDefaultFactory();
    return ArrayFactoryImpl::registerVexaFactoryFunction(&wrongFactory);
}();

} // namespace

bool wrong::isTime() {
    static const std::thread::id first = std::this_thread::get_id();
    static std::atomic<int> questions{0};
    const std::string_view when = condition();
    if (Making::current != nullptr && !Making::current->isMeant()) return false;
    if (when == "after-failure") return failed;
    if (when == "later") return ++questions > 2000;
    if (when == "another-factory") return factories > 1;
    if (when == "another-thread") return std::this_thread::get_id() != first;
    return true;
}
