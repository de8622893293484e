// What the tests of the stores share: a hand on the file behind the store's back, answers as plain rows,
// and a store with every component on it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "classes/class_table.h"
#include "interfaces/product_components.h"
#include "private_server.h"
#include "recordset_test_support.h"
#include "sqlite_rows.h"
#include "stores/store.h"
#include "temporary_folder.h"

namespace stores_test {

namespace fs = std::filesystem;

inline std::string URL(const std::string& path) {
    return "sqlite:" + path;
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

// Components are created on that store from now on.
inline void Use(std::shared_ptr<stores::Store> store) {
    stores::Use_Store(std::move(store));
    for (const automation::Server_Class& served : stores::Classes())
        classes::Provide_Class({served.Program_Identity, served.Class_Identity, served.Create});
}

enum class Kind { File, Server };

// A place for one store, empty at first.
class Store_Place {
public:
    explicit Store_Place(Kind kind)
        : Where(kind), URL(kind == Kind::File ? stores_test::URL(folder / "nodes.db")
                                              : Private_Server::Get().New_Database()) {}
    // Runs SQL on it past the store; the rows it gives, nulls as "<null>".
    Rows SQL(const std::string& sql) const {
        return Where == Kind::File ? stores_test::SQL(folder / "nodes.db", sql)
                                   : Private_Server::Get().SQL(URL, sql);
    }

private:
    const Temporary_Folder folder;

public:
    const Kind Where;
    const std::string URL;
};

const auto Both_Kinds = ::testing::Values(Kind::File, Kind::Server);
inline std::string Name_Of_Kind(const ::testing::TestParamInfo<Kind>& info) {
    return info.param == Kind::File ? "File" : "Server";
}

// A store with the sample data, with components created on it.
class Components : public ::testing::TestWithParam<Kind> {
protected:
    Rows SQL(const std::string& sql) const { return place.SQL(sql); }
    Rows Style_Nodes(const char16_t* config_id, const char16_t* partition_id) {
        automation::Variant xml;
        automation::Check(nodes->Get_Style_Nodes(config_id, partition_id, xml));
        return Parsed(xml);
    }

    const Store_Place place{GetParam()};
    std::shared_ptr<stores::Store> store = stores::Store::Create(place.URL);
    template <typename Interface>
    automation::Reference<Interface> Made() {
        Use(store);
        return Created<Interface>();
    }
    automation::Reference<interfaces::NODES> nodes = Made<interfaces::NODES>();
    const automation::Reference<interfaces::UDNODES> updater = Made<interfaces::UDNODES>();
    const automation::Reference<interfaces::DELNODES> deleter = Made<interfaces::DELNODES>();
    const automation::Reference<interfaces::INSNODES> inserter = Made<interfaces::INSNODES>();
};

} // namespace stores_test
