// A read of a partition's nodes through the store's component, up to the recordset that the editor walks,
// against the SQLite C interface that fills a table by the same statement from the same file.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "sample_store.h"

namespace {

using namespace benchmarks;
using automation::Variant;

void Store_To_Text(benchmark::State& state) {
    const auto nodes = automation::Create_Bound<interfaces::NODES>(interfaces::NODES::Program_Identity);
    for (auto _ : state)
        Require(!Style_Nodes(*nodes).Text().empty(), "the nodes' text");
}

void Store_To_Recordset(benchmark::State& state) {
    const auto nodes = automation::Create_Bound<interfaces::NODES>(interfaces::NODES::Program_Identity);
    for (auto _ : state) {
        const Variant answer = Style_Nodes(*nodes);
        Require(Opened(answer.Text())->Record_Count() == Most_Nodes, "every node");
    }
}

void Fill(benchmarks::Table& table, sqlite3* connection, const char* sql) {
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(connection, sql, -1, &select, nullptr);
    sqlite3_bind_int(select, 1, 1);
    sqlite3_bind_int(select, 2, 1);
    while (sqlite3_step(select) == SQLITE_ROW) {
        for (int column = 0; column < 7; ++column)
            if (const auto* text = sqlite3_column_text(select, column))
                table.Add(static_cast<std::uint32_t>(column),
                          {reinterpret_cast<const char*>(text),
                           static_cast<std::size_t>(sqlite3_column_bytes(select, column))});
        table.End_Row();
    }
    sqlite3_finalize(select);
}

#define SELECT_NODES                                                                                         \
    "SELECT node_number, node_description, supervise_id, hookflash, threshold_type_id, transfer, "           \
    "disconnection FROM style_node WHERE config_id = ? AND partition_id = ? "

// By the store's own statements, and by the one that a program would have at first.
void SQLite_To_Table(benchmark::State& state, const std::string& path, const std::vector<const char*>& sql) {
    sqlite3* connection = nullptr;
    Require(sqlite3_open(path.c_str(), &connection) == SQLITE_OK, "the store");
    for (auto _ : state) {
        benchmarks::Table table;
        for (const char* const statement : sql)
            Fill(table, connection, statement);
        Require(table.Row_Ends.size() == Most_Nodes, "every node");
    }
    sqlite3_close(connection);
}

} // namespace

int main(int count, char** arguments) {
    benchmark::Initialize(&count, arguments);
    const Sample_Store store(Most_Nodes);
    BENCHMARK(Store_To_Text)->Unit(benchmark::kMicrosecond);
    BENCHMARK(Store_To_Recordset)->Unit(benchmark::kMicrosecond);
    const auto compare = [&](const char* name, std::vector<const char*> sql) {
        benchmark::RegisterBenchmark(name, SQLite_To_Table, store.Path(), std::move(sql))
            ->Unit(benchmark::kMicrosecond);
    };
    compare("SQLite_To_Table",
            {SELECT_NODES "AND node_number = 0", SELECT_NODES "AND node_number <> 0 ORDER BY node_number"});
    compare("SQLite_To_Table_Sorted",
            {SELECT_NODES "ORDER BY CASE WHEN node_number = 0 THEN 0 ELSE 1 END, node_number"});
    benchmark::RunSpecifiedBenchmarks();
}
