#include "change.h"

#include "automation/text.h"
#include "history_schema.h"
#include "stored_text.h"
#include "stores/store.h"

namespace stores {

namespace {

Values Joined(Values first, const Values& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// "a = :a AND b = :b": the placeholder of a column has its name.
std::string Equations(const std::vector<std::string>& columns, const std::string& separator) {
    std::string text;
    for (const std::string& column : columns)
        text.append(text.empty() ? "" : separator).append(column).append(" = :").append(column);
    return text;
}

std::string Condition(const Record_Kind& kind) {
    return " WHERE " + Equations(kind.Keys, " AND ");
}

[[noreturn]] void Fail_With(const std::string& message) {
    throw automation::Failure(automation::Status_Unspecified, automation::From_UTF8_Replacing(message));
}

// Who holds a partition's lock, as far as the server tells.
std::string Holders(Statements& statements, int number) {
    const auto row =
        statements("SELECT string_agg(DISTINCT a.usename || ' (' || a.application_name || ')', ', ') "
                   "FROM pg_locks l JOIN pg_stat_activity a ON a.pid = l.pid "
                   "WHERE l.locktype = 'advisory' AND l.granted AND l.objsubid = 2 "
                   "AND l.classid = :class AND l.objid = :number AND a.datname = current_database() "
                   "AND l.pid <> pg_backend_pid()")
            .First_Row({std::to_string(Lock_Class), std::to_string(static_cast<unsigned>(number))});
    return row && row->front() ? For_A_Message(*row->front()) : "another program";
}

} // namespace

std::string Last_Change(Connection& connection, int config, int partition) {
    const auto row =
        connection.Is_File()
            ? Statement(connection, "SELECT last_change FROM change_counter").First_Row()
            : Statement(connection, "SELECT MAX(change) FROM change_log WHERE config_id = :config AND "
                                    "partition_id = :partition")
                  .First_Row({config, partition});
    return row ? row->front().value_or("0") : "0";
}

std::string Who_And_When(const Byte_Row& row) {
    const std::string other = row[2] ? "another program of database user " + *row[2] : "another program";
    return For_A_Message(row[0].value_or(other)) + " at " + For_A_Message(row[1].value_or("some time")) +
           " (UTC)";
}

std::string Who_And_When(Connection& connection, const std::string& change) {
    const auto row =
        Statement(connection, "SELECT changed_by, changed_at, database_user FROM change_log WHERE "
                              "change = :change ORDER BY entry LIMIT 1")
            .First_Row({change});
    return Who_And_When(row.value_or(Byte_Row(3)));
}

Change::Change(Connection& connection, Visit& visit, const std::string& operation)
    : connection(connection), statements(connection), visit(visit), is_part(visit.Changes) {
    if (is_part)
        return;
    Sign(operation);
    visit.Changes = true;
}

Change::~Change() {
    if (!is_part)
        visit.Changes = false;
}

// A file's change takes the store's next number.
void Change::Sign(const std::string& operation) {
    if (!Is_File()) {
        statements(
            "SELECT set_config('style_node.person', :person, true), set_config('style_node.editor', :editor, "
            "true), set_config('style_node.operation', :operation, true)")
            .First_Row({visit.Person(), visit.Editor(), operation});
        return;
    }
    statements("DELETE FROM change_author").Run();
    if (!statements("UPDATE change_counter SET last_change = last_change + 1 RETURNING last_change")
             .First_Row())
        Fail_With("The store has lost its count of changes; restore it from a copy");
    statements("INSERT INTO change_author (person, editor, operation) VALUES (:person, :editor, :operation)")
        .Run({visit.Person(), visit.Editor(), operation});
}

void Change::Lock(int config, int partition) {
    if (Is_File())
        return; // which has one writer at a time
    const int number = Lock_Number(config, partition);
    const std::string lock = "pg_advisory_xact_lock(" + std::to_string(Lock_Class) + ", :number)";
    const auto gained = statements("SELECT 1 WHERE pg_try_" + lock.substr(3)).First_Row({number});
    if (gained)
        return;
    statements("SAVEPOINT waiting").Run();
    try {
        statements("SELECT " + lock).First_Row({number});
    } catch (const Store_Error&) {
        statements("ROLLBACK TO SAVEPOINT waiting").Run(); // fails where the server has gone
        Fail_With("Partition " + std::to_string(partition) + " of configuration " + std::to_string(config) +
                  " is being written by " + Holders(statements, number) +
                  "; another program is using it; try again");
    }
}

void Change::Check_Conflict(const Values& keys) {
    const auto mark = visit.Read_At(*keys[0].Key, *keys[1].Key);
    if (!mark)
        return;
    // An editor's name is what its program says; the database user is not.
    const auto row =
        statements(
            "SELECT changed_by, changed_at, database_user FROM change_log WHERE config_id = :config_id AND "
            "partition_id = :partition_id AND node_number = :node_number AND change > :mark AND "
            "(editor IS NULL OR editor <> :editor OR database_user <> :user) "
            "ORDER BY change DESC, entry DESC LIMIT 1")
            .First_Row({keys[0], keys[1], keys[2], *mark, visit.Editor(), visit.Database_User()});
    if (row)
        Fail_With("Node " + std::to_string(*keys[2].Key) + " was changed by " + Who_And_When(*row) +
                  ", after it was read here; open it again to see what it holds now, and then save");
}

void Change::Update(const Record& record, const Values& values) {
    statements("UPDATE " + record.Kind.Table + " SET " + Equations(record.Kind.Columns, ", ") +
               Condition(record.Kind))
        .Run(Joined(values, record.Keys));
}

void Change::Insert(const Record& record, const Values& values) {
    statements(SQL_Insert(record.Kind)).Run(Joined(record.Keys, values));
}

void Change::Delete(const Record& record) {
    statements("DELETE FROM " + record.Kind.Table + Condition(record.Kind)).Run(record.Keys);
}

std::string Change::Number() {
    const auto row =
        statements(Is_File() ? "SELECT change FROM change_log WHERE change = (SELECT last_change FROM "
                               "change_counter) LIMIT 1"
                             : "SELECT change FROM change_transaction WHERE xact = "
                               "pg_current_xact_id_if_assigned()")
            .First_Row();
    return row ? row->front().value_or("") : "";
}

void Change::Close() {
    if (Is_File() && !is_part)
        statements("DELETE FROM change_author").Run();
}

} // namespace stores
