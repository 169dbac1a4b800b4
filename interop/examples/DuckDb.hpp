// A database of DuckDB that queries arrays where they lie. What is declared here of its C interface is what the
// example and the tests need; DuckDB's own header declares the same.
#pragma once

#include <vexa/interop/Arrow.hpp>

#include <cerrno>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

extern "C" {
struct DuckDatabase;
struct DuckConnection;
struct DuckResult;
int duckdb_open(const char* path, DuckDatabase** database);
void duckdb_close(DuckDatabase** database);
int duckdb_connect(DuckDatabase* database, DuckConnection** connection);
void duckdb_disconnect(DuckConnection** connection);
int duckdb_arrow_scan(DuckConnection* connection, const char* name, ArrowArrayStream* stream);
int duckdb_query_arrow(DuckConnection* connection, const char* query, DuckResult** result);
int duckdb_query_arrow_schema(DuckResult* result, ArrowSchema** schema);
int duckdb_query_arrow_array(DuckResult* result, ArrowArray** array);
const char* duckdb_query_arrow_error(DuckResult* result);
void duckdb_destroy_arrow(DuckResult** result);
}

/// A table as a stream for one scan, which DuckDB never releases. What a second scan would see is nothing, so
/// that it is told of an error.
class ScannedTable {
public:
    explicit ScannedTable(const foundation::vexadata::StructArray& table) {
        vexa::interop::toArrow(table, schema_.get(), table_.get());
        stream_ = {getSchema, getNext, getLastError, nullptr, this};
    }
    ScannedTable(const ScannedTable&) = delete;
    ScannedTable& operator=(const ScannedTable&) = delete;

    ArrowArrayStream* stream() noexcept { return &stream_; }

private:
    static ScannedTable& of(ArrowArrayStream* stream) noexcept {
        return *static_cast<ScannedTable*>(stream->private_data);
    }
    /// DuckDB 1.5 does not release all the schemas that it asks for, so that it only borrows ours.
    static int getSchema(ArrowArrayStream* stream, ArrowSchema* out) {
        *out = *of(stream).schema_.get();
        out->release = [](ArrowSchema* self) { self->release = nullptr; };
        return 0;
    }
    static int getNext(ArrowArrayStream* stream, ArrowArray* out) {
        ScannedTable& self = of(stream);
        if (std::exchange(self.ended_, !self.table_)) {
            return EINVAL;
        }
        self.table_.moveTo(out); // released from the second time on
        return 0;
    }
    static const char* getLastError(ArrowArrayStream*) {
        return "a query reads each table once: give it under two names";
    }

    vexa::interop::OwnedArrow<ArrowSchema> schema_;
    vexa::interop::OwnedArrow<ArrowArray> table_;
    ArrowArrayStream stream_{};
    bool ended_ = false;
};

/// A database in memory, with one connection.
class DuckDb {
public:
    DuckDb() {
        if (duckdb_open(nullptr, &database_) != 0 || duckdb_connect(database_, &connection_) != 0) {
            duckdb_close(&database_);
            throw std::runtime_error("DuckDB does not start");
        }
        // duckdb_arrow_scan gives a query all columns and all rows, whichever the query is said to need.
        run("SET disabled_optimizers = 'filter_pushdown,unused_columns'");
    }
    DuckDb(const DuckDb&) = delete;
    DuckDb& operator=(const DuckDb&) = delete;
    ~DuckDb() {
        duckdb_disconnect(&connection_);
        duckdb_close(&database_);
    }

    /// The result of a query as a struct of columns, which does not need the database any more. In the query,
    /// and only there, `tables` go by their names. A query that reads one twice wants it under two names.
    /// @throws std::runtime_error with DuckDB's message
    foundation::vexadata::StructArray query(
        const std::string& sql,
        const std::vector<std::pair<std::string, foundation::vexadata::StructArray>>& tables = {}) {
        std::list<ScannedTable> scans; // live until the query has run, and do not move
        for (const auto& [name, table] : tables) {
            scans.emplace_back(table);
            if (duckdb_arrow_scan(connection_, name.c_str(), scans.back().stream()) != 0) {
                throw std::runtime_error("DuckDB does not take the table " + name);
            }
        }
        return run(sql);
    }

private:
    struct Destroy {
        void operator()(DuckResult* result) const { duckdb_destroy_arrow(&result); }
    };

    foundation::vexadata::StructArray run(const std::string& sql) {
        DuckResult* made = nullptr;
        const int state = duckdb_query_arrow(connection_, sql.c_str(), &made);
        const std::unique_ptr<DuckResult, Destroy> result(made);
        if (state != 0) {
            throw std::runtime_error(made == nullptr ? "DuckDB fails" : duckdb_query_arrow_error(made));
        }
        vexa::interop::OwnedArrow<ArrowSchema> schema;
        ArrowSchema* schemaPlace = schema.get();
        duckdb_query_arrow_schema(made, &schemaPlace);
        std::vector<vexa::interop::OwnedArrow<ArrowArray>> pieces;
        do {
            pieces.emplace_back();
            ArrowArray* place = pieces.back().get();
            if (duckdb_query_arrow_array(made, &place) != 0) {
                throw std::runtime_error(duckdb_query_arrow_error(made));
            }
        } while (pieces.back());
        pieces.pop_back();
        return vexa::interop::fromArrow(*schema.get(), std::move(pieces));
    }

    DuckDatabase* database_ = nullptr;
    DuckConnection* connection_ = nullptr;
};
