#include "record_batch.h"

#include <algorithm>

#include "stored_text.h"

namespace stores {

namespace {

constexpr int Most_Rows = 2000;
constexpr std::size_t Longest = 1U << 20U;

// "[3, "a", null]"
std::string Row_Of(const Values& keys, const Record_Batch::Fields& fields) {
    std::string row;
    for (const Value& key : keys)
        row += ", " + std::to_string(*key.Key);
    for (const auto& [column, value] : fields)
        row += ", " + (value.Text ? Quoted(*value.Text) : "null");
    return "[" + row.substr(2) + "]";
}

Values Joined(Values first, const Values& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

Record_Batch::Record_Batch(Change& change, int config, int partition)
    : change(change), config(config), partition(partition) {
    // A server that has no statistics yet may take a partition for a single row.
    if (!change.Is_File())
        change.Prepared()("SELECT set_config('enable_nestloop', 'off', true)").First_Row();
}

void Record_Batch::Update(const Record_Kind& kind, const Values& keys, const Fields& fields) {
    if (!fields.empty())
        Put(Action::Update, kind, keys, fields);
}

void Record_Batch::Insert(const Record_Kind& kind, const Values& keys, const Fields& fields) {
    Put(Action::Insert, kind, keys, fields);
}

void Record_Batch::Delete(const Record_Kind& kind, const Values& keys) {
    Put(Action::Delete, kind, keys, {});
}

void Record_Batch::Flush() {
    for (Group& group : groups)
        Write(group);
    groups.clear();
    waiting.clear();
}

void Record_Batch::Put(Action action, const Record_Kind& kind, const Values& keys, const Fields& fields) {
    std::string sql = SQL_For(action, kind, fields);
    if (change.Is_File())
        return Write_Now(action, sql, keys, fields);
    std::string record = kind.Table;
    for (const Value& key : keys)
        record += ' ' + std::to_string(*key.Key);
    if (waiting.contains(record)) // what was done to it first has to be first
        Flush();
    waiting.insert(std::move(record));
    const auto known =
        std::find_if(groups.begin(), groups.end(), [&](const Group& each) { return each.SQL == sql; });
    Group& group = known != groups.end() ? *known : groups.emplace_back(Group{std::move(sql), {}, 0});
    group.Rows.append(group.Rows.empty() ? "" : ", ").append(Row_Of(keys, fields));
    if (++group.Count == Most_Rows || group.Rows.size() > Longest)
        Write(group);
}

// Values are elements of a JSON array, or placeholders of their own in a file.
std::string Record_Batch::SQL_For(Action action, const Record_Kind& kind, const Fields& fields) const {
    const bool is_file = change.Is_File();
    const auto element = [&](std::size_t index) {
        return (is_file ? ":value_" : "v.value ->> ") + std::to_string(index);
    };
    const std::string rows = is_file ? "" : " FROM jsonb_array_elements(CAST(:rows AS jsonb)) AS v(value)";
    const std::vector<std::string> keys(kind.Keys.begin() + 2, kind.Keys.end());
    std::string condition, columns, values, settings;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        const std::string value = "CAST(" + element(key) + " AS INTEGER)";
        condition += " AND " + kind.Table + "." + keys[key] + " = " + value;
        columns += ", " + keys[key];
        values += ", " + value;
    }
    const std::string key_values = values.substr(2);
    for (std::size_t field = 0; field < fields.size(); ++field) {
        const std::string& column = fields[field].first;
        columns += ", " + column;
        values += ", " + element(keys.size() + field);
        settings.append(settings.empty() ? "" : ", ")
            .append(column)
            .append(" = ")
            .append(element(keys.size() + field));
    }
    const std::string partition_of =
        " WHERE " + kind.Table + ".config_id = :config AND " + kind.Table + ".partition_id = :partition";
    switch (action) {
    case Action::Update:
        return "UPDATE " + kind.Table + " SET " + settings + rows + partition_of + condition;
    case Action::Insert:
        return "INSERT INTO " + kind.Table + " (config_id, partition_id" + columns +
               ") SELECT CAST(:config AS INTEGER), CAST(:partition AS INTEGER)" + values + rows;
    case Action::Delete:
        break;
    }
    return "DELETE FROM " + kind.Table + partition_of + " AND (" + SQL_List(keys) + ") IN (SELECT " +
           key_values + rows + ")";
}

void Record_Batch::Write_Now(Action action, const std::string& sql, const Values& keys,
                             const Fields& fields) {
    Values texts;
    for (const auto& [column, value] : fields)
        texts.push_back(value);
    const Values all_keys = Joined({config, partition}, keys);
    change.Prepared()(sql).Run(action == Action::Update ? Joined(texts, all_keys) : Joined(all_keys, texts));
}

// The placeholders stand in the statement in one of two orders.
void Record_Batch::Write(Group& group) {
    if (group.Count == 0)
        return;
    const Value rows("[" + group.Rows + "]");
    if (group.SQL.starts_with("UPDATE"))
        change.Prepared()(group.SQL).Run({rows, config, partition});
    else
        change.Prepared()(group.SQL).Run({config, partition, rows});
    group.Rows.clear();
    group.Count = 0;
}

} // namespace stores
