// The stored records themselves, without a dialog's view of them, and one transaction over many of them.
#include <algorithm>
#include <optional>

#include "change.h"
#include "components.h"
#include "recordset/writer.h"

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

// What is read by one SELECT and may stand in several tables.
struct Recordset_Kind {
    std::vector<Stored_Field> Fields;
    std::vector<const Record_Kind*> Parts;
    std::string Select; // of the node's number and the fields, by configuration and partition
};

Recordset_Kind Made(std::vector<Stored_Field> fields, std::vector<const Record_Kind*> parts,
                    const std::string& joined = "") {
    const std::string first = parts.front()->Table;
    std::string columns = first + ".node_number";
    for (const Stored_Field& field : fields)
        columns += ", " + field.Part->Table + "." + field.Column;
    columns += ", NULL";
    if (parts.size() > 1)
        columns +=
            ", (SELECT MAX(change) FROM change_log WHERE change_log.config_id = style_node.config_id AND "
            "change_log.partition_id = style_node.partition_id AND "
            "change_log.node_number = style_node.node_number)";
    std::string select = "SELECT " + columns + " FROM " + first + joined + " WHERE " + first +
                         ".config_id = :config AND " + first + ".partition_id = :partition ORDER BY " +
                         first + ".node_number";
    return {std::move(fields), std::move(parts), std::move(select)};
}

Recordset_Kind Nodes() {
    const Record_Kind* node = &Node_Record();
    const Record_Kind* entry = &Node_Entry();
    return Made({{u"NodeDescription", node, "node_description"},
                 {u"SuperviseID", node, "supervise_id"},
                 {u"SuperviseCaption", node, "supervise_caption"},
                 {u"Hookflash", node, "hookflash"},
                 {u"ThresholdTypeID", node, "threshold_type_id"},
                 {u"Transfer", node, "transfer"},
                 {u"Disconnection", node, "disconnection"},
                 {u"EntryLabel", entry, "label"},
                 {u"EntryChanged", entry, "changed"}},
                {node, entry},
                " LEFT JOIN node_entry ON node_entry.config_id = style_node.config_id AND "
                "node_entry.partition_id = style_node.partition_id AND "
                "node_entry.node_number = style_node.node_number AND node_entry.node_type_id = 5");
}

Recordset_Kind Details(const Detail_Table& table) {
    const Record_Kind* detail = &Detail_Record(table);
    return Made({{u"SuperviseID", detail, "supervise_id"},
                 {u"Retrieve", detail, "retrieve"},
                 {u"BusyRetry", detail, "busy_retry"},
                 {u"NumberRetries", detail, "number_retries"},
                 {u"RingLimit", detail, "ring_limit"},
                 {String(table.First_Busy_Field), detail, table.First_Busy},
                 {String(table.Second_Busy_Field), detail, table.Second_Busy},
                 {u"RingOn", detail, "ring_on"},
                 {u"RingOff", detail, "ring_off"}},
                {detail});
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

class Records final : public Component<interfaces::Store_Records> {
public:
    ~Records() override { Stop(); }
    Status Begin(const Variant& Config_ID, const Variant& Partition_ID, Automation_Boolean Writes) override {
        return Serve([&] {
            Work wanted{Key_Of(Config_ID), Key_Of(Partition_ID), {}, {}};
            session->Begin_Work(Writes ? Access::Write : Access::Read);
            work = std::move(wanted);
            if (Writes) // every writer takes a number first, and waits here
                session->Write([](Connection& connection) {
                    Statement(connection, "UPDATE change_counter SET last_change = last_change").Run();
                });
        });
    }
    Status End(Automation_Boolean Kept, automation::Text& Change) override {
        return Serve([&] {
            Required_Work().Prepared.reset(); // its statements go before the end of the transaction
            if (Kept)
                session->Commit_Work();
            Stop();
            Change = automation::Text(String());
        });
    }
    Status Describe_Change(const Variant& Change, automation::Text& Result) override {
        return Serve([&] {
            Byte_Row row;
            session->Read([&](Connection& connection) {
                row = Statement(connection, "SELECT changed_by, changed_at FROM change_log WHERE change = " +
                                                std::to_string(Key_Of(Change)))
                          .First_Row()
                          .value_or(Byte_Row(2));
            });
            Result = automation::Text(automation::From_UTF8_Replacing(
                row[0].value_or("someone") + " at " + row[1].value_or("some time") + " (UTC)"));
        });
    }
    Status Read(Long Kind, Variant& Result) override {
        return Serve([&] {
            const Work& at = Required_Work();
            const Recordset_Kind& kind = Kind_Of(Kind);
            std::vector<recordset::Field_Description> fields{{u"NodeNumber"}};
            for (const Stored_Field& field : kind.Fields)
                fields.push_back({field.Name});
            fields.push_back({u"Escaped"});
            if (Kind == interfaces::Node_Record)
                fields.push_back({u"Change"});
            recordset::Writer writer(fields);
            session->Read([&](Connection& connection) {
                Statement select(connection, kind.Select);
                select.Run({at.Config, at.Partition});
                for (Row row; select.Next(row);)
                    writer.Add_Row(row);
            });
            Result = Variant(std::move(writer).Finish());
        });
    }
    Status Set(const Variant& Field, const Variant& New) override {
        return Serve([&] { Required_Work().Aside.insert_or_assign(Field.To_Text(), Stored_Value(New)); });
    }
    Status Write(Long Kind, Long Node) override {
        return Serve([&] {
            const Recordset_Kind& kind = Kind_Of(Kind);
            const auto aside = std::exchange(Required_Work().Aside, {});
            for (const Record_Kind* part : kind.Parts)
                Apply(*part, Node,
                      [&](Change& change) { change.Update(Values_Of_Part(kind, *part, aside)); });
        });
    }
    Status Add(Long Kind, Long Node) override {
        return Serve([&] {
            const Recordset_Kind& kind = Detail_Kind(Kind);
            const auto aside = std::exchange(Required_Work().Aside, {});
            const Record_Kind& part = *kind.Parts.front();
            Apply(part, Node, [&](Change& change) { change.Insert(Values_Of_Part(kind, part, aside)); });
        });
    }
    Status Remove(Long Kind, Long Node) override {
        return Serve(
            [&] { Apply(*Detail_Kind(Kind).Parts.front(), Node, [](Change& change) { change.Delete(); }); });
    }

private:
    using Values_Aside = std::map<String, Value>;
    struct Work {
        int Config, Partition;
        Values_Aside Aside;
        std::unique_ptr<Statements> Prepared;
    };

    Work& Required_Work() {
        if (!work)
            automation::Raise(automation::run_time::Invalid_Argument);
        return *work;
    }
    void Stop() noexcept {
        if (work)
            session->Roll_Back_Work();
        work.reset();
    }
    static const Recordset_Kind& Detail_Kind(Long kind) {
        if (kind == interfaces::Node_Record)
            automation::Raise(automation::run_time::Invalid_Argument);
        return Kind_Of(kind);
    }
    static Values Values_Of_Part(const Recordset_Kind& kind, const Record_Kind& part,
                                 const Values_Aside& aside) {
        Values values;
        for (const std::string& column : part.Columns) {
            const auto field =
                std::find_if(kind.Fields.begin(), kind.Fields.end(), [&](const Stored_Field& each) {
                    return each.Part == &part && each.Column == column;
                });
            const auto value = field == kind.Fields.end() ? aside.end() : aside.find(field->Name);
            if (value == aside.end())
                automation::Raise(automation::run_time::Invalid_Argument);
            values.push_back(value->second);
        }
        return values;
    }
    void Apply(const Record_Kind& part, Long node, const std::function<void(Change&)>& action) {
        Work& at = Required_Work();
        Values keys{at.Config, at.Partition, static_cast<int>(node)};
        if (part.Keys.size() > keys.size())
            keys.emplace_back(5); // the product's number of the type of these nodes
        session->Write([&](Connection& connection) {
            if (!at.Prepared)
                at.Prepared = std::make_unique<Statements>(connection);
            Change change(*at.Prepared, session->Editor, "store apply", {part, std::move(keys)});
            action(change);
        });
    }

    const std::shared_ptr<Session> session = Current_Session();
    std::optional<Work> work; // under way
};

} // namespace

New_Object Make_Store_Records() {
    return automation::Make_Object<Records>();
}

} // namespace stores
