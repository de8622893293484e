// Writers: an update or a delete that finds no row is no failure, an insert over an existing row is one.
#include "components.h"
#include "schema.h"

namespace stores {

namespace {

using automation::Status;
using automation::Variant;

void Write(const Store& store, const std::string& sql, const Values& values) {
    store.Data().Operate([&](soci::session& session) { Statement(session, sql).Run(values); });
}

class UDNODES_Updater final : public Component<interfaces::UDNODES> {
public:
    Status Update_Style_Node(const Variant& Config_ID, const Variant& Partition_ID,
                             const Variant& Node_Number, const Variant& Hookflash,
                             const Variant& Threshold_Type_ID, const Variant& Transfer,
                             const Variant& Disconnection, const Variant& Supervise_Caption,
                             const Variant& Supervise_ID, const Variant& Label) override {
        return Serve([&] {
            Write(*store,
                  "UPDATE style_node SET hookflash = :hookflash, threshold_type_id = :threshold, "
                  "transfer = :transfer, disconnection = :disconnection, supervise_caption = :caption, "
                  "supervise_id = :supervise, node_description = :label "
                  "WHERE config_id = :config AND partition_id = :partition AND node_number = :node",
                  {Text_Of(Hookflash), Text_Of(Threshold_Type_ID), Text_Of(Transfer), Text_Of(Disconnection),
                   Text_Of(Supervise_Caption), Text_Of(Supervise_ID), Text_Of(Label), Key_Of(Config_ID),
                   Key_Of(Partition_ID), Key_Of(Node_Number)});
        });
    }
    Status Update_Node_Entry(const Variant& Label, const Variant& Changed, const Variant& Config_ID,
                             const Variant& Partition_ID, const Variant& Node_Type_ID,
                             const Variant& Node_Number) override {
        return Serve([&] {
            Write(*store,
                  "UPDATE node_entry SET label = :label, changed = :changed "
                  "WHERE config_id = :config AND partition_id = :partition AND node_type_id = :type "
                  "AND node_number = :node",
                  {Text_Of(Label), Text_Of(Changed), Key_Of(Config_ID), Key_Of(Partition_ID),
                   Key_Of(Node_Type_ID), Key_Of(Node_Number)});
        });
    }

private:
    const Shared_Store store = Current_Store();
};

class DELNODES_Deleter final : public Component<interfaces::DELNODES> {
public:
    Status Delete_Full_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                              const Variant& Node_Number) override {
        return Delete(Full_Detail, {&Config_ID, &Partition_ID, &Node_Number});
    }
    Status Delete_Partial_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                 const Variant& Node_Number) override {
        return Delete(Partial_Detail, {&Config_ID, &Partition_ID, &Node_Number});
    }
    Status Delete_Enhanced_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                  const Variant& Node_Number) override {
        return Delete(Enhanced_Detail, {&Config_ID, &Partition_ID, &Node_Number});
    }
    Status Delete_DialContinue_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                      const Variant& Node_Number) override {
        return Delete(DialContinue_Detail, {&Config_ID, &Partition_ID, &Node_Number});
    }

private:
    Status Delete(const Detail_Table& table, std::initializer_list<const Variant*> keys) {
        return Serve([&] {
            Write(*store,
                  std::string("DELETE FROM ") + table.Name +
                      " WHERE config_id = :config AND partition_id = :partition AND node_number = :node",
                  Values_Of(keys));
        });
    }

    const Shared_Store store = Current_Store();
};

class INSNODES_Inserter final : public Component<interfaces::INSNODES> {
public:
    Status Insert_DialContinue_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                      const Variant& Node_Number, const Variant& Supervise_ID,
                                      const Variant& Retrieve, const Variant& Busy_Retry,
                                      const Variant& Number_Retries, const Variant& Ring_Limit,
                                      const Variant& Busy_On, const Variant& Busy_Off, const Variant& Ring_On,
                                      const Variant& Ring_Off) override {
        return Insert(DialContinue_Detail, {&Config_ID, &Partition_ID, &Node_Number},
                      {&Supervise_ID, &Retrieve, &Busy_Retry, &Number_Retries, &Ring_Limit, &Busy_On,
                       &Busy_Off, &Ring_On, &Ring_Off});
    }
    Status Insert_Enhanced_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                  const Variant& Node_Number, const Variant& Supervise_ID,
                                  const Variant& Retrieve, const Variant& Busy_Retry,
                                  const Variant& Number_Retries, const Variant& Ring_Limit,
                                  const Variant& Busy_On, const Variant& Busy_Off, const Variant& Ring_On,
                                  const Variant& Ring_Off) override {
        return Insert(Enhanced_Detail, {&Config_ID, &Partition_ID, &Node_Number},
                      {&Supervise_ID, &Retrieve, &Busy_Retry, &Number_Retries, &Ring_Limit, &Busy_On,
                       &Busy_Off, &Ring_On, &Ring_Off});
    }
    Status Insert_Full_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                              const Variant& Node_Number, const Variant& Supervise_ID,
                              const Variant& Retrieve, const Variant& Busy_Retry,
                              const Variant& Number_Retries, const Variant& Ring_Limit,
                              const Variant& Busy_On, const Variant& Busy_Off, const Variant& Ring_On,
                              const Variant& Ring_Off) override {
        return Insert(Full_Detail, {&Config_ID, &Partition_ID, &Node_Number},
                      {&Supervise_ID, &Retrieve, &Busy_Retry, &Number_Retries, &Ring_Limit, &Busy_On,
                       &Busy_Off, &Ring_On, &Ring_Off});
    }
    Status Insert_Partial_Detail(const Variant& Config_ID, const Variant& Partition_ID,
                                 const Variant& Node_Number, const Variant& Supervise_ID,
                                 const Variant& Retrieve, const Variant& Busy_Retry,
                                 const Variant& Number_Retries, const Variant& Ring_Limit,
                                 const Variant& Busy_On, const Variant& Busy_Off, const Variant& Ring_On,
                                 const Variant& Ring_Off) override {
        return Insert(Partial_Detail, {&Config_ID, &Partition_ID, &Node_Number},
                      {&Supervise_ID, &Retrieve, &Busy_Retry, &Number_Retries, &Ring_Limit, &Busy_On,
                       &Busy_Off, &Ring_On, &Ring_Off});
    }

private:
    using Arguments = std::initializer_list<const Variant*>;

    Status Insert(const Detail_Table& table, Arguments keys, Arguments texts) {
        return Serve([&] { Write(*store, Insert_Detail(table), Values_Of(keys, texts)); });
    }

    const Shared_Store store = Current_Store();
};

} // namespace

New_Object Make_UDNODES() {
    return automation::Make_Object<UDNODES_Updater>();
}

New_Object Make_DELNODES() {
    return automation::Make_Object<DELNODES_Deleter>();
}

New_Object Make_INSNODES() {
    return automation::Make_Object<INSNODES_Inserter>();
}

} // namespace stores
