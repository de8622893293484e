// Writers: an update or a delete that finds no row is no failure, an insert over an existing row is one. None
// of them writes a node that someone else has changed since it was read here.
#include "change.h"
#include "components.h"

namespace stores {

namespace {

using automation::Status;
using automation::Variant;

using Action = std::function<void(Change&, const Record&)>;

void Write(Session& session, const std::string& operation, const Record& record, const Action& action) {
    session.Write([&](Connection& connection) {
        Change change(connection, session.Editor, operation);
        change.Lock(*record.Keys[0].Key, *record.Keys[1].Key);
        change.Check_Conflict(record.Keys);
        action(change, record);
        change.Close();
    });
}

class UDNODES_Updater final : public Component<interfaces::UDNODES> {
public:
    Status Update_Style_Node(const Variant& Config_ID, const Variant& Partition_ID,
                             const Variant& Node_Number, const Variant& Hookflash,
                             const Variant& Threshold_Type_ID, const Variant& Transfer,
                             const Variant& Disconnection, const Variant& Supervise_Caption,
                             const Variant& Supervise_ID, const Variant& Label) override {
        return Serve([&] {
            const auto values = Values_Of({}, {&Hookflash, &Threshold_Type_ID, &Transfer, &Disconnection,
                                               &Supervise_Caption, &Supervise_ID, &Label});
            Write(*session, "Update_Style_Node",
                  {Node_Record(), Values_Of({&Config_ID, &Partition_ID, &Node_Number})},
                  [&](Change& change, const Record& record) { change.Update(record, values); });
        });
    }
    Status Update_Node_Entry(const Variant& Label, const Variant& Changed, const Variant& Config_ID,
                             const Variant& Partition_ID, const Variant& Node_Type_ID,
                             const Variant& Node_Number) override {
        return Serve([&] {
            const auto values = Values_Of({}, {&Label, &Changed});
            Write(*session, "Update_Node_Entry",
                  {Node_Entry(), Values_Of({&Config_ID, &Partition_ID, &Node_Number, &Node_Type_ID})},
                  [&](Change& change, const Record& record) { change.Update(record, values); });
        });
    }

private:
    const std::shared_ptr<Session> session = Current_Session();
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
            Write(*session, std::string("Delete_") + table.Type + "_Detail",
                  {Detail_Record(table), Values_Of(keys)},
                  [](Change& change, const Record& record) { change.Delete(record); });
        });
    }

    const std::shared_ptr<Session> session = Current_Session();
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
        return Serve([&] {
            const auto values = Values_Of({}, texts);
            Write(*session, std::string("Insert_") + table.Type + "_Detail",
                  {Detail_Record(table), Values_Of(keys)},
                  [&](Change& change, const Record& record) { change.Insert(record, values); });
        });
    }

    const std::shared_ptr<Session> session = Current_Session();
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
