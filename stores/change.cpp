#include "change.h"

#include "automation/text.h"

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

Byte_Row Texts_Of(const Values& values) {
    Byte_Row texts;
    for (const Value& value : values)
        texts.push_back(value.Text);
    return texts;
}

// As JSON; bytes that are no text, which only somebody else can have stored, become U+FFFD.
std::string Quoted(const std::string& bytes) {
    const std::string text = automation::To_UTF8(automation::From_UTF8_Replacing(bytes));
    constexpr const char* digits = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < ' ')
            quoted += std::string("\\u00") + digits[code >> 4U] + digits[code & 15U];
        else
            quoted += (character == '"' || character == '\\' ? "\\" : "") + std::string(1, character);
    }
    return quoted + '"';
}

} // namespace

std::string Last_Change(Connection& connection) {
    const auto row = Statement(connection, "SELECT last_change FROM change_counter").First_Row();
    return row ? row->front().value_or("0") : "0";
}

Change::Change(Statements& statements, const Visit& visit, std::string operation, Record record)
    : statements(statements), visit(visit), operation(std::move(operation)), record(std::move(record)) {
    const auto row =
        statements("UPDATE change_counter SET last_change = last_change + 1 RETURNING last_change")
            .First_Row();
    if (!row || !row->front())
        throw automation::Failure(automation::Status_Unspecified,
                                  u"The store has lost its count of changes; restore it from a copy");
    number = *row->front();
}

void Change::Require_Unchanged() {
    const auto& keys = record.Keys;
    const auto mark = visit.Read_At(*keys[0].Key, *keys[1].Key);
    if (!mark)
        return;
    const auto row =
        statements("SELECT changed_by, changed_at FROM change_log WHERE config_id = :config_id AND "
                   "partition_id = :partition_id AND node_number = :node_number AND change > :mark AND "
                   "editor <> :editor ORDER BY change DESC LIMIT 1")
            .First_Row({keys[0], keys[1], keys[2], *mark, visit.Editor()});
    if (row)
        throw automation::Failure(
            automation::Status_Unspecified,
            automation::From_UTF8_Replacing(
                "Node " + std::to_string(*keys[2].Key) + " was changed by " + (*row)[0].value_or("somebody") +
                " at " + (*row)[1].value_or("some time") +
                " (UTC), after it was read here; open it again to see what it holds now, and then save"));
}

void Change::Update(const Values& values) {
    const auto before = Present();
    const auto after = Texts_Of(values);
    if (!before || *before == after)
        return;
    statements("UPDATE " + record.Kind.Table + " SET " + Equations(record.Kind.Columns, ", ") +
               Condition(record.Kind))
        .Run(Joined(values, record.Keys));
    Note(before, after);
}

void Change::Insert(const Values& values) {
    statements(SQL_Insert(record.Kind)).Run(Joined(record.Keys, values));
    Note(std::nullopt, Texts_Of(values));
}

void Change::Delete() {
    const auto before = Present();
    if (!before)
        return;
    statements("DELETE FROM " + record.Kind.Table + Condition(record.Kind)).Run(record.Keys);
    Note(before, std::nullopt);
}

std::optional<Byte_Row> Change::Present() {
    const auto& columns = record.Kind.Columns;
    return statements("SELECT " + SQL_List(columns) + " FROM " + record.Kind.Table + Condition(record.Kind))
        .First_Row(record.Keys);
}

void Change::Note(const std::optional<Byte_Row>& before, const std::optional<Byte_Row>& after) {
    std::string old_values, new_values;
    for (std::size_t column = 0; column < record.Kind.Columns.size(); ++column) {
        if (before && after && (*before)[column] == (*after)[column])
            continue;
        const auto add = [&](std::string& object, const std::optional<Byte_Row>& texts) {
            if (texts)
                object += (object.empty() ? "{" : ", ") + Quoted(record.Kind.Columns[column]) + ": " +
                          ((*texts)[column] ? Quoted(*(*texts)[column]) : "null");
        };
        add(old_values, before);
        add(new_values, after);
    }
    const auto object = [](const std::string& members) {
        return members.empty() ? Value(nullptr) : Value(members + "}");
    };
    statements("INSERT INTO change_log (change, changed_at, changed_by, database_user, editor, operation, "
               "record, config_id, partition_id, node_number, old_values, new_values) VALUES (:change, "
               ":at, :by, :user, :editor, :operation, :record, :config, :partition, :node, :old, :new)")
        .Run({number, Now(), visit.Person(), visit.Database_User(), visit.Editor(), operation,
              record.Kind.Table, record.Keys[0], record.Keys[1], record.Keys[2], object(old_values),
              object(new_values)});
}

} // namespace stores
