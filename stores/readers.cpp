// Readers: each answers with a persisted recordset in the order of its SELECT list.
#include <string>

#include "change.h"
#include "components.h"
#include "recordset/writer.h"

namespace stores {

namespace {

using automation::Status;
using automation::Variant;
using recordset::Field_Description;
using Fields = std::vector<Field_Description>;

// The rows of all statements, one behind the other. `last_change` is asked for first: a change that came in
// between would make the reading look older than it is, which is the safe side.
Variant Recordset_Of(Session& session, const std::vector<std::string>& statements, const Values& keys,
                     const Fields& fields, std::string* last_change = nullptr) {
    recordset::Writer writer(fields);
    session.Read([&](Connection& connection) {
        if (last_change)
            *last_change = Last_Change(connection);
        for (const auto& sql : statements) {
            Statement select(connection, sql);
            select.Run(keys);
            for (UTF8_Row row; select.Next(row);)
                if (!writer.Add_UTF8_Row(row))
                    Refuse_Other_Than_UTF8();
        }
    });
    return Variant(std::move(writer).Finish_Text());
}

class SR_Reader final : public Component<interfaces::SR> {
public:
    Status Get_All_Node_Types(Variant& Result) override {
        return Serve([&] {
            Result = Recordset_Of(*session,
                                  {"SELECT id, language_1, language_2 FROM node_type ORDER BY list_position"},
                                  {}, {{u"ID"}, {u"Language1"}, {u"Language2"}});
        });
    }
    Status Get_All_Threshold_Types(Variant& Result) override {
        return Serve([&] {
            Result = Recordset_Of(*session,
                                  {"SELECT threshold_type_id, language_1, language_2 FROM threshold_type "
                                   "ORDER BY list_position"},
                                  {}, {{u"ThresholdTypeID"}, {u"Language1"}, {u"Language2"}});
        });
    }

private:
    const std::shared_ptr<Session> session = Current_Session();
};

// The default node comes first, the others in ascending order. Two statements, because in that order the
// others come from the primary key as they are; sorted by both in one, they would all be kept and sorted
// first.
std::vector<std::string> Select_Nodes() {
    const std::string select = "SELECT node_number, node_description, supervise_id, hookflash, "
                               "threshold_type_id, transfer, disconnection FROM style_node "
                               "WHERE config_id = :config AND partition_id = :partition AND node_number ";
    return {select + "= 0", select + "<> 0 ORDER BY node_number"};
}

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
            Result = Recordset_Of(*session, Select_Nodes(), Values_Of({&Config_ID, &Partition_ID}),
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
            const std::string sql = "SELECT " + SQL_List(Detail_Columns(table)) + " FROM " + table.Name +
                                    " WHERE config_id = :config AND partition_id = :partition "
                                    "AND node_number = :node";
            result = Recordset_Of(*session, {sql}, Values_Of({&config, &partition, &node}),
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
            Result =
                Recordset_Of(*session,
                             {"SELECT product_name, system_number, site_name, site_number, "
                              "product_version, release_number FROM configuration ORDER BY list_position"},
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
