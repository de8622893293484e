#include "node_edit.h"

#include <algorithm>

#include "automation/number.h"
#include "automation/text.h"
#include "shell/clock.h"

namespace host {

namespace {

constexpr std::size_t Own = interfaces::Node_Record;

// A value that is to change.
struct Changed_Value {
    std::size_t Kind, Index;
    const Stored* Old; // null: no record
    const Stored* New;

    String_View Control() const { return Value_Names(Kind)[Index].Control; }
};

std::vector<Changed_Value> Changed_Values(const Node_Edit& edit) {
    std::vector<Changed_Value> changed;
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        const auto& old = edit.Before->Records[kind];
        const auto& wanted = edit.After.Records[kind];
        if (old == wanted)
            continue;
        for (std::size_t index = 0; index < Values_Of_A_Record; ++index) {
            const Stored* before = old ? &(*old)[index] : nullptr;
            const Stored* after = wanted ? &(*wanted)[index] : nullptr;
            if (!before || !after || *before != *after)
                changed.push_back({kind, index, before, after});
        }
    }
    return changed;
}

String Type_Text(std::size_t type) {
    return automation::Decimal_Text(static_cast<Long>(type));
}

void Lay_Over(std::optional<Values>& record, std::size_t kind, const Wanted_Record& wanted) {
    if (wanted.Removed)
        return record.reset();
    if (!record)
        record.emplace()[detail_value::Type] = Type_Text(kind);
    for (const auto& [index, value] : wanted.Given)
        (*record)[index] = value;
}

// The record of a new type begins with the values of the former one's, which goes.
void Follow_Type(Node_Edit& edit) {
    const auto type = edit.After.Type(), former = edit.Before->Type();
    if (!type || type == former)
        return;
    auto& records = edit.After.Records;
    if (former && *former != Own) {
        if (*type != Own && !records[*type])
            records[*type] = edit.Before->Records[*former];
        records[*former].reset();
    }
    if (*type == Own)
        return;
    if (!records[*type])
        records[*type].emplace();
    (*records[*type])[detail_value::Type] = Type_Text(*type);
}

// A line may hold the record of the former type as it was, or null in its place.
bool Leaves_With_Its_Type(const Node_Edit& edit, std::size_t kind, const Wanted_Record& wanted) {
    if (edit.Before->Type() != kind || !edit.After.Type() || edit.After.Type() == kind)
        return false;
    auto laid_over = edit.Before->Records[kind];
    Lay_Over(laid_over, kind, wanted);
    return wanted.Removed || laid_over == edit.Before->Records[kind];
}

std::string Refusal(std::size_t kind, std::size_t index, const Stored& value, const std::string& rule) {
    return Full_Name(kind, index) + " " + Shown(value) + ": " + rule;
}

using Refusals = std::vector<std::string>;

// Records that the node's type does not have, and the one that it must have.
void Check_Records(const Node_Edit& edit, const Wanted_Node& wanted, Refusals& refusals) {
    if (!edit.After.Type() && edit.Before->Type())
        return; // the type itself is refused
    for (const auto& [kind, record] : wanted.Records) {
        if (kind == Own || Leaves_With_Its_Type(edit, kind, record))
            continue;
        const std::string name = std::string("\"") + Kind_Name(kind) + "\": ";
        if (edit.After.Type() == kind && record.Removed)
            refusals.push_back(name +
                               "null; a node of this type has the record, change \"SuperviseID\" instead");
        else if (edit.After.Type() != kind && edit.After.Records[kind] != edit.Before->Records[kind])
            refusals.push_back(name + "only the record of the node's own type can be edited");
    }
}

// A record that is new must have everything; in an old one, what was null may stay so.
void Check_Missing(const Node_Edit& edit, std::size_t kind, Refusals& refusals) {
    const auto &before = edit.Before->Records[kind], &after = edit.After.Records[kind];
    std::string missing;
    for (std::size_t index = 0; after && index < Values_Of_A_Record; ++index) {
        if ((*after)[index] || (before && !(*before)[index]))
            continue;
        if (before)
            refusals.push_back(Refusal(kind, index, {}, "a text; write \"\" for an empty one"));
        else
            missing += (missing.empty() ? "" : ", ") + std::string(Value_Names(kind)[index].Name);
    }
    if (!missing.empty())
        refusals.push_back(std::string("\"") + Kind_Name(kind) + "\": a new record needs all values; give " +
                           missing);
}

void Check_Value(const Changed_Value& value, const Dialog_Answers& answers, Refusals& refusals) {
    if (!value.New || !*value.New)
        return;
    const bool derived = value.Control().empty();
    if (derived && (value.Kind == Own || value.Old))
        refusals.push_back(
            Refusal(value.Kind, value.Index, *value.New, "it follows from the other values; leave it out"));
    if (derived)
        return;
    const auto refused = answers.Refusals.find({String(value.Control()), **value.New});
    if (refused != answers.Refusals.end())
        refusals.push_back(
            Refusal(value.Kind, value.Index, *value.New, automation::To_UTF8(refused->second)));
}

bool Is_Given(const Wanted_Node& wanted, std::size_t index) {
    const auto own = wanted.Records.find(Own);
    return own != wanted.Records.end() && own->second.Given.contains(index);
}

} // namespace

Node_Edit Merge(const Node& before, const Wanted_Node& wanted) {
    Node_Edit edit{&before, before};
    auto& records = edit.After.Records;
    if (const auto own = wanted.Records.find(Own); own != wanted.Records.end())
        Lay_Over(records[Own], Own, own->second);
    Follow_Type(edit);
    for (const auto& [kind, record] : wanted.Records)
        if (kind != Own && !Leaves_With_Its_Type(edit, kind, record))
            Lay_Over(records[kind], kind, record);
    return edit;
}

void Ask(const Node_Edit& edit, std::set<Question>& questions) {
    for (const Changed_Value& value : Changed_Values(edit))
        if (!value.Control().empty() && value.New && *value.New)
            questions.insert({String(value.Control()), **value.New});
}

std::vector<std::string> Refusals_Of(const Node_Edit& edit, const Wanted_Node& wanted,
                                     const Dialog_Answers& answers) {
    Refusals refusals;
    Check_Records(edit, wanted, refusals);
    if (!refusals.empty())
        return refusals; // what else there is to say follows from these
    for (const Changed_Value& value : Changed_Values(edit))
        Check_Value(value, answers, refusals);
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind)
        Check_Missing(edit, kind, refusals);
    return refusals;
}

Node_Edit Complete(Node_Edit edit, const Wanted_Node& wanted, const Dialog_Answers& answers) {
    Values& own = edit.After.Own();
    const Values& before = edit.Before->Own();
    if (Stored& label = own[node_value::Label]; label && label != before[node_value::Label])
        if (const auto prepared = answers.Labels.find(*label); prepared != answers.Labels.end())
            label = prepared->second;
    if (own[node_value::Label] != before[node_value::Label] && !Is_Given(wanted, node_value::Entry_Label))
        own[node_value::Entry_Label] = own[node_value::Label];
    if (const auto type = edit.After.Type(); type && type != edit.Before->Type())
        own[node_value::Caption] = answers.Type_Captions[*type];
    if (edit.After != *edit.Before)
        own[node_value::Entry_Changed] = shell::General_Date_Text();
    return edit;
}

std::vector<std::string> Changes_Of(const Node_Edit& edit) {
    std::vector<std::string> changes;
    const auto text = [](const Stored* value) { return value ? Shown(*value) : std::string("(none)"); };
    for (const Changed_Value& value : Changed_Values(edit))
        if (value.Kind != Own || value.Index != node_value::Entry_Changed)
            changes.push_back(Full_Name(value.Kind, value.Index) + " " + text(value.Old) + " -> " +
                              text(value.New));
    return changes;
}

} // namespace host
