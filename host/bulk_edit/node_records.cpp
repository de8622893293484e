#include "bulk_edit/node_records.h"

#include <set>

#include <nlohmann/json.hpp>

#include "automation/create.h"
#include "automation/number.h"
#include "automation/text.h"
#include "process/decimal.h"
#include "process/visible_text.h"
#include "run_setup/store_session.h"

namespace host {

namespace {

using automation::Variant;
using interfaces::Store_Records;
using nlohmann::ordered_json;

constexpr Value_Name Own_Values[] = {{"NodeDescription", u"txtDescription", "Label"},
                                     {"SuperviseID", u"fraSupervised", "Supervised type"},
                                     {"SuperviseCaption", {}, "Type's caption"},
                                     {"Hookflash", u"cmbHookFlash", "Hook flash", "ms"},
                                     {"ThresholdTypeID", u"cmbThreshold", "Threshold"},
                                     {"Transfer", u"txtTransfer", "Transfer string"},
                                     {"Disconnection", u"txtDisconnect", "Disconnect string"},
                                     {"EntryLabel", {}, "Label in the node list"},
                                     {"EntryChanged", {}, "Last changed"}};

constexpr std::array<Value_Name, Values_Of_A_Record> Detail_Values(const char* first_busy,
                                                                   const char* first_title,
                                                                   const char* second_busy,
                                                                   const char* second_title) {
    return {{{"SuperviseID", {}, "Record's type"},
             {"Retrieve", u"txtRetrieve", "Retrieve string"},
             {"BusyRetry", u"cmbBusyRetry", "Busy retry", "s"},
             {"NumberRetries", u"cmbNumRetries", "Number of retries"},
             {"RingLimit", u"cmbRingLimit", "Ring limit"},
             {first_busy, u"cmbBusyOn", first_title, "ms"},
             {second_busy, u"cmbBusyOff", second_title, "ms"},
             {"RingOn", u"cmbRingOn", "Ring on", "ms"},
             {"RingOff", u"cmbRingOff", "Ring off", "ms"}}};
}
constexpr auto Common_Values = Detail_Values("BusyOn", "Busy on", "BusyOff", "Busy off");
constexpr auto Enhanced_Values = Detail_Values("Busy1On", "Busy 1 on", "Busy2On", "Busy 2 on");

constexpr String_View Change_Field = u"Change";

constexpr const char* Kind_Names[Record_Kinds] = {"", "Partial", "Full", "DialContinue", "Enhanced"};

String Wide(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

Stored Stored_Value(const Variant& value) {
    return value.Is_Null() ? Stored() : Stored(value.To_Text());
}

// A name in a line: a value of the node's own record or the record of a type.
std::optional<std::size_t> Value_Named(std::size_t kind, const std::string& name) {
    const auto names = Value_Names(kind);
    for (std::size_t index = 0; index < names.size(); ++index)
        if (name == names[index].Name)
            return index;
    return {};
}

std::optional<std::size_t> Kind_Named(const std::string& name) {
    for (std::size_t kind = 1; kind < Record_Kinds; ++kind)
        if (name == Kind_Names[kind])
            return kind;
    return {};
}

ordered_json JSON(const Stored& value) {
    return value ? ordered_json(automation::To_UTF8(*value)) : ordered_json();
}

Stored Wanted_Value(const std::string& name, const ordered_json& value) {
    if (value.is_null())
        return {};
    if (value.is_number_integer())
        return Wide(value.dump());
    if (!value.is_string())
        throw Line_Error("\"" + name + "\" has to be a text, a whole number or null");
    return automation::From_UTF8_Replacing(value.get_ref<const std::string&>());
}

void Take_Value(Wanted_Record& record, std::size_t kind, const std::string& name, const ordered_json& value) {
    const auto index = Value_Named(kind, name);
    if (!index)
        throw Line_Error("\"" + name + "\" is no value of a node" +
                         (kind ? std::string("'s ") + Kind_Names[kind] + " record" : "") +
                         "; see style-editor store export for the names");
    record.Given[*index] = Wanted_Value(name, value);
}

Wanted_Record Wanted_Detail(std::size_t kind, const ordered_json& value) {
    Wanted_Record record;
    record.Removed = value.is_null();
    if (!value.is_null() && !value.is_object())
        throw Line_Error(std::string("\"") + Kind_Names[kind] + "\" has to be an object or null");
    for (const auto& [name, held] : value.items())
        Take_Value(record, kind, name, held);
    return record;
}

// The text of a whole number that stands in a line as a number or as a text; nothing for anything else.
std::optional<std::string> Number_Text(const ordered_json& line, const char* name) {
    const auto found = line.find(name);
    if (found == line.end())
        return {};
    return found->is_string() ? found->get<std::string>() : found->is_number_integer() ? found->dump() : "?";
}

// The library keeps the last of two members with one name and says nothing.
ordered_json Parsed(const std::string& line) {
    std::vector<std::set<std::string>> names;
    const auto watch = [&](int, ordered_json::parse_event_t event, ordered_json& value) {
        using Event = ordered_json::parse_event_t;
        if (event == Event::object_start)
            names.emplace_back();
        else if (event == Event::object_end)
            names.pop_back();
        else if (event == Event::key && !names.back().insert(value.get<std::string>()).second)
            throw Line_Error("\"" + value.get<std::string>() + "\" is given twice");
        return true;
    };
    try {
        return ordered_json::parse(line, watch);
    } catch (const ordered_json::parse_error& error) {
        // "[...] parse error at line 1, column 8: syntax error while parsing value - unexpected ...; expected
        // ..."
        std::string what = error.what();
        const auto reason = what.find(" - ");
        throw Line_Error(what.substr(reason == std::string::npos ? what.rfind(": ") + 2 : reason + 3),
                         error.byte);
    } catch (const ordered_json::exception&) {
        throw Line_Error("a number in it is too large");
    }
}

} // namespace

std::span<const Value_Name, Values_Of_A_Record> Value_Names(std::size_t kind) {
    if (kind == interfaces::Node_Record)
        return Own_Values;
    return kind == interfaces::Last_Detail_Record ? Enhanced_Values : Common_Values;
}

const char* Kind_Name(std::size_t kind) {
    return Kind_Names[kind];
}

const char* Type_Name(std::size_t type) {
    return type == 0 ? "Blind" : Kind_Names[type];
}

std::string Full_Name(std::size_t kind, std::size_t index) {
    const std::string name = Value_Names(kind)[index].Name;
    return kind == interfaces::Node_Record ? name : std::string(Kind_Names[kind]) + "." + name;
}

std::optional<std::size_t> Node::Type() const {
    const Stored& text = Own()[node_value::Type];
    if (!text || text->size() != 1 || text->front() < u'0' || text->front() > u'4')
        return {};
    return static_cast<std::size_t>(text->front() - u'0');
}

Partition_Work::Partition_Work(Integer config, Integer partition, Access access)
    : records(automation::Create_Bound<Store_Records>(Store_Records::Program_Identity)) {
    automation::Call(records, &Store_Records::Begin, Variant(automation::Decimal_Text(config)),
                     Variant(automation::Decimal_Text(partition)),
                     access == Access::To_Write ? automation::True : automation::False);
}

Nodes Partition_Work::Read() const {
    Nodes nodes;
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        Variant xml;
        automation::Call(records, &Store_Records::Read, static_cast<Long>(kind), xml);
        for (const auto rows = Opened(xml); !rows->At_End(); rows->Move_Next()) {
            const Long number = automation::To_Long(rows->Value(Long{0}).To_Text());
            if (kind != interfaces::Node_Record && !nodes.contains(number))
                continue; // a detail record that no node has is nobody's
            Node& node = nodes[number];
            node.Number = number;
            Values& values = node.Records[kind].emplace();
            for (std::size_t index = 0; index < values.size(); ++index)
                values[index] = Stored_Value(rows->Value(static_cast<Long>(index + 1)));
            if (kind == interfaces::Node_Record && !rows->Value(Change_Field).Is_Null())
                node.Change = rows->Value(Change_Field).To_Text();
        }
    }
    return nodes;
}

void Partition_Work::Write(const Node& before, const Node& after) const {
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        const auto number = static_cast<Long>(kind);
        const auto& old = before.Records[kind];
        const auto& wanted = after.Records[kind];
        if (old == wanted)
            continue;
        if (!wanted) {
            automation::Call(records, &Store_Records::Remove, number, after.Number);
            continue;
        }
        for (std::size_t index = 0; index < wanted->size(); ++index) {
            const Stored& value = (*wanted)[index];
            if (old && value == (*old)[index])
                continue;
            automation::Call(records, &Store_Records::Set, Variant(Wide(Value_Names(kind)[index].Name)),
                             value ? Variant(*value) : Variant::Null());
        }
        automation::Call(records, old ? &Store_Records::Write : &Store_Records::Add, number, after.Number);
    }
}

std::string Partition_Work::Keep() {
    automation::Text change;
    automation::Call(records, &Store_Records::End, automation::True, change);
    return automation::To_UTF8(change.View());
}

std::string Partition_Work::Author_Of(const String& change) const {
    automation::Text author;
    automation::Call(records, &Store_Records::Describe_Change, Variant(change), author);
    return automation::To_UTF8(author.View());
}

bool Follows(const Node& node, std::size_t kind, std::size_t index) {
    if (kind != interfaces::Node_Record)
        return index == detail_value::Type &&
               (*node.Records[kind])[index] == automation::Decimal_Text(static_cast<Long>(kind));
    return index == node_value::Entry_Changed ||
           (index == node_value::Entry_Label && node.Own()[index] == node.Own()[node_value::Label]);
}

std::string JSON_Of(const Node& node) {
    ordered_json line{{"NodeNumber", node.Number},
                      {"Change", Decimal<std::int64_t>(automation::To_UTF8(node.Change)).value_or(0)}};
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        const auto& record = node.Records[kind];
        if (!record)
            continue;
        ordered_json& object = kind == interfaces::Node_Record ? line : line[Kind_Names[kind]];
        for (std::size_t index = 0; index < record->size(); ++index)
            if (!Follows(node, kind, index))
                object[Value_Names(kind)[index].Name] = JSON((*record)[index]);
    }
    return line.dump();
}

Long Wanted_Number(const std::optional<std::string>& text) {
    const auto number = text ? Decimal<Long>(*text) : std::nullopt;
    if (!number || *number < 0 || *number > INT16_MAX)
        throw Line_Error("\"NodeNumber\" is missing or no number from 0 to " + std::to_string(INT16_MAX));
    return *number;
}

std::optional<String> Wanted_Change(const std::optional<std::string>& text) {
    if (text && Decimal<std::int64_t>(*text).value_or(-1) < 0)
        throw Line_Error(
            "\"Change\" is no number of a change; leave it as store export wrote it, or leave it out");
    return text ? std::optional(Wide(*text)) : std::nullopt;
}

Wanted_Node Parse_Node(const std::string& text) {
    const ordered_json line = Parsed(text);
    if (!line.is_object())
        throw Line_Error("a JSON object is expected, such as {\"NodeNumber\":3,\"Hookflash\":\"500\"}");
    Wanted_Node wanted;
    wanted.Number = Wanted_Number(Number_Text(line, "NodeNumber"));
    wanted.Change = Wanted_Change(Number_Text(line, "Change"));
    for (const auto& [name, value] : line.items()) {
        if (name == "NodeNumber" || name == "Change")
            continue;
        if (const auto kind = Kind_Named(name))
            wanted.Records[*kind] = Wanted_Detail(*kind, value);
        else
            Take_Value(wanted.Records[interfaces::Node_Record], interfaces::Node_Record, name, value);
    }
    return wanted;
}

std::string Shown(const Stored& value) {
    return value ? "\"" + Visible(*value) + "\"" : "null";
}

} // namespace host
