// Columns and tables of Arrow: what is shared and what is copied, missing entries, pieces, who releases what, and
// what is refused.
#include "Failures.hpp"

#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Arrow.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace foundation::vexadata;
using vexa::interop::ArrowOptions;
using vexa::interop::fromArrow;
using vexa::interop::fromArrowStream;
using vexa::interop::OwnedArrow;
using vexa::interop::toArrow;
using vexa::interop::toArrowStream;

namespace {

const ArrayFactory factory;
using Texts = std::vector<std::optional<std::string>>;

TypedArray<String> strings(const Texts& texts) {
    return stringArrayFromUtf8(factory, {texts.size(), 1}, texts);
}

Texts textsOf(const Array& array) { return toUtf8(TypedArray<String>(array)); }

/// A table of every kind of column.
StructArray sampleTable() {
    StructArray table = factory.createStructArray({1, 1}, {"x", "ok", "name", "kind", "inner"});
    table[0]["x"] = factory.createArray<double>({3, 1}, {1, 2, 3});
    table[0]["ok"] = factory.createArray<bool>({3, 1}, {true, false, true});
    table[0]["name"] = strings({"å", std::nullopt, ""});
    table[0]["kind"] = factory.createEnumArray({3, 1}, "kind", {"low", "", "low"});
    StructArray inner = factory.createStructArray({1, 1}, {"n"});
    inner[0]["n"] = factory.createArray<std::int16_t>({3, 1}, {7, 8, 9});
    table[0]["inner"] = inner;
    return table;
}

struct Column {
    OwnedArrow<ArrowSchema> schema;
    OwnedArrow<ArrowArray> array;

    explicit Column(const Array& from, const ArrowOptions& options = {}) {
        toArrow(from, schema.get(), array.get(), options);
    }
    Array back() { return fromArrow(*schema.get(), array.get()); }
};

/// A structure of a producer, over memory of its own, that counts how often it is released.
struct Producer {
    std::deque<ArrowSchema> schemas; // addresses stay
    std::deque<ArrowArray> arrays;
    std::deque<std::vector<const void*>> buffers;
    std::vector<ArrowSchema*> childSchemas;
    std::vector<ArrowArray*> childArrays;
    int released = 0;

    ArrowSchema& schema(const char* format, const char* name = "c") {
        return schemas.emplace_back(ArrowSchema{format, name, nullptr, 2, 0, nullptr, nullptr,
                                                [](ArrowSchema* self) { self->release = nullptr; }, nullptr});
    }
    ArrowArray& array(std::int64_t length, std::vector<const void*> parts, std::int64_t missing = 0,
                      std::int64_t offset = 0) {
        auto& kept = buffers.emplace_back(std::move(parts));
        return arrays.emplace_back(ArrowArray{length, missing, offset, std::int64_t(kept.size()), 0,
                                              kept.data(), nullptr, nullptr,
                                              [](ArrowArray* self) {
                                                  ++static_cast<Producer*>(self->private_data)->released;
                                                  self->release = nullptr;
                                              },
                                              this});
    }
    /// Makes the first structures the parent of the second ones.
    void nest(ArrowSchema& schema, ArrowSchema& child, ArrowArray& array, ArrowArray& childArray) {
        childSchemas = {&child};
        childArrays = {&childArray};
        schema.children = childSchemas.data();
        array.children = childArrays.data();
        schema.n_children = array.n_children = 1;
    }
};

template <class T>
void goesAndComes(const char* format) {
    const TypedArray<T> array = factory.createArray<T>({3, 1}, {T(1), T(0), T(3)});
    Column column(array);
    EXPECT_STREQ(column.schema->format, format);
    EXPECT_EQ(column.array->buffers[1], &*array.begin());
    TypedArray<T> back = column.back();
    EXPECT_EQ(back, array);
    EXPECT_EQ(&*back.cbegin(), &*array.begin()) << "the elements themselves";
    back[0] = T(5);
    EXPECT_EQ(T(array[0]), T(1)) << "the first write gives storage of its own";

    Column empty(factory.createArray<T>({0, 1}));
    EXPECT_EQ(empty.back(), factory.createArray<T>({0, 1}));
}

const std::int32_t sixNumbers[] = {10, 11, 12, 13, 14, 15};
const unsigned char evenOnes[] = {0b01010101};

} // namespace

TEST(Arrow, NumbersAreShared) {
    goesAndComes<std::int8_t>("c");
    goesAndComes<std::uint8_t>("C");
    goesAndComes<std::int16_t>("s");
    goesAndComes<std::uint16_t>("S");
    goesAndComes<std::int32_t>("i");
    goesAndComes<std::uint32_t>("I");
    goesAndComes<std::int64_t>("l");
    goesAndComes<std::uint64_t>("L");
    goesAndComes<float>("f");
    goesAndComes<double>("g");
    Column row(factory.createArray<double>({1, 3}, {1, 2, 3}));
    EXPECT_EQ(row.back(), factory.createArray<double>({3, 1}, {1, 2, 3})) << "a row will do";
}

TEST(Arrow, OtherColumnsComeBackEqual) {
    std::vector<bool> bits{true, false, true, true, false, false, true, false, true, true};
    const auto logicals = factory.createArray<bool>({10, 1}, bits.begin(), bits.end());
    Column packed(logicals);
    EXPECT_STREQ(packed.schema->format, "b");
    EXPECT_EQ(std::memcmp(packed.array->buffers[1], "\x4D\x03", 2), 0);
    EXPECT_EQ(packed.back(), logicals);

    const Texts texts{"", "Åré", std::nullopt, "\U0001F600", "a longer text than fits in place"};
    for (const bool wide : {false, true}) {
        ArrowOptions options;
        options.wideOffsets = wide;
        Column column(strings(texts), options);
        EXPECT_STREQ(column.schema->format, wide ? "U" : "u");
        EXPECT_EQ(column.array->null_count, 1);
        EXPECT_EQ(textsOf(column.back()), texts);
    }
    const auto members = factory.createEnumArray({5, 1}, "category", {"b", "a", "", "b", "c"});
    Column codes(members);
    ASSERT_NE(codes.schema->dictionary, nullptr);
    EXPECT_EQ(codes.array->dictionary->length, 3);
    EXPECT_EQ(codes.back(), members);
}

TEST(Arrow, ATableIsAStructOfColumns) {
    const StructArray table = sampleTable();
    Column made(table);
    EXPECT_STREQ(made.schema->format, "+s");
    EXPECT_EQ(made.array->length, 3);
    EXPECT_STREQ(made.schema->children[3]->name, "kind");
    EXPECT_EQ(made.array->children[1]->null_count, 0);
    const StructArray back = made.back();
    EXPECT_FALSE(made.array) << "taken over";
    for (const char* field : {"x", "ok", "kind", "inner"}) {
        EXPECT_EQ(Array(back[0][field]), Array(table[0][field])) << field;
    }
    EXPECT_EQ(textsOf(back[0]["name"]), textsOf(table[0]["name"]));

    Column nothing(factory.createStructArray({1, 1}, {}));
    EXPECT_EQ(StructArray(nothing.back()).getNumberOfFields(), 0U);
}

TEST(Arrow, AChildThatWasMovedAwayOutlivesItsTable) {
    Column made(sampleTable());
    OwnedArrow<ArrowArray> child;
    OwnedArrow<ArrowSchema> schema;
    child.take(made.array->children[0]);
    schema.take(made.schema->children[0]);
    made.array.reset();
    made.schema.reset();
    EXPECT_EQ(fromArrow(*schema.get(), child.get()), factory.createArray<double>({3, 1}, {1, 2, 3}));
}

TEST(Arrow, MissingNumbersAreNaN) {
    ArrowOptions options;
    options.nanIsMissing = true;
    const auto numbers = factory.createArray<float>({3, 1}, {1, NAN, 3});
    Column told(numbers, options);
    EXPECT_EQ(told.array->null_count, 1);
    EXPECT_EQ(told.array->buffers[1], &*numbers.begin());
    const TypedArray<float> floats = told.back();
    EXPECT_TRUE(std::isnan(float(floats[1])));
    EXPECT_EQ(float(floats[2]), 3);
    EXPECT_EQ(Column(numbers).array->null_count, 0) << "a number unless that is asked for";

    Producer p;
    const TypedArray<double> integers = fromArrow(p.schema("i"), &p.array(3, {evenOnes, sixNumbers}, -1));
    EXPECT_EQ(double(integers[0]), 10);
    EXPECT_TRUE(std::isnan(double(integers[1])));
    EXPECT_EQ(double(integers[2]), 12);
    const unsigned char bits[] = {0b110};
    const TypedArray<double> logicals = fromArrow(p.schema("b"), &p.array(3, {evenOnes, bits}, 1));
    EXPECT_EQ(double(logicals[0]), 0);
    EXPECT_EQ(double(logicals[2]), 1);
    EXPECT_EQ(p.released, 2);

    const std::int64_t large[] = {(std::int64_t{1} << 53) + 1, 0};
    const std::uint64_t largest[] = {std::numeric_limits<std::uint64_t>::max(), 0};
    ArrowArray& first = p.array(2, {evenOnes, large}, 1);
    EXPECT_EQ(
        refusal([&] { fromArrow(p.schema("l"), &first); }),
        "Arrow: column 'c': 9007199254740993 beside missing entries, with which integers become double, but "
        "double has no such number");
    ArrowArray& second = p.array(2, {evenOnes, largest}, 1);
    EXPECT_NE(refusal([&] { fromArrow(p.schema("L"), &second); }), "");
    const unsigned char all[] = {3};
    EXPECT_EQ(fromArrow(p.schema("L"), &p.array(2, {all, largest}, -1)),
              factory.createArray<std::uint64_t>({2, 1}, {largest[0], 0}))
        << "none is missing after all";
}

TEST(Arrow, DecimalsBecomeDouble) {
    Producer p;
    __extension__ using Wide = __int128;
    const Wide values[] = {125, -1, Wide{1} << 100, 0};
    const unsigned char present[] = {0b0111};
    const TypedArray<double> numbers = fromArrow(p.schema("d:38,2"), &p.array(4, {present, values}, 1));
    EXPECT_EQ(double(numbers[0]), 1.25);
    EXPECT_EQ(double(numbers[1]), -0.01);
    EXPECT_EQ(double(numbers[2]), 12676506002282294014967032053.76);
    EXPECT_TRUE(std::isnan(double(numbers[3])));
    const TypedArray<double> hundreds = fromArrow(p.schema("d:4,-2,128"), &p.array(1, {nullptr, values}));
    EXPECT_EQ(double(hundreds[0]), 12500);
    for (const char* format : {"d:", "d:9", "d:9,", "d:9,x", "d:9,2,64", "d:9,2,256", "d:9,99"}) {
        EXPECT_EQ(refusal([&] {
                      fromArrow(p.schema(format), &p.array(1, {nullptr, values}));
                  }),
                  "Arrow: column 'c': decimals of format '" + std::string(format) + "'");
    }
}

TEST(Arrow, SlicesAndPiecesAreReadWhereTheyBegin) {
    Producer p;
    ArrowArray& slice = p.array(3, {nullptr, sixNumbers}, 0, 2);
    const TypedArray<std::int32_t> shared = fromArrow(p.schema("i"), &slice);
    EXPECT_EQ(&*shared.cbegin(), sixNumbers + 2);

    // A struct of the rows 1 and 2 of a child that begins at its entry 1, with a bit of validity for each.
    ArrowSchema& outer = p.schema("+s", "");
    ArrowSchema& inner = p.schema("i");
    ArrowArray& child = p.array(4, {evenOnes, sixNumbers}, -1, 1);
    ArrowArray& table = p.array(2, {nullptr}, 0, 1);
    p.nest(outer, inner, table, child);
    const StructArray columns = fromArrow(outer, &table);
    const TypedArray<double> values = columns[0]["c"];
    EXPECT_EQ(double(values[0]), 12);
    EXPECT_TRUE(std::isnan(double(values[1])));

    std::vector<OwnedArrow<ArrowArray>> pieces(3);
    pieces[0].take(&p.array(2, {nullptr, sixNumbers}, 0, 1));
    pieces[1].take(&p.array(0, {nullptr, nullptr}));
    pieces[2].take(&p.array(1, {nullptr, sixNumbers}, 0, 5));
    const int before = p.released;
    EXPECT_EQ(fromArrow(p.schema("i"), std::move(pieces)),
              factory.createArray<std::int32_t>({3, 1}, {11, 12, 15}));
    EXPECT_EQ(p.released, before + 3);
    EXPECT_EQ(fromArrow(p.schema("i"), std::vector<OwnedArrow<ArrowArray>>()),
              factory.createArray<std::int32_t>({0, 1}));

    alignas(8) unsigned char bytes[3 * 4 + 1];
    std::memcpy(bytes + 1, sixNumbers, 3 * 4);
    EXPECT_EQ(fromArrow(p.schema("i"), &p.array(3, {nullptr, bytes + 1})),
              factory.createArray<std::int32_t>({3, 1}, {10, 11, 12}))
        << "not aligned";
}

TEST(Arrow, DictionariesMayDifferFromPieceToPiece) {
    Producer p;
    const std::uint8_t codes[] = {1, 0, 1};
    const std::int32_t offsets[] = {0, 1, 3};
    ArrowSchema& schema = p.schema("C", "the kind");
    schema.dictionary = &p.schema("u", nullptr);
    std::vector<OwnedArrow<ArrowArray>> pieces(2);
    for (std::size_t k = 0; k < 2; ++k) {
        ArrowArray& piece = p.array(3, {k == 0 ? nullptr : evenOnes, codes}, k == 0 ? 0 : 1);
        piece.dictionary = &p.array(2, {nullptr, offsets, k == 0 ? "abc" : "cab"});
        pieces[k].take(&piece);
    }
    EXPECT_EQ(fromArrow(schema, std::move(pieces)),
              factory.createEnumArray({6, 1}, "the_kind", {"bc", "a", "bc", "ab", "", "ab"}));
}

TEST(Arrow, WhatIsNoColumnIsRefused) {
    StructArray uneven = factory.createStructArray({1, 1}, {"a", "b"});
    uneven[0]["a"] = factory.createArray<double>({2, 1});
    uneven[0]["b"] = factory.createArray<double>({3, 1});
    StructArray half = factory.createStructArray({1, 1}, {"t"});
    half[0]["t"] = factory.createArray<String>({2, 1}, {u"x", u"\xD800"});
    const std::pair<Array, std::string> cases[] = {
        {factory.createArray<double>({2, 3}), "Arrow: an array of 2x3 elements is no column"},
        {factory.createArray<double>({1, 1, 2}), "Arrow: an array of 1x1x2 elements is no column"},
        {factory.createArray<char16_t>({1, 3}), "Arrow: an array of kind char is no column"},
        {factory.createArray<std::complex<double>>({1, 3}),
         "Arrow: an array of kind complex double is no column"},
        {factory.createArray<Array>({1, 3}), "Arrow: an array of kind cell is no column"},
        {Array(), "Arrow: an array of kind unknown is no column"},
        {factory.createStructArray({2, 1}, {"a"}),
         "Arrow: a struct array of 2x1 records is no table, which is one record of columns"},
        {uneven, "Arrow: column 'b': 3 entries, but 'a' has 2"},
        {half, "Arrow: column 't': entry 1: UTF-16 text: unit 0 is half of a surrogate pair"},
        {factory.createEnumArray({1, 1}, "e", {"\xFF"}),
         "Arrow: a member: UTF-8 text: byte 0 belongs to no character"},
    };
    for (const auto& [array, expected] : cases) {
        ArrowSchema schema{};
        ArrowArray out{};
        EXPECT_EQ(refusal([&, &from = array] { toArrow(from, &schema, &out); }), expected);
        EXPECT_EQ(schema.release, nullptr);
        EXPECT_EQ(out.release, nullptr);
    }
    ArrowArrayStream stream{};
    EXPECT_EQ(refusal([&] {
                  toArrowStream(factory.createArray<double>({2, 1}), &stream);
              }),
              "Arrow: a stream is of tables, not of kind double");
}

namespace {

/// A table with a column of each sort, and a way back from what is done to it.
struct Spoilt {
    Column made{sampleTable()};
    ArrowArray& array = *made.array.get();
    ArrowSchema& type = *made.schema.get();
    ArrowArray& x = *array.children[0];
    ArrowArray& name = *array.children[2];
    ArrowArray& kind = *array.children[3];
    ArrowSchema& typeOfX = *type.children[0];
    ArrowSchema& typeOfKind = *type.children[3];
    std::vector<std::function<void()>> restore;

    Spoilt() {
        keep(array, type, x, name, kind, typeOfX, typeOfKind, array.children[0], type.children[0],
             *typeOfKind.dictionary);
    }
    ~Spoilt() {
        for (const auto& each : restore) {
            each();
        }
    }
    template <class... Parts>
    void keep(Parts&... parts) {
        (restore.push_back([&part = parts, was = parts] { part = was; }), ...);
    }
};

} // namespace

TEST(Arrow, WhatContradictsItselfIsRefusedAndStaysTheCallers) {
    using S = Spoilt&;
    static const std::int32_t backwards[] = {0, 5, 2, 2};
    static const std::int32_t beyond[] = {0, 0, 3};
    const std::pair<void (*)(S), const char*> cases[] = {
        {[](S s) { s.x.release = nullptr; }, "column 'x': the array has been released"},
        {[](S s) { s.array.children[0] = nullptr; }, "column 'x': there is no array"},
        {[](S s) { s.type.children[0] = nullptr; }, "child 0 has no schema"},
        {[](S s) { s.array.children = nullptr; }, "0 children, but the schema has 5"},
        {[](S s) { s.array.n_children = 4; }, "4 children, but the schema has 5"},
        {[](S s) { s.type.n_children = -1; }, "a schema of format '+s' with -1 children"},
        {[](S s) { s.type.children = nullptr; }, "a schema of format '+s' with 5 children"},
        {[](S s) { s.typeOfX.n_children = 1; }, "column 'x': a schema of format 'g' with 1 children"},
        {[](S s) { s.typeOfX.format = nullptr; }, "column 'x': the schema has no format"},
        {[](S s) { s.typeOfX.format = "vu"; }, "column 'x': format 'vu' becomes no array"},
        {[](S s) { s.typeOfX.format = ""; }, "column 'x': format '' becomes no array"},
        {[](S s) { s.array.length = -1; }, "an array of length -1 at offset 0"},
        {[](S s) { s.x.offset = -1; }, "an array of length 3 at offset -1"},
        {[](S s) { s.x.offset = std::numeric_limits<std::int64_t>::max(); }, "at offset 9223372036854775807"},
        {[](S s) { s.x.null_count = -2; }, "with -2 missing entries"},
        {[](S s) { s.x.null_count = 1; }, "1 missing entries, but nothing says which they are"},
        {[](S s) { s.x.length = 2; }, "column 'x': 2 entries, but the struct around has 3"},
        {[](S s) { s.array.offset = 1; }, "column 'x': 3 entries, but the struct around has 4"},
        {[](S s) { s.x.n_buffers = 1; }, "column 'x': 1 buffers, but the format has 2"},
        {[](S s) { s.x.buffers = nullptr; }, "column 'x': 0 buffers, but the format has 2"},
        {[](S s) { s.x.buffers[1] = nullptr; }, "column 'x': 3 entries, but buffer 1 is null"},
        {[](S s) { s.name.buffers[1] = nullptr; }, "column 'name': 3 entries, but buffer 1 is null"},
        {[](S s) { s.name.buffers[2] = nullptr; }, "column 'name': entry 0: a text from 0 to 2 of no buffer"},
        {[](S s) { s.name.buffers[2] = "\xC3("; }, "column 'name': entry 0: UTF-8 text: byte 0"},
        {[](S s) { s.name.buffers[1] = backwards, s.name.buffers[2] = "abcde", s.name.null_count = 0; },
         "column 'name': entry 1: a text from 5 to 2"},
        {[](S s) { s.kind.dictionary = nullptr; }, "column 'kind': the array has no dictionary"},
        {[](S s) { s.x.dictionary = s.kind.dictionary; }, "column 'x': a dictionary without a schema"},
        {[](S s) { s.typeOfKind.dictionary->format = "i"; },
         "a dictionary of format 'i', expected texts, u or U"},
        {[](S s) { s.typeOfKind.format = "f"; }, "codes of format 'f', expected integers"},
        {[](S s) { s.kind.buffers[1] = beyond; }, "entry 2 has code 3, but the dictionary has 1 entries"},
        {[](S s) { s.kind.dictionary->buffers[2] = "a\0b"; }, "entry 0 of the dictionary is a text with NUL"},
        {[](S s) { s.array.buffers[0] = evenOnes, s.array.null_count = -1; },
         "1 missing entries of a struct"},
    };
    for (const auto& [spoil, expected] : cases) {
        Spoilt table;
        spoil(table);
        EXPECT_NE(refusal([&made = table.made] { made.back(); }).find(expected), std::string::npos)
            << expected;
        EXPECT_TRUE(table.made.array) << expected;
    }
}

TEST(Arrow, RefusedProducersAreNotReleased) {
    Producer p;
    ArrowArray& array = p.array(3, {nullptr, nullptr});
    EXPECT_NE(refusal([&] { fromArrow(p.schema("i"), &array); }), "");
    EXPECT_EQ(p.released, 0);
    EXPECT_EQ(refusal([&] { fromArrow(ArrowSchema{}, &array); }), "Arrow: the schema has been released");
    EXPECT_EQ(refusal([&] { fromArrow(p.schema("i"), static_cast<ArrowArray*>(nullptr)); }),
              "Arrow: column 'c': there is no array");

    // A struct that is its own child.
    ArrowSchema& endless = p.schema("+s", "");
    ArrowArray& loop = p.array(0, {nullptr});
    p.nest(endless, endless, loop, loop);
    EXPECT_EQ(refusal([&] { fromArrow(endless, &loop); }),
              "Arrow: structs in structs, more than 64 levels of them");
    EXPECT_EQ(p.released, 0);

    std::vector<OwnedArrow<ArrowArray>> endlessPieces(256);
    for (OwnedArrow<ArrowArray>& piece : endlessPieces) { // whose lengths would add up to 0
        piece.take(&p.array(std::int64_t{1} << 56, {nullptr, sixNumbers}));
    }
    EXPECT_EQ(refusal([&] { fromArrow(p.schema("i"), std::move(endlessPieces)); }),
              "Arrow: column 'c': pieces of more than 72057594037927936 entries");
    EXPECT_EQ(p.released, 256);

    p.released = 0;
    std::vector<OwnedArrow<ArrowArray>> pieces(2);
    pieces[0].take(&p.array(1, {nullptr, sixNumbers}));
    pieces[1].take(&p.array(1, {nullptr, nullptr}));
    EXPECT_NE(refusal([&] { fromArrow(p.schema("i"), std::move(pieces)); }), "");
    EXPECT_EQ(p.released, 2) << "these are, as they were handed over";
}

TEST(Arrow, AnArrayIsReleasedWithTheLastColumnThatSharesIt) {
    Producer p;
    ArrowSchema& outer = p.schema("+s", "");
    ArrowArray& child = p.array(6, {nullptr, sixNumbers});
    ArrowArray& table = p.array(6, {nullptr});
    p.nest(outer, p.schema("i"), table, child);
    std::optional<Array> made = fromArrow(outer, &table);
    EXPECT_EQ(table.release, nullptr);
    std::optional<Array> column = Array(StructArray(*made)[0]["c"]);
    made.reset();
    EXPECT_EQ(p.released, 0);
    EXPECT_EQ(std::int32_t(TypedArray<std::int32_t>(*column)[5]), 15);
    column.reset();
    EXPECT_EQ(p.released, 1) << "the parent, which would release its child";

    fromArrow(p.schema("b"), &p.array(6, {nullptr, evenOnes}));
    EXPECT_EQ(p.released, 2) << "copied, released at once";
}

TEST(Arrow, StreamsGiveATableOnce) {
    const StructArray table = sampleTable();
    ArrowArrayStream stream{};
    toArrowStream(table, &stream);
    OwnedArrow<ArrowSchema> first;
    ASSERT_EQ(stream.get_schema(&stream, first.get()), 0);
    EXPECT_STREQ(first->children[3]->dictionary->format, "u");
    EXPECT_EQ(Array(StructArray(fromArrowStream(&stream))[0]["kind"]), Array(table[0]["kind"]));
    EXPECT_EQ(stream.release, nullptr);
    EXPECT_EQ(refusal([&] { fromArrowStream(&stream); }), "Arrow: the stream has been released");

    toArrowStream(table, &stream);
    OwnedArrow<ArrowArrayStream> early;
    early.take(&stream);
    OwnedArrow<ArrowArray> batch;
    ASSERT_EQ(early->get_next(early.get(), batch.get()), 0);
    EXPECT_EQ(batch->length, 3);
    OwnedArrow<ArrowArray> end;
    ASSERT_EQ(early->get_next(early.get(), end.get()), 0);
    EXPECT_FALSE(end);
    early.reset();
    EXPECT_EQ(fromArrow(*first.get(), batch.get()).getType(), ArrayType::STRUCT) << "outlives its stream";
}

TEST(Arrow, AnErrorOfAStreamIsTold) {
    struct Failing {
        int batches = 0;
        int released = 0;
        Producer producer;

        static Failing& of(ArrowArrayStream* stream) { return *static_cast<Failing*>(stream->private_data); }
    } state;
    ArrowArrayStream stream{[](ArrowArrayStream* self, ArrowSchema* out) {
                                *out = Failing::of(self).producer.schema("i");
                                return 0;
                            },
                            [](ArrowArrayStream* self, ArrowArray* out) {
                                if (Failing::of(self).batches++ == 2) {
                                    return 5;
                                }
                                *out = Failing::of(self).producer.array(2, {nullptr, sixNumbers});
                                return 0;
                            },
                            [](ArrowArrayStream*) { return "the disk is gone"; },
                            [](ArrowArrayStream* self) { ++Failing::of(self).released; }, &state};
    try {
        fromArrowStream(&stream);
        ADD_FAILURE();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "Arrow: the disk is gone");
    }
    EXPECT_EQ(state.released, 1);
    EXPECT_EQ(state.producer.released, 2) << "the batches before the error";
}

TEST(Arrow, NothingIsLostWhereMemoryRunsOut) {
    const StructArray table = sampleTable();
    ArrowOptions options;
    options.nanIsMissing = true;
    bool kept = true;
    const auto outAndIn = [&] {
        kept = true; // nothing of others is there yet
        Column column(table, options);
        try {
            column.back();
            kept = false;
        } catch (const std::bad_alloc&) {
            kept = bool(column.array);
            throw;
        }
    };
    withFailingMemory(50, outAndIn, [&](bool failed) { EXPECT_EQ(kept, failed); });
    const auto streamed = [&] {
        OwnedArrow<ArrowArrayStream> stream;
        toArrowStream(table, stream.get());
        try {
            fromArrowStream(stream.get());
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "Arrow: out of memory") << "in get_schema";
            throw std::bad_alloc();
        }
    };
    withFailingMemory(50, streamed, [](bool) {});
}
