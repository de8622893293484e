#include "history_entries.h"
#include "process/errors.h"
#include "run_setup/store_choice.h"
#include "store_admin/store_commands.h"

namespace host {

namespace {

Variant Choice(const std::optional<Integer>& number) {
    return number ? Variant(*number) : Variant();
}

void Print_Change(const Entry& entry, std::ostream& out) {
    out << "Change " << entry.Shown(u"Change") << ", " << entry.Shown(u"At") << " UTC, by "
        << (entry.Has(u"By") ? entry.Shown(u"By") : "another program");
    if (entry.Has(u"DatabaseUser"))
        out << " (database user " << entry.Shown(u"DatabaseUser") << ")";
    out << ": " << entry.Shown(u"Operation") << '\n';
}

void Print_As_JSON(const Entry& entry, std::ostream& out) {
    ordered_json line{{"change", entry.Number(u"Change")},
                      {"entry", entry.Number(u"Entry")},
                      {"at", entry.JSON(u"At")},
                      {"by", entry.JSON(u"By")},
                      {"database_user", entry.JSON(u"DatabaseUser")},
                      {"operation", entry.JSON(u"Operation")},
                      {"record", entry.JSON(u"Record")},
                      {"config_id", entry.Number(u"ConfigID")},
                      {"partition_id", entry.Number(u"PartitionID")},
                      {"node_number", entry.Number(u"NodeNumber")},
                      {"old", entry.Values(u"Old")},
                      {"new", entry.Values(u"New")}};
    if (entry.Has(u"Broken"))
        line["broken"] = entry.Text(u"Broken");
    out << line.dump(-1, ' ', true) << '\n';
}

// The records of one change stand below its line, and what takes it back below them.
class History_For_A_Person {
public:
    History_For_A_Person(const std::optional<std::string>& store, std::ostream& out)
        : store(store), out(out) {}

    void Print(const Entry& entry) {
        if (entry.Text(u"Change") != change) {
            End_Change();
            change = entry.Text(u"Change");
            is_broken = false;
            Print_Change(entry, out);
        }
        out << "  ";
        Print_Place(entry, out);
        if (entry.Has(u"Broken")) {
            out << " (broken: " << entry.Shown(u"Broken") << ")";
            is_broken = true;
        }
        out << '\n';
        Print_Fields(entry, out);
    }
    void End_Change() {
        if (!is_broken && Decimal<std::int64_t>(change))
            out << "  to take it back: " << How_To_Take_Back(store, change) << '\n';
    }

private:
    const std::optional<std::string>& store;
    std::ostream& out;
    std::string change;
    bool is_broken = false;
};

class History_Command final : public Subcommand {
    Outline About() const override { return {"store history", "Print who changed what, and when"}; }

    void Declare(Options& options) override {
        Declare_Store(options, store);
        Declare_Identifier(options, "--config", config_id, "Of this configuration alone");
        Declare_Identifier(options, "--partition", partition_id, "Of this partition alone");
        Declare_Node(options, node_number,
                     "Of this node alone; of configuration and partition 1 unless given");
        options.Flag("--json", as_json, "One JSON object a line");
    }

    // The oldest change first.
    int Run(const Streams& streams) override try {
        const bool is_place = node_number || config_id || partition_id;
        if (is_place) {
            config_id = config_id.value_or(1);
            partition_id = partition_id.value_or(1);
        }
        Variant xml;
        automation::Call(History(), &Store_History::Read_Changes, Store_Location(store), Choice(config_id),
                         Choice(partition_id), Choice(node_number), xml);
        const std::size_t printed = Print(Opened(xml), streams.Out);
        Require_Written(streams, "the history: ");
        if (printed == 0)
            streams.Errors << "style-editor: no change is recorded" << (is_place ? " there" : "")
                           << std::endl;
        return printed > 0 || !is_place ? status::OK : status::Refused;
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }

    std::size_t Print(const Rows& rows, std::ostream& out) const {
        History_For_A_Person for_a_person(store, out);
        std::size_t printed = 0;
        for (; !rows->At_End(); rows->Move_Next()) {
            const Entry entry(rows);
            if (!entry.Is_News())
                continue;
            as_json ? Print_As_JSON(entry, out) : for_a_person.Print(entry);
            ++printed;
        }
        if (!as_json)
            for_a_person.End_Change();
        return printed;
    }

    std::optional<std::string> store;
    std::optional<Integer> config_id, partition_id, node_number; // without one, all
    bool as_json = false;
};

} // namespace

std::unique_ptr<Subcommand> Make_History_Command() {
    return std::make_unique<History_Command>();
}

} // namespace host
