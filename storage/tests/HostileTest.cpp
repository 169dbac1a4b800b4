// Files from strangers: whatever the bytes are, an array or one error comes out, and memory stays in proportion.
#include "Folder.hpp"
#include "Samples.hpp"
#include "support/AllocationCountdown.hpp"

#include <vexa/storage/Reader.hpp>
#include <vexa/storage/Writer.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <sstream>

using namespace storage_tests;
namespace storage = vexa::storage;
using storage::Error;
using vexa::testing::FailingAllocations;

namespace {

using Bytes = std::vector<unsigned char>;

/// The text of the error; nothing when an array comes out.
std::optional<std::string> refusal(const void* data, std::size_t size) {
    try {
        storage::decode(data, size);
        return std::nullopt;
    } catch (const Error& error) {
        return error.what();
    }
}
std::string refusal(const Bytes& bytes) { return refusal(bytes.data(), bytes.size()).value_or("an array"); }

std::string savedBytes(const std::vector<Variable>& variables) {
    std::stringstream stream;
    storage::save(stream, variables);
    return stream.str();
}
/// Loads everything; false when that is refused.
bool loads(const std::string& bytes) {
    try {
        const storage::Reader reader(bytes.data(), bytes.size(), nullptr);
        reader.loadAll({storage::Placement::mapped, storage::Check::never});
        return true;
    } catch (const Error&) {
        return false;
    }
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}
Bytes text(const std::string& units) {
    Bytes all{static_cast<unsigned char>(0x60 + units.size())};
    all.insert(all.end(), units.begin(), units.end());
    return all;
}
Bytes times(std::size_t count, const Bytes& part) {
    Bytes all;
    for (std::size_t k = 0; k < count; ++k) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}
const Bytes huge{0x1B, 0x80, 0, 0, 0, 0, 0, 0, 0};
Bytes kind(unsigned char entries, const std::string& name, const Bytes& dimensions) {
    return joined(
        {{static_cast<unsigned char>(0xA0 + entries)}, text("kind"), text(name), text("size"), dimensions});
}

} // namespace

TEST(Hostile, EachLieIsToldWithItsPlace) {
    const Bytes oneByOne{0x82, 1, 1};
    const std::vector<std::pair<Bytes, std::string>> lies{
        {{}, "byte 0: expected an item of CBOR, found the end of the bytes in it"},
        {{0x1C}, "byte 0: expected an item of CBOR, found a byte that begins none"},
        {{0x9F, 0xFF}, "byte 0: expected an array, found an item without length or value"},
        {{0xD9, 0x12, 0x34, 1},
         "byte 0: expected an array, found the tag 4660, which this version does not know"},
        {{0xD8, 87, 0x40}, "byte 0: expected an array, found the tag 87, which this version does not know"},
        {{0x01, 0x01}, "byte 1: expected the end of the value"},
        {{0x62, 0xC3, 0x28}, "byte 0: UTF-8 text: byte 0 belongs to no character"},
        {{0x5B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1},
         "byte 0: expected an item of CBOR, found the end of the bytes in it"},
        {{0x9B, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1},
         "byte 0: expected a list, found one of 18446744073709551615 items, for which there are too few bytes"},
        {{0xD8, 28, 0xD8, 28, 1}, "byte 2: expected a value that is marked as shared once, found the tag 28"},
        {{0xD8, 29, 0}, "byte 0: expected the number of a shared value before, found 0"},
        {{0xD8, 28, 0x81, 0xD8, 29, 0},
         "byte 3: expected an array, found a reference to something else, or to what it is in"},
        {{0xD8, 40, 0x82, 0x82, 2, 2, 0xD8, 64, 0x43, 1, 2, 3},
         "byte 12: expected 4 elements before, found 3"},
        {{0xD8, 40, 0x82, 0x81, 1, 0xD8, 86, 0x43, 1, 2, 3},
         "byte 7: expected elements of 8 bytes, found 3 bytes"},
        {joined({{0xD8, 40, 0x82, 0x82}, huge, huge, {0x80}}),
         "byte 3: expected dimensions whose product fits in 64 bits"},
        {{0xD8, 40, 0x82, 0x82, 2, 0xFB, 0x7F, 0xF8, 0, 0, 0, 0, 0, 0, 0x80},
         "byte 5: expected a dimension, found a floating-point number"},
        {joined({kind(3, "string", {0x82, 2, 0x1A, 1, 0, 0, 0}), text("values"), {0x9A, 2, 0, 0, 0, 0xF6}}),
         "byte 32: expected a list, found one of 33554432 items, for which there are too few bytes"},
        {joined({kind(4, "struct", {0x82, 0x1B, 9, 1, 1, 1, 1, 1, 1, 1, 1}),
                 text("fields"),
                 {0x98, 200},
                 times(200, text("a"))}),
         "expected as many values before as 64 bits can count"},
        {joined({kind(4, "struct", oneByOne),
                 text("fields"),
                 {0x82},
                 text("a"),
                 text("a"),
                 text("values"),
                 {0x82, 1, 1}}),
         "expected what arrays can hold: The field name 'a' comes twice"},
        {joined({{0xA1}, text("kind"), text("handle object")}),
         "expected the name of a kind that has a map, found \"handle object\""},
    };
    for (const auto& [bytes, message] : lies) {
        EXPECT_NE(refusal(bytes).find(message), std::string::npos)
            << refusal(bytes) << "\ninstead of " << message;
    }
}

TEST(Hostile, SparseMatricesThatAreNone) {
    const auto places = [](std::initializer_list<unsigned char> all) {
        Bytes bytes{0xD8, 71, 0x58, static_cast<unsigned char>(8 * all.size())};
        for (const unsigned char place : all) {
            bytes.insert(bytes.end(), {place, 0, 0, 0, 0, 0, 0, 0});
        }
        return bytes;
    };
    const auto matrix = [&](const Bytes& dimensions, const Bytes& starts, const Bytes& rows) {
        return joined({kind(5, "sparse logical", dimensions),
                       text("starts"),
                       starts,
                       text("rows"),
                       rows,
                       text("values"),
                       {0xD8, 41, 0x82, 0xF5, 0xF5}});
    };
    const Bytes size{0x82, 3, 2};
    EXPECT_EQ(refusal(matrix(size, places({0, 1, 2}), places({1, 2}))), "an array");
    const auto isRefused = [&](const Bytes& bytes, const char* reason) {
        EXPECT_NE(refusal(bytes).find(reason), std::string::npos) << refusal(bytes);
    };
    isRefused(matrix(size, places({0, 3, 2}), places({1, 2})), "column starts before that rise");
    isRefused(matrix(size, places({1, 1, 2}), places({1, 2})), "column starts before that rise");
    isRefused(matrix(size, places({0, 1, 1}), places({1, 2})), "column starts before that rise");
    isRefused(matrix(size, places({0, 1, 2}), places({1, 3})), "rows before that are in");
    isRefused(matrix(size, places({0, 2}), places({1, 2})), "one start more than columns");
    isRefused(matrix({0x82, 0, 0x1B, 255, 255, 255, 255, 255, 255, 255, 255}, {0xD8, 71, 0x40}, places({})),
              "one start more than columns");
    isRefused(matrix({0x83, 3, 2, 1}, places({0, 1, 2}), places({1, 2})), "two dimensions");
}

TEST(Hostile, LiesInsideOfLiesTakeNoMemory) {
    // Lists one in the other, each of which announces as many items as there are bytes.
    constexpr std::size_t depth = 20'000;
    const std::size_t size = depth * 9;
    Bytes bomb;
    for (std::size_t k = 0; k < depth; ++k) {
        const auto announced = static_cast<std::uint32_t>(size - bomb.size() - 9);
        bomb.insert(bomb.end(),
                    {0x9B, 0, 0, 0, 0, static_cast<unsigned char>(announced >> 24U),
                     static_cast<unsigned char>(announced >> 16U),
                     static_cast<unsigned char>(announced >> 8U), static_cast<unsigned char>(announced)});
    }
    EXPECT_NE(refusal(bomb).find("too few bytes"), std::string::npos) << refusal(bomb);
    // Nothing but lists of one: each is a cell array, and the end is missing.
    EXPECT_NE(refusal(times(1'000'000, {0x81})).find("too few bytes"), std::string::npos);
    EXPECT_NE(refusal(times(1'000'000, {0xD8, 28})).find("once"), std::string::npos);
}

TEST(Hostile, ClassesThatMultiplyAreRefused) {
    // Each class has the two before it as superclasses: two to the power of 90 ways up.
    const auto named = [](unsigned char k) {
        return Bytes{0x62, static_cast<unsigned char>('A' + k % 26),
                     static_cast<unsigned char>('a' + k / 26)};
    };
    Bytes description = joined({{0xD8, 28, 0x84}, named(0), {0x80, 0x80, 0x80}});
    for (unsigned char k = 1; k < 90; ++k) {
        description = joined({{0xD8, 28, 0x84},
                              named(k),
                              {0x80, 0x80, 0x82},
                              description,
                              {0xD8, 29, 0x18, static_cast<unsigned char>(90 - k)}});
    }
    const Bytes array = joined({kind(5, "value object", {0x82, 0, 0}),
                                text("class"),
                                description,
                                text("objects"),
                                {0x80},
                                text("properties"),
                                {0x80}});
    EXPECT_NE(refusal(array).find("fewer ways to superclasses"), std::string::npos) << refusal(array);
    Bytes chain = {0x84, 0x61, 'x', 0x80, 0x80, 0x80};
    for (unsigned char k = 0; k < 120; ++k) {
        chain = joined({{0x84}, named(k), {0x80, 0x80, 0x81}, chain});
    }
    const Bytes deep = joined({kind(5, "value object", {0x82, 0, 0}), text("class"), chain});
    EXPECT_NE(refusal(deep).find("at most 100 superclasses"), std::string::npos) << refusal(deep);
}

TEST(Hostile, ListsThatLie) {
    const std::string bytes = savedBytes({{"a", counting<double>({2, 2})}, {"b", Array()}});
    const auto complaint = [](const std::string& changed) -> std::string {
        try {
            storage::Reader(changed.data(), changed.size(), nullptr).loadAll();
            return "nothing";
        } catch (const Error& error) {
            return error.what();
        }
    };
    std::string version = bytes;
    version[13] = 2;
    EXPECT_EQ(complaint(version), "memory: byte 13: expected version 1 of the format, found another");
    std::string list = bytes;
    list[bytes.find("double")] = 'x';
    EXPECT_NE(complaint(list).find("the checksum differs"), std::string::npos);
    EXPECT_NE(complaint(bytes.substr(0, bytes.size() - 1)).find("is not whole"), std::string::npos);
    std::string size = bytes;
    size[bytes.size() - 9] = 1; // the length of the file is beyond it
    EXPECT_NE(complaint(size).find("outside of the file"), std::string::npos);
    EXPECT_NE(complaint("x" + bytes).find("expected"), std::string::npos);
}

TEST(Hostile, TruncatedAnywhere) {
    const std::string file = savedBytes(samples());
    for (std::size_t size = 0; size < file.size();
         size += size < 3000 || size + 300 > file.size() ? 1U : 61U) {
        EXPECT_FALSE(loads(file.substr(0, size))) << size;
    }
    for (const Variable& variable : samples()) {
        const std::vector<std::byte> bytes = bytesOf(variable.array);
        for (std::size_t size = 0; size < bytes.size(); size += size < 2000 ? 1U : 97U) {
            EXPECT_TRUE(refusal(bytes.data(), size).has_value()) << variable.name << ' ' << size;
        }
    }
}

TEST(Hostile, BitsFlippedAtRandom) {
    std::mt19937 random(16);
    const std::vector<Variable> all = samples();
    for (int round = 0; round < 300; ++round) {
        for (const Variable& variable : all) {
            std::vector<std::byte> bytes = bytesOf(variable.array);
            for (auto flips = 1 + random() % 3; flips > 0; --flips) {
                const std::size_t place = random() % std::min<std::size_t>(bytes.size(), 400);
                bytes[place] ^= std::byte(1U << random() % 8);
            }
            refusal(bytes.data(), bytes.size()); // an array or an error
        }
    }
    const std::string file = savedBytes(all);
    for (int round = 0; round < 300; ++round) {
        std::string changed = file;
        const std::size_t place = file.size() - 1 - random() % 5000;
        changed[place] = static_cast<char>(changed[place] ^ (1 << random() % 8));
        loads(changed);
    }
}

TEST(Hostile, EveryAllocationMayFail) {
    const Folder folder;
    const std::vector<Variable> all = samples();
    const std::string path = folder / "a.cbor";
    storage::save(path, all); // makes what is made once
    storage::loadAll(path);
    const auto sweep = [&](const char* what, auto operation) {
        std::size_t number = 1;
        for (bool fails = true; fails; number += number < 200 ? 1U : 7U) {
            FailingAllocations::start();
            FailingAllocations::failAt(number);
            const support::Outcome outcome = support::outcomeOf(operation);
            fails = FailingAllocations::fired();
            FailingAllocations::failAt(0);
            EXPECT_NE(outcome, support::Outcome::otherError) << what << ' ' << number;
            EXPECT_EQ(FailingAllocations::liveBlocks(), 0) << what << ' ' << number;
            FailingAllocations::stop();
        }
        std::printf("%s: %zu allocations\n", what, number);
    };
    sweep("save", [&] { storage::save(path, all); });
    sweep("map", [&] { storage::loadAll(path); });
    sweep("read", [&] { storage::loadAll(path, {storage::Placement::memory}); });
    EXPECT_EQ(folder.names(), (std::set<std::string>{"a.cbor"}));
}
