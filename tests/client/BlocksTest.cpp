// How many blocks of memory an operation asks for: what lies in place, is shared or is kept for the next needs none.
#include "support/AllocationCountdown.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;

TEST(Blocks, LieWhereTheyAreFewest) {
    if (!support::AllocationCountdown::seesMalloc()) {
        GTEST_SKIP() << "sanitizers have a malloc of their own";
    }
    ArrayFactory factory;
    const auto doubles = [&](std::vector<std::size_t> dimensions) {
        return factory.createArray<double>(std::move(dimensions));
    };
    const auto copied = [](auto array) { array.begin(); };
    const auto small = doubles({2, 3});
    const auto odd = doubles({2, 33});
    const auto large = doubles({20, 30});
    const auto rows = factory.createArrayFromBuffer<double>({2, 3}, factory.createBuffer<double>(6),
                                                            vexa::data::MemoryLayout::ROW_MAJOR);
    TypedArray<Array> cells = factory.createArray<Array>({1, 1}, {doubles({2, 3})});
    StructArray records = factory.createStructArray({1, 2}, {"a"});
    records[0]["a"] = records[1]["a"] = small;
    const auto field = [&](std::size_t k) { return Array(std::as_const(records)[k]["a"]); };
    auto strings = factory.createArray<String>({1, 2});
    const std::u16string text(30, u'x');
    // The vector of dimensions is one of them.
    const std::tuple<const char*, std::size_t, std::function<void()>> operations[] = {
        {"elements beside the array", 3,
         [&] {
             doubles({2, 3});
         }},
        {"without a vector", 2,
         [&] {
             factory.createArray<double>({2, 3});
         }},
        {"1024 bytes of them", 3,
         [&] {
             doubles({1, 128});
         }},
        {"more", 4,
         [&] {
             doubles({1, 129});
         }},
        {"dimensions that are not shared", 3,
         [&] {
             doubles({2, 33});
         }},
        {"three dimensions", 3,
         [&] {
             doubles({2, 3, 4});
         }},
        {"large", 4,
         [&] {
             doubles({20, 30});
         }},
        {"a copy, which gives an iterator", 3, [&] { copied(small); }},
        {"a copy with dimensions of its own", 4, [&] { copied(odd); }},
        {"a large copy", 5, [&] { copied(large); }},
        {"a copy by rows", 3, [&] { copied(rows); }},
        {"an element", 0, [&] { EXPECT_EQ(small[1][2], 0); }},
        {"an element in a cell", 0, [&] { cells[0].held()[1][2] = 1.0; }},
        {"a field, with the block of the last", 0, [&] { field(0); }},
        {"two fields", 1, [&] { EXPECT_EQ(field(0), field(1)); }},
        {"a text in its element", 0, [&] { strings[0] = u"abcdef"; }},
        {"a longer text, kept for later", 1, [&] { strings[0] = u"abcdefg"; }},
        {"text", 2, [&] { strings[1] = text; }},
    };
    for (const auto& [name, blocks, operation] : operations) {
        operation();
        EXPECT_EQ(support::countAllocations(operation), blocks) << name;
    }
}

} // namespace
