// The stored records themselves, without a dialog's view of them, and one transaction over many of them.
#include <algorithm>
#include <optional>

#include "automation/text.h"
#include "components.h"
#include "record_batch.h"
#include "recordset/writer.h"
#include "stored_text.h"

namespace stores {

namespace {

using automation::Long;
using automation::Status;
using automation::String;
using automation::String_View;
using automation::Variant;

// A value of a record: its name, and where it stands.
struct Stored_Field {
    String Name;
    const Record_Kind* Part;
    std::string Column;
};

struct Recordset_Kind {
    std::vector<Stored_Field> Fields;
    std::vector<const Record_Kind*> Parts;
};

Recordset_Kind Nodes() {
    const Record_Kind* node = &Node_Record();
    const Record_Kind* entry = &Node_Entry();
    return {{{u"NodeDescription", node, "node_description"},
             {u"SuperviseID", node, "supervise_id"},
             {u"SuperviseCaption", node, "supervise_caption"},
             {u"Hookflash", node, "hookflash"},
             {u"ThresholdTypeID", node, "threshold_type_id"},
             {u"Transfer", node, "transfer"},
             {u"Disconnection", node, "disconnection"},
             {u"EntryLabel", entry, "label"},
             {u"EntryChanged", entry, "changed"}},
            {node, entry}};
}

Recordset_Kind Details(const Detail_Table& table) {
    const Record_Kind* detail = &Detail_Record(table);
    return {{{u"SuperviseID", detail, "supervise_id"},
             {u"Retrieve", detail, "retrieve"},
             {u"BusyRetry", detail, "busy_retry"},
             {u"NumberRetries", detail, "number_retries"},
             {u"RingLimit", detail, "ring_limit"},
             {String(table.First_Busy_Field), detail, table.First_Busy},
             {String(table.Second_Busy_Field), detail, table.Second_Busy},
             {u"RingOn", detail, "ring_on"},
             {u"RingOff", detail, "ring_off"}},
            {detail}};
}

const Recordset_Kind& Kind_Of(Long kind) {
    static const std::vector<Recordset_Kind> kinds = [] {
        std::vector<Recordset_Kind> all{Nodes()};
        for (const Detail_Table* table : Detail_Tables)
            all.push_back(Details(*table));
        return all;
    }();
    if (kind < 0 || kind > interfaces::Last_Detail_Record)
        automation::Raise(automation::run_time::Invalid_Argument);
    return kinds[static_cast<std::size_t>(kind)];
}

Value Stored_Value(const Variant& value) {
    return value.Is_Null() ? Value(nullptr) : Value(Text_Of(value));
}

// The rows of one kind. Each table is read by itself in the order of its key: how a server would join them
// depends on statistics that a new partition does not have.
class Reading {
public:
    Reading(Connection& connection, Long number, int config, int partition)
        : connection(connection), kind(Kind_Of(number)), has_changes(number == interfaces::Node_Record),
          writer(Field_Names()), keys{config, partition} {}

    Variant Read() {
        std::map<std::string, Byte_Row> second; // by node
        if (kind.Parts.size() > 1)
            Each_Row(*kind.Parts[1], " AND node_type_id = " + std::to_string(Style_Node_Type),
                     [&](const UTF8_Row& row) {
                         second[std::string(row[0].value_or(""))].assign(row.begin() + 1, row.end());
                     });
        const auto changes = has_changes ? Last_Changes() : std::map<std::string, std::string>();
        Each_Row(*kind.Parts[0], "", [&](const UTF8_Row& row) {
            const std::string node(row[0].value_or(""));
            UTF8_Row whole = row;
            if (kind.Parts.size() > 1) {
                const auto found = second.find(node);
                if (found == second.end())
                    whole.resize(kind.Fields.size() + 1);
                else
                    whole.insert(whole.end(), found->second.begin(), found->second.end());
            }
            const auto change = changes.find(node);
            Add(whole, change == changes.end() ? nullptr : &change->second);
        });
        return Variant(std::move(writer).Finish_Text());
    }

private:
    std::vector<recordset::Field_Description> Field_Names() const {
        std::vector<recordset::Field_Description> fields{{u"NodeNumber"}};
        for (const Stored_Field& field : kind.Fields)
            fields.push_back({field.Name});
        fields.push_back({u"Escaped"});
        if (has_changes)
            fields.push_back({u"Change"});
        return fields;
    }
    // A number that no component could be asked for is nobody's node.
    template <typename Body>
    void Each_Row(const Record_Kind& part, const std::string& condition, Body&& body) {
        std::string columns = "node_number";
        for (const Stored_Field& field : kind.Fields)
            if (field.Part == &part)
                columns += ", " + field.Column;
        Statement select(connection, "SELECT " + columns + " FROM " + part.Table +
                                         " WHERE config_id = :config AND partition_id = :partition" +
                                         condition +
                                         " AND node_number BETWEEN -32768 AND 32767 ORDER BY node_number");
        select.Run(keys);
        for (UTF8_Row row; select.Next(row);)
            body(row);
    }
    std::map<std::string, std::string> Last_Changes() {
        std::map<std::string, std::string> changes;
        Statement select(connection,
                         "SELECT node_number, MAX(change) FROM change_log WHERE config_id = :config AND "
                         "partition_id = :partition GROUP BY node_number");
        select.Run(keys);
        for (UTF8_Row row; select.Next(row);)
            changes[std::string(row[0].value_or(""))] = std::string(row[1].value_or("0"));
        return changes;
    }
    void Add(UTF8_Row& row, const std::string* change) {
        std::vector<std::string> escaped;
        escaped.reserve(row.size()); // the row refers to its texts
        String names;
        for (std::size_t column = 1; column < row.size(); ++column) {
            if (!row[column] || Can_Be_Delivered(*row[column]))
                continue;
            names.append(names.empty() ? u"" : u" ").append(kind.Fields[column - 1].Name);
            row[column] = escaped.emplace_back(Escaped(*row[column]));
        }
        const std::string all = automation::To_UTF8(names);
        row.push_back(all.empty() ? std::nullopt : std::optional<std::string_view>(all));
        if (has_changes)
            row.push_back(change ? std::optional<std::string_view>(*change) : std::nullopt);
        writer.Add_UTF8_Row(row);
    }

    Connection& connection;
    const Recordset_Kind& kind;
    const bool has_changes;
    recordset::Writer writer;
    const Values keys;
};

class Records final : public Component<interfaces::Store_Records> {
public:
    ~Records() override { Stop(); }
    Status Begin(const Variant& Config_ID, const Variant& Partition_ID, Automation_Boolean Writes) override {
        return Serve([&] {
            const int config = Key_Of(Config_ID), partition = Key_Of(Partition_ID);
            session->Begin_Work(Writes ? Access::Write : Access::Read);
            work.emplace(Work{config, partition, {}, nullptr, {}});
            try {
                if (Writes)
                    session->Write([&](Connection& connection) { Begin_Writing(connection); });
            } catch (...) {
                Stop();
                throw;
            }
        });
    }
    Status End(Automation_Boolean Kept, automation::Text& Change) override {
        return Serve([&] {
            std::string number;
            if (Work& at = Required_Work(); Kept && at.Writing)
                session->Write([&](Connection&) {
                    at.Batch->Flush();
                    number = at.Writing->Number();
                    at.Writing->Close();
                    Forget_Writing(); // its statements go before the end of the transaction
                });
            if (Kept)
                session->Commit_Work();
            Stop();
            Change = automation::Text(automation::From_UTF8_Replacing(number));
        });
    }
    Status Describe_Change(const Variant& Change, automation::Text& Result) override {
        return Serve([&] {
            session->Read([&](Connection& connection) {
                Result = automation::Text(automation::From_UTF8_Replacing(
                    Who_And_When(connection, automation::To_UTF8(Change.To_Text()))));
            });
        });
    }
    Status Read(Long Kind, Variant& Result) override {
        return Serve([&] {
            Work& at = Required_Work();
            session->Read([&](Connection& connection) {
                if (at.Batch)
                    at.Batch->Flush();
                Result = Reading(connection, Kind, at.Config, at.Partition).Read();
            });
        });
    }
    Status Set(const Variant& Field, const Variant& New) override {
        return Serve([&] { Required_Work().Aside.insert_or_assign(Field.To_Text(), Stored_Value(New)); });
    }
    Status Write(Long Kind, Long Node) override {
        return Serve([&] {
            const Recordset_Kind& kind = Kind_Of(Kind);
            const auto aside = Taken_From_Aside(kind);
            Change_Records([&](Record_Batch& batch) {
                for (const Record_Kind* part : kind.Parts)
                    batch.Update(*part, Keys_Of(*part, Node), Fields_Of(kind, *part, aside));
            });
        });
    }
    Status Add(Long Kind, Long Node) override {
        return Serve([&] {
            const Recordset_Kind& kind = Detail_Kind(Kind);
            const auto aside = Taken_From_Aside(kind);
            Change_Records([&](Record_Batch& batch) {
                const Record_Kind& part = *kind.Parts.front();
                batch.Insert(part, Keys_Of(part, Node), Fields_Of(kind, part, aside));
            });
        });
    }
    Status Remove(Long Kind, Long Node) override {
        return Serve([&] {
            const Record_Kind& part = *Detail_Kind(Kind).Parts.front();
            Change_Records([&](Record_Batch& batch) { batch.Delete(part, Keys_Of(part, Node)); });
        });
    }

private:
    using Values_Aside = std::map<String, Value>;
    struct Work {
        int Config, Partition;
        Values_Aside Aside;
        std::unique_ptr<stores::Change> Writing; // null where it only reads
        std::optional<Record_Batch> Batch;
    };

    Work& Required_Work() {
        if (!work)
            automation::Raise(automation::run_time::Invalid_Argument);
        return *work;
    }
    void Begin_Writing(Connection& connection) {
        work->Writing = std::make_unique<stores::Change>(connection, session->Editor, "store apply");
        work->Writing->Lock(work->Config, work->Partition);
        work->Batch.emplace(*work->Writing, work->Config, work->Partition);
    }
    void Forget_Writing() noexcept {
        work->Batch.reset();
        work->Writing.reset();
    }
    void Stop() noexcept {
        if (!work)
            return;
        Forget_Writing();
        session->Roll_Back_Work();
        work.reset();
    }
    static const Recordset_Kind& Detail_Kind(Long kind) {
        if (kind == interfaces::Node_Record)
            automation::Raise(automation::run_time::Invalid_Argument);
        return Kind_Of(kind);
    }
    Values_Aside Taken_From_Aside(const Recordset_Kind& kind) {
        auto aside = std::exchange(Required_Work().Aside, {});
        for (const auto& [name, value] : aside)
            if (std::none_of(kind.Fields.begin(), kind.Fields.end(),
                             [&, &wanted = name](const Stored_Field& each) { return each.Name == wanted; }))
                automation::Raise(automation::run_time::Invalid_Argument);
        return aside;
    }
    static Record_Batch::Fields Fields_Of(const Recordset_Kind& kind, const Record_Kind& part,
                                          const Values_Aside& aside) {
        Record_Batch::Fields fields;
        for (const Stored_Field& field : kind.Fields)
            if (const auto value = aside.find(field.Name); field.Part == &part && value != aside.end())
                fields.emplace_back(field.Column, value->second);
        return fields;
    }
    static Values Keys_Of(const Record_Kind& part, Long node) {
        Values keys{static_cast<int>(node)};
        if (part.Keys.size() > 3)
            keys.emplace_back(Style_Node_Type);
        return keys;
    }
    void Change_Records(const std::function<void(Record_Batch&)>& action) {
        Work& at = Required_Work();
        if (!at.Batch)
            automation::Raise(automation::run_time::Invalid_Argument);
        session->Write([&](Connection&) { action(*at.Batch); });
    }

    const std::shared_ptr<Session> session = Current_Session();
    std::optional<Work> work; // under way
};

} // namespace

New_Object Make_Store_Records() {
    return automation::Make_Object<Records>();
}

} // namespace stores
