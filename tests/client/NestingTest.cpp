// What holds arrays that hold arrays: any depth, shared parts, and nothing that holds itself.
#include "support/RecordingArray.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
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
    ValueObjectArray both = factory.createValueObjectArray({1, 2}, nodes);
    both[0] = object;
    both[1] = object;
    return both;
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

    friend std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }
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
    constexpr std::size_t levels = 50'000; // a stack of 8 MiB has 160 bytes for each
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

/// Stores one of a few arrays into a place in another, again and again. Some of the places are references that were made while
/// nobody shared what they go into, which they go on writing.
class NestedAtRandom : public testing::Test {
protected:
    std::size_t below(std::size_t count) { return random_() % count; }

    Reference<Array> placeIn(Array& array) {
        const char* name = below(2) == 0 ? "left" : "right";
        if (array.getType() == ArrayType::STRUCT) {
            return static_cast<StructArray&>(array)[0][name];
        }
        if (array.getType() == ArrayType::VALUE_OBJECT) {
            return static_cast<ValueObjectArray&>(array)["note"];
        }
        return static_cast<TypedArray<Array>&>(array)[below(2)];
    }
    static void store(Reference<Array> reference, const Array& what) { reference = what; }
    /// Into the array that a reference is to, or in its place.
    void storeAt(Reference<Array>& place, const Array& what) {
        if (below(2) == 0) {
            place = what;
        } else if (place.getType() == ArrayType::CELL) {
            store(place[below(2)], what);
        } else if (place.getType() == ArrayType::STRUCT) {
            store(place[0]["left"], what);
        }
    }
    Array objectArray(const ValueObject& object) { return factory.createValueObjectScalar(object); }

private:
    std::mt19937 random_{7};
};

TEST_F(NestedAtRandom, NothingComesToHoldItself) {
    const Array empty;
    for (int round = 0; round < 500; ++round) {
        SCOPED_TRACE(round);
        std::vector<Array> arrays{inCell(empty, empty), inFields(empty, empty), inObject(empty, empty)};
        ValueObject object = factory.createValueObject(nodes);
        std::vector<Reference<Array>> kept;
        kept.push_back(object["left"]);
        for (Array& array : arrays) {
            kept.push_back(placeIn(array));
        }
        const std::vector<Array> alive = arrays; // what the references go into
        arrays.push_back(objectArray(object));
        for (int step = 0; step < 12; ++step) {
            Array& into = arrays[below(arrays.size())];
            const Array& what = arrays[below(arrays.size())];
            if (below(2) == 0) {
                storeAt(kept[below(kept.size())], what);
            } else if (into.getType() == ArrayType::VALUE_OBJECT && below(2) == 0) {
                auto& objects = static_cast<ValueObjectArray&>(into);
                ValueObject element = objects[0];
                element["left"] = what;
                objects[0] = below(2) == 0 ? element : object;
            } else {
                Reference<Array> place = placeIn(into);
                storeAt(place, what);
            }
            ASSERT_FALSE(isEndless(objectArray(object)));
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
    Reference<Array> inner = outer[0];
    made.log->clear();
    inner[0] = cell;
    EXPECT_TRUE(made.log->all().empty());
}

} // namespace
