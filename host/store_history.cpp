#include "store_history.h"

#include <nlohmann/json.hpp>

#include "automation/create.h"
#include "automation/text.h"
#include "host/setup.h"
#include "interfaces/store_history.h"
#include "interfaces/store_keeper.h"
#include "own_modules.h"
#include "store_answers.h"
#include "store_choice.h"

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
        return value.dump(-1, ' ', true);
    return "\"" + Visible(automation::From_UTF8_Replacing(value.get<std::string>())) + "\"";
}

// One record of the history.
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
    // The fields that differ; null when there was no record. What is no object was not written by us.
    ordered_json Values(automation::String_View field) const {
        if (!Has(field))
            return nullptr;
        auto values = ordered_json::parse(Text(field), nullptr, false);
        return values.is_object() ? values : ordered_json{{"?", Text(field)}};
    }

private:
    const Rows& rows;
};

void Print_Fields(const Entry& entry, std::ostream& out) {
    const auto before = entry.Values(u"Old");
    const auto after = entry.Values(u"New");
    const auto& named = after.is_null() ? before : after;
    const auto side = [](const ordered_json& values, const std::string& name) {
        return values.contains(name) ? Value_Shown(values[name]) : std::string("-");
    };
    for (const auto& [name, value] : named.items())
        out << "    " << Visible(automation::From_UTF8_Replacing(name)) << ": " << side(before, name)
            << " -> " << side(after, name) << '\n';
}

void Print_For_A_Person(const Entry& entry, std::ostream& out) {
    out << "Change " << entry.Shown(u"Change") << ", " << entry.Shown(u"At") << " UTC, by "
        << entry.Shown(u"By");
    if (entry.Has(u"DatabaseUser"))
        out << " (database user " << entry.Shown(u"DatabaseUser") << ")";
    out << ": " << entry.Shown(u"Operation") << '\n'
        << "  " << entry.Shown(u"Record") << ", configuration " << entry.Shown(u"ConfigID") << ", partition "
        << entry.Shown(u"PartitionID") << ", node " << entry.Shown(u"NodeNumber") << '\n';
    Print_Fields(entry, out);
}

void Print_As_JSON(const Entry& entry, std::ostream& out) {
    const auto number = [&](automation::String_View field) { return std::stoll(entry.Text(field)); };
    ordered_json line{{"change", number(u"Change")}, {"at", entry.Text(u"At")}, {"by", entry.Text(u"By")}};
    line["database_user"] = entry.Has(u"DatabaseUser") ? ordered_json(entry.Text(u"DatabaseUser")) : nullptr;
    line["operation"] = entry.Text(u"Operation");
    line["record"] = entry.Text(u"Record");
    line["config_id"] = number(u"ConfigID");
    line["partition_id"] = number(u"PartitionID");
    line["node_number"] = number(u"NodeNumber");
    line["old"] = entry.Values(u"Old");
    line["new"] = entry.Values(u"New");
    out << line.dump(-1, ' ', true) << '\n';
}

} // namespace

void Print_History(const Store_History_Command& command, std::ostream& out) try {
    Variant xml;
    automation::Check(History()->Read_Changes(Store_Location(command.Store), Choice(command.Config_ID),
                                              Choice(command.Partition_ID), Choice(command.Node_Number),
                                              xml));
    for (const Rows rows = Opened(xml); !rows->At_End(); rows->Move_Next())
        command.As_JSON ? Print_As_JSON(Entry(rows), out) : Print_For_A_Person(Entry(rows), out);
    out.flush();
    if (!out)
        throw Start_Error("the history could not be written; check where standard output goes");
} catch (const automation::Failure& failure) {
    Give_Up(failure);
}

std::string Upgrade_Store(const Store_Upgrade_Command& command) try {
    automation::Text name;
    automation::Check(History()->Upgrade(Store_Location(command.Store), name));
    return automation::To_UTF8(name.View());
} catch (const automation::Failure& failure) {
    Give_Up(failure);
}

} // namespace host
