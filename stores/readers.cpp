// Readers: each answers with a persisted recordset in the order of its SELECT list.
#include <algorithm>
#include <string>

#include "automation/text.h"
#include "change.h"
#include "components.h"
#include "recordset/writer.h"
#include "stored_text.h"

namespace stores {

namespace {

using automation::Status;
using automation::Variant;
using recordset::Field_Description;
using Fields = std::vector<Field_Description>;

// What is read: columns that are the fields of the answer in their order, and what a row of them is to a
// person.
struct Question {
    std::vector<std::string> Columns;
    std::string Table;
    std::vector<std::string> Ends; // behind the table's name, one for each statement
    std::function<std::string(const UTF8_Row& row, std::size_t number)> Name_Of_Row;
};

constexpr const char* By_Position = " ORDER BY list_position";

std::string Numbered_Row(const std::string& list, std::size_t number) {
    return "Row " + std::to_string(number) + " of the list " + list;
}

// No document could carry the row.
[[noreturn]] void Refuse(const Question& question, const UTF8_Row& row, std::size_t number) {
    const auto column = std::find_if(row.begin(), row.end(),
                                     [](const auto& value) { return value && !Can_Be_Delivered(*value); });
    const auto index = std::min(static_cast<std::size_t>(column - row.begin()), row.size() - 1);
    const bool is_node = question.Name_Of_Row != nullptr;
    throw automation::Failure(
        automation::Status_Unspecified,
        automation::From_UTF8_Replacing(
            (is_node ? question.Name_Of_Row(row, number) : Numbered_Row(question.Table, number)) +
            " has a character in " + question.Columns[index] + " that no document can carry; " +
            (is_node ? "put another value in its place with style-editor store export and store apply"
                     : "the store's administrator can put another one in its place")));
}

void Add(recordset::Writer& writer, const Question& question, const UTF8_Row& row, std::size_t number) {
    try {
        if (writer.Add_UTF8_Row(row))
            return;
    } catch (const automation::Failure& failure) {
        if (failure.Number != automation::run_time::Invalid_Argument)
            throw;
    }
    Refuse(question, row, number);
}

// The rows of all statements, one behind the other. `last_change` is asked for first: a change that came in
// between would make the reading look older than it is, which is the safe side.
Variant Recordset_Of(Session& session, const Question& question, const Values& keys, const Fields& fields,
                     std::string* last_change = nullptr) {
    recordset::Writer writer(fields);
    session.Read([&](Connection& connection) {
        if (last_change)
            *last_change = Last_Change(connection, *keys[0].Key, *keys[1].Key);
        std::size_t number = 0;
        for (const auto& end : question.Ends) {
            Statement select(connection,
                             "SELECT " + SQL_List(question.Columns) + " FROM " + question.Table + end);
            select.Run(keys);
            for (UTF8_Row row; select.Next(row);)
                Add(writer, question, row, ++number);
        }
    });
    return Variant(std::move(writer).Finish_Text());
}

class SR_Reader final : public Component<interfaces::SR> {
public:
    Status Get_All_Node_Types(Variant& Result) override {
        return Serve([&] {
            Result =
                Recordset_Of(*session, {{"id", "language_1", "language_2"}, "node_type", {By_Position}, {}},
                             {}, {{u"ID"}, {u"Language1"}, {u"Language2"}});
        });
    }
    Status Get_All_Threshold_Types(Variant& Result) override {
        return Serve([&] {
            Result = Recordset_Of(
                *session,
                {{"threshold_type_id", "language_1", "language_2"}, "threshold_type", {By_Position}, {}}, {},
                {{u"ThresholdTypeID"}, {u"Language1"}, {u"Language2"}});
        });
    }

private:
    const std::shared_ptr<Session> session = Current_Session();
};

// The default node comes first, the others in ascending order. Two statements, because in that order the
// others come from the primary key as they are; sorted by both in one, they would all be kept and sorted
// first. A number that no component could be asked for is nobody's node.
const Question All_Nodes{
    {"node_number", "node_description", "supervise_id", "hookflash", "threshold_type_id", "transfer",
     "disconnection"},
    "style_node",
    {" WHERE config_id = :config AND partition_id = :partition AND node_number = 0",
     " WHERE config_id = :config AND partition_id = :partition AND node_number <> 0 "
     "AND node_number BETWEEN -32768 AND 32767 ORDER BY node_number"},
    [](const UTF8_Row& row, std::size_t) { return "Node " + std::string(row[0].value_or("0")); }};

class NODES_Reader final : public Component<interfaces::NODES> {
public:
    Status Get_Full_Detail(const Variant& Config_ID, const Variant& Partition_ID, const Variant& Node_Number,
                           Variant& Result) override {
        return Get_Detail(Full_Detail, Config_ID, Partition_ID, Node_Number, Result);
    }
    Status Get_Partial_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                              const Variant& Node_Number, Variant& Result) override {
        return Get_Detail(Partial_Detail, Config_ID, Partition_ID, Node_Number, Result);
    }
    Status Get_Enhanced_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                               const Variant& Node_Number, Variant& Result) override {
        return Get_Detail(Enhanced_Detail, Config_ID, Partition_ID, Node_Number, Result);
    }
    Status Get_DialContinue_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                   const Variant& Node_Number, Variant& Result) override {
        return Get_Detail(DialContinue_Detail, Config_ID, Partition_ID, Node_Number, Result);
    }
    Status Get_Style_Nodes(const Variant& Config_ID, const Variant& Partition_ID, Variant& Result) override {
        return Serve([&] {
            std::string last_change;
            Result = Recordset_Of(*session, All_Nodes, Values_Of({&Config_ID, &Partition_ID}),
                                  {{u"NodeNumber", recordset::Field_Type::Integer},
                                   {u"NodeDescription"},
                                   {u"SuperviseID"},
                                   {u"Hookflash"},
                                   {u"ThresholdTypeID"},
                                   {u"Transfer"},
                                   {u"Disconnection"}},
                                  &last_change);
            session->Editor.Note_Reading(Key_Of(Config_ID), Key_Of(Partition_ID), last_change);
        });
    }

private:
    Status Get_Detail(const Detail_Table& table, const Variant& config, const Variant& partition,
                      const Variant& node, Variant& result) {
        return Serve([&] {
            const Values keys = Values_Of({&config, &partition, &node});
            const Question question{
                Detail_Columns(table),
                table.Name,
                {" WHERE config_id = :config AND partition_id = :partition AND node_number = :node"},
                [&](const UTF8_Row&, std::size_t) {
                    return "The " + std::string(table.Type) + " record of node " +
                           std::to_string(*keys[2].Key);
                }};
            result = Recordset_Of(*session, question, keys,
                                  {{u"Retrieve"},
                                   {u"BusyRetry"},
                                   {u"NumberRetries"},
                                   {u"RingLimit"},
                                   {automation::String(table.First_Busy_Field)},
                                   {automation::String(table.Second_Busy_Field)},
                                   {u"RingOn"},
                                   {u"RingOff"}});
        });
    }

    const std::shared_ptr<Session> session = Current_Session();
};

class DETAIL_Reader final : public Component<interfaces::DETAIL> {};

class CONFIG_Reader final : public Component<interfaces::CONFIG> {
public:
    Status Get_Configuration_Info(Variant& Result) override {
        return Serve([&] {
            Result = Recordset_Of(*session,
                                  {{"product_name", "system_number", "site_name", "site_number",
                                    "product_version", "release_number"},
                                   "configuration",
                                   {By_Position},
                                   {}},
                                  {},
                                  {{u"ProductName"},
                                   {u"SystemNumber"},
                                   {u"SiteName"},
                                   {u"SiteNumber"},
                                   {u"ProductVersion"},
                                   {u"ReleaseNumber"}});
        });
    }

private:
    const std::shared_ptr<Session> session = Current_Session();
};

} // namespace

New_Object Make_SR() {
    return automation::Make_Object<SR_Reader>();
}

New_Object Make_NODES() {
    return automation::Make_Object<NODES_Reader>();
}

New_Object Make_DETAIL() {
    return automation::Make_Object<DETAIL_Reader>();
}

New_Object Make_CONFIG() {
    return automation::Make_Object<CONFIG_Reader>();
}

} // namespace stores
