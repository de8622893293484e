#include "history.h"

#include "components.h"
#include "recordset/writer.h"
#include "session.h"

namespace stores {

namespace {

using automation::Variant;

constexpr std::array Key_Columns{"config_id", "partition_id", "node_number"};

const std::vector<recordset::Field_Description> Fields{
    {u"Change"},    {u"Entry"},  {u"At"},       {u"By"},          {u"DatabaseUser"},
    {u"Operation"}, {u"Record"}, {u"ConfigID"}, {u"PartitionID"}, {u"NodeNumber"},
    {u"Old"},       {u"New"},    {u"Broken"}};

} // namespace

Variant Changes_Of(Session& session, const std::array<const Variant*, 3>& keys) {
    std::string condition;
    Values values;
    for (std::size_t key = 0; key < keys.size(); ++key) {
        if (keys[key]->Type() == automation::Variant_Type::Empty)
            continue;
        condition += std::string(condition.empty() ? " WHERE " : " AND ") + Key_Columns[key] +
                     " = :" + Key_Columns[key];
        values.emplace_back(Key_Of(*keys[key]));
    }
    recordset::Writer writer(Fields);
    session.Read([&](Connection& connection) {
        Statement select(
            connection,
            "SELECT change, 1, changed_at, changed_by, database_user, operation, record, config_id, "
            "partition_id, node_number, old_values, new_values, NULL FROM change_log" +
                condition + " ORDER BY change");
        select.Run(values);
        for (Row row; select.Next(row);)
            writer.Add_Row(row);
    });
    return Variant(std::move(writer).Finish());
}

} // namespace stores
