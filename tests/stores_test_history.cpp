// The history that the database writes: whoever changes nodes stands in it, nobody can forge it, whatever
// stands in it can be read, and changes are taken back by it.
#include <functional>
#include <thread>

#include "automation/text.h"
#include "interfaces/store_history.h"
#include "interfaces/store_records.h"
#include "stores_test_tools.h"

namespace {

using namespace stores_test;
using automation::Check;
using automation::Long;
using automation::Status;
using automation::Variant;
using interfaces::Store_History;
using interfaces::Store_Records;
using stores::Store;

std::string Said(Status status) {
    const auto failure = automation::Take_Error();
    EXPECT_EQ(status < 0, failure.has_value());
    return failure ? automation::To_UTF8(failure->Description) : "";
}

Variant Text(const std::string& utf8) {
    return Variant(automation::From_UTF8_Replacing(utf8));
}

std::string Shown(const automation::Text& text) {
    return automation::To_UTF8(text.View());
}

class History : public ::testing::TestWithParam<Kind> {
protected:
    History() { Use(Store::Create(place.URL)); }

    Rows SQL(const std::string& sql) const { return place.SQL(sql); }
    bool Is_File() const { return GetParam() == Kind::File; }

    // What everything holds but the history.
    Rows Nodes() const {
        Rows all;
        for (const char* table :
             {"style_node", "node_entry", "partial_detail", "full_detail", "enhanced_detail"})
            for (Row& row : SQL(std::string("SELECT * FROM ") + table + " ORDER BY 1, 2, 3, 4"))
                all.push_back(std::move(row));
        return all;
    }
    // Change, Entry, At, By, DatabaseUser, Operation, Record, ConfigID, PartitionID, NodeNumber, Old, New,
    // Broken.
    Rows Changes() const {
        Variant xml;
        Check(history->Read_Changes(Text(place.URL), Variant(), Variant(), Variant(), xml));
        Rows rows = Parsed(xml);
        rows.erase(rows.begin());
        return rows;
    }
    struct Outcome {
        Rows Records; // ConfigID, PartitionID, NodeNumber, Record, Old, New, Refusal
        std::string Change;
    };
    Outcome Revert(const std::string& first, const std::string& last, bool force = false,
                   bool dry_run = false) const {
        Variant xml;
        automation::Text change;
        Check(history->Revert(Text(place.URL), Text(first), Text(last),
                              force ? AUTOMATION_TRUE : AUTOMATION_FALSE,
                              dry_run ? AUTOMATION_TRUE : AUTOMATION_FALSE, xml, change));
        Outcome outcome{Parsed(xml), Shown(change)};
        outcome.Records.erase(outcome.Records.begin());
        return outcome;
    }
    std::string Refusal(const std::string& first, const std::string& last) const {
        const Rows before = Nodes();
        const Outcome outcome = Revert(first, last);
        EXPECT_EQ(outcome.Change, "");
        EXPECT_EQ(Nodes(), before);
        return outcome.Records.empty() ? "" : outcome.Records.front().back();
    }
    // One transaction on partition 1, 2; the number of its change.
    std::string Edit(const std::function<void(Store_Records&)>& edit) const {
        const auto records = Created<Store_Records>();
        Check(records->Begin(u"1", u"2", AUTOMATION_TRUE));
        edit(*records);
        automation::Text change;
        Check(records->End(AUTOMATION_TRUE, change));
        return Shown(change);
    }
    static void Set(Store_Records& records, Long node, const char16_t* field, const Variant& value,
                    Long kind = interfaces::Node_Record) {
        Check(records.Set(field, value));
        Check(records.Write(kind, node));
    }
    std::string Hook_Flash(const std::string& node) const {
        return SQL(
            "SELECT hookflash FROM style_node WHERE partition_id = 2 AND config_id = 1 AND node_number = " +
            node)[0][0];
    }

    const Store_Place place{GetParam()};
    const automation::Reference<Store_History> history = [] {
        Use(nullptr);
        return automation::Create_Bound<Store_History>(interfaces::Store_Keeper::Program_Identity);
    }();
};

INSTANTIATE_TEST_SUITE_P(On_A, History, Both_Kinds, Name_Of_Kind);

TEST_P(History, A_Transaction_Is_One_Change_And_Is_Taken_Back_As_One) {
    const Rows before = Nodes();
    const std::string change = Edit([](Store_Records& records) {
        for (const Long node : {3, 7, 9})
            Set(records, node, u"Hookflash", u"1\u00e4\"\\\t");
        Set(records, 7, u"EntryLabel", Variant::Null());
        Check(records.Remove(1, 3));
        Check(records.Set(u"Retrieve", u"!!"));
        Check(records.Add(2, 3));
    });
    const Rows changed = Nodes();
    EXPECT_EQ(SQL("SELECT count(*), count(DISTINCT entry), count(DISTINCT change) FROM change_log"),
              (Rows{{"6", "6", "1"}}));
    const Outcome dry = Revert(change, change, false, true);
    EXPECT_EQ(dry.Records.size(), 6U);
    EXPECT_EQ(dry.Change, "");
    EXPECT_EQ(Nodes(), changed);
    const Outcome back = Revert(change, change);
    EXPECT_EQ(back.Records, dry.Records);
    EXPECT_EQ(Nodes(), before);
    EXPECT_EQ(Changes().back()[5], "store revert");
    Revert(back.Change, back.Change);
    EXPECT_EQ(Nodes(), changed);
    EXPECT_NE(Revert(back.Change, change, true).Change, "") << "both, with what came after them";
    EXPECT_EQ(Nodes(), before);
    EXPECT_EQ(Edit([](Store_Records& records) { Set(records, 3, u"Hookflash", u"500"); }), "") << "as it is";
    EXPECT_EQ(Edit([](Store_Records& records) { Set(records, 3, u"EntryChanged", u"now"); }), "")
        << "no news";
}

TEST_P(History, What_Was_Changed_Since_Is_Not_Taken_Back_Without_Force) {
    const std::string first = Edit([](Store_Records& records) {
        Set(records, 3, u"Hookflash", u"600");
        Set(records, 7, u"Hookflash", u"650");
    });
    const std::string second = Edit([](Store_Records& records) { Set(records, 7, u"Hookflash", u"700"); });
    const std::string said = Refusal(first, first);
    const Outcome refused = Revert(first, first);
    ASSERT_EQ(refused.Records.size(), 2U) << said;
    EXPECT_EQ(refused.Records[0].back(), "<null>") << "node 3 would be";
    for (const std::string& part :
         {std::string("it was changed by "), std::string("@"), " in change " + second})
        EXPECT_NE(refused.Records[1].back().find(part), std::string::npos) << refused.Records[1].back();
    EXPECT_NE(Revert(first, first, true).Change, "");
    EXPECT_EQ(Hook_Flash("3") + Hook_Flash("7"), "500600");
    for (const std::string missing :
         {"0", "99", "-1", "x", "", "1; DROP TABLE style_node", "99999999999999999999"})
        for (const auto& [from, to] : {std::pair(first, missing), std::pair(missing, first)})
            EXPECT_NE(Refusal(from, to).find("does not exist"), std::string::npos) << from << " " << to;
    if (Is_File())
        return;
    EXPECT_LT(SQL("SELECT pid FROM pg_stat_activity WHERE datname = current_database()").size(), 6U)
        << "each has closed its connection";
}

TEST_P(History, Other_Programs_Stand_In_It_With_Plain_SQL) {
    const std::string where = " WHERE config_id = 1 AND partition_id = 2 AND node_number = ";
    const Rows before = Nodes();
    SQL("UPDATE style_node SET hookflash = hookflash" + where + "7");
    EXPECT_EQ(Changes(), Rows());
    SQL("UPDATE style_node SET node_number = 77, hookflash = NULL" + where + "7");
    SQL("DELETE FROM enhanced_detail" + where + "9");
    SQL("INSERT INTO full_detail (config_id, partition_id, node_number, retrieve) VALUES (1, 2, 9, "
        "'\x01\x1f\"\\')");
    SQL("INSERT INTO full_detail (config_id, partition_id, node_number, retrieve) VALUES (1, 2, 9, 'z') ON "
        "CONFLICT "
        "(config_id, partition_id, node_number) DO UPDATE SET retrieve = excluded.retrieve");
    if (Is_File())
        SQL("PRAGMA trusted_schema = OFF; REPLACE INTO full_detail (config_id, partition_id, node_number, "
            "retrieve) "
            "VALUES (1, 2, 9, 'y'); INSERT OR IGNORE INTO full_detail (config_id, partition_id, node_number) "
            "VALUES (1, 2, 9)");
    else
        SQL("UPDATE full_detail SET retrieve = 'y'" + where + "9");
    const Rows changes = Changes();
    ASSERT_EQ(changes.size(), 6U);
    const std::string user = Is_File() ? "<null>" : "tester";
    for (const Row& change : changes) {
        EXPECT_EQ(change[3] + change[4] + change[12], "<null>" + user + "<null>");
        EXPECT_EQ(change[2].size(), std::string("2026-11-23 17:05:09").size());
    }
    EXPECT_EQ((Row{changes[0][5], changes[2][5], changes[3][5]}), (Row{"UPDATE", "DELETE", "INSERT"}));
    EXPECT_NE(changes[3][11].find(R"("retrieve": "\u0001\u001f\"\\")"), std::string::npos) << changes[3][11];
    EXPECT_NE(changes[5][10].find("\"z\""), std::string::npos);
    Revert(changes.front()[0], changes.back()[0]);
    EXPECT_EQ(Nodes(), before);
}

// --- what nobody can have written

TEST_P(History, Shows_What_Is_Broken_As_Broken_And_All_Others_As_They_Are) {
    const std::string good = Edit([](Store_Records& records) { Set(records, 7, u"Hookflash", u"500"); });
    const auto row = [&](int change, const std::string& by, const std::string& record,
                         const std::string& old) {
        return "INSERT INTO change_log (change, entry, changed_at, changed_by, operation, record, config_id, "
               "partition_id, node_number, old_values, new_values) VALUES (" +
               std::to_string(change) + ", 1, '2026-11-23 17:05:09', " + by + ", 'x', " + record +
               ", 1, 2, 3, " + old + ", '{\"hookflash\": \"1\"}');";
    };
    const std::string object = "'{\"hookflash\": \"2\"}'", table = "'style_node'";
    struct Case {
        std::string By, Record, Old, Broken;
    };
    std::vector<Case> cases{
        {"'a\nb\x01'", table, object, "changed_by"},
        {"'x'", "'pg_class'", object, "record"},
        {"'x'", table, "'" + std::string(100'000, '[') + "'", "old_values"},
        {"'x'", table, "'{\"hookflash\": " + std::string(100'000, '[') + "'", "old_values"},
        {"'x'", table, "'{\"hookflash\": \"" + std::string(5'000'000, 'x') + "\"}'", "old_values"},
        {"'" + std::string(1'000'000, 'x') + "'", table, object, "changed_by"},
        {"'x'", table, "'{\"no_column\": \"1\"}'", "old_values"},
        {"'x'", table, "'{\"hookflash\": 1}'", "old_values"},
        {"'x'", table, "'{\"hookflash\": \"\\ud800\"}'", "old_values"},
        {"'x'", table, "''", "old_values"},
        {"'x'", table, "'{\"hookflash\": \"\uFFFF\"}'", "<null>"},
        {"NULL", table, "'{}'", "<null>"},
    };
    if (Is_File()) {
        cases.push_back({"CAST(X'41FF' AS TEXT)", table, object, "changed_by"});
        cases.push_back({"X'4100'", table, "CAST(X'7B00' AS TEXT)", "changed_by old_values"});
    }
    int number = 100;
    for (const Case& each : cases)
        SQL(row(number++, each.By, each.Record, each.Old));
    const Rows changes = Changes();
    ASSERT_EQ(changes.size(), cases.size() + 1);
    EXPECT_EQ(changes[0][11], R"({"hookflash": "500"})");
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const Row& change = changes[index + 1];
        EXPECT_EQ(change[12], cases[index].Broken) << index;
        for (const std::size_t column : {3U, 10U})
            EXPECT_LT(change[column].size(), 6100U) << index;
        const std::string refusal = Refusal(change[0], change[0]);
        EXPECT_EQ(refusal.find("holds no values that could be taken back") != std::string::npos,
                  cases[index].Broken != "<null>")
            << refusal;
    }
    EXPECT_NE(Revert("100", "111", true).Records.size(), 0U);
    EXPECT_NE(Revert(good, good, true).Change, "") << "the others are none of its affair";
}

TEST_P(History, A_Value_That_No_Document_Can_Carry_Names_Its_Node_And_Is_Repaired) {
    const std::string where = " WHERE config_id = 1 AND partition_id = 2 AND node_number = 7";
    SQL("UPDATE style_node SET hookflash = 'a\\\x01\uFFFF', transfer = 'b\\'" + where);
    SQL("UPDATE enhanced_detail SET retrieve = '\x1f' WHERE config_id = 1 AND partition_id = 2 AND "
        "node_number = 9");
    if (Is_File()) {
        SQL("UPDATE style_node SET disconnection = CAST(X'41FF00' AS TEXT)" + where);
        SQL("INSERT INTO style_node (config_id, partition_id, node_number) VALUES (1, 2, 'odd'), (1, 2, "
            "70000)");
    }
    const auto nodes = Created<interfaces::NODES>();
    Variant xml;
    const std::string said = Said(nodes->Get_Style_Nodes(u"1", u"2", xml));
    EXPECT_EQ(said.rfind("Node 7 has a character in hookflash that no document can carry", 0), 0U) << said;
    EXPECT_NE(
        Said(nodes->Get_Enhanced_Detail(u"1", u"2", u"9", xml)).find("node 9 has a character in retrieve"),
        std::string::npos);
    const auto read = [&] {
        const auto records = Created<Store_Records>();
        Check(records->Begin(u"1", u"2", AUTOMATION_FALSE));
        Check(records->Read(interfaces::Node_Record, xml));
        return Parsed(xml);
    };
    const Rows rows = read();
    ASSERT_EQ(rows.size(), 5U) << "the names of the fields and four nodes";
    EXPECT_EQ(rows[3][4] + " " + rows[3][6], "a\\\\\\u0001\\uffff b\\") << "only what has to be";
    EXPECT_EQ(rows[3][10], Is_File() ? "Hookflash Disconnection" : "Hookflash");
    EXPECT_EQ(rows[3][7], Is_File() ? "A\\xff\\u0000" : "!");
    EXPECT_EQ(
        (Row{rows[1][10], rows[1][11], rows[3][11].substr(0, 1)}),
        (Row{"<null>", "<null>", SQL("SELECT max(change) FROM change_log WHERE node_number = 7")[0][0]}));
    Edit([&](Store_Records& records) {
        if (Is_File())
            Set(records, 7, u"Disconnection", u"!");
        Set(records, 7, u"Hookflash", u"500");
        Set(records, 9, u"Retrieve", u"!", 4);
    });
    EXPECT_EQ(Said(nodes->Get_Style_Nodes(u"1", u"2", xml)) +
                  Said(nodes->Get_Enhanced_Detail(u"1", u"2", u"9", xml)),
              "");
    EXPECT_EQ(read()[3][10], "<null>");
}

TEST_P(History, Thousands_Of_Records_Are_One_Short_Change) {
    const Store_Place large(GetParam());
    Use(Store::Create(large.URL, 5000));
    const auto records = Created<Store_Records>();
    Check(records->Begin(u"1", u"1", AUTOMATION_TRUE));
    for (Long node = 0; node <= 5000; ++node)
        Set(*records, node, u"Transfer", u"!,*");
    automation::Text change;
    Check(records->End(AUTOMATION_TRUE, change));
    EXPECT_EQ(large.SQL("SELECT count(*), count(DISTINCT change), max(entry) FROM change_log"),
              (Rows{{"5001", "1", "5001"}}));
    EXPECT_EQ(large.SQL("SELECT DISTINCT transfer FROM style_node WHERE config_id = 1 AND partition_id = 1"),
              (Rows{{"!,*"}}));
}

// --- a server, and people who are not honest

class Server_History : public ::testing::Test {
protected:
    Server_History() {
        Store::Create(url);
        server.SQL(
            url,
            "CREATE ROLE editors; CREATE ROLE mallory LOGIN IN ROLE editors; GRANT SELECT ON ALL TABLES IN "
            "SCHEMA public TO editors; GRANT INSERT, UPDATE, DELETE ON style_node, node_entry, "
            "partial_detail, full_detail, dialcontinue_detail, enhanced_detail TO editors");
    }
    ~Server_History() override {
        Use(nullptr);
        server.SQL(url, "DROP OWNED BY editors, mallory; DROP ROLE mallory, editors");
    }
    std::string As(const std::string& user) const {
        return server.URL(url.substr(0, url.find('?')).substr(url.rfind('/', url.find('?')) + 1), user);
    }

    Private_Server& server = Private_Server::Get();
    const std::string url = server.New_Database();
};

constexpr const char* Some_Change =
    "UPDATE style_node SET hookflash = hookflash || '1' WHERE config_id = 1 AND partition_id = 2";

TEST_F(Server_History, Cannot_Be_Forged_By_An_Editor) {
    for (const std::string statement :
         {"INSERT INTO change_log SELECT * FROM change_log", "UPDATE change_log SET changed_by = 'bob'",
          "DELETE FROM change_log", "TRUNCATE change_log", "TRUNCATE style_node",
          "INSERT INTO change_transaction VALUES (pg_current_xact_id(), 1)",
          "UPDATE change_transaction SET change = 1", "SELECT nextval('change_number')",
          "SELECT setval('change_number', 1)",
          "SELECT note_changes('style_node', 'x', ARRAY[ROW(1, 1, 1, 1, '{}', '{}')::change_entry])",
          "CREATE TEMPORARY TABLE own (LIKE style_node); CREATE TRIGGER own AFTER INSERT ON own REFERENCING "
          "NEW TABLE "
          "AS new_rows FOR EACH STATEMENT EXECUTE FUNCTION note_style_node()",
          "ALTER TABLE style_node DISABLE TRIGGER ALL", "SET session_replication_role = replica",
          "CREATE OR REPLACE FUNCTION change_claim(name text) RETURNS text LANGUAGE sql AS 'SELECT 1'"})
        server.SQL(As("mallory"),
                   "DO $x$ BEGIN EXECUTE $y$" + statement +
                       "$y$; RAISE 'allowed'; EXCEPTION WHEN insufficient_privilege THEN NULL; END $x$");
    server.SQL(
        As("mallory"),
        "CREATE TEMPORARY TABLE change_log (change bigint); CREATE TEMPORARY TABLE change_transaction (xact "
        "xid8, change bigint); BEGIN; SET CONSTRAINTS ALL IMMEDIATE; SET LOCAL standard_conforming_strings = "
        "off; SELECT set_config('style_node.person', repeat(E'bob@desk\\n\\x1b', 100), true); " +
            std::string(Some_Change) + "; SET LOCAL ROLE editors; " + Some_Change + "; COMMIT");
    const Rows noted =
        server.SQL(url, "SELECT DISTINCT database_user, length(changed_by), changed_by ~ '^[ -~]*$', "
                        "operation FROM change_log");
    EXPECT_EQ(noted, (Rows{{"mallory", "200", "1", "UPDATE"}}));
    EXPECT_EQ(server.SQL(url, "SELECT count(*) FROM change_log"), (Rows{{"8"}}));
    EXPECT_EQ(server.SQL(url, "SELECT count(*) FROM change_transaction"), (Rows{{"0"}}));
}

TEST_F(Server_History, An_Editor_With_A_Borrowed_Name_Still_Makes_A_Conflict) {
    Use(Store::Open(url));
    const auto nodes = Created<interfaces::NODES>();
    const auto updater = Created<interfaces::UDNODES>();
    const auto save = [&](const char16_t* label) {
        return Said(updater->Update_Node_Entry(label, u"now", u"1", u"2", u"5", u"7"));
    };
    EXPECT_EQ(save(u"first"), "");
    Variant xml;
    Check(nodes->Get_Style_Nodes(u"1", u"2", xml));
    server.SQL(As("mallory"),
               "BEGIN; SELECT set_config('style_node.editor', (SELECT max(editor) FROM change_log), "
               "true); " +
                   std::string(Some_Change) + "; COMMIT");
    EXPECT_EQ(save(u"second").rfind("Node 7 was changed by another program of database user mallory at ", 0),
              0U);
}

TEST_F(Server_History, Another_Partition_Is_Not_Waited_For_And_A_Locked_One_Names_Its_Writer) {
    std::jthread holder([&] {
        server.SQL(As("mallory"), "SET application_name = 'night job'; BEGIN; " + std::string(Some_Change) +
                                      "; SELECT pg_sleep(2.5)");
    });
    while (server.SQL(url, "SELECT pid FROM pg_stat_activity WHERE wait_event = 'PgSleep'").empty())
        std::this_thread::yield();
    Use(Store::Open(url + "&connect_timeout=2"));
    const auto updater = Created<interfaces::UDNODES>();
    EXPECT_EQ(Said(updater->Update_Node_Entry(u"x", u"now", u"1", u"1", u"5", u"7")), "");
    const std::string said = Said(updater->Update_Node_Entry(u"x", u"now", u"1", u"2", u"5", u"7"));
    EXPECT_NE(said.find("Partition 2 of configuration 1 is being written by mallory (night job)"),
              std::string::npos)
        << said;
}

TEST_F(Server_History, Numbers_Rise_In_The_Order_In_Which_A_Partition_Was_Written) {
    const auto write = [](int partition) {
        return "UPDATE style_node SET hookflash = hookflash || '1' WHERE node_number = 3 AND config_id = 1 "
               "AND "
               "partition_id = " +
               std::to_string(partition) + ";";
    };
    {
        std::vector<std::jthread> threads;
        for (const std::string& work :
             {"BEGIN;" + write(1) + "SELECT pg_sleep(0.01);" + write(2) + "COMMIT", write(2), write(1),
              "BEGIN; SAVEPOINT one;" + write(1) + "ROLLBACK TO one;" + write(1) + write(2) + "COMMIT"})
            threads.emplace_back([&, work] {
                for (int round = 0; round < 15; ++round)
                    server.SQL(As("mallory"), work);
            });
    }
    for (const std::string partition : {"1", "2"}) {
        const Rows changes = server.SQL(
            url, "SELECT old_values, new_values FROM change_log WHERE partition_id = " + partition +
                     " ORDER BY change, entry");
        EXPECT_EQ(changes.size(), 45U);
        for (std::size_t change = 1; change < changes.size(); ++change)
            ASSERT_EQ(changes[change][0], changes[change - 1][1]) << "each saw the one before";
    }
}

TEST_F(Server_History, Rights_To_Write_It_Go_With_The_Upgrade) {
    // As version 2 had it, as far as its rights go.
    const std::string old = server.New_Database();
    server.SQL(
        old,
        "CREATE TABLE store_version (version INTEGER NOT NULL); INSERT INTO store_version VALUES (2);"
        "CREATE TABLE change_counter (last_change BIGINT NOT NULL); INSERT INTO change_counter VALUES (7);"
        "CREATE TABLE change_log (change BIGINT NOT NULL PRIMARY KEY, changed_at TEXT NOT NULL, changed_by "
        "TEXT NOT NULL, database_user TEXT, editor TEXT NOT NULL, operation TEXT NOT NULL, record TEXT NOT "
        "NULL, config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_number INTEGER NOT NULL, "
        "old_values TEXT, new_values TEXT); CREATE INDEX change_log_of_node ON change_log (config_id);"
        "GRANT SELECT, INSERT ON change_log TO editors; GRANT UPDATE (changed_by) ON change_log TO mallory");
    for (const std::string table : {"style_node", "node_entry", "partial_detail", "full_detail",
                                    "dialcontinue_detail", "enhanced_detail"})
        server.SQL(
            old,
            "CREATE TABLE " + table +
                " (config_id INTEGER, partition_id INTEGER, node_number INTEGER, node_type_id INTEGER, "
                "hookflash TEXT, threshold_type_id TEXT, transfer TEXT, disconnection TEXT, "
                "supervise_caption TEXT, supervise_id TEXT, node_description TEXT, label TEXT, changed TEXT, "
                "retrieve TEXT, busy_retry TEXT, number_retries TEXT, ring_limit TEXT, busy_on TEXT, "
                "busy_off "
                "TEXT, busy1_on TEXT, busy2_on TEXT, ring_on TEXT, ring_off TEXT)");
    Store::Upgrade(old);
    EXPECT_EQ(server.SQL(old, "SELECT has_table_privilege('mallory', 'change_log', 'SELECT'), "
                              "has_table_privilege('mallory', 'change_log', 'INSERT'), "
                              "has_any_column_privilege('mallory', 'change_log', 'UPDATE')"),
              (Rows{{"1", "0", "0"}}));
    server.SQL(old, "INSERT INTO style_node (config_id, partition_id, node_number) VALUES (1, 1, 1)");
    EXPECT_EQ(server.SQL(old, "SELECT change FROM change_log"), (Rows{{"8"}})) << "numbers go on";
    server.SQL(old, "DROP OWNED BY editors, mallory");
}

} // namespace
