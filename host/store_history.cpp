#include "store_history.h"

#include <nlohmann/json.hpp>

#include "automation/create.h"
#include "automation/text.h"
#include "host/decimal.h"
#include "host/setup.h"
#include "interfaces/store_history.h"
#include "interfaces/store_keeper.h"
#include "own_modules.h"
#include "store_answers.h"
#include "store_choice.h"
#include "visible_text.h"

namespace host {

namespace {

using automation::Variant;
using interfaces::Store_History;
using nlohmann::ordered_json;
using Rows = automation::Reference<recordset::Recordset>;

automation::Reference<Store_History> History() {
    Offer_Own_Modules();
    return automation::Create_Bound<Store_History>(interfaces::Store_Keeper::Program_Identity);
}

Variant Choice(const std::optional<Integer>& number) {
    return number ? Variant(*number) : Variant();
}

std::string Value_Shown(const ordered_json& value) {
    if (!value.is_string())
        return "null";
    return "\"" + Visible(automation::From_UTF8_Replacing(value.get<std::string>())) + "\"";
}

// An object of texts and nulls, as the history has them; nothing for anything else, however deep it is.
std::optional<ordered_json> Flat_Object(const std::string& text) {
    bool is_flat = true;
    auto values = ordered_json::parse(
        text,
        [&](int depth, ordered_json::parse_event_t event, ordered_json& value) {
            using Event = ordered_json::parse_event_t;
            const bool is_start = event == Event::object_start || event == Event::array_start;
            const bool is_held = event != Event::value || value.is_string() || value.is_null();
            is_flat = is_flat && is_held && (!is_start || depth == 0);
            return is_flat;
        },
        false);
    return is_flat && values.is_object() ? std::optional(std::move(values)) : std::nullopt;
}

// One row of an answer of the store, which may hold what somebody else has written there.
class Entry {
public:
    explicit Entry(const Rows& rows) : rows(rows) {}

    bool Has(automation::String_View field) const { return !rows->Value(field).Is_Null(); }
    std::string Text(automation::String_View field) const {
        return Has(field) ? automation::To_UTF8(rows->Value(field).To_Text()) : "";
    }
    std::string Shown(automation::String_View field) const {
        return Has(field) ? Visible(rows->Value(field).To_Text()) : "";
    }
    // A number where it is one, else the text, or null.
    ordered_json Number(automation::String_View field) const {
        const auto number = Decimal<std::int64_t>(Text(field));
        return number ? ordered_json(*number) : JSON(field);
    }
    ordered_json JSON(automation::String_View field) const {
        return Has(field) ? ordered_json(Text(field)) : ordered_json();
    }
    // The fields that differ; null when there was no record. A text when it is nothing of ours.
    ordered_json Values(automation::String_View field) const {
        if (!Has(field))
            return nullptr;
        const auto values = Flat_Object(Text(field));
        return values ? *values : ordered_json(Text(field));
    }
    // Older programs noted that a save had touched the node's entry.
    bool Is_News() const {
        const auto is_time = [](const ordered_json& values) {
            return values.is_object() && values.size() == 1 && values.contains("changed");
        };
        return Text(u"Record") != "node_entry" || !is_time(Values(u"Old")) || !is_time(Values(u"New"));
    }

private:
    const Rows& rows;
};

void Print_Fields(const Entry& entry, std::ostream& out) {
    const auto before = entry.Values(u"Old"), after = entry.Values(u"New");
    if (before.is_string() || after.is_string()) {
        out << "    " << Value_Shown(before) << " -> " << Value_Shown(after) << '\n';
        return;
    }
    const auto side = [](const ordered_json& values, const std::string& name) {
        return values.contains(name) ? Value_Shown(values[name]) : std::string("-");
    };
    const auto& named = after.is_null() ? before : after;
    for (const auto& [name, value] : named.items())
        out << "    " << Visible(automation::From_UTF8_Replacing(name)) << ": " << side(before, name)
            << " -> " << side(after, name) << '\n';
}

void Print_Place(const Entry& entry, std::ostream& out) {
    out << entry.Shown(u"Record") << ", configuration " << entry.Shown(u"ConfigID") << ", partition "
        << entry.Shown(u"PartitionID") << ", node " << entry.Shown(u"NodeNumber");
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
    History_For_A_Person(const Store_History_Command& command, std::ostream& out)
        : command(command), out(out) {}

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
            out << "  to take it back: " << How_To_Take_Back(command.Store, change) << '\n';
    }

private:
    const Store_History_Command& command;
    std::ostream& out;
    std::string change;
    bool is_broken = false;
};

void Require_Written(std::ostream& out, const std::string& what) {
    if (!out.flush())
        throw Start_Error(what + " could not be written; check where standard output goes");
}

// What a change would be, or why it is none.
void Print_Step(const Entry& entry, std::ostream& out) {
    if (!entry.Has(u"Record")) {
        out << "refused: " << Visible_Text(entry.Text(u"Refusal")) << '\n';
        return;
    }
    Print_Place(entry, out);
    if (entry.Has(u"Refusal")) {
        out << ": refused: " << Visible_Text(entry.Text(u"Refusal")) << '\n';
        return;
    }
    out << '\n';
    Print_Fields(entry, out);
}

} // namespace

bool Print_History(const Store_History_Command& command, const Streams& streams) try {
    Variant xml;
    automation::Call(History(), &Store_History::Read_Changes, Store_Location(command.Store),
                     Choice(command.Config_ID), Choice(command.Partition_ID), Choice(command.Node_Number),
                     xml);
    History_For_A_Person for_a_person(command, streams.Out);
    std::size_t shown = 0;
    for (const Rows rows = Opened(xml); !rows->At_End(); rows->Move_Next()) {
        const Entry entry(rows);
        if (!entry.Is_News())
            continue;
        command.As_JSON ? Print_As_JSON(entry, streams.Out) : for_a_person.Print(entry);
        ++shown;
    }
    if (!command.As_JSON)
        for_a_person.End_Change();
    Require_Written(streams.Out, "the history");
    if (shown == 0)
        streams.Errors << "style-editor: no change is recorded" << (command.Config_ID ? " there" : "")
                       << std::endl;
    return shown > 0 || !command.Config_ID;
} catch (const automation::Failure& failure) {
    Give_Up(failure);
}

bool Revert(const Revert_Command& command, const Streams& streams) try {
    Variant xml;
    automation::Text change;
    const auto wide = [](const std::string& text) { return Variant(automation::From_UTF8_Replacing(text)); };
    automation::Call(History(), &Store_History::Revert, Store_Location(command.Store), wide(command.First),
                     wide(command.Last), command.Force ? automation::True : automation::False,
                     command.Dry_Run ? automation::True : automation::False, xml, change);
    std::size_t refused = 0, records = 0;
    for (const Rows rows = Opened(xml); !rows->At_End(); rows->Move_Next()) {
        const Entry entry(rows);
        const bool is_refused = entry.Has(u"Refusal");
        ++(is_refused ? refused : records);
        if (is_refused || command.Dry_Run)
            Print_Step(entry, streams.Out);
    }
    const std::string number = automation::To_UTF8(change.View());
    if (!number.empty())
        streams.Out << How_To_Take_Back(command.Store, number) << '\n';
    const auto count = [](std::size_t many, const std::string& what) {
        return std::to_string(many) + " " + what + (many == 1 ? "" : "s");
    };
    const std::string done =
        refused > 0       ? "nothing was changed: " + count(refused, "refusal")
        : records == 0    ? "nothing was changed: everything is as it was before already"
        : command.Dry_Run ? "nothing was changed: a dry run; " + count(records, "record") + " would change"
                          : count(records, "record") + (records == 1 ? " was changed" : " were changed");
    Tell(streams, done);
    return refused == 0;
} catch (const automation::Failure& failure) {
    Give_Up(failure);
}

std::string Upgrade_Store(const Store_Upgrade_Command& command) try {
    automation::Text name;
    automation::Call(History(), &Store_History::Upgrade, Store_Location(command.Store), name);
    return automation::To_UTF8(name.View());
} catch (const automation::Failure& failure) {
    Give_Up(failure);
}

} // namespace host
