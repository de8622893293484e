#include "faults/fault_plan.h"

#include <algorithm>

#include "automation/text.h"
#include "interfaces/product_components.h"
#include "process/decimal.h"
#include "process/errors.h"
#include "process/text_file.h"

namespace host {

namespace {

using automation::Failure;
using automation::Status;

constexpr auto Reads = Operation::Kind::Reads;
constexpr auto Writes = Operation::Kind::Writes;

constexpr Operation Operations[] = {
    {interfaces::SR::Program_Identity, u"Get_All_Node_Types", Reads},
    {interfaces::SR::Program_Identity, u"Get_All_Threshold_Types", Reads},
    {interfaces::NODES::Program_Identity, u"Get_Full_Detail", Reads},
    {interfaces::NODES::Program_Identity, u"Get_Partial_Detail", Reads},
    {interfaces::NODES::Program_Identity, u"Get_Enhanced_Detail", Reads},
    {interfaces::NODES::Program_Identity, u"Get_DialContinue_Detail", Reads},
    {interfaces::NODES::Program_Identity, u"Get_Style_Nodes", Reads},
    {interfaces::CONFIG::Program_Identity, u"Get_Configuration_Info", Reads},
    {interfaces::UDNODES::Program_Identity, u"Update_Style_Node", Writes},
    {interfaces::UDNODES::Program_Identity, u"Update_Node_Entry", Writes},
    {interfaces::DELNODES::Program_Identity, u"Delete_Full_Detail", Writes},
    {interfaces::DELNODES::Program_Identity, u"Delete_Partial_Detail", Writes},
    {interfaces::DELNODES::Program_Identity, u"Delete_Enhanced_Detail", Writes},
    {interfaces::DELNODES::Program_Identity, u"Delete_DialContinue_Detail", Writes},
    {interfaces::INSNODES::Program_Identity, u"Insert_DialContinue_Detail", Writes},
    {interfaces::INSNODES::Program_Identity, u"Insert_Enhanced_Detail", Writes},
    {interfaces::INSNODES::Program_Identity, u"Insert_Full_Detail", Writes},
    {interfaces::INSNODES::Program_Identity, u"Insert_Partial_Detail", Writes},
    {interfaces::Label_Checker::Program_Identity, u"Is_Label_Allowed", Writes},
    {interfaces::Label_Checker::Program_Identity, u"Prepare_Label", Writes},
    {interfaces::Message_Box::Program_Identity, u"Show_Box", Operation::Kind::Shows},
};

const Operation* Operation_Named(String_View name) {
    const auto* found = std::find_if(std::begin(Operations), std::end(Operations),
                                     [&](const Operation& operation) { return operation.Name == name; });
    return found == std::end(Operations) ? nullptr : found;
}

// NUMBER:DESCRIPTION
Failure Parse_Failure(const std::string& option, const std::string& effect, String_View source) {
    const std::size_t colon = effect.find(':');
    const auto number = Decimal<Long>(effect.substr(0, colon));
    if (colon == std::string::npos || !number)
        throw Usage_Error("--fail " + option + ": write NUMBER:DESCRIPTION behind the '='");
    auto description = automation::From_UTF8(effect.substr(colon + 1));
    if (!description)
        throw Usage_Error("--fail " + option + ": the description is not UTF-8");
    return Failure(*number, std::move(*description), String(source));
}

String Text_Of(const automation::Variant& argument) {
    return argument.Is_Null() ? String() : argument.To_Text();
}

Status Fail(const Failure& failure) {
    automation::Set_Error(failure);
    return failure.Number < 0 ? failure.Number : automation::Status_Unspecified;
}

} // namespace

std::span<const Operation> All_Operations() {
    return Operations;
}

Fault_Plan::Target Fault_Plan::Parse_Target(const std::string& option) {
    const std::size_t equals = option.find('=');
    const std::string target = option.substr(0, equals);
    const std::size_t at = target.find('@');
    const auto name = automation::From_UTF8(target.substr(0, at));
    Target parsed{name ? Operation_Named(*name) : nullptr, 0, {}};
    if (!parsed.Named)
        throw Usage_Error("there is no operation '" + target.substr(0, at) + "' to fail or to answer");
    if (at != std::string::npos)
        parsed.Which = Decimal<Long>(target.substr(at + 1)).value_or(0);
    if (at != std::string::npos && parsed.Which < 1)
        throw Usage_Error("'" + target + "': write the number of a call, from 1, behind the '@'");
    if (equals != std::string::npos)
        parsed.Effect = option.substr(equals + 1);
    return parsed;
}

void Fault_Plan::Add_Failure(const std::string& option) {
    const Target target = Parse_Target(option);
    const Operation& operation = *target.Named;
    const Failure failure = target.Effect ? Parse_Failure(option, *target.Effect, operation.Component)
                                          : Failure(automation::Status_Unspecified,
                                                    u"Injected failure of " + String(operation.Name),
                                                    String(operation.Component));
    failures.push_back({&operation, target.Which, failure});
}

void Fault_Plan::Add_Exception(const std::string& option) {
    const Target target = Parse_Target(option);
    if (target.Effect)
        throw Usage_Error("--throw " + option +
                          ": an exception has no number and no description; use --fail");
    exceptions.push_back({target.Named, target.Which, {}});
}

void Fault_Plan::Add_Reply(const std::string& option) {
    const Target target = Parse_Target(option);
    if (target.Named->Does != Reads)
        throw Usage_Error("--reply " + option + ": only a reading operation has an answer; use --fail");
    if (!target.Effect)
        throw Usage_Error("--reply " + option + ": write =FILE behind the operation");
    replies.push_back({target.Named, target.Which, Read_Text_File(*target.Effect)});
}

void Fault_Plan::Answer(String_View operation, String text) {
    replies.push_back({Operation_Named(operation), 0, std::move(text)});
}

// What is planned for this very call goes before what is planned for every call.
template <typename Effect>
const Effect* Fault_Plan::Find(const std::vector<Planned<Effect>>& planned,
                               const Operation& operation) const {
    const Effect* found = nullptr;
    for (const auto& entry : planned) {
        if (entry.Target != &operation)
            continue;
        if (entry.Which == calls.at(&operation))
            return &entry.Then;
        if (entry.Which == 0 && !found)
            found = &entry.Then;
    }
    return found;
}

void Fault_Plan::Print(const Operation& operation, std::initializer_list<const Variant*> arguments) {
    if (!trace || operation.Does == Operation::Kind::Shows)
        return;
    std::vector<String> texts;
    for (const Variant* argument : arguments)
        texts.push_back(Text_Of(*argument));
    trace->Call(operation.Component, operation.Name, texts);
}

Status Fault_Plan::Call(String_View name, std::initializer_list<const Variant*> arguments, Variant* result,
                        const std::function<Status()>& pass) {
    const Operation* named = Operation_Named(name);
    if (!named)
        return pass();
    Status status = automation::Status_OK;
    const Foreign_Exception* exception = nullptr;
    const Status own = automation::Guard(named->Component, [&] {
        const Operation& operation = *named;
        ++calls[&operation];
        Print(operation, arguments);
        exception = Find(exceptions, operation);
        if (exception)
            return;
        if (const Failure* failure = Find(failures, operation))
            status = Fail(*failure);
        else if (const String* reply = Find(replies, operation))
            *result = Variant(*reply);
        else
            status = pass();
    });
    if (exception)
        throw Foreign_Exception(*exception);
    return own < 0 ? own : status;
}

} // namespace host
