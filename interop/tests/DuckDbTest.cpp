// A real engine on the other side of Arrow's C data interface: what it reads of our columns, and what we read of
// its results.
#include "../examples/DuckDb.hpp"

#include <foundation/vexadata/Utf8.hpp>
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Adoption.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

using namespace foundation::vexadata;

namespace {

const ArrayFactory factory;
using Texts = std::vector<std::optional<std::string>>;

Texts textsOf(const Array& array) { return toUtf8(TypedArray<String>(array)); }

template <class T>
std::vector<T> valuesOf(const Array& array) {
    return vexa::client::toVector(TypedArray<T>(array));
}

/// `rows` rows: numbers that repeat every 1000, categories that repeat every 7, and a text that is missing in
/// every fifth.
StructArray largeTable(std::size_t rows) {
    std::vector<double> numbers(rows);
    std::vector<std::string> kinds(rows);
    Texts names(rows);
    for (std::size_t k = 0; k < rows; ++k) {
        numbers[k] = double(k % 1000);
        kinds[k] = "kind " + std::to_string(k % 7);
        if (k % 5 != 0) {
            names[k] = "näme " + std::to_string(k % 3);
        }
    }
    StructArray table = factory.createStructArray({1, 1}, {"x", "kind", "name"});
    table[0]["x"] = vexa::client::fromVector<double>({rows, 1}, std::move(numbers));
    table[0]["kind"] = factory.createEnumArray({rows, 1}, "kind", kinds);
    table[0]["name"] = stringArrayFromUtf8(factory, {rows, 1}, names);
    return table;
}

std::string failure(DuckDb& database, const std::string& sql, const StructArray& table) {
    try {
        database.query(sql, {{"t", table}});
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

} // namespace

TEST(DuckDb, GroupsAMillionRowsAsALoopDoes) {
    constexpr std::size_t rows = 1000000;
    const StructArray table = largeTable(rows);
    std::map<std::string, std::pair<double, std::int64_t>> expected; // sums and counts
    const std::vector<double> x = valuesOf<double>(table[0]["x"]);
    for (std::size_t k = 0; k < rows; ++k) {
        auto& group = expected["kind " + std::to_string(k % 7)];
        group.first += x[k];
        ++group.second;
    }

    DuckDb database;
    const StructArray result = database.query(
        "SELECT kind, avg(x) AS mean, count(*) AS n FROM t GROUP BY kind ORDER BY kind", {{"t", table}});
    Texts kinds;
    std::vector<double> means;
    std::vector<std::int64_t> counts;
    for (const auto& [kind, group] : expected) {
        kinds.emplace_back(kind);
        means.push_back(group.first / double(group.second));
        counts.push_back(group.second);
    }
    EXPECT_EQ(textsOf(result[0]["kind"]), kinds);
    EXPECT_EQ(valuesOf<double>(result[0]["mean"]), means) << "sums of whole numbers are exact";
    EXPECT_EQ(valuesOf<std::int64_t>(result[0]["n"]), counts);

    // All of it there and back, in the engine's pieces.
    const StructArray all = database.query("SELECT * FROM t", {{"t", table}});
    EXPECT_EQ(Array(all[0]["x"]), Array(table[0]["x"]));
    EXPECT_TRUE(textsOf(all[0]["name"]) == textsOf(table[0]["name"]));
}

TEST(DuckDb, MissingTextsAreNull) {
    StructArray table = factory.createStructArray({1, 1}, {"name", "n", "ok"});
    table[0]["name"] = stringArrayFromUtf8(factory, {4, 1}, Texts{"b", std::nullopt, "", "å"});
    table[0]["n"] = factory.createArray<std::uint8_t>({4, 1}, {1, 2, 3, 255});
    table[0]["ok"] = factory.createArray<bool>({4, 1}, {true, true, false, false});
    DuckDb database;
    const StructArray result = database.query(
        "SELECT count(name) AS known, count(*) AS all_rows, sum(n) AS total, bool_or(ok) AS some FROM t",
        {{"t", table}});
    EXPECT_EQ(valuesOf<std::int64_t>(result[0]["known"]), std::vector<std::int64_t>{3});
    EXPECT_EQ(valuesOf<std::int64_t>(result[0]["all_rows"]), std::vector<std::int64_t>{4});
    EXPECT_EQ(valuesOf<double>(result[0]["total"]), std::vector<double>{261}) << "a decimal";
    EXPECT_EQ(Array(result[0]["some"]), factory.createScalar(true));
    const StructArray named = database.query("SELECT name FROM t WHERE n > 1 ORDER BY n", {{"t", table}});
    EXPECT_EQ(textsOf(named[0]["name"]), (Texts{std::nullopt, "", "å"}));
}

TEST(DuckDb, ResultsOfEveryKindBecomeArrays) {
    DuckDb database;
    const StructArray result = database.query(
        "SELECT i::TINYINT AS a, i::USMALLINT AS b, i::UINTEGER AS c, i::UBIGINT AS d, i::FLOAT AS e, "
        "CASE WHEN i <> 2 THEN i::INTEGER END AS f, i > 1 AS g, i::DECIMAL(9, 2) / 4 AS h, "
        "(CASE i WHEN 1 THEN 'low' WHEN 2 THEN 'high' END)::ENUM('low', 'mid', 'high') AS k, "
        "{'left': i, 'right': 'r' || i} AS l FROM range(1, 4) r(i)");
    EXPECT_EQ(valuesOf<std::int8_t>(result[0]["a"]), (std::vector<std::int8_t>{1, 2, 3}));
    EXPECT_EQ(valuesOf<std::uint16_t>(result[0]["b"]), (std::vector<std::uint16_t>{1, 2, 3}));
    EXPECT_EQ(valuesOf<std::uint32_t>(result[0]["c"]), (std::vector<std::uint32_t>{1, 2, 3}));
    EXPECT_EQ(valuesOf<std::uint64_t>(result[0]["d"]), (std::vector<std::uint64_t>{1, 2, 3}));
    EXPECT_EQ(valuesOf<float>(result[0]["e"]), (std::vector<float>{1, 2, 3}));
    EXPECT_TRUE(std::isnan(valuesOf<double>(result[0]["f"])[1]));
    EXPECT_EQ(Array(result[0]["g"]), factory.createArray<bool>({3, 1}, {false, true, true}));
    EXPECT_EQ(valuesOf<double>(result[0]["h"]), (std::vector<double>{0.25, 0.5, 0.75}));
    EXPECT_EQ(Array(result[0]["k"]), factory.createEnumArray({3, 1}, "k", {"low", "high", ""}));
    const StructArray inner = Array(result[0]["l"]);
    EXPECT_EQ(textsOf(inner[0]["right"]), (Texts{"r1", "r2", "r3"}));

    for (const char* column :
         {"DATE '2024-02-29'", "[1, 2]", "1.5::HUGEINT::VARCHAR::BLOB", "INTERVAL 1 DAY"}) {
        EXPECT_THROW(database.query("SELECT " + std::string(column) + " AS c"), std::invalid_argument)
            << column;
    }
}

TEST(DuckDb, EmptyTablesStayTablesAndColumnsOfAnyNameFields) {
    DuckDb database;
    const StructArray mean = database.query("SELECT avg(x) FROM t", {{"t", largeTable(1000)}});
    EXPECT_EQ(valuesOf<double>(mean[0]["avg_x_"]), std::vector<double>{499.5}) << "a name that no field has";
    const StructArray none = largeTable(0);
    const StructArray all = database.query("SELECT * FROM t", {{"t", none}});
    EXPECT_EQ(all.getNumberOfFields(), 3U);
    EXPECT_EQ(Array(all[0]["x"]).getDimensions(), (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(Array(all[0]["name"]).getType(), ArrayType::STRING);
    const StructArray nothing = database.query("SELECT x FROM t WHERE x < 0", {{"t", largeTable(100)}});
    EXPECT_EQ(Array(nothing[0]["x"]).getDimensions(), (std::vector<std::size_t>{0, 1}));
}

TEST(DuckDb, ResultsOutliveTheDatabaseAndTablesNeedNot) {
    std::optional<StructArray> result;
    {
        DuckDb database;
        result = database.query("SELECT x + 1 AS y, name FROM t LIMIT 2", {{"t", largeTable(5000)}});
    }
    EXPECT_EQ(valuesOf<double>((*result)[0]["y"]), (std::vector<double>{1, 2}));
    TypedArray<double> y = (*result)[0]["y"];
    result.reset();
    y[0] = 7.0;
    EXPECT_EQ(y, factory.createArray<double>({2, 1}, {7, 2}));

    // A batch that a consumer keeps outlives the scan and the table.
    vexa::interop::OwnedArrow<ArrowArray> batch;
    {
        ScannedTable scan(largeTable(10));
        ASSERT_EQ(scan.stream()->get_next(scan.stream(), batch.get()), 0);
    }
    EXPECT_EQ(static_cast<const double*>(batch->children[0]->buffers[1])[9], 9);
}

TEST(DuckDb, JoinsTablesByName) {
    StructArray labels = factory.createStructArray({1, 1}, {"kind", "label"});
    labels[0]["kind"] = stringArrayFromUtf8(factory, {2, 1}, Texts{"kind 1", "kind 3"});
    labels[0]["label"] = stringArrayFromUtf8(factory, {2, 1}, Texts{"one", "three"});
    DuckDb database;
    const StructArray result = database.query("SELECT label, count(*) AS n FROM t JOIN labels USING (kind) "
                                              "WHERE x < 500 GROUP BY label ORDER BY label",
                                              {{"t", largeTable(7000)}, {"labels", labels}});
    EXPECT_EQ(textsOf(result[0]["label"]), (Texts{"one", "three"}));
    EXPECT_EQ(valuesOf<std::int64_t>(result[0]["n"]), (std::vector<std::int64_t>{500, 500}));
}

TEST(DuckDb, QueriesThatFailSayWhy) {
    DuckDb database;
    const StructArray table = largeTable(10);
    EXPECT_NE(failure(database, "SELECT nowhere FROM t", table).find("\"nowhere\" not found"),
              std::string::npos);
    EXPECT_NE(failure(database, "SELEKT", table).find("syntax error"), std::string::npos);
    EXPECT_NE(
        failure(database, "SELECT a.x FROM t a JOIN t b USING (x)", table).find("give it under two names"),
        std::string::npos);
    EXPECT_NE(failure(database, "SELECT name::INTEGER FROM t", table).find("Could not convert"),
              std::string::npos);
    StructArray uneven = factory.createStructArray({1, 1}, {"a", "b"});
    uneven[0]["a"] = factory.createScalar(1.0);
    uneven[0]["b"] = factory.createArray<double>({2, 1});
    EXPECT_THROW(database.query("SELECT 1", {{"t", uneven}}), std::invalid_argument);
    EXPECT_EQ(valuesOf<std::int64_t>(database.query("SELECT count(*) AS n FROM t", {{"t", table}})[0]["n"]),
              std::vector<std::int64_t>{10})
        << "and the next one works";
}
