#include "node_edit.h"

#include "automation/number.h"
#include "automation/text.h"
#include "shell/clock.h"

namespace host {

namespace {

constexpr std::size_t Own = interfaces::Node_Record;

std::string Full_Name(std::size_t kind, std::size_t index) {
    const std::string name = Value_Names(kind)[index].Name;
    return kind == Own ? name : std::string(Kind_Name(kind)) + "." + name;
}

bool Is_Time_Of_Change(std::size_t kind, std::size_t index) {
    return kind == Own && index == node_value::Entry_Changed;
}

} // namespace

Node_Edit::Node_Edit(const Node& before, const Wanted_Node& wanted, bool restores)
    : Before(before), After(before) {
    for (const auto& [kind, record] : wanted.Records)
        if (kind == Own)
            Merge(kind, record);
    if (restores)
        Drop_Former_Record(wanted);
    else
        Change_Type(wanted);
    for (const auto& [kind, record] : wanted.Records) {
        if (kind != Own)
            Merge(kind, record);
        if (kind != Own && !restores)
            Check_Detail(kind, record);
    }
    if (!restores)
        Check_Values();
    if (const auto own = wanted.Records.find(Own); own != wanted.Records.end()) {
        gives_entry_label = own->second.Given.contains(node_value::Entry_Label);
        gives_entry_time = own->second.Given.contains(node_value::Entry_Changed);
    }
    Complete_Entry();
}

void Node_Edit::Merge(std::size_t kind, const Wanted_Record& wanted) {
    auto& record = After.Records[kind];
    if (wanted.Removed)
        return record.reset();
    if (!record)
        record.emplace()[detail_value::Type] = automation::Decimal_Text(static_cast<Long>(kind));
    for (const auto& [index, value] : wanted.Given)
        (*record)[index] = value;
}

// A line that tells nothing of the former type's record does not know it.
void Node_Edit::Drop_Former_Record(const Wanted_Node& wanted) {
    const auto former = Before.Type();
    if (former && *former != Own && former != After.Type() && !wanted.Records.contains(*former))
        After.Records[*former].reset();
}

// A changed type: its record begins with the former one's values, which goes.
void Node_Edit::Change_Type(const Wanted_Node& wanted) {
    const auto type = After.Type();
    const auto former = Before.Type();
    if (!type || type == former)
        return;
    if (former && *former != Own) {
        if (*type != Own && !After.Records[*type])
            After.Records[*type] = Before.Records[*former];
        After.Records[*former].reset();
    }
    if (*type == Own)
        return;
    static const Wanted_Record nothing;
    const auto given = wanted.Records.find(*type);
    Merge(*type, given == wanted.Records.end() ? nothing : given->second);
    if (auto& record = After.Records[*type])
        (*record)[detail_value::Type] = automation::Decimal_Text(static_cast<Long>(*type));
}

void Node_Edit::Check_Detail(std::size_t kind, const Wanted_Record& wanted) {
    const auto type = After.Type();
    if (type == kind) {
        if (wanted.Removed)
            Refusals.push_back(
                std::string("\"") + Kind_Name(kind) +
                "\": null; a node of this type has the record, change \"SuperviseID\" instead");
        return;
    }
    // The record of the former type may stand in the line as it was; it goes.
    const bool leaves = Before.Type() == kind && type;
    if (After.Records[kind] != Before.Records[kind] && !(leaves && wanted.Removed))
        Refusals.push_back(std::string("\"") + Kind_Name(kind) +
                           "\": only the record of the node's own type can be edited");
    if (leaves)
        After.Records[kind].reset();
}

void Node_Edit::Check_Values() {
    for (const Changed_Value& value : Changed_Values()) {
        if (!value.New)
            continue;
        const bool derived = Value_Names(value.Kind)[value.Index].Control.empty();
        if (derived && (value.Kind == Own || value.Old))
            Refuse(value.Kind, value.Index, *value.New, "it follows from the other values; leave it out");
    }
    // A record that is new must have everything; in an old one, what was null may stay so.
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind)
        for (std::size_t index = 0; After.Records[kind] && index < Values_Of_A_Record; ++index) {
            const Stored& value = (*After.Records[kind])[index];
            const bool was_null = Before.Records[kind] && !(*Before.Records[kind])[index];
            if (!value && !was_null)
                Refuse(kind, index, value,
                       Before.Records[kind] ? "a text; write \"\" for an empty one"
                                            : "a new record needs a text");
        }
}

void Node_Edit::Complete_Entry() {
    Values& own = After.Own();
    if (own[node_value::Label] != Before.Own()[node_value::Label] && !gives_entry_label)
        own[node_value::Entry_Label] = own[node_value::Label];
    if (Is_Change() && !gives_entry_time)
        own[node_value::Entry_Changed] = shell::General_Date_Text();
}

std::vector<Node_Edit::Changed_Value> Node_Edit::Changed_Values() const {
    std::vector<Changed_Value> changed;
    for (std::size_t kind = 0; kind < Record_Kinds; ++kind) {
        const auto& old = Before.Records[kind];
        const auto& wanted = After.Records[kind];
        for (std::size_t index = 0; index < Values_Of_A_Record; ++index) {
            const Stored* before = old ? &(*old)[index] : nullptr;
            const Stored* after = wanted ? &(*wanted)[index] : nullptr;
            if ((before || after) && (!before || !after || *before != *after))
                changed.push_back({kind, index, before, after});
        }
    }
    return changed;
}

void Node_Edit::Refuse(std::size_t kind, std::size_t index, const Stored& value, const std::string& rule) {
    Refusals.push_back(Full_Name(kind, index) + " " + Shown(value) + ": " + rule);
}

void Node_Edit::Ask(std::set<Question>& questions) const {
    for (const Changed_Value& value : Changed_Values()) {
        const String_View control = Value_Names(value.Kind)[value.Index].Control;
        if (!control.empty() && value.New && *value.New)
            questions.insert({String(control), **value.New});
    }
}

void Node_Edit::Take(const Dialog_Answers& answers) {
    for (const Changed_Value& value : Changed_Values()) {
        const String_View control = Value_Names(value.Kind)[value.Index].Control;
        if (control.empty() || !value.New || !*value.New)
            continue;
        if (const auto refusal = answers.Refusals.find({String(control), **value.New});
            refusal != answers.Refusals.end())
            Refuse(value.Kind, value.Index, *value.New, automation::To_UTF8(refusal->second));
    }
    Values& own = After.Own();
    if (own[node_value::Label] != Before.Own()[node_value::Label] && own[node_value::Label])
        if (const auto label = answers.Labels.find(*own[node_value::Label]); label != answers.Labels.end()) {
            own[node_value::Label] = label->second;
            own[node_value::Entry_Label] = label->second;
        }
    if (const auto type = After.Type(); type && type != Before.Type())
        own[node_value::Caption] = answers.Type_Captions[*type];
}

std::vector<std::string> Node_Edit::Changes() const {
    std::vector<std::string> changes;
    const auto text = [](const Stored* value) { return value ? Shown(*value) : std::string("(none)"); };
    for (const Changed_Value& value : Changed_Values())
        if (!Is_Time_Of_Change(value.Kind, value.Index))
            changes.push_back(Full_Name(value.Kind, value.Index) + " " + text(value.Old) + " -> " +
                              text(value.New));
    return changes;
}

} // namespace host
