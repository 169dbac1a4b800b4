// Struct arrays: fields, records, and what a write copies.
#include "support/AllocationCountdown.hpp"
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Exception.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

// A range of no names through a reference keeps two iterators for ever, deliberately.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:StructArrayExt::getFieldNames"; }

namespace {

using namespace foundation::vexadata;
using support::AllocationCountdown;
using support::throwsExactly;
using vexa::client::UnknownFieldException;

class Structs : public testing::Test {
protected:
    Structs() {
        for (std::size_t k = 0; k < 3; ++k) {
            points[k]["x"] = factory.createScalar(double(k));
            points[k]["y"] = factory.createScalar(10.0 + double(k));
        }
    }
    static double x(const StructArray& array, std::size_t index) { return array[index]["x"][0]; }
    static double y(const StructArray& array, std::size_t index) { return array[index]["y"][0]; }
    /// Identity of the array that a field holds.
    static std::uint64_t idOf(const StructArray& array, std::size_t index, const char* field) {
        return array[index][field].getArrayID();
    }

    ArrayFactory factory;
    StructArray points = factory.createStructArray({1, 3}, {"x", "y"});
};

template <class Names>
std::string joined(const Names& names) {
    std::string text;
    for (const VexaFieldIdentifier& name : names) {
        text += name.getString() + " ";
    }
    return text;
}

TEST_F(Structs, NameTheirFieldsInOrder) {
    EXPECT_EQ(joined(points.getFieldNames()), "x y ");
    EXPECT_EQ(joined(points[1].getFieldNames()), "x y ");
    EXPECT_EQ(joined(std::as_const(points)[1].getFieldNames()), "x y ");
    EXPECT_EQ(points.getNumberOfFields(), 2U);
    EXPECT_EQ(StructElement(points[2]).getNumberOfFields(), 2U);
    auto names = points.getFieldNames();
    auto it = names.begin();
    const auto before = it++;
    EXPECT_NE(before, it);
    EXPECT_EQ(before, names.begin());
    EXPECT_EQ(*before, VexaFieldIdentifier("x"));
    EXPECT_NE(*it, *before);
    EXPECT_EQ(++it, names.end());

    auto cells = factory.createArray<Array>({1, 1}, {points});
    const Reference<StructArray> held = cells[0];
    EXPECT_EQ(held.getNumberOfFields(), 2U);
    EXPECT_EQ(joined(held.getFieldNames()), "") << "empty, deliberately";
    AllocationCountdown::start();
    held.getFieldNames();
    EXPECT_EQ(AllocationCountdown::liveBlocks(), 2) << "the iterators, deliberately";
    AllocationCountdown::stop();

    StructArray none = factory.createStructArray({1, 2}, {});
    EXPECT_EQ(none.getNumberOfFields(), 0U);
    EXPECT_EQ(joined(none.getFieldNames()), "");
    EXPECT_EQ(none[0].begin(), none[0].end());
    none[0] = std::vector<Array>();
    EXPECT_THROW(none[0] = {Array()}, WrongVectorSizeForStructException);
}

TEST_F(Structs, ReadAndWriteFieldsByName) {
    points[1]["x"] = factory.createCharArray("one");
    EXPECT_EQ(CharArray(points[1]["x"]).toAscii(), "one");
    EXPECT_EQ(y(points, 1), 11);
    points[2]["y"][0] = 5.0;
    EXPECT_EQ(y(points, 2), 5);
    Reference<Array> field = points[0]["x"];
    EXPECT_EQ(field.getType(), ArrayType::DOUBLE);
    field = points[2]["y"];
    EXPECT_EQ(x(points, 0), 5);
    Reference<StructElement> record = points[0];
    record["x"] = factory.createScalar(6.0);
    EXPECT_EQ(x(points, 0), 6);
    Array untyped = points;
    untyped[0]["x"] = factory.createScalar(7.0);
    EXPECT_EQ(double(std::as_const(untyped)[0]["x"][0]), 7);
    EXPECT_EQ(x(points, 0), 6);
    untyped[1] = untyped[0];
    EXPECT_EQ(x(untyped, 1), 7);
    Reference<Array> asArray = untyped[2];
    asArray["x"] = factory.createScalar(8.0);
    EXPECT_EQ(x(untyped, 2), 8);
    Array numbers = factory.createScalar(1.0);
    EXPECT_THROW(numbers[0]["x"], TypeMismatchException);
    EXPECT_THROW(static_cast<void>(Array{points[3]["x"]}), EArrayIndexOutOfRange);
    EXPECT_THROW(static_cast<void>(Array{std::as_const(points)[3]["x"]}), EArrayIndexOutOfRange);
}

TEST_F(Structs, RefuseNamesThatAreNoneOrSecond) {
    const auto unknown = "Unknown field 'z'";
    EXPECT_TRUE(throwsExactly<UnknownFieldException>([&] { Array no = points[0]["z"]; }, unknown));
    EXPECT_TRUE(throwsExactly<UnknownFieldException>([&] { std::as_const(points)[0]["z"]; }, unknown));
    EXPECT_TRUE(throwsExactly<UnknownFieldException>([&] { points[0]["z"] = Array(); }, unknown));
    EXPECT_TRUE(throwsExactly<UnknownFieldException>([&] { points[0]["z"][0] = 1.0; }, unknown));
    EXPECT_TRUE(throwsExactly<CanOnlyUseOneStringIndexException>([&] { points[0]["x"]["y"]; }));
    const Reference<Array> field = points[0]["x"];
    EXPECT_TRUE(throwsExactly<CanOnlyUseOneStringIndexException>([&] { field["y"]; }));
    for (const char* bad : {"", "1a", "a b", "_a", "a-b", "\xC3\xA9"}) {
        EXPECT_THROW(factory.createStructArray({1, 1}, {"a", bad}), vexa::client::InvalidFieldNameException)
            << bad;
    }
    EXPECT_TRUE(throwsExactly<vexa::client::InvalidFieldNameException>(
        [&] {
            factory.createStructArray({1, 1}, {"a", "b", "a"});
        },
        "The field name 'a' comes twice"));
    std::vector<std::string> many; // names that differ in the middle only are told apart
    for (int k = 0; k < 300; ++k) {
        many.push_back("sameBeginning" + std::to_string(k) + "sameEndOfName");
    }
    StructArray wide = factory.createStructArray({1, 1}, many);
    for (int k = 0; k < 300; ++k) {
        wide[0][many[static_cast<std::size_t>(k)]] = factory.createScalar(k);
    }
    EXPECT_EQ(std::int32_t(wide[0][many[137]][0]), 137);
}

TEST_F(Structs, ReplaceWholeRecords) {
    const StructArray copy = points;
    points[0] = {factory.createScalar(3.0), factory.createScalar(4.0)};
    EXPECT_EQ(x(points, 0), 3);
    EXPECT_EQ(y(points, 0), 4);
    points[1] = points[0];
    points[2] = copy[1];
    EXPECT_EQ(x(points, 1), 3);
    EXPECT_EQ(y(points, 2), 11);
    EXPECT_TRUE(throwsExactly<WrongVectorSizeForStructException>([&] { points[2] = {Array()}; }));
    EXPECT_EQ(x(points, 2), 1);
    EXPECT_EQ(y(points, 2), 11);
    EXPECT_THROW((points[3] = {Array(), Array()}), EArrayIndexOutOfRange);
    Reference<StructElement> record = points[2];
    record = std::vector<Array>{factory.createScalar(8.0), factory.createScalar(9.0)};
    EXPECT_EQ(x(points, 2), 8);
    EXPECT_EQ(x(copy, 0), 0);
    detail::setElement(detail::chainOf(Array(points)[0]), {Array(), Array()}); // of a copy
    EXPECT_EQ(x(points, 0), 3);
}

TEST_F(Structs, AreWalked) {
    const StructArray copy = points;
    double sum = 0;
    for (const auto& point : copy) {
        sum += double(point["x"][0]);
        for (const auto& value : point) {
            sum += double(value[0]); // an index goes into the value
        }
    }
    EXPECT_EQ(sum, 3 + 36);
    EXPECT_EQ(copy[0].end() - copy[0].begin(), 2);
    for (auto point : points) {
        point["x"] = factory.createScalar(1.0);
        for (auto value : point) {
            value[0] = double(value[0]) + 100;
        }
    }
    EXPECT_EQ(x(points, 2), 101);
    EXPECT_EQ(y(points, 2), 112);
    EXPECT_EQ(x(copy, 2), 2);
    EXPECT_EQ(y(copy, 2), 12);
    auto cells = factory.createArray<Array>({1, 1}, {copy});
    Reference<StructArray> inside = cells[0];
    const StructArray older = cells[0]; // shares the array in the cell with it
    auto last = inside[1].end();
    *--last = factory.createScalar(5.0);
    const StructArray written = cells[0];
    EXPECT_EQ(y(older, 1), 11);
    EXPECT_EQ(y(written, 1), 5);
    *inside[1].begin() = factory.createScalar(6.0);
    EXPECT_EQ(x(written, 1), 1);
    StructElement first = *copy.begin();
    EXPECT_EQ(TypedArray<double>(*first.begin())[0], 0);
}

TEST_F(Structs, CopyWhatIsWrittenAndNothingElse) {
    StructArray copy = points;
    const auto before = idOf(points, 0, "x");
    points[0]["x"][0] = 50.0;
    EXPECT_EQ(x(copy, 0), 0);
    EXPECT_NE(idOf(points, 0, "x"), before);
    EXPECT_EQ(idOf(points, 0, "y"), idOf(copy, 0, "y")) << "a field that nobody wrote was copied";
    EXPECT_EQ(idOf(copy, 0, "x"), before);
    const auto mine = idOf(points, 0, "x");
    points[0]["x"][0] = 51.0;
    EXPECT_EQ(idOf(points, 0, "x"), mine) << "a field of its own was copied again";
    const Array out = points[0]["x"];
    points[0]["x"][0] = 52.0;
    EXPECT_EQ(double(out[0]), 51) << "a handle that was handed out changed";

    Reference<Array> kept = points[1]["x"];
    auto element = kept[0];
    const Array taken = points[1]["x"];
    element = 70.0; // written after the value was handed out
    EXPECT_EQ(double(taken[0]), 1);
    EXPECT_EQ(x(points, 1), 70);

    // Three levels: a struct in a cell in a struct.
    StructArray outer = factory.createStructArray({1, 1}, {"cell"});
    outer[0]["cell"] = factory.createArray<Array>({1, 2}, {points, factory.createScalar(1.0)});
    const StructArray outerCopy = outer;
    Reference<TypedArray<Array>> cell = outer[0]["cell"];
    Reference<StructArray> inside = cell[0];
    inside[2]["y"][0] = 70.0;
    const TypedArray<Array> written = outer[0]["cell"];
    const TypedArray<Array> older = outerCopy[0]["cell"];
    EXPECT_EQ(y(written[0], 2), 70);
    EXPECT_EQ(y(older[0], 2), 12);
    EXPECT_EQ(y(points, 2), 12);
    EXPECT_EQ(Array(written[1]).getArrayID(), Array(older[1]).getArrayID());
}

TEST_F(Structs, StoredIntoThemselvesHoldWhatTheyWere) {
    points[0]["x"] = points;
    const StructArray inside = points[0]["x"];
    EXPECT_EQ(x(inside, 1), 1);
    EXPECT_EQ(x(inside, 0), 0);
    auto cells = factory.createArray<Array>({1, 1}, {points});
    points[1]["x"] = cells; // holds a copy of what points was
    cells[0] = points;
    const StructArray last = cells[0];
    EXPECT_EQ(y(last, 1), 11);
    points[2] = {points, cells};
    EXPECT_EQ(StructArray(points[2]["x"]).getNumberOfElements(), 3U);
}

TEST_F(Structs, AreEqualByFieldsAndValues) {
    StructArray same = factory.createStructArray({1, 3}, {"x", "y"});
    for (std::size_t k = 0; k < 3; ++k) {
        same[k]["x"] = factory.createScalar(double(k));
        same[k]["y"] = factory.createScalar(10.0 + double(k));
    }
    EXPECT_EQ(points, same);
    same[2]["y"][0] = 0.0;
    EXPECT_NE(points, same);
    EXPECT_NE(factory.createStructArray({1, 1}, {"a"}), factory.createStructArray({1, 1}, {"b"}));
    EXPECT_NE(factory.createStructArray({1, 1}, {"a", "b"}), factory.createStructArray({1, 1}, {"b", "a"}));
    EXPECT_THROW(StructArray(Array(factory.createScalar(1.0))), InvalidArrayTypeException);
    EXPECT_EQ(factory.createArray<StructElement>({2, 2}).getType(), ArrayType::STRUCT);
}

TEST_F(Structs, OfOtherBackEndsAreComparedByTheirNames) {
    const auto made = [this](ArrayFactory maker, std::vector<std::string> names, double value) {
        StructArray records = maker.createStructArray({1, 2}, names);
        records[1]["b"] = factory.createScalar(value);
        return records;
    };
    const StructArray own = made(factory, {"a", "b"}, 1);
    const ArrayFactory other = vexa::testing::forwardingFactory();
    EXPECT_EQ(own, made(other, {"a", "b"}, 1));
    EXPECT_EQ(own, made(other, {"b", "a"}, 1)) << "in whatever order";
    EXPECT_NE(own, made(other, {"a", "b"}, 2));
    EXPECT_NE(own, made(other, {"b", "c"}, 1));
    EXPECT_NE(own, made(other, {"b"}, 1));
    EXPECT_NE(own, made(factory, {"b", "a"}, 1)) << "the order counts within one back-end";
}

TEST_F(Structs, AreSortedMovedAndKeptAsWholeRecords) {
    constexpr std::size_t count = 40; // beyond what algorithms sort by insertion
    StructArray many = factory.createStructArray({1, count}, {"x", "y"});
    for (std::size_t k = 0; k < count; ++k) {
        many[k]["x"] = factory.createScalar(double((k * 17) % count));
        many[k]["y"] = factory.createScalar(double((k * 17) % count) + 1000);
    }
    const auto expectOrder = [&](auto xOf) {
        for (std::size_t k = 0; k < count; ++k) {
            EXPECT_EQ(x(many, k), double(xOf(k)));
            EXPECT_EQ(y(many, k), double(xOf(k)) + 1000) << "the fields of a record stay together";
        }
    };
    const auto less = [](const StructElement& a, const StructElement& b) {
        return double(a["x"][0]) < double(b["x"][0]);
    };
    const StructArray before = many;
    std::sort(many.begin(), many.end(), less);
    expectOrder([](std::size_t k) { return k; });
    EXPECT_EQ(x(before, 1), 17.0);
    std::reverse(many.begin(), many.end());
    expectOrder([](std::size_t k) { return count - 1 - k; });
    std::stable_sort(many.begin(), many.end(), less);
    std::rotate(many.begin(), many.begin() + 1, many.end());
    expectOrder([](std::size_t k) { return (k + 1) % count; });

    std::vector<StructValue> kept(many.cbegin(), many.cend());
    many[0]["x"] = factory.createScalar(-1.0);
    many = points;
    EXPECT_EQ(double(kept[0]["x"][0]), 1.0);
    many[1] = kept[5];
    EXPECT_EQ(y(many, 1), 1006.0);
    EXPECT_THROW(many[0] = StructValue(factory.createStructArray({1, 1}, {"x"})[0]),
                 WrongVectorSizeForStructException);
}

} // namespace
