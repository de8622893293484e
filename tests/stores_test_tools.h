// What the tests of the stores share: a hand on the file behind the store's back, answers as plain rows,
// and a store with every component on it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "automation/text.h"
#include "classes/class_table.h"
#include "interfaces/product_components.h"
#include "recordset_test_support.h"
#include "stores/store.h"
#include "temporary_folder.h"

namespace stores_test {

namespace fs = std::filesystem;

using Row = std::vector<std::string>;
using Rows = std::vector<Row>;

inline std::string URL(const std::string& path) {
    return "sqlite:" + path;
}

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

// The answer of a reader: the names of its fields, then its records.
inline Rows Parsed(const automation::Variant& xml) {
    const auto set = recordset_test::Opened(automation::String(xml.Text()));
    Rows rows(1);
    for (automation::Long field = 0; field < set->Field_Count(); ++field)
        rows[0].push_back(automation::To_UTF8(set->Field_Name(field)));
    for (; !set->At_End(); set->Move_Next()) {
        auto& record = rows.emplace_back();
        for (automation::Long field = 0; field < set->Field_Count(); ++field) {
            const automation::Variant value = set->Value(field);
            record.push_back(value.Is_Null() ? "<null>" : automation::To_UTF8(value.To_Text()));
        }
    }
    return rows;
}

// The source and number of the failure that a call left behind, "" when it left none.
inline std::string Failure_Of(automation::Status status) {
    const auto failure = automation::Take_Error();
    EXPECT_TRUE(failure ? status < 0 : status == automation::Status_OK) << status;
    if (!failure)
        return "";
    EXPECT_FALSE(failure->Description.empty());
    return automation::To_UTF8(failure->Source) + " " + std::to_string(failure->Number);
}

template <typename Interface>
automation::Reference<Interface> Created() {
    return automation::Create_Bound<Interface>(Interface::Program_Identity);
}

// Makes a store; from now on components are created on it.
inline std::string Used_Store(const std::string& path, std::optional<int> count = std::nullopt) {
    stores::Use_Store(stores::Store::Create(URL(path), count));
    for (const automation::Server_Class& served : stores::Classes())
        classes::Provide_Class({served.Program_Identity, served.Class_Identity, served.Create});
    return path;
}

// A store in a folder of its own, with components created on it.
class Components : public ::testing::Test {
protected:
    Rows Style_Nodes(const char16_t* config_id, const char16_t* partition_id) {
        automation::Variant xml;
        automation::Check(nodes->Get_Style_Nodes(config_id, partition_id, xml));
        return Parsed(xml);
    }

    Temporary_Folder folder;
    const std::string path = Used_Store(folder / "nodes.db");
    automation::Reference<interfaces::NODES> nodes = Created<interfaces::NODES>();
    const automation::Reference<interfaces::UDNODES> updater = Created<interfaces::UDNODES>();
    const automation::Reference<interfaces::DELNODES> deleter = Created<interfaces::DELNODES>();
    const automation::Reference<interfaces::INSNODES> inserter = Created<interfaces::INSNODES>();
};

} // namespace stores_test
