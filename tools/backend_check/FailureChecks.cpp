// What a back-end does when memory runs out: it reports, it loses nothing, and it changes nothing that it reports.

#include "Check.hpp"
#include "FailingAllocations.hpp"
#include "Samples.hpp"

#include <new>

namespace vexa::check {

namespace {

using Contents = std::vector<std::string>;
using Operation = std::function<void(ArrayImpl&)>;

constexpr std::size_t mostAllocations = 1000;

struct Attempt {
    bool threw = false;
    bool fired = false;
    std::ptrdiff_t lost = 0;
    std::string problem; ///< found by looking at what is left
};

/// Lets one allocation (or all from there on) of `operation` fail, over a fresh array, and looks at the array afterwards.
Attempt attempt(const std::function<Owned<ArrayImpl>()>& setUp, const Operation& operation,
                const std::function<std::string(ArrayImpl&)>& inspect, std::size_t number, bool onwards) {
    Attempt result;
    FailingAllocations::start();
    {
        const Owned<ArrayImpl> array = setUp();
        FailingAllocations::failAt(number, onwards);
        try {
            operation(*array);
        } catch (...) {
            result.threw = true;
        }
        result.fired = FailingAllocations::fired();
        FailingAllocations::failAt(0);
        if (result.threw) result.problem = inspect(*array);
    }
    result.lost = FailingAllocations::liveBlocks();
    FailingAllocations::stop();
    return result;
}

/// The first, second, ... allocation fails until the operation comes through. A block that stays may be a cache of the
/// back-end; one that stays each time is lost.
void sweep(Backend& backend, const std::string& what, const std::function<Owned<ArrayImpl>()>& setUp,
           const Operation& operation, const std::function<std::string(ArrayImpl&)>& inspect) {
    operation(*setUp()); // what is made once in a process is made here
    for (const bool onwards : {false, true}) {
        for (std::size_t number = 1;; ++number) {
            const std::string when =
                what + " with allocation " + show(number) + (onwards ? " and all after it" : "") + " failing";
            backend.step(when);
            const Attempt first = attempt(setUp, operation, inspect, number, onwards);
            expect(first.problem.empty(), when + ": " + first.problem);
            bool loses = first.lost > 0;
            for (int again = 0; again < 3 && loses; ++again)
                loses = attempt(setUp, operation, inspect, number, onwards).lost > 0;
            expect(!loses, when + " loses " + show(first.lost) + " block(s) of memory");
            if (!first.fired) break;
            expect(number < mostAllocations, what + " makes more than 1000 allocations");
        }
    }
}

std::string nothing(ArrayImpl&) { return {}; }

void creators(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto blank = [&] { return sample.make(backend, {1, 1}); };
        sweep(
            backend, "making a 2x3 " + sample.name + " array", blank,
            [&](ArrayImpl&) {
                sample.make(backend, {2, 3});
            },
            nothing);
    });
}

/// What is left of an array must be what it was.
std::function<std::string(ArrayImpl&)> unchangedFrom(const Contents& wanted) {
    return [&wanted](ArrayImpl& array) -> std::string {
        try {
            expectContents("the array afterwards", array, wanted);
            expectOneReference("the array afterwards", array);
        } catch (const Failure& failure) {
            return failure.reason;
        }
        return {};
    };
}

void sweepUnchanged(Backend& backend, const std::string& what, const Operation& operation) {
    eachSample(backend, [&](const Sample& sample) {
        const auto make = [&] { return sample.make(backend, {2, 3}); };
        const Contents contents = contentsOf(*make());
        sweep(backend, what + " of a 2x3 " + sample.name + " array", make, operation,
              unchangedFrom(contents));
    });
}

void copies(Backend& backend) {
    sweepUnchanged(backend, "sharedCopy", [](ArrayImpl& array) { adopt(array.sharedCopy(), "sharedCopy"); });
}
void iterators(Backend& backend) {
    sweepUnchanged(backend, "iterating", [](ArrayImpl& array) {
        const Iterator begin = beginOf(array);
        const Iterator clone(begin->clone());
        ReferenceImpl* chain = clone->createReference();
        if (chain != nullptr) chain->release();
        endOf(array);
    });
}
void references(Backend& backend) {
    sweepUnchanged(backend, "createElementReference", [](ArrayImpl& array) {
        if (array.getType() != ArrayType::CELL && array.getType() != ArrayType::STRUCT) return;
        const std::string field = array.getType() == ArrayType::STRUCT ? "a" : "";
        adopt(array.createElementReference(1, field, false), "createElementReference");
        adopt(array.createElementReference(1, field, true), "createElementReference");
    });
}

/// A write that reports an error has not happened.
void writes(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto make = [&] { return sample.make(backend, {2, 3}); };
        const Contents contents = contentsOf(*make());
        sweep(
            backend, "a write to a 2x3 " + sample.name + " array", make,
            [&](ArrayImpl& array) { sample.change(backend, array, 1); }, unchangedFrom(contents));
    });
}

/// A buffer that was handed over is freed, whatever fails.
void buffers(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto make = [&] { return Owned<ArrayImpl>(filled<T>(backend, {2, 3}).release()); };
        sweep(
            backend, "createArrayFromBufferImpl", make,
            [&](ArrayImpl&) {
                // Not from malloc, which is not counted under a sanitizer.
                Buffer<void> buffer(::operator new(6 * sizeof(T)),
                                    [](void* memory) { ::operator delete(memory); });
                adopt(backend.factory().createArrayFromBufferImpl({2, 3}, tag.arrayType, std::move(buffer),
                                                                  data::MemoryLayout::COLUMN_MAJOR),
                      "createArrayFromBufferImpl");
            },
            nothing);
    });
}

} // namespace

void addFailureChecks(Checks& checks) {
    Family failure(checks, "no memory");
    failure.add("making arrays", {}, creators);
    failure.add("copying arrays", {}, copies);
    failure.add("iterators", {}, iterators);
    failure.add("references to elements", {}, references);
    failure.add("writes", {}, writes);
    failure.add("buffers handed over", {"from-buffer"}, buffers);
}

} // namespace vexa::check
