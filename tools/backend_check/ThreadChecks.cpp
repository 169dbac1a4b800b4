// Several threads at once. Whether they race is for the thread sanitizer to say, and only where the back-end
// was built for it.

#include "Check.hpp"
#include "Library.hpp"
#include "Operations.hpp"

#include <atomic>
#include <barrier>
#include <exception>
#include <mutex>
#include <thread>

namespace vexa::check {

namespace {

constexpr std::size_t numberOfThreads = 3;
constexpr int rounds = 20;

/// Runs `work(thread)` on several threads that begin together; what one of them throws is thrown here.
void onThreads(const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> ready{0};
    std::mutex mutex;
    std::exception_ptr problem;
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < numberOfThreads; ++thread)
        threads.emplace_back([&, thread] {
            ++ready;
            while (ready < numberOfThreads)
                std::this_thread::yield();
            try {
                work(thread);
            } catch (...) {
                const std::lock_guard lock(mutex);
                problem = std::current_exception();
            }
        });
    for (std::thread& one : threads)
        one.join();
    if (problem != nullptr) std::rethrow_exception(problem);
}

/// A check that found nothing has seen nothing, unless the sanitizer was looking.
void unlessUnseen() {
    if (!underThreadSanitizer())
        throw NotChecked{"the command or the back-end was not built with -fsanitize=thread"};
}

/// Each operation once on all threads that meet before it: counts of references order the threads, and would
/// hide races.
void meetAndRun(const Backend& backend, Subject& subject, std::barrier<>& meeting) {
    try {
        for (const Operation& operation : operations()) {
            if (!operation.constant || !applies(backend, operation, subject.model.sample())) continue;
            Trial none;
            meeting.arrive_and_wait();
            operation.run(backend, subject, none);
        }
    } catch (...) {
        meeting.arrive_and_drop();
        throw;
    }
}

/// All of one array, together with an array that shares with it.
void constantOperations(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        for (const Origin& origin : sample.origins) {
            if (!offersAll(backend, origin.needs)) continue;
            for (const bool copied : {false, true}) {
                Subject subject = newSubject(backend, sample, origin, copied);
                backend.step("constant operations of a " + subject.what + " on several threads");
                std::barrier<> meeting(numberOfThreads);
                onThreads([&](std::size_t) {
                    const Backend own = backend.forAnotherThread(share(backend.factory()));
                    Trial none;
                    for (int round = 0; round < 3; ++round)
                        meetAndRun(own, subject, meeting);
                    for (int round = 0; round < rounds; ++round)
                        for (const Operation& operation : operations())
                            if (operation.constant && applies(own, operation, sample))
                                operation.run(own, subject, none);
                });
                subject.expectUnchanged(" after constant operations on several threads");
            }
        }
    });
    unlessUnseen();
}

/// Each thread writes to an array of its own, which shares with those of the others.
void copiesOnThreads(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        for (const Origin& origin : sample.origins) {
            if (!offersAll(backend, origin.needs)) continue;
            const Subject first = newSubject(backend, sample, origin, false);
            std::vector<Subject> subjects;
            for (std::size_t thread = 0; thread < numberOfThreads; ++thread)
                subjects.push_back({first.what, adopt(first.array->sharedCopy(), "sharedCopy"), first.model,
                                    first.dimensions, &origin});
            backend.step("writes to copies of a " + first.what + " on several threads");
            onThreads([&](std::size_t thread) {
                const Backend own = backend.forAnotherThread(
                    adopt(ArrayFactoryImpl::getDefaultFactory(), "the registered function"));
                for (int round = 0; round < rounds; ++round) {
                    Subject& subject = subjects[thread];
                    const auto number = static_cast<std::size_t>(round);
                    subject.model.change(own, *subject.array, number % subject.model.size(),
                                         sample.writers[number % sample.writers.size()]);
                    subject.expectUnchanged(" that shares with arrays of other threads");
                    if (round % 5 == 0) subject.array = adopt(subject.array->sharedCopy(), "sharedCopy");
                }
            });
            first.expectUnchanged(" after writes to copies on several threads");
        }
    });
    unlessUnseen();
}

/// Each thread asks for a factory and makes arrays of its own.
void factoriesOnThreads(Backend& backend) {
    eachSample(backend, [&](const Sample& sample) {
        std::vector<std::vector<std::uint64_t>> identities(numberOfThreads);
        std::vector<std::vector<Owned<ArrayImpl>>> arrays(numberOfThreads);
        onThreads([&](std::size_t thread) {
            const Backend own = backend.forAnotherThread(
                adopt(ArrayFactoryImpl::getDefaultFactory(), "the registered function"));
            for (int round = 0; round < rounds; ++round) {
                Subject subject = newSubject(own, sample, sample.origins.front(), true);
                const std::size_t number = static_cast<std::size_t>(round) % sample.origins.size();
                if (offersAll(own, sample.origins[number].needs))
                    newSubject(own, sample, sample.origins[number], true)
                        .expectUnchanged(" of its own thread");
                withElementType(subject.array->getType(), [&](auto tag) {
                    using T = typename decltype(tag)::type;
                    const auto fresh = own.zeros<T>({3, 3});
                    for (std::size_t k = 0; k < 9; ++k)
                        expectEqual("an element of a new array of its own thread", read(*fresh, k), T());
                });
                if (round % 5 == 0)
                    for (const Operation& operation : operations()) {
                        const bool ofFactory = operation.kind == "factory" && offersAll(own, operation.needs);
                        Trial none;
                        if (!operation.once && (ofFactory || applies(own, operation, sample)))
                            operation.run(own, subject, none);
                    }
                subject.expectUnchanged(" of a factory of its own thread");
                identities[thread].push_back(subject.array->getArrayID());
                arrays[thread].push_back(std::move(subject.array));
            }
        });
        std::vector<std::uint64_t> all;
        for (const auto& some : identities)
            all.insert(all.end(), some.begin(), some.end());
        std::sort(all.begin(), all.end());
        expect(std::adjacent_find(all.begin(), all.end()) == all.end(),
               "getArrayID of " + sample.name + " arrays that several threads made is the same");
    });
    unlessUnseen();
}

} // namespace

void addThreadChecks(Checks& checks) {
    Family threads(checks, "threads");
    threads.add("constant operations", "constant operations are safe on several threads at once", {},
                constantOperations);
    threads.add("copies on several threads",
                "the others have the object to themselves, also one that shares its storage", {},
                copiesOnThreads);
    threads.add("factories on several threads", "a factory is asked for from any thread", {},
                factoriesOnThreads);
}

} // namespace vexa::check
