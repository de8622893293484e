#include "node_records.h"

#include <set>

#include <nlohmann/json.hpp>

#include "automation/create.h"
#include "automation/number.h"
#include "automation/text.h"
#include "store_answers.h"

namespace host {

namespace {

using automation::Variant;
using interfaces::Store_Records;
using nlohmann::ordered_json;

constexpr Value_Name Own_Values[] = {{"NodeDescription", u"txtDescription"},
                                     {"SuperviseID", u"fraSupervised"},
                                     {"SuperviseCaption", {}},
                                     {"Hookflash", u"cmbHookFlash"},
                                     {"ThresholdTypeID", u"cmbThreshold"},
                                     {"Transfer", u"txtTransfer"},
                                     {"Disconnection", u"txtDisconnect"},
                                     {"EntryLabel", {}},
                                     {"EntryChanged", {}}};

constexpr std::array<Value_Name, Values_Of_A_Record> Detail_Values(const char* first_busy,
                                                                   const char* second_busy) {
    return {{{"SuperviseID", {}},
             {"Retrieve", u"txtRetrieve"},
             {"BusyRetry", u"cmbBusyRetry"},
             {"NumberRetries", u"cmbNumRetries"},
             {"RingLimit", u"cmbRingLimit"},
             {first_busy, u"cmbBusyOn"},
             {second_busy, u"cmbBusyOff"},
             {"RingOn", u"cmbRingOn"},
             {"RingOff", u"cmbRingOff"}}};
}
constexpr auto Common_Values = Detail_Values("BusyOn", "BusyOff");
constexpr auto Enhanced_Values = Detail_Values("Busy1On", "Busy2On");

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
        throw Line_Error("\"" + name + "\" is neither a text nor a whole number nor null");
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
        throw Line_Error(std::string("\"") + Kind_Names[kind] + "\" is neither an object nor null");
    for (const auto& [name, held] : value.items())
        Take_Value(record, kind, name, held);
    return record;
}

Long Wanted_Number(const ordered_json& line) {
    const auto number = line.find("NodeNumber");
    if (number == line.end() || !number->is_number_integer() || number->get<std::int64_t>() < 0 ||
        number->get<std::int64_t>() > INT16_MAX)
        throw Line_Error("\"NodeNumber\" is missing or no number from 0 to " + std::to_string(INT16_MAX));
    return number->get<Long>();
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
            throw Line_Error("\"" + value.get<std::string>() + "\" stands in it twice");
        return true;
    };
    try {
        return ordered_json::parse(line, watch);
    } catch (const ordered_json::exception& error) {
        const std::string what = error.what();
        throw Line_Error("it is no JSON: " + what.substr(what.find("] ") + 2));
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

std::optional<std::size_t> Node::Type() const {
    const Stored& text = Own()[node_value::Type];
    if (!text || text->size() != 1 || text->front() < u'0' || text->front() > u'4')
        return {};
    return static_cast<std::size_t>(text->front() - u'0');
}

Partition_Work::Partition_Work(Integer config, Integer partition, Access access)
    : records(automation::Create_Bound<Store_Records>(Store_Records::Program_Identity)) {
    automation::Check(records->Begin(Variant(automation::Decimal_Text(config)),
                                     Variant(automation::Decimal_Text(partition)),
                                     access == Access::To_Write ? AUTOMATION_TRUE : AUTOMATION_FALSE));
}

Nodes Partition_Work::Read() const {
    Nodes nodes;
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        Variant xml;
        automation::Check(records->Read(static_cast<Long>(kind), xml));
        for (const auto rows = Opened(xml); !rows->At_End(); rows->Move_Next()) {
            const Long number = automation::To_Long(rows->Value(Long{0}).To_Text());
            if (kind != interfaces::Node_Record && !nodes.contains(number))
                continue; // a detail record that no node has is nobody's
            Node& node = nodes[number];
            node.Number = number;
            Values& values = node.Records[kind].emplace();
            for (std::size_t index = 0; index < values.size(); ++index)
                values[index] = Stored_Value(rows->Value(static_cast<Long>(index + 1)));
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
            automation::Check(records->Remove(number, after.Number));
            continue;
        }
        for (std::size_t index = 0; index < wanted->size(); ++index) {
            const Stored& value = (*wanted)[index];
            automation::Check(records->Set(Variant(Wide(Value_Names(kind)[index].Name)),
                                           value ? Variant(*value) : Variant::Null()));
        }
        automation::Check(old ? records->Write(number, after.Number) : records->Add(number, after.Number));
    }
}

void Partition_Work::Keep() {
    automation::Text change;
    automation::Check(records->End(AUTOMATION_TRUE, change));
}

std::string JSON_Of(const Node& node, Completeness completeness) {
    const bool plain = completeness == Completeness::Plain;
    ordered_json line{{"NodeNumber", node.Number}};
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        const auto& record = node.Records[kind];
        if (!record && plain)
            continue;
        ordered_json& object = kind == interfaces::Node_Record ? line : line[Kind_Names[kind]];
        for (std::size_t index = 0; record && index < record->size(); ++index) {
            const Stored& value = (*record)[index];
            const bool follows =
                kind == interfaces::Node_Record
                    ? index == node_value::Entry_Changed ||
                          (index == node_value::Entry_Label && value == node.Own()[node_value::Label])
                    : index == detail_value::Type &&
                          value == automation::Decimal_Text(static_cast<Long>(kind));
            if (!plain || !follows)
                object[Value_Names(kind)[index].Name] = JSON(value);
        }
    }
    return line.dump();
}

Wanted_Node Parse_Node(const std::string& text) {
    const ordered_json line = Parsed(text);
    if (!line.is_object())
        throw Line_Error("it is no JSON object");
    Wanted_Node wanted;
    wanted.Number = Wanted_Number(line);
    for (const auto& [name, value] : line.items()) {
        if (name == "NodeNumber")
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
