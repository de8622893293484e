// A hand on an SQLite file, past the store that it is.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace stores_test {

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

// Runs SQL on the file past the store; the rows it gives, nulls as "<null>".
inline Rows SQL(const std::string& path, const std::string& sql) {
    const auto collect = [](void* rows, int columns, char** texts, char**) {
        auto& row = static_cast<Rows*>(rows)->emplace_back();
        for (int column = 0; column < columns; ++column)
            row.emplace_back(texts[column] ? texts[column] : "<null>");
        return 0;
    };
    Rows rows;
    sqlite3* connection = nullptr;
    EXPECT_EQ(sqlite3_open(path.c_str(), &connection), SQLITE_OK) << path;
    EXPECT_EQ(sqlite3_exec(connection, sql.c_str(), collect, &rows, nullptr), SQLITE_OK)
        << sql << ": " << sqlite3_errmsg(connection);
    sqlite3_close(connection);
    return rows;
}

} // namespace stores_test
