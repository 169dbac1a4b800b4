// What holds arrays that hold arrays: any depth, shared parts, and nothing that holds itself.
#include "support/AllocationCountdown.hpp"
#include "support/Ledger.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/testing/CallLog.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <ostream>
#include <random>
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

/// What holds itself is never freed.
template <class Run>
void expectNothingLeft(Run run) {
    using support::AllocationCountdown;
    run(); // what is made once for the process is made here
    AllocationCountdown::start();
    run();
    const std::ptrdiff_t left = AllocationCountdown::liveBlocks();
    AllocationCountdown::stop();
    EXPECT_EQ(left, 0);
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
    expectNothingLeft([this] {
        auto outer = factory.createArray<Array>({1, 2});
        outer[0] = factory.createArray<Array>({1, 1});
        Reference<Array> inner = outer[0]; // into what is innermost soon, and there the whole is stored
        outer[1] = doubled(levels, outer);
        inner[0] = outer;
    });
}

/// Stores one of a few arrays into a place in another, again and again. Some of the places are references
/// that were made while nobody shared what they go into, which they go on writing.
class Stores {
public:
    explicit Stores(std::mt19937& random) : random_(random) {
        kept_.push_back(object_["left"]);
        for (Array& array : arrays_) {
            kept_.push_back(placeIn(array));
        }
        alive_ = arrays_;
        arrays_.push_back(factory.createValueObjectScalar(object_));
    }

    void storeOne() {
        Array& into = arrays_[below(arrays_.size())];
        const Array& what = arrays_[below(arrays_.size())];
        if (below(2) == 0) {
            storeAt(kept_[below(kept_.size())], what);
        } else if (into.getType() == ArrayType::VALUE_OBJECT && below(2) == 0) {
            ValueObject element = ValueObjectArray(into)[0];
            element["left"] = what;
            ValueObjectArray objects(std::move(into));
            objects[0] = below(2) == 0 ? element : object_;
            into = std::move(objects);
        } else {
            Reference<Array> place = placeIn(into);
            storeAt(place, what);
        }
    }

private:
    std::size_t below(std::size_t count) { return random_() % count; }

    template <class Typed, class Index>
    static Reference<Array> place(Array& array, Index index) {
        Typed typed(std::move(array));
        Reference<Array> found = index(typed);
        array = std::move(typed);
        return found;
    }
    Reference<Array> placeIn(Array& array) {
        const bool left = below(2) == 0;
        switch (array.getType()) {
        case ArrayType::STRUCT:
            return place<StructArray>(array, [&](auto& a) { return a[0][left ? "left" : "right"]; });
        case ArrayType::VALUE_OBJECT:
            return place<ValueObjectArray>(array, [](auto& a) { return a["note"]; });
        default:
            return place<TypedArray<Array>>(array, [&](auto& a) { return a[left ? 0 : 1]; });
        }
    }
    /// Into the array that a reference is to, or in its place.
    void storeAt(Reference<Array>& place, const Array& what) {
        if (below(2) == 0) {
            place = what;
        } else if (place.getType() == ArrayType::CELL) {
            Reference<Array> deeper = place[below(2)];
            deeper = what;
        } else if (place.getType() == ArrayType::STRUCT) {
            Reference<Array> deeper = place[0]["left"];
            deeper = what;
        }
    }

    std::mt19937& random_;
    const Array empty_;
    std::vector<Array> arrays_{inCell(empty_, empty_), inFields(empty_, empty_), inObject(empty_, empty_)};
    ValueObject object_ = factory.createValueObject(nodes);
    std::vector<Reference<Array>> kept_;
    std::vector<Array> alive_; // what the references go into
};

TEST(NestedAtRandom, NothingComesToHoldItself) {
    std::mt19937 random(7);
    for (int round = 0; round < 2'000 && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(round);
        expectNothingLeft([&] {
            Stores stores(random);
            for (int step = 0; step < 12; ++step) {
                stores.storeOne();
            }
        });
    }
}

class Watched : public support::LedgerTest {};

TEST_F(Watched, ElementsThatHoldNothingAreNotLookedAtWhenTheirArrayIsStored) {
    auto made = vexa::testing::recorded(factory.createArray<double>({1, 1}));
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
