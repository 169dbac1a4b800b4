// What holds arrays that hold arrays: any depth, shared parts, and nothing that holds itself.
#include "support/RecordingArray.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace foundation::vexadata;

ArrayFactory factory;
const ClassInfo nodes = factory.createClassInfo("Node", {"left", "right"}, {"note"});

Array inCell(const Array& left, const Array& right) {
    auto cell = factory.createArray<Array>({1, 2});
    cell[0] = left;
    cell[1] = right;
    return cell;
}
Array inFields(const Array& left, const Array& right) {
    StructArray record = factory.createStructArray({1, 1}, {"left", "right"});
    record[0]["left"] = left;
    record[0]["right"] = right;
    return record;
}
Array inObject(const Array& left, const Array& right) {
    ValueObject object = factory.createValueObject(nodes);
    object["left"] = left;
    object["right"] = right;
    return factory.createValueObjectScalar(object);
}

using Identities = std::set<std::uint64_t>;

/// Whether `array` holds itself, at any depth. Looks into everything once.
bool isEndless(const Array& array, Identities& above, Identities& finite) {
    const std::uint64_t identity = array.getArrayID();
    if (finite.count(identity) != 0) {
        return false;
    }
    if (!above.insert(identity).second) {
        return true;
    }
    std::vector<Array> held;
    if (array.getType() == ArrayType::CELL) {
        const TypedArray<Array> cell = array;
        held.assign(cell.begin(), cell.end());
    } else if (array.getType() == ArrayType::STRUCT) {
        const StructArray records = array;
        held = {Array(records[0]["left"]), Array(records[0]["right"])};
    } else if (array.getType() == ArrayType::VALUE_OBJECT) {
        const ValueObjectArray objects = array;
        const ValueObject object = objects[0];
        held = {object["left"], object["right"], objects["note"]};
    }
    for (const Array& each : held) {
        if (isEndless(each, above, finite)) {
            return true;
        }
    }
    above.erase(identity);
    finite.insert(identity);
    return false;
}

bool isEndless(const Array& array) {
    Identities above;
    Identities finite;
    return isEndless(array, above, finite);
}

struct Kind {
    const char* name;
    std::function<Array(const Array& left, const Array& right)> wrap;
};

class Nested : public testing::TestWithParam<Kind> {
protected:
    const std::function<Array(const Array& left, const Array& right)>& wrap = GetParam().wrap;
    Array one = factory.createScalar(1.0);

    Array deep(std::size_t levels, Array inner) {
        for (std::size_t k = 0; k < levels; ++k) {
            inner = wrap(inner, one);
        }
        return inner;
    }
    /// Two ways from each level to the next: as many to the innermost as 2 to the number of levels.
    Array doubled(std::size_t levels, Array inner) {
        for (std::size_t k = 0; k < levels; ++k) {
            inner = wrap(inner, inner);
        }
        return inner;
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, Nested,
                         testing::Values(Kind{"Cells", &inCell}, Kind{"Fields", &inFields},
                                         Kind{"Properties", &inObject},
                                         Kind{"All",
                                              [](const Array& left, const Array& right) {
                                                  return inCell(inFields(inObject(left, right), right), left);
                                              }}),
                         [](const auto& each) { return each.param.name; });

TEST_P(Nested, AreHandledAtAnyDepth) {
    constexpr std::size_t levels = 100'000; // a stack of 8 MiB has 80 bytes for each
    const Array two = factory.createScalar(2.0);
    Array array = deep(levels, one);
    const Array same = deep(levels, one);
    EXPECT_TRUE(array == same);
    EXPECT_FALSE(array == deep(levels, two));
    EXPECT_FALSE(array == deep(levels - 1, one));
    std::ostringstream text;
    text << array;
    EXPECT_LT(text.str().size(), 10'000U);
    const Array before = array;
    array = wrap(array, two);
    EXPECT_FALSE(array == before);
}

TEST_P(Nested, ShareTheirPartsInAllThatIsDoneWithThem) {
    constexpr std::size_t levels = 100;
    const Array array = doubled(levels, one);
    EXPECT_TRUE(array == doubled(levels, factory.createScalar(1.0)));
    EXPECT_FALSE(array == doubled(levels, factory.createScalar(2.0)));
    // The reference goes into the array that is innermost soon, and there the whole is stored.
    auto outer = factory.createArray<Array>({1, 2});
    outer[0] = factory.createArray<Array>({1, 1});
    Reference<Array> inner = outer[0];
    outer[1] = doubled(levels, outer);
    inner[0] = outer;
    EXPECT_FALSE(isEndless(outer));
    EXPECT_EQ(Array(std::as_const(inner)[0]).getType(), ArrayType::CELL);
}

/// Stores one of a few arrays into a place inside another, again and again. The places are references that stay while the arrays
/// are shared, copied and stored elsewhere.
TEST(NestedAtRandom, NeverHoldThemselves) {
    std::mt19937 random(7);
    const auto below = [&](std::size_t count) { return random() % count; };
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(round);
        const Array empty;
        std::vector<Array> arrays{inCell(empty, empty), inFields(empty, empty), inObject(empty, empty)};
        std::vector<Array> alive; // what references go into is never gone
        const auto place = [&](Array& array) -> Reference<Array> {
            const bool left = below(2) == 0;
            if (array.getType() == ArrayType::STRUCT) {
                return static_cast<StructArray&>(array)[0][left ? "left" : "right"];
            }
            if (array.getType() == ArrayType::VALUE_OBJECT) {
                return static_cast<ValueObjectArray&>(array)["note"];
            }
            return static_cast<TypedArray<Array>&>(array)[left ? 0 : 1];
        };
        for (int step = 0; step < 12; ++step) {
            Array& into = arrays[below(arrays.size())];
            const Array& what = arrays[below(arrays.size())];
            if (below(3) == 0) {
                Reference<Array> reference = place(into);
                if (reference.getType() == ArrayType::CELL) {
                    Reference<Array> deeper = reference[below(2)];
                    deeper = what;
                } else if (reference.getType() == ArrayType::STRUCT) {
                    Reference<Array> deeper = reference[0]["left"];
                    deeper = what;
                }
                alive.push_back(into);
            } else if (into.getType() == ArrayType::VALUE_OBJECT && below(2) == 0) {
                auto& objects = static_cast<ValueObjectArray&>(into);
                ValueObject object = objects[0];
                object["left"] = what;
                objects[0] = object;
            } else {
                place(into) = what;
            }
            for (const Array& array : arrays) {
                ASSERT_FALSE(isEndless(array));
            }
        }
    }
}

class Watched : public support::LedgerTest {};

TEST_F(Watched, ElementsThatHoldNothingAreNotLookedAtWhenTheirArrayIsStored) {
    auto made = support::recorded(factory.createArray<double>({1, 1}));
    auto cell = factory.createArray<Array>({1, 100});
    for (std::size_t k = 0; k < 100; ++k) {
        cell[k] = made.array;
    }
    cell[99] = inCell(Array(), Array());
    auto outer = factory.createArray<Array>({1, 1});
    outer[0] = inCell(Array(), Array());
    made.log->clear();
    outer[0][0] = cell;
    EXPECT_TRUE(made.log->all().empty());
}

} // namespace
