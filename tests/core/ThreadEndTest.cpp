// What a thread keeps for its next expression: it is used again, and freed when the thread ends.
#include "support/AllocationCountdown.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <gtest/gtest.h>
#include <pthread.h>

#include <climits>
#include <utility>

namespace {

using namespace foundation::vexadata;
using support::AllocationCountdown;

/// Reads and writes a field through temporary handles, two at a time.
void useFields(StructArray& records) {
    const auto read = [&records = std::as_const(records)](std::size_t k) { return Array(records[k]["a"]); };
    EXPECT_TRUE(read(0) == read(1));
    records[0]["a"][0] = double(records[1]["a"][0]);
}

StructArray madeRecords() {
    ArrayFactory factory;
    StructArray records = factory.createStructArray({1, 2}, {"a"});
    records[0]["a"] = factory.createScalar(1.0);
    records[1]["a"] = factory.createScalar(1.0);
    return records;
}

pthread_key_t lastKey = 0;
thread_local int rounds = 0;

/// The destructor of the key: uses the library after it has freed what it kept, as often as the system lets one.
void useAtTheEnd(void* records) {
    useFields(*static_cast<StructArray*>(records));
    EXPECT_EQ(AllocationCountdown::liveBlocks(), 0) << "in round " << rounds;
    if (++rounds < PTHREAD_DESTRUCTOR_ITERATIONS) {
        pthread_setspecific(lastKey, records);
    }
}

void* useThenEnd(void* records) {
    AllocationCountdown::start();
    pthread_setspecific(lastKey, records);
    useFields(*static_cast<StructArray*>(records));
    EXPECT_GT(AllocationCountdown::liveBlocks(), 0);
    return nullptr;
}

TEST(ThreadEnd, NothingStaysBehind) {
    StructArray records = madeRecords();
    useFields(records); // the key of the library comes before this one
    ASSERT_EQ(pthread_key_create(&lastKey, &useAtTheEnd), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, &useThenEnd, &records), 0);
    EXPECT_EQ(pthread_join(thread, nullptr), 0);
    pthread_key_delete(lastKey);
}

} // namespace
