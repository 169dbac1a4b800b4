// The factory itself: asked for again and again, used and dropped.

#include "Check.hpp"
#include "Operations.hpp"

namespace vexa::check {

namespace {

Owned<ArrayFactoryImpl> askAgain() {
    return adopt(ArrayFactoryImpl::getDefaultFactory(), "the registered function");
}

/// Two questions give two references, to one factory or to two.
void askedTwice(Backend& backend) {
    for (int times = 0; times < 5; ++times) {
        const auto first = askAgain();
        const std::uint64_t before = first->referenceCount();
        const auto second = askAgain();
        if (first == second)
            expect(second->referenceCount() > before,
                   "the factory that the registered function gives again carries no "
                   "reference of its own");
        else
            expectOneReference("a factory that the registered function gives beside another", *second);
    }
    backend.setFactory(nullptr); // the last one, as far as the library knows
    backend.setFactory(askAgain());
}

/// Every operation once, of the kind and of the factory.
void runAll(const Backend& backend, const Sample& sample) {
    for (const Origin& origin : sample.origins) {
        if (!offersAll(backend, origin.needs)) continue;
        Subject subject = newSubject(backend, sample, origin, true);
        for (const Operation& operation : operations()) {
            const bool ofFactory = operation.kind == "factory" && offersAll(backend, operation.needs);
            if (operation.once || !(ofFactory || applies(backend, operation, sample))) continue;
            Trial none;
            operation.run(backend, subject, none);
        }
        subject.expectUnchanged(" after all operations");
    }
}

/// By each of two factories, after the other is gone.
void usedInTurns(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        Model model(backend, sample, counting, {2, 3});
        const auto first = make(backend, sample, {2, 3});
        auto before = share(backend.factory());
        backend.setFactory(askAgain());
        const auto second = make(backend, sample, {2, 3});
        expectContents("a " + sample.name + " array of a second factory", *second, model.contents());
        expect(first->isEqual(second.get()),
               "isEqual of " + sample.name + " arrays of two factories is false");
        expect(first->getArrayID() != second->getArrayID(),
               "getArrayID of " + sample.name + " arrays of two factories is the same");
        before.reset();
        expectContents("a " + sample.name + " array with the other factory gone", *second, model.contents());
        model.change(backend, *second, 0, sample.writers.back());
        expectOneReference("a " + sample.name + " array of a second factory", *second);
        runAll(backend, sample);
    });
}

void outlivesFactory(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        const auto array = make(backend, sample, {2, 3});
        const Model model(backend, sample, counting, {2, 3});
        backend.setFactory(nullptr);
        const auto copy = adopt(array->sharedCopy(), "sharedCopy");
        expectContents("a copy of a " + sample.name + " array whose factory is gone", *copy,
                       model.contents());
        expect(array->isEqual(copy.get()), "isEqual of arrays whose factory is gone is false");
        backend.setFactory(askAgain());
        expectContents("a " + sample.name + " array of a factory that was asked for after all were gone",
                       *make(backend, sample, {2, 3}), model.contents());
    });
}

void leavesCounts(Backend& backend) {
    const std::uint64_t before = backend.factory().referenceCount();
    eachSample(backend, [&](const Sample& sample) {
        for (int times = 0; times < 3; ++times)
            make(backend, sample, {1, 1});
    });
    expectEqual("the reference count of the factory after its arrays are gone",
                backend.factory().referenceCount(), before);
}

} // namespace

void addFactoryChecks(Checks& checks) {
    Family factory(checks, "factory");
    const std::string reference = "getDefaultFactory carries one reference for the caller";
    factory.add("the factory is asked for again", reference, {}, askedTwice);
    factory.add("two factories in turns", reference, {}, usedInTurns);
    factory.add("arrays outlive their factory",
                "every result of a factory carries one reference for the caller", {}, outlivesFactory);
    factory.add("making arrays leaves the count", reference, {}, leavesCounts);
}

} // namespace vexa::check
