// What a back-end does when it fails: it reports, it loses nothing, and it changes nothing that it reports.

#include "Check.hpp"
#include "Operations.hpp"

namespace vexa::check {

namespace {

constexpr std::size_t mostAllocations = 1000;

/// The subject as an operation left it, when it came back and when it threw.
void expectSound(const Subject& subject, const std::string& when) {
    expectEqual("getDimensions" + when, subject.array->getDimensions(), subject.dimensions);
    subject.expectUnchanged(when);
    expectEqual("isEmpty" + when, subject.array->isEmpty(), false);
    expectEqual("distanceTo from begin to end" + when,
                beginOf(*subject.array)->distanceTo(*endOf(*subject.array)),
                static_cast<std::int64_t>(lengthOf(*subject.array)));
    expectEqual("the reference count of the array" + when, subject.array->referenceCount(), 1);
    for (const auto& [other, model] : subject.others)
        expectOneReference("an array that shares with it" + when, *other);
}

struct Attempt {
    bool fired = false;
    std::ptrdiff_t lost = 0;
};

/// Lets one allocation (or all from there on) of the operation fail, over a fresh array.
Attempt attempt(const Backend& backend, const Operation& operation, const Sample& sample,
                const Origin& origin, bool copied, std::size_t pattern, bool large, std::size_t number,
                bool onwards) {
    Attempt result;
    FailingAllocations::start();
    {
        Subject subject = newSubject(backend, sample, origin, copied, pattern, large);
        Trial trial(number, onwards);
        try {
            operation.run(backend, subject, trial);
        } catch (const Failure&) {
            throw;
        } catch (...) {
            if (!trial.fired()) throw;
        }
        result.fired = trial.fired();
        expectSound(subject, " afterwards");
        if (result.fired && number == 1) { // with memory it does what it should again
            Trial none;
            operation.run(backend, subject, none);
            expectSound(subject, " after another one with memory");
        }
    }
    result.lost = FailingAllocations::liveBlocks();
    FailingAllocations::stop();
    return result;
}

/// The first, second, ... allocation fails until the operation comes through. A block that stays may be a
/// cache of the back-end; one that stays each time is lost.
void sweep(const Backend& backend, const Operation& operation, const Sample& sample, const Origin& origin,
           bool copied, std::size_t pattern, bool large = false) {
    const std::string what =
        operation.name + (operation.kind == "factory" ? ""
                                                      : " of a " + sample.name + " array" + origin.name +
                                                            (copied ? " that has a copy" : ""));
    const auto once = [&](std::size_t number, bool onwards) {
        return attempt(backend, operation, sample, origin, copied, pattern, large, number, onwards);
    };
    once(0, false); // what is made once in a process is made here
    for (const bool onwards : {false, true})
        for (std::size_t number = 1;; ++number) {
            const std::string when =
                what + " with allocation " + show(number) + (onwards ? " and all after it" : "") + " failing";
            backend.step(when);
            Attempt result;
            try {
                result = once(number, onwards);
                bool loses = result.lost > 0;
                for (int again = 0; again < 3 && loses; ++again)
                    loses = once(number, onwards).lost > 0;
                expect(!loses, "it loses " + show(result.lost) + " block(s) of memory");
            } catch (const Failure& failure) {
                fail(when + ": " + failure.reason);
            }
            if (!result.fired) break;
            expect(number < mostAllocations, what + " makes more than 1000 allocations");
        }
}

/// Kinds whose code is likely to differ.
bool stands(const Sample& sample) {
    static const Contents others{"logical", "char", "double", "complex-double"};
    return !sample.primitive || std::find(others.begin(), others.end(), sample.name) != others.end();
}

/// Runs `f` with each operation of the kinds of arrays chosen.
void eachOperation(Backend& backend, bool (*chosen)(const Sample&),
                   const std::function<void(const Operation&, const Sample&, const Origin&)>& f) {
    std::size_t count = 0;
    for (const Sample& sample : samples()) {
        if (!offersAll(backend, sample.needs) || !chosen(sample) || !stands(sample)) continue;
        for (const Operation& operation : operations()) {
            if (!applies(backend, operation, sample)) continue;
            for (const Origin& origin : sample.origins)
                if (offersAll(backend, origin.needs)) f(operation, sample, origin);
            ++count;
        }
    }
    if (count == 0) throw NotOffered{"none of these kinds is offered"};
    backend.note(show(count) + " operations");
}

bool isNumber(const Sample& sample) { return sample.primitive; }
bool isHolder(const Sample& sample) { return sample.name == "cell" || sample.name == "struct"; }
bool isText(const Sample& sample) { return sample.name == "string" || sample.name == "enumeration"; }
bool isSparseKind(const Sample& sample) { return sample.sparse; }
bool isObject(const Sample& sample) { return sample.name == "object-array"; }

std::function<void(Backend&)> sweepOf(bool (*chosen)(const Sample&)) {
    return [chosen](Backend& backend) {
        eachOperation(backend, chosen,
                      [&](const Operation& operation, const Sample& sample, const Origin& origin) {
                          for (const std::size_t pattern : {counting, extreme})
                              for (const bool copied : {false, true})
                                  sweep(backend, operation, sample, origin, copied, pattern);
                          if (sample.primitive)
                              sweep(backend, operation, sample, origin, false, counting, true);
                      });
    };
}

/// A kind of array with which operations of the factory are tried, which need none.
const Sample& anySample(const Backend& backend) {
    for (const Sample& sample : samples())
        if (offersAll(backend, sample.needs)) return sample;
    throw NotOffered{"no kind of array is offered"};
}

void eachFactoryOperation(Backend& backend, const std::function<void(const Operation&, const Sample&)>& f) {
    const Sample& sample = anySample(backend);
    std::size_t count = 0;
    for (const Operation& operation : operations()) {
        if (operation.kind != "factory" || !offersAll(backend, operation.needs)) continue;
        f(operation, sample);
        ++count;
    }
    if (count == 0) throw NotOffered{"none of these operations is offered"};
    backend.note(show(count) + " operations");
}

void factorySweep(Backend& backend) {
    eachFactoryOperation(backend, [&](const Operation& operation, const Sample& sample) {
        sweep(backend, operation, sample, sample.origins.front(), false, counting);
    });
}

// --- over and over

constexpr std::size_t often = 10000;

/// Memory that grows with every so many calls, in blocks or in the size of one.
void repeat(const Backend& backend, const Operation& operation, const Sample& sample, const Origin& origin) {
    const std::string what =
        operation.name + (operation.kind == "factory" ? "" : " of a " + sample.name + " array" + origin.name);
    backend.step(what + ", over and over");
    FailingAllocations::start();
    Subject subject = newSubject(backend, sample, origin, true);
    Trial none;
    const auto run = [&](std::size_t times) {
        for (std::size_t k = 0; k < times; ++k) {
            if (operation.once && k > 0) subject = newSubject(backend, sample, origin, true);
            operation.run(backend, subject, none);
        }
        return std::pair{FailingAllocations::liveBlocks(), FailingAllocations::liveBytes()};
    };
    auto before = run(200);
    bool blocks = true;
    bool bytes = true;
    for (int round = 0; round < 3 && (blocks || bytes); ++round) {
        const auto after = run(often);
        blocks = after.first > before.first;
        bytes = after.second > before.second + static_cast<std::ptrdiff_t>(often / 20);
        if (round == 2) {
            expect(!blocks, show(often) + " times " + what + " lose " + show(after.first - before.first) +
                                " block(s) of memory");
            expect(!bytes, show(often) + " times " + what + " lose " + show(after.second - before.second) +
                               " bytes of memory");
        }
        before = after;
    }
    FailingAllocations::stop();
    if (!operation.once) expectOneReference("the array after " + what + ", over and over", *subject.array);
    for (const auto& [other, model] : subject.others)
        expectOneReference("its copy after " + what + ", over and over", *other);
}

std::function<void(Backend&)> repeated(bool (*chosen)(const Sample&)) {
    return [chosen](Backend& backend) {
        eachOperation(backend, chosen,
                      [&](const Operation& operation, const Sample& sample, const Origin& origin) {
                          repeat(backend, operation, sample, origin);
                      });
    };
}
void factoryRepeated(Backend& backend) {
    eachFactoryOperation(backend, [&](const Operation& operation, const Sample& sample) {
        repeat(backend, operation, sample, sample.origins.front());
    });
}

// --- refusals

/// Refuses again and again, loses nothing, changes nothing.
void refuse(const Backend& backend, const Refusal& refusal, const Sample& sample) {
    const std::string what =
        refusal.name + (refusal.kind == "factory" ? "" : " (of a " + sample.name + " array)");
    backend.step(what);
    Subject subject = newSubject(backend, sample, sample.origins.front(), false);
    ArrayImpl* const array = subject.array.get();
    const auto once = [&] {
        try {
            refusal.run(backend, *array);
        } catch (const Failure&) {
            throw;
        } catch (...) {
            return;
        }
        fail(what + " throws nothing");
    };
    once(); // it may have changed the text of an element
    const Contents contents = contentsOf(*array);
    once();
    std::ptrdiff_t lost = 1;
    for (int round = 0; round < 3 && lost > 0; ++round) {
        FailingAllocations::start();
        for (int times = 0; times < 200; ++times)
            once();
        lost = FailingAllocations::liveBlocks();
        FailingAllocations::stop();
    }
    expect(lost <= 0, "200 times " + what + " lose " + show(lost) + " block(s) of memory");
    expectOneReference("an array after " + what, *array);
    expectContents("an array after " + what, *array, contents);
    Subject fresh = newSubject(backend, sample, sample.origins.front(), true);
    for (const Operation& operation : operations()) {
        Trial none;
        if (operation.once || (operation.kind != "factory" && !applies(backend, operation, sample)) ||
            !offersAll(backend, operation.needs))
            continue;
        backend.step(operation.name + " after " + what);
        operation.run(backend, fresh, none);
        fresh.expectUnchanged(" with " + operation.name + " after " + what);
    }
}

void refusalsLoseNothing(Backend& backend) {
    std::size_t count = 0;
    for (const Refusal& refusal : refusals()) {
        if (!offersAll(backend, refusal.needs)) continue;
        for (const Sample& sample : samples()) {
            if (!offersAll(backend, sample.needs)) continue;
            if (refusal.kind == "factory" ? &sample != &anySample(backend)
                                          : refusal.kind != "any" && refusal.kind != sample.name &&
                                                !(refusal.kind == "number" && sample.primitive))
                continue;
            refuse(backend, refusal, sample);
            ++count;
        }
    }
    backend.note(show(count) + " refusals");
}

} // namespace

void addFailureChecks(Checks& checks) {
    Family failure(checks, "no memory");
    const std::string reports =
        "running out of memory is reported; nothing is lost, and the array is as it was";
    failure.add("numbers", reports, {}, sweepOf(&isNumber));
    failure.add("cells and structs", reports, {"double"}, sweepOf(&isHolder));
    failure.add("texts and members", reports, {}, sweepOf(&isText));
    failure.add("sparse arrays", reports, {}, sweepOf(&isSparseKind));
    failure.add("objects", reports, {"double"}, sweepOf(&isObject));
    failure.add("the factory", reports, {}, factorySweep);
    Family refusal(checks, "refusals");
    refusal.add(
        "refusals lose nothing",
        "what a back-end cannot do is reported by throwing (slots 18 to 20, 24 to 29, 33, 48; factory)", {},
        refusalsLoseNothing);
    Family repeats(checks, "over and over");
    const std::string balanced =
        "every reference and buffer given is the caller's, every one taken is dropped once";
    repeats.add("numbers, 10000 times", balanced, {}, repeated(&isNumber));
    repeats.add("cells and structs, 10000 times", balanced, {"double"}, repeated(&isHolder));
    repeats.add("texts and members, 10000 times", balanced, {}, repeated(&isText));
    repeats.add("sparse arrays, 10000 times", balanced, {}, repeated(&isSparseKind));
    repeats.add("objects, 10000 times", balanced, {"double"}, repeated(&isObject));
    repeats.add("the factory, 10000 times", balanced, {}, factoryRepeated);
}

} // namespace vexa::check
