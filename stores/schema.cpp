#include "schema.h"

#include <algorithm>
#include <charconv>

#include "automation/text.h"
#include "history_schema.h"
#include "stores/store.h"

namespace stores {

namespace {

constexpr const char* Version_Table = "store_version";

// The tables of version 1, whatever came later: a new store goes the way of an old one.
// Keys are integers; whatever the product may hand over is text, may be null and is not checked.
constexpr std::array Tables{
    "CREATE TABLE store_version (version INTEGER NOT NULL)",
    "CREATE TABLE node_type (list_position INTEGER NOT NULL PRIMARY KEY, id TEXT, "
    "language_1 TEXT, language_2 TEXT)",
    "CREATE TABLE threshold_type (list_position INTEGER NOT NULL PRIMARY KEY, threshold_type_id TEXT, "
    "language_1 TEXT, language_2 TEXT)",
    "CREATE TABLE configuration (list_position INTEGER NOT NULL PRIMARY KEY, product_name TEXT, "
    "system_number TEXT, site_name TEXT, site_number TEXT, product_version TEXT, release_number TEXT)",
};

constexpr const char* Create_Node =
    "CREATE TABLE style_node (config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, "
    "node_number INTEGER NOT NULL, node_description TEXT, supervise_id TEXT, supervise_caption TEXT, "
    "hookflash TEXT, threshold_type_id TEXT, transfer TEXT, disconnection TEXT, "
    "PRIMARY KEY (config_id, partition_id, node_number))";
constexpr const char* Create_Entry =
    "CREATE TABLE node_entry (config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, "
    "node_type_id INTEGER NOT NULL, node_number INTEGER NOT NULL, label TEXT, changed TEXT, "
    "PRIMARY KEY (config_id, partition_id, node_type_id, node_number))";

// What leads from version 1 to version 2: the history of changes.
constexpr std::array To_Version_2{
    "CREATE TABLE change_counter (last_change BIGINT NOT NULL)",
    "INSERT INTO change_counter (last_change) VALUES (0)",
    "CREATE TABLE change_log (change BIGINT NOT NULL PRIMARY KEY, changed_at TEXT NOT NULL, "
    "changed_by TEXT NOT NULL, database_user TEXT, editor TEXT NOT NULL, operation TEXT NOT NULL, "
    "record TEXT NOT NULL, config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, "
    "node_number INTEGER NOT NULL, old_values TEXT, new_values TEXT)",
    "CREATE INDEX change_log_of_node ON change_log (config_id, partition_id, node_number, change)",
};

void Run_All(Connection& connection, const std::vector<std::string>& statements) {
    for (const std::string& statement : statements)
        Statement(connection, statement).Run();
}

// From one version to the next.
void Step_From(int version, Connection& connection) {
    if (version == 1)
        Run_All(connection, {To_Version_2.begin(), To_Version_2.end()});
    else
        Run_All(connection, To_Version_3(connection));
    Statement(connection, "UPDATE store_version SET version = :version").Run({version + 1});
}

std::string Create_Detail(const Detail_Table& table) {
    return std::string("CREATE TABLE ") + table.Name +
           " (config_id INTEGER NOT NULL, partition_id INTEGER NOT NULL, node_number INTEGER NOT NULL, "
           "supervise_id TEXT, retrieve TEXT, busy_retry TEXT, number_retries TEXT, ring_limit TEXT, " +
           table.First_Busy + " TEXT, " + table.Second_Busy +
           " TEXT, ring_on TEXT, ring_off TEXT, PRIMARY KEY (config_id, partition_id, node_number))";
}

std::vector<std::string> Table_Names(Connection& connection) {
    const bool is_file = connection.Is_File();
    std::vector<std::string> names;
    Statement select(connection,
                     is_file
                         ? "SELECT name FROM sqlite_master WHERE type = 'table'"
                         : "SELECT tablename FROM pg_catalog.pg_tables WHERE schemaname = current_schema()");
    select.Run();
    for (Row row; select.Next(row);)
        names.push_back(automation::To_UTF8(row[0].value_or(u"")));
    return names;
}

// 0 when none is stated that could be one.
int Stated_Version(Connection& connection) {
    const auto row = Statement(connection, "SELECT MAX(version) FROM store_version").First_Row();
    const std::string text = row && row->front() ? *row->front() : "";
    int version = 0;
    const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), version);
    return error == std::errc() && stopped == text.data() + text.size() ? version : 0;
}

Record_Kind Kind_Of(const Detail_Table& table) {
    Record_Kind kind{table.Name, {"config_id", "partition_id", "node_number"}, Detail_Columns(table)};
    kind.Columns.insert(kind.Columns.begin(), "supervise_id");
    return kind;
}

std::string How_To_Create(const Location& location) {
    return "create it with: style-editor store init --store " + location.Address;
}

} // namespace

std::vector<std::string> Detail_Columns(const Detail_Table& table) {
    return {"retrieve",       "busy_retry",      "number_retries", "ring_limit",
            table.First_Busy, table.Second_Busy, "ring_on",        "ring_off"};
}

const Record_Kind& Node_Record() {
    static const Record_Kind kind{"style_node",
                                  {"config_id", "partition_id", "node_number"},
                                  {"hookflash", "threshold_type_id", "transfer", "disconnection",
                                   "supervise_caption", "supervise_id", "node_description"}};
    return kind;
}

const Record_Kind& Node_Entry() {
    static const Record_Kind kind{
        "node_entry", {"config_id", "partition_id", "node_number", "node_type_id"}, {"label", "changed"}};
    return kind;
}

const Record_Kind& Detail_Record(const Detail_Table& table) {
    static const std::array kinds{Kind_Of(Partial_Detail), Kind_Of(Full_Detail), Kind_Of(DialContinue_Detail),
                                  Kind_Of(Enhanced_Detail)};
    const auto* const at = std::find(Detail_Tables.begin(), Detail_Tables.end(), &table);
    return kinds.at(static_cast<std::size_t>(at - Detail_Tables.begin()));
}

const std::vector<const Record_Kind*>& All_Kinds() {
    static const std::vector<const Record_Kind*> kinds = [] {
        std::vector<const Record_Kind*> all{&Node_Record(), &Node_Entry()};
        for (const Detail_Table* table : Detail_Tables)
            all.push_back(&Detail_Record(*table));
        return all;
    }();
    return kinds;
}

std::string SQL_List(const std::vector<std::string>& columns, const std::string& prefix) {
    std::string text;
    for (const std::string& column : columns)
        text.append(text.empty() ? "" : ", ").append(prefix).append(column);
    return text;
}

std::string SQL_Create(const Record_Kind& kind) {
    for (const Detail_Table* table : Detail_Tables)
        if (kind.Table == table->Name)
            return Create_Detail(*table);
    return kind.Table == Node_Record().Table ? Create_Node : Create_Entry;
}

std::string SQL_Insert(const Record_Kind& kind) {
    std::vector<std::string> columns = kind.Keys;
    columns.insert(columns.end(), kind.Columns.begin(), kind.Columns.end());
    return "INSERT INTO " + kind.Table + " (" + SQL_List(columns) + ") VALUES (" + SQL_List(columns, ":") +
           ")";
}

int Version_Of_Store(Connection& connection) {
    const auto names = Table_Names(connection);
    if (names.empty())
        throw Store_Error(Store_Error::Reason::Missing, "The store " + connection.Place.Name + " is empty; " +
                                                            How_To_Create(connection.Place));
    if (std::find(names.begin(), names.end(), Version_Table) == names.end())
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + connection.Place.Name +
                              " is a database of something else; name another one, or a new one");
    const int version = Stated_Version(connection);
    if (version > Schema_Version)
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + connection.Place.Name + " has version " + std::to_string(version) +
                              ", made by a newer program; update style-editor, which knows version " +
                              std::to_string(Schema_Version));
    if (version < 1)
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + connection.Place.Name +
                              " states no version that is known; restore it from a copy");
    return version;
}

void Upgrade_Schema(Connection& connection) {
    // A write first: it waits for another upgrade, which a transaction that has begun to read could not.
    Statement(connection, "UPDATE store_version SET version = version").Run();
    int version = Version_Of_Store(connection);
    if (version == Schema_Version)
        return;
    for (; version < Schema_Version; ++version)
        Step_From(version, connection);
    Begin_History(connection);
}

void Check_Empty(Connection& connection) {
    const auto names = Table_Names(connection);
    if (std::find(names.begin(), names.end(), Version_Table) != names.end())
        throw Store_Error(Store_Error::Reason::Already_There,
                          "The store " + connection.Place.Name +
                              " exists already and was left as it is; remove it or name another one");
    if (!names.empty())
        throw Store_Error(Store_Error::Reason::Unusable,
                          "The store " + connection.Place.Name +
                              " is a database of something else and was left as it is; name a new one");
}

void Create_Tables(Connection& connection) {
    for (const char* table : Tables)
        Statement(connection, table).Run();
    Statement(connection, Create_Node).Run();
    Statement(connection, Create_Entry).Run();
    for (const Detail_Table* table : Detail_Tables)
        Statement(connection, Create_Detail(*table)).Run();
    Statement(connection, "INSERT INTO store_version (version) VALUES (1)").Run();
    for (int version = 1; version < Schema_Version; ++version)
        Step_From(version, connection);
}

void Begin_History(Connection& connection) {
    Run_All(connection, Triggers(connection));
}

} // namespace stores
