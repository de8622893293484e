// Several editors on one store: whose change is refused, what the history says, and older and newer stores.
#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

#include "automation/text.h"
#include "interfaces/store_history.h"
#include "stores_test_tools.h"

namespace {

using namespace stores_test;
using automation::Check;
using automation::Status;
using automation::String;
using automation::Variant;
using stores::Store;

// What a failing call says, "" when it does not fail.
std::string Said(Status status) {
    const auto failure = automation::Take_Error();
    EXPECT_EQ(status < 0, failure.has_value());
    return failure ? automation::To_UTF8(failure->Description) : "";
}

std::mutex one_at_a_time; // a component is created on the store that is in use

// An editor of its own, with its own connection.
struct Editor {
    explicit Editor(const std::string& url) : store(Store::Open(url)) {}

    void Read(const char16_t* partition = u"2") const {
        Variant xml;
        Check(nodes->Get_Style_Nodes(u"1", partition, xml));
    }
    Status Update(const Variant& node, const Variant& hookflash, const char16_t* partition = u"2") const {
        return updater->Update_Style_Node(u"1", partition, node, hookflash, u"7", u"!", u"!", u"FULL", u"2",
                                          u"label");
    }
    Status Insert(const Variant& node) const {
        return inserter->Insert_Full_Detail(u"1", u"2", node, u"2", u"!", u"4", u"3", u"5", u"1", u"2", u"3",
                                            u"4");
    }

    std::shared_ptr<Store> store;
    template <typename Interface>
    automation::Reference<Interface> Made() const {
        const std::lock_guard hold(one_at_a_time);
        Use(store);
        return Created<Interface>();
    }
    automation::Reference<interfaces::NODES> nodes = Made<interfaces::NODES>();
    automation::Reference<interfaces::UDNODES> updater = Made<interfaces::UDNODES>();
    automation::Reference<interfaces::DELNODES> deleter = Made<interfaces::DELNODES>();
    automation::Reference<interfaces::INSNODES> inserter = Made<interfaces::INSNODES>();
};

class Shared_Store : public ::testing::TestWithParam<Kind> {
protected:
    Shared_Store() { Store::Create(place.URL); }

    Rows Everything() const {
        Rows all;
        for (const char* table : {"style_node", "node_entry", "full_detail", "change_log"})
            for (Row& row : place.SQL(std::string("SELECT * FROM ") + table + " ORDER BY 1, 2, 3, 4"))
                all.push_back(std::move(row));
        return all;
    }

    const Store_Place place{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(On_A, Shared_Store, Both_Kinds, Name_Of_Kind);

TEST_P(Shared_Store, A_Node_That_Somebody_Else_Changed_Is_Not_Written_Until_It_Is_Read_Again) {
    const Editor mine(place.URL), other(place.URL), blind(place.URL);
    using Write = std::function<Status(const Editor&, const char16_t* node)>;
    const std::vector<Write> writes{
        [](const Editor& by, const char16_t* node) { return by.Update(node, u"600"); },
        [](const Editor& by, const char16_t* node) {
            return by.updater->Update_Node_Entry(u"label", u"now", u"1", u"2", u"5", node);
        },
        [](const Editor& by, const char16_t* node) {
            return by.deleter->Delete_Full_Detail(u"1", u"2", node);
        },
        [](const Editor& by, const char16_t* node) { return by.Insert(node); },
    };
    int flash = 1000;
    for (const Write& write : writes) {
        mine.Read();
        for (int save = 0; save < 2; ++save)
            EXPECT_EQ(Said(mine.Update(u"7", Variant(++flash))), "") << "mine";
        Check(other.Update(u"7", Variant(++flash)));
        const Rows before = Everything();
        for (int attempt = 0; attempt < 2; ++attempt) { // a refusal is no reading
            const std::string refusal = Said(write(mine, u"7"));
            EXPECT_EQ(refusal.rfind("Node 7 was changed by ", 0), 0U) << refusal;
            EXPECT_NE(refusal.find("@"), std::string::npos) << refusal;
            Variant detail;
            Check(mine.nodes->Get_Full_Detail(u"1", u"2", u"7", detail));
        }
        EXPECT_EQ(Everything(), before);
        EXPECT_EQ(Said(mine.Update(u"3", Variant(++flash))) + Said(mine.Update(u"7", u"9", u"1")), "")
            << "other nodes";
        EXPECT_EQ(Said(blind.Update(u"3", Variant(++flash))), "") << "who read nothing overlooks nothing";
        mine.Read();
        Check(mine.deleter->Delete_Full_Detail(u"1", u"2", u"7"));
        EXPECT_EQ(Said(write(mine, u"7")), "");
    }
}

TEST_P(Shared_Store, Every_Change_Stands_In_The_History_And_Nothing_Else) {
    const Editor editor(place.URL);
    const std::string log = "SELECT operation, record, node_number, old_values, new_values FROM change_log "
                            "ORDER BY change, entry";
    EXPECT_EQ(place.SQL(log), Rows());
    Check(editor.updater->Update_Style_Node(u"1", u"2", u"9", u"500", u"7", u"\u007f\"\\", u"!", u"ENHANCED",
                                            u"4", u"\u00dc"));
    Check(editor.updater->Update_Node_Entry(u"Door", u"now", u"1", u"2", u"5", u"9"));
    Check(editor.updater->Update_Node_Entry(u"Door", u"later", u"1", u"2", u"5", u"9")); // no news
    Check(editor.updater->Update_Node_Entry(u"Gate", u"later", u"1", u"2", u"6", u"9")); // not there
    Check(editor.deleter->Delete_Full_Detail(u"1", u"2", u"9"));                         // not there
    Check(editor.Insert(u"9"));
    EXPECT_NE(Said(editor.Insert(u"9")), "");
    Check(editor.deleter->Delete_Full_Detail(u"1", u"2", u"9"));
    const std::string detail =
        R"({"supervise_id": "2", "retrieve": "!", "busy_retry": "4", "number_retries": "3", )"
        R"("ring_limit": "5", "busy_on": "1", "busy_off": "2", "ring_on": "3", "ring_off": "4"})";
    EXPECT_EQ(place.SQL(log), (Rows{{"Update_Style_Node", "style_node", "9",
                                     R"({"transfer": "!,9#", "node_description": "Gate"})",
                                     "{\"transfer\": \"\u007f\\\"\\\\\", \"node_description\": \"\u00dc\"}"},
                                    {"Update_Node_Entry", "node_entry", "9",
                                     R"({"label": "Gate", "changed": "3/18/2024 9:30:00 AM"})",
                                     R"({"label": "Door", "changed": "now"})"},
                                    {"Insert_Full_Detail", "full_detail", "9", "<null>", detail},
                                    {"Delete_Full_Detail", "full_detail", "9", detail, "<null>"}}));
    EXPECT_EQ(place.SQL("SELECT DISTINCT database_user FROM change_log"),
              (Rows{{GetParam() == Kind::File ? "<null>" : "tester"}}));
    // Without its line in the history a change is not made at all.
    const bool is_file = GetParam() == Kind::File;
    place.SQL(is_file
                  ? "CREATE TRIGGER full BEFORE INSERT ON change_log BEGIN SELECT RAISE(ABORT, 'full'); END"
                  : "ALTER TABLE change_log RENAME TO away");
    EXPECT_NE(Said(editor.Update(u"9", u"1")), "");
    EXPECT_NE(Said(editor.deleter->Delete_Enhanced_Detail(u"1", u"2", u"9")), "");
    place.SQL(is_file ? "DROP TRIGGER full" : "ALTER TABLE away RENAME TO change_log");
    EXPECT_EQ(place.SQL(log).size(), 4U);
    EXPECT_EQ(
        place.SQL(
            "SELECT hookflash, retrieve FROM style_node JOIN enhanced_detail USING (config_id, partition_id, "
            "node_number) WHERE partition_id = 2 AND node_number = 9"),
        (Rows{{"500", "!,*1"}}));
}

TEST_P(Shared_Store, Takes_The_Same_Texts_Whatever_It_Is_Made_Of) {
    const Editor editor(place.URL);
    const std::vector<String> kept{u"",
                                   u" ",
                                   u"\t\n\r",
                                   u"''",
                                   u"\\",
                                   u"%s :name $1 ?",
                                   u"a\u0301\u00e4",
                                   u"\U0001F600",
                                   u"\u007F\u0085\u202E\uFFFD",
                                   u"(null)",
                                   String(100'000, u'x'),
                                   u"\uD7FF\uE000"};
    for (const String& text : kept) {
        Check(editor.Update(u"7", text));
        EXPECT_EQ(place.SQL("SELECT hookflash FROM style_node WHERE partition_id = 2 AND node_number = 7"),
                  (Rows{{automation::To_UTF8(text)}}));
    }
    const Rows before = Everything();
    for (const String& text :
         {String(1, u'\0'), String(u"a\0b", 3), String(u"\u0001"), String(u"\uFFFE"), String(u"\uFFFF"),
          String(1, char16_t(0xD800)), String(1, char16_t(0xDFFF)) + u"x"})
        EXPECT_EQ(Said(editor.Update(u"7", text)), "A text holds a character that cannot be stored");
    EXPECT_EQ(Everything(), before);
}

TEST_P(Shared_Store, A_Record_That_Holds_No_Text_Can_Still_Be_Written_Over) {
    if (GetParam() == Kind::Server)
        return; // takes nothing but text
    const Editor editor(place.URL);
    place.SQL(
        "UPDATE style_node SET hookflash = CAST(X'41FF' AS TEXT) WHERE partition_id = 2 AND node_number = 7");
    EXPECT_EQ(Said(editor.Update(u"7", u"600")), "");
    EXPECT_NE(place.SQL("SELECT old_values FROM change_log").at(1).at(0).find("\"A\xFF\""),
              std::string::npos);
}

TEST_P(Shared_Store, Editors_At_The_Same_Time_Lose_No_Change) {
    constexpr int Editors = 4, Saves = 12;
    std::atomic<int> saved{0};
    const auto work = [&](int number) {
        const Editor editor(place.URL);
        const auto own = std::u16string(1, u"0379"[number]);
        for (int save = 0; save < Saves; ++save) {
            EXPECT_EQ(Said(editor.Update(own, Variant(number * 1000 + save), u"2")), "")
                << "a node of one's own";
            for (bool done = false; !done;) {
                editor.Read(u"1");
                const std::string refusal = Said(editor.Update(u"12", Variant(number * 1000 + save), u"1"));
                EXPECT_TRUE(refusal.empty() || refusal.starts_with("Node 12 was changed by ")) << refusal;
                done = refusal.empty();
            }
            ++saved;
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int number = 0; number < Editors; ++number)
            threads.emplace_back([&, number] { work(number); });
    }
    EXPECT_EQ(saved, Editors * Saves);
    const Rows changes =
        place.SQL("SELECT old_values, new_values FROM change_log WHERE partition_id = 1 ORDER BY change");
    ASSERT_EQ(changes.size(), static_cast<std::size_t>(Editors * Saves));
    const auto flash = [](const std::string& values) { return values.substr(0, values.find_first_of(",}")); };
    for (std::size_t change = 1; change < changes.size(); ++change)
        EXPECT_EQ(flash(changes[change][0]), flash(changes[change - 1][1])) << "each saw the one before";
    EXPECT_NE(changes.back()[1].find(
                  place.SQL("SELECT hookflash FROM style_node WHERE config_id = 1 AND partition_id = 1 AND "
                            "node_number = 12")[0][0]),
              std::string::npos);
}

// --- versions

constexpr const char* Columns_Of_A_Detail =
    "(config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_number INTEGER NOT NULL, supervise_id "
    "TEXT, "
    "retrieve TEXT, busy_retry TEXT, number_retries TEXT, ring_limit TEXT, busy_on TEXT, busy_off TEXT, "
    "ring_on TEXT, "
    "ring_off TEXT, PRIMARY KEY (config_id, partition_id, node_number));";

// A store as version 1 had it, with a node.
std::string Version_1() {
    std::string sql =
        "CREATE TABLE store_version (version INTEGER NOT NULL); INSERT INTO store_version VALUES (1);"
        "CREATE TABLE style_node (config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_number "
        "INTEGER NOT "
        "NULL, node_description TEXT, supervise_id TEXT, supervise_caption TEXT, hookflash TEXT, "
        "threshold_type_id TEXT, "
        "transfer TEXT, disconnection TEXT, PRIMARY KEY (config_id, partition_id, node_number));"
        "CREATE TABLE node_entry (config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_type_id "
        "INTEGER NOT "
        "NULL, node_number INTEGER NOT NULL, label TEXT, changed TEXT, "
        "PRIMARY KEY (config_id, partition_id, node_type_id, node_number));"
        "CREATE TABLE node_type (list_position INTEGER NOT NULL PRIMARY KEY, id TEXT, language_1 TEXT, "
        "language_2 TEXT);"
        "CREATE TABLE threshold_type (list_position INTEGER NOT NULL PRIMARY KEY, threshold_type_id TEXT, "
        "language_1 "
        "TEXT, language_2 TEXT);"
        "CREATE TABLE configuration (list_position INTEGER NOT NULL PRIMARY KEY, product_name TEXT, "
        "system_number TEXT, "
        "site_name TEXT, site_number TEXT, product_version TEXT, release_number TEXT);"
        "INSERT INTO style_node VALUES (1, 2, 7, 'label', '2', 'FULL', '500', '7', '!', '!');";
    for (const std::string table : {"partial_detail ", "full_detail ", "dialcontinue_detail "})
        sql += "CREATE TABLE " + table + Columns_Of_A_Detail;
    std::string enhanced = "CREATE TABLE enhanced_detail ";
    enhanced += Columns_Of_A_Detail;
    enhanced.replace(enhanced.find("busy_on"), 7, "busy1_on");
    return sql + enhanced.replace(enhanced.find("busy_off"), 8, "busy2_on");
}

class Versions : public ::testing::TestWithParam<Kind> {
protected:
    Versions() { place.SQL(Version_1()); }

    // Tables, columns and types.
    Rows Layout(const Store_Place& of) const {
        return of.SQL(GetParam() == Kind::File
                          ? "SELECT m.name, p.name, p.type, p.\"notnull\", p.pk FROM sqlite_master m, "
                            "pragma_table_info(m.name) p WHERE m.type = 'table' ORDER BY 1, 2"
                          : "SELECT table_name, column_name, data_type, is_nullable FROM "
                            "information_schema.columns WHERE table_schema = 'public' ORDER BY 1, 2");
    }
    std::string Refusal(const std::function<void()>& action) const {
        try {
            action();
            return "";
        } catch (const stores::Store_Error& error) {
            return error.what();
        }
    }
    const std::function<void()> open = [this] { Store::Open(place.URL); };
    const std::function<void()> upgrade = [this] { Store::Upgrade(place.URL); };

    const Store_Place place{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(On_A, Versions, Both_Kinds, Name_Of_Kind);

TEST_P(Versions, An_Older_Store_Is_Upgraded_Whole) {
    if (GetParam() == Kind::Server) {
        const Rows before = Layout(place);
        EXPECT_NE(
            Refusal(open).find("; its administrator upgrades it with: style-editor store upgrade --store "),
            std::string::npos);
        EXPECT_EQ(Layout(place), before);
        upgrade();
    }
    {
        std::vector<std::jthread> threads; // the second finds nothing left to do
        for (int number = 0; number < 2; ++number)
            threads.emplace_back([&] { EXPECT_EQ(Refusal(GetParam() == Kind::File ? open : upgrade), ""); });
    }
    const Editor editor(place.URL);
    EXPECT_EQ(place.SQL("SELECT hookflash FROM style_node"), (Rows{{"500"}}));
    Check(editor.Update(u"7", u"600"));
    EXPECT_EQ(
        place.SQL("SELECT version, last_change, old_values FROM store_version, change_counter, change_log"),
        (Rows{{"3", "1", R"({"hookflash": "500"})"}}));
    EXPECT_EQ(Refusal(upgrade), "");
    const Store_Place fresh(GetParam());
    Store::Create(fresh.URL);
    EXPECT_EQ(Layout(place), Layout(fresh));
}

TEST_P(Versions, What_Version_2_Noted_Is_Kept_And_Can_Be_Taken_Back) {
    place.SQL(
        "CREATE TABLE change_counter (last_change BIGINT NOT NULL); INSERT INTO change_counter VALUES (9);"
        "CREATE TABLE change_log (change BIGINT NOT NULL PRIMARY KEY, changed_at TEXT NOT NULL, changed_by "
        "TEXT "
        "NOT NULL, database_user TEXT, editor TEXT NOT NULL, operation TEXT NOT NULL, record TEXT NOT NULL, "
        "config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_number INTEGER NOT NULL, old_values "
        "TEXT, new_values TEXT);"
        "CREATE INDEX change_log_of_node ON change_log (config_id, partition_id, node_number, change);"
        "CREATE VIEW report AS SELECT change, transfer FROM change_log, style_node;"
        "INSERT INTO change_log VALUES (7, 't', 'bob@desk', NULL, '1-2-3', 'Update_Style_Node', "
        "'style_node', 1, "
        "2, 7, '{\"transfer\": \"\\u0009!\"}', '{\"transfer\": \"!\"}'), (8, 't', 'bob@desk', NULL, '1-2-3', "
        "'Delete_Full_Detail', 'full_detail', 1, 2, 7, '{\"retrieve\": \"x\", \"busy_retry\": null}', NULL);"
        "INSERT INTO node_entry VALUES (1, 2, 5, 7, 'new', 'now'); INSERT INTO change_log VALUES (9, 't', "
        "'bob@desk', NULL, '1-2-3', 'Update_Node_Entry', 'node_entry', 1, 2, 7, '{\"label\": \"old\"}', "
        "'{\"label\": \"new\"}'); UPDATE store_version SET version = 2");
    if (GetParam() == Kind::Server)
        upgrade();
    const auto history = [&] {
        Use(Store::Open(place.URL));
        return automation::Create_Bound<interfaces::Store_History>(
            interfaces::Store_Keeper::Program_Identity);
    }();
    Variant rows;
    automation::Text change;
    const Variant url(*automation::From_UTF8(place.URL));
    Check(history->Revert(url, u"7", u"9", AUTOMATION_FALSE, AUTOMATION_FALSE, rows, change));
    EXPECT_EQ(automation::To_UTF8(change.View()), "10") << "numbers go on";
    EXPECT_EQ(
        place.SQL(
            "SELECT report.transfer, retrieve, busy_retry, label FROM report, full_detail, node_entry WHERE "
            "change = 7"),
        (Rows{{"\t!", "x", "<null>", "old"}}));
    EXPECT_EQ(Parsed(rows).size(), 4U);
}

TEST_P(Versions, An_Upgrade_That_Fails_Changes_Nothing) {
    place.SQL("CREATE TABLE change_log (in_the_way TEXT)");
    const Rows before = Layout(place);
    EXPECT_NE(Refusal(GetParam() == Kind::File ? open : upgrade).find("change_log"), std::string::npos);
    EXPECT_EQ(Layout(place), before);
    EXPECT_EQ(place.SQL("SELECT version FROM store_version"), (Rows{{"1"}}));
}

TEST_P(Versions, A_Newer_Store_Is_Left_Alone) {
    place.SQL("UPDATE store_version SET version = 4");
    const Rows before = Layout(place);
    for (const auto& action : {open, upgrade, std::function<void()>([this] { Store::Create(place.URL); })}) {
        const std::string said = Refusal(action);
        EXPECT_FALSE(said.empty() || said.find('\n') != std::string::npos) << said;
    }
    EXPECT_NE(Refusal(open).find("version 4, made by a newer program; update style-editor"),
              std::string::npos);
    EXPECT_EQ(Layout(place), before);
}

} // namespace
