// What was written is what is read: every kind, in every way in and out.
#include "Folder.hpp"
#include "Samples.hpp"

#include <vexa/storage/Reader.hpp>
#include <vexa/storage/Writer.hpp>
#include <vexa/testing/BareArray.hpp>
#include <vexa/testing/ForwardingFactory.hpp>

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

using namespace storage_tests;
namespace storage = vexa::storage;
using storage::Check;
using storage::Placement;

namespace {

void expectSame(const std::vector<Variable>& loaded, const std::vector<Variable>& saved) {
    ASSERT_EQ(loaded.size(), saved.size());
    for (std::size_t k = 0; k < saved.size(); ++k) {
        SCOPED_TRACE(saved[k].name);
        EXPECT_EQ(loaded[k].name, saved[k].name);
        EXPECT_TRUE(isSame(loaded[k].array, saved[k].array));
    }
}

} // namespace

TEST(RoundTrip, ThroughFilesStreamsAndMemory) {
    const Folder folder;
    const std::vector<Variable> all = samples();
    storage::save(folder / "all.cbor", all);
    for (const Placement placement : {Placement::mapped, Placement::memory}) {
        for (const Check check : {Check::whenRead, Check::always, Check::never}) {
            expectSame(storage::loadAll(folder / "all.cbor", {placement, check}), all);
        }
    }
    std::stringstream stream;
    storage::save(stream, all);
    const std::string bytes = stream.str();
    EXPECT_EQ(bytes, folder.content("all.cbor"));
    expectSame(storage::loadAll(stream), all);
    expectSame(storage::Reader(bytes.data(), bytes.size(), nullptr).loadAll(), all);
}

TEST(RoundTrip, KindsHoldTheirValues) {
    ArrayFactory factory;
    for (const vexa::testing::Kind& kind : vexa::testing::catalogue()) {
        if (kind.name != "Handles") {
            const Array array = kind.make(factory, 77);
            const Array again = copyOf(array);
            EXPECT_TRUE(again == array) << kind.name;
            EXPECT_TRUE(kind.holds(again, 77)) << kind.name;
        }
    }
}

TEST(RoundTrip, TakesArraysOfAnotherBackEnd) {
    ArrayFactory foreign = vexa::testing::forwardingFactory();
    for (const vexa::testing::Kind& kind : vexa::testing::catalogue()) {
        if (kind.name != "Handles") {
            EXPECT_TRUE(kind.holds(copyOf(kind.make(foreign, 33)), 33)) << kind.name;
        }
    }
}

namespace {

/// A cell array in rows, the cells of which are in no store.
class CellsInRows final
    : public vexa::testing::BareArray<vexa::data::impl::TypedArrayImpl<Array>, ArrayType::CELL, 6> {
public:
    MemoryLayout getMemoryLayout() const override { return MemoryLayout::ROW_MAJOR; }
    const std::vector<std::size_t>& getDimensions() const override { return twoByThree_; }
    Array* getElementAddress(std::size_t, const std::string&, bool) override { return nullptr; }
    void setElementValue(std::size_t, const std::string&, Array) override {}
    const Array* getTypedDataPtr() const override { return cells_.data(); }

private:
    std::vector<std::size_t> twoByThree_{2, 3};
    std::vector<Array> cells_{ArrayFactory().createScalar(0.0),  ArrayFactory().createScalar(1.0),
                              ArrayFactory().createScalar(2.0),  ArrayFactory().createScalar(10.0),
                              ArrayFactory().createScalar(11.0), ArrayFactory().createScalar(12.0)};
};

} // namespace

TEST(RoundTrip, CellsInRowsComeInColumns) {
    const TypedArray<Array> cells = copyOf(Array(new CellsInRows));
    for (std::size_t row = 0; row < 2; ++row) {
        for (std::size_t column = 0; column < 3; ++column) {
            const TypedArray<double> cell = cells[row][column];
            EXPECT_EQ(double(cell[0]), double(10 * row + column));
        }
    }
}

TEST(RoundTrip, KeepsBitsThatEqualityDoesNotSee) {
    const TypedArray<double> zero = copyOf(ArrayFactory().createScalar(-0.0));
    EXPECT_TRUE(std::signbit(double(zero[0])));
    const double nan = std::nan("0x123");
    const TypedArray<double> number = copyOf(ArrayFactory().createScalar(nan));
    EXPECT_EQ(std::memcmp(&*number.begin(), &nan, sizeof nan), 0);
    const TypedArray<String> strings = copyOf(texts());
    EXPECT_TRUE(strings[0][1] == std::u16string(u"Gr\u00fc\u00dfe \U0001F600\0x", 11));
    EXPECT_TRUE(strings[1][1] == std::u16string(1, char16_t(0xD800)));
    const String missing = strings[1][2];
    const String empty = strings[1][0];
    EXPECT_FALSE(missing.has_value());
    EXPECT_TRUE(empty.has_value());
}

TEST(RoundTrip, ObjectsHaveTheirClassesAndProperties) {
    const ValueObjectArray array = copyOf(shapes());
    EXPECT_TRUE(array == shapes());
    const ValueObject shape = array[1][1];
    EXPECT_EQ(CharArray(shape["name"]).toAscii(), "own");
    EXPECT_EQ(CharArray(shape[VexaPropertyIdentifier("geo.Shape", "name")]).toAscii(), "inherited");
    EXPECT_EQ(CharArray(array["unit"]).toAscii(), "mm");
    EXPECT_EQ(array.getExternalDimensions(), (std::vector<std::size_t>{4, 1}));
    const ClassInfo info = shape.getClassInfo();
    EXPECT_EQ((*info.getSuperclasses().begin()).getClassIdentifier().getString(), "geo.Shape");
}

TEST(RoundTrip, NestsToAnyDepth) {
    ArrayFactory factory;
    Array deep = factory.createScalar(1.5);
    for (int k = 0; k < 100'000; ++k) {
        if (k % 2 == 0) {
            deep = factory.createArray<Array>({1, 1}, {deep});
        } else {
            StructArray record = factory.createStructArray({1, 1}, {"f"});
            record[0] = {deep};
            deep = record;
        }
    }
    EXPECT_TRUE(copyOf(deep) == deep);
}

TEST(RoundTrip, SharedPartsAreWrittenOnceAndSharedAgain) {
    ArrayFactory factory;
    const Array large = counting<double>({1000, 1});
    const Array inner = factory.createArray<Array>({1, 2}, {large, large});
    const std::vector<Variable> saved{{"cells", factory.createArray<Array>({1, 3}, {inner, large, inner})},
                                      {"again", large},
                                      {"same", large}};
    std::stringstream stream;
    storage::save(stream, saved);
    EXPECT_LT(stream.str().size(), 2 * 8000 + 1000U) << "in the cells once, and once as a variable";
    const std::vector<Variable> loaded = storage::loadAll(stream);
    expectSame(loaded, saved);
    const TypedArray<Array> cells = loaded[0].array;
    const TypedArray<Array> first = cells[0];
    const auto identity = [](const Array& array) { return array.getArrayID(); };
    EXPECT_EQ(identity(cells[0]), identity(cells[2]));
    EXPECT_EQ(identity(first[0]), identity(cells[1]));
    EXPECT_EQ(identity(loaded[1].array), identity(loaded[2].array));

    const ValueObjectArray array = copyOf(shapes());
    const ValueObject a = array[0][0];
    const ValueObject b = array[1][1];
    EXPECT_EQ(identity(a["tags"]), identity(b["tags"]));
}

TEST(RoundTrip, RefusesHandleObjectsByTheNameOfTheVariable) {
    ArrayFactory factory;
    const Array handles =
        factory.createArray<HandleObjectRef>({1, 1}, {factory.createHandleObjectRef(ZVMID(), 3)});
    TypedArray<ValueObject> objects = factory.createArray<ValueObject>({1, 1});
    const HandleObjectRef handle = factory.createHandleObjectRef(ZVMID(), 4);
    foundation::vexadata::detail::Access::impl(handle)->retain();
    objects[0] = ValueObject(foundation::vexadata::detail::Access::impl(handle).get());
    const Folder folder;
    for (const Array& array :
         {handles, Array(factory.createArray<Array>({1, 1}, {handles})), Array(objects)}) {
        try {
            storage::save(folder / "handles.cbor", {{"engine", array}});
            ADD_FAILURE() << "it is saved";
        } catch (const storage::Error& error) {
            EXPECT_STREQ(error.what(), (folder / "handles.cbor")
                                           .append(": the variable 'engine' has handle objects, "
                                                   "which live in an engine and in no file")
                                           .c_str());
        }
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST(RoundTrip, ReadsWhatOtherProgramsWrite) {
    const auto decode = [](const std::vector<unsigned char>& bytes) {
        return storage::decode(bytes.data(), bytes.size());
    };
    const TypedArray<std::int64_t> number = decode({0x38, 0x63});
    EXPECT_EQ(std::int64_t(number[0]), -100);
    const TypedArray<float> half = decode({0xF9, 0x3C, 0x00});
    EXPECT_EQ(float(half[0]), 1.0F);
    // typed arrays alone: big-endian of 16 bits, halves of either order, clamped bytes
    const TypedArray<std::uint16_t> big = decode({0xD8, 65, 0x44, 1, 2, 3, 4});
    EXPECT_EQ(std::uint16_t(big[1]), 0x304);
    const TypedArray<float> halves = decode({0xD8, 80, 0x42, 0xC0, 0x00});
    EXPECT_EQ(float(halves[0]), -2.0F);
    const TypedArray<float> little = decode({0xD8, 84, 0x42, 0x00, 0xC0});
    EXPECT_EQ(float(little[0]), -2.0F);
    EXPECT_EQ(decode({0xD8, 68, 0x41, 9}).getType(), ArrayType::UINT8);
    // a list, and one in rows: [[2, 2], [1, 2, 3, 4]]
    const TypedArray<Array> list = decode({0x82, 0x01, 0x61, 'a'});
    EXPECT_EQ(list.getDimensions(), (std::vector<std::size_t>{2, 1}));
    const TypedArray<Array> rows = decode({0xD8, 40, 0x82, 0x82, 2, 2, 0x84, 1, 2, 3, 4});
    EXPECT_EQ(std::int64_t(TypedArray<std::int64_t>(rows[0][1])[0]), 2);
}
