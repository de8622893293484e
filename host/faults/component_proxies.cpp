#include "faults/component_proxies.h"

#include <span>

#include "automation/text.h"
#include "classes/class_table.h"
#include "interfaces/product_components.h"
#include "process/errors.h"
#include "recordset/recordset.h"
#include "style_node/busyness_rules.h"

namespace host {

namespace {

using automation::Reference;
using automation::Status;
using automation::Unknown;
using automation::Variant;
using In = const Variant&;

template <typename Interface>
class Proxy : public automation::Object<Interface> {
public:
    Proxy(Reference<Interface> inner, std::shared_ptr<Fault_Plan> plan)
        : inner(std::move(inner)), plan(std::move(plan)) {}

protected:
    template <typename Operation, typename... Texts>
    Status Read(String_View name, Operation operation, Variant& result, const Texts&... arguments) {
        return plan->Call(name, {&arguments...}, &result,
                          [&] { return (inner.Get()->*operation)(arguments..., result); });
    }
    template <typename Operation, typename... Texts>
    Status Write(String_View name, Operation operation, const Texts&... arguments) {
        return plan->Call(name, {&arguments...}, nullptr,
                          [&] { return (inner.Get()->*operation)(arguments...); });
    }

    const Reference<Interface> inner;
    const std::shared_ptr<Fault_Plan> plan;
};

class SR_Proxy final : public Proxy<interfaces::SR> {
public:
    using Proxy::Proxy;
    Status Get_All_Node_Types(Variant& Result) override {
        return Read(u"Get_All_Node_Types", &SR::Get_All_Node_Types, Result);
    }
    Status Get_All_Threshold_Types(Variant& Result) override {
        return Read(u"Get_All_Threshold_Types", &SR::Get_All_Threshold_Types, Result);
    }
};

class NODES_Proxy final : public Proxy<interfaces::NODES> {
public:
    using Proxy::Proxy;
    Status Get_Full_Detail(In Config, In Partition, In Node, Variant& Result) override {
        return Read(u"Get_Full_Detail", &NODES::Get_Full_Detail, Result, Config, Partition, Node);
    }
    Status Get_Partial_Detail(In Config, In Partition, In Node, Variant& Result) override {
        return Read(u"Get_Partial_Detail", &NODES::Get_Partial_Detail, Result, Config, Partition, Node);
    }
    Status Get_Enhanced_Detail(In Config, In Partition, In Node, Variant& Result) override {
        return Read(u"Get_Enhanced_Detail", &NODES::Get_Enhanced_Detail, Result, Config, Partition, Node);
    }
    Status Get_DialContinue_Detail(In Config, In Partition, In Node, Variant& Result) override {
        return Read(u"Get_DialContinue_Detail", &NODES::Get_DialContinue_Detail, Result, Config, Partition,
                    Node);
    }
    Status Get_Style_Nodes(In Config, In Partition, Variant& Result) override {
        return Read(u"Get_Style_Nodes", &NODES::Get_Style_Nodes, Result, Config, Partition);
    }
};

class CONFIG_Proxy final : public Proxy<interfaces::CONFIG> {
public:
    using Proxy::Proxy;
    Status Get_Configuration_Info(Variant& Result) override {
        return Read(u"Get_Configuration_Info", &CONFIG::Get_Configuration_Info, Result);
    }
};

class UDNODES_Proxy final : public Proxy<interfaces::UDNODES> {
public:
    using Proxy::Proxy;
    Status Update_Style_Node(In Config, In Partition, In Node, In Hookflash, In Threshold, In Transfer,
                             In Disconnection, In Supervise_Caption, In Supervise, In Label) override {
        return Write(u"Update_Style_Node", &UDNODES::Update_Style_Node, Config, Partition, Node, Hookflash,
                     Threshold, Transfer, Disconnection, Supervise_Caption, Supervise, Label);
    }
    Status Update_Node_Entry(In Label, In Changed, In Config, In Partition, In Node_Type, In Node) override {
        return Write(u"Update_Node_Entry", &UDNODES::Update_Node_Entry, Label, Changed, Config, Partition,
                     Node_Type, Node);
    }
};

class DELNODES_Proxy final : public Proxy<interfaces::DELNODES> {
public:
    using Proxy::Proxy;
    Status Delete_Full_Detail(In Config, In Partition, In Node) override {
        return Write(u"Delete_Full_Detail", &DELNODES::Delete_Full_Detail, Config, Partition, Node);
    }
    Status Delete_Partial_Detail(In Config, In Partition, In Node) override {
        return Write(u"Delete_Partial_Detail", &DELNODES::Delete_Partial_Detail, Config, Partition, Node);
    }
    Status Delete_Enhanced_Detail(In Config, In Partition, In Node) override {
        return Write(u"Delete_Enhanced_Detail", &DELNODES::Delete_Enhanced_Detail, Config, Partition, Node);
    }
    Status Delete_DialContinue_Detail(In Config, In Partition, In Node) override {
        return Write(u"Delete_DialContinue_Detail", &DELNODES::Delete_DialContinue_Detail, Config, Partition,
                     Node);
    }
};

class INSNODES_Proxy final : public Proxy<interfaces::INSNODES> {
public:
    using Proxy::Proxy;
    Status Insert_DialContinue_Detail(In Config, In Partition, In Node, In Supervise, In Retrieve,
                                      In Busy_Retry, In Retries, In Ring_Limit, In Busy_On, In Busy_Off,
                                      In Ring_On, In Ring_Off) override {
        return Write(u"Insert_DialContinue_Detail", &INSNODES::Insert_DialContinue_Detail, Config, Partition,
                     Node, Supervise, Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On,
                     Ring_Off);
    }
    Status Insert_Enhanced_Detail(In Config, In Partition, In Node, In Supervise, In Retrieve, In Busy_Retry,
                                  In Retries, In Ring_Limit, In Busy_On, In Busy_Off, In Ring_On,
                                  In Ring_Off) override {
        return Write(u"Insert_Enhanced_Detail", &INSNODES::Insert_Enhanced_Detail, Config, Partition, Node,
                     Supervise, Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On,
                     Ring_Off);
    }
    Status Insert_Full_Detail(In Config, In Partition, In Node, In Supervise, In Retrieve, In Busy_Retry,
                              In Retries, In Ring_Limit, In Busy_On, In Busy_Off, In Ring_On,
                              In Ring_Off) override {
        return Write(u"Insert_Full_Detail", &INSNODES::Insert_Full_Detail, Config, Partition, Node, Supervise,
                     Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On, Ring_Off);
    }
    Status Insert_Partial_Detail(In Config, In Partition, In Node, In Supervise, In Retrieve, In Busy_Retry,
                                 In Retries, In Ring_Limit, In Busy_On, In Busy_Off, In Ring_On,
                                 In Ring_Off) override {
        return Write(u"Insert_Partial_Detail", &INSNODES::Insert_Partial_Detail, Config, Partition, Node,
                     Supervise, Retrieve, Busy_Retry, Retries, Ring_Limit, Busy_On, Busy_Off, Ring_On,
                     Ring_Off);
    }
};

class Message_Box_Proxy final : public Proxy<interfaces::Message_Box> {
public:
    using Proxy::Proxy;
    Status Box_Error_Location(automation::Text& Result) override { return inner->Box_Error_Location(Result); }
    Status Box_Error_Code(Long& Result) override { return inner->Box_Error_Code(Result); }
    Status Box_Error_Description(automation::Text& Result) override {
        return inner->Box_Error_Description(Result);
    }
    Status Show_Box(In Language, In Shown, In Kind, In Buttons, In Title, Long& Answer) override {
        return plan->Call(u"Show_Box", {&Language, &Shown, &Kind, &Buttons, &Title}, nullptr,
                          [&] { return inner->Show_Box(Language, Shown, Kind, Buttons, Title, Answer); });
    }
};

class Label_Checker_Proxy final : public Proxy<interfaces::Label_Checker> {
public:
    using Proxy::Proxy;
    Status Is_Label_Allowed(In Label, Automation_Boolean& Allowed) override {
        return plan->Call(u"Is_Label_Allowed", {&Label}, nullptr,
                          [&] { return inner->Is_Label_Allowed(Label, Allowed); });
    }
    Status Prepare_Label(In Label, Variant& Result) override {
        return Read(u"Prepare_Label", &Label_Checker::Prepare_Label, Result, Label);
    }
};

using Wrapper = Reference<Unknown> (*)(const Reference<Unknown>& inner, const std::shared_ptr<Fault_Plan>&);

template <typename Interface, typename Class>
Reference<Unknown> Wrapped(const Reference<Unknown>& inner, const std::shared_ptr<Fault_Plan>& plan) {
    return automation::Make_Object<Class>(automation::Bind<Interface>(inner), plan);
}

struct Product_Class {
    String_View Program_Identity;
    Wrapper Wrap = nullptr;                   // null: it has no operations
    automation::Identity Class_Identity = {}; // when the editor asks for it by that
};

template <typename Class, typename Interface>
constexpr Product_Class Of(const automation::Identity& class_identity = {}) {
    return {Interface::Program_Identity, &Wrapped<Interface, Class>, class_identity};
}

constexpr Product_Class Product_Classes[] = {
    Of<SR_Proxy, interfaces::SR>(),
    Of<NODES_Proxy, interfaces::NODES>(),
    {interfaces::DETAIL::Program_Identity},
    Of<CONFIG_Proxy, interfaces::CONFIG>(),
    Of<UDNODES_Proxy, interfaces::UDNODES>(),
    Of<DELNODES_Proxy, interfaces::DELNODES>(),
    Of<INSNODES_Proxy, interfaces::INSNODES>(),
    Of<Message_Box_Proxy, interfaces::Message_Box>(),
    Of<Label_Checker_Proxy, interfaces::Label_Checker>(interfaces::Label_Checker::Class_Identity),
};

// Classes that are created with them, and may be missing like them.
constexpr Product_Class Other_Classes[] = {
    {style_node::_Busyness_Rules::Program_Identity},
    {recordset::Stream_Program_Identity},
    {recordset::Recordset_Program_Identity},
};

constexpr std::span<const Product_Class> All_Classes[] = {Product_Classes, Other_Classes};

const Product_Class* Find_Class(const std::string& program_identity) {
    const auto name = automation::From_UTF8(program_identity).value_or(String());
    for (const auto list : All_Classes)
        for (const Product_Class& known : list)
            if (automation::Equal_Ignoring_Case(known.Program_Identity, name))
                return &known;
    return nullptr;
}

} // namespace

void Install_Proxies(const std::shared_ptr<Fault_Plan>& plan) {
    for (const Product_Class& product : Product_Classes)
        if (product.Wrap)
            classes::Provide_Class(
                {String(product.Program_Identity), product.Class_Identity, [&product, plan] {
                     return product.Wrap(classes::Create_Underlying(product.Program_Identity), plan);
                 }});
}

void Require_Known_Class(const std::string& program_identity) {
    if (!Find_Class(program_identity))
        throw Usage_Error("--missing " + program_identity + ": there is no such component");
}

void Make_Missing(const std::string& program_identity) {
    if (const Product_Class* found = Find_Class(program_identity))
        classes::Provide_Class({String(found->Program_Identity), found->Class_Identity, nullptr});
}

void Remove_Proxies() {
    for (const auto list : All_Classes)
        for (const Product_Class& known : list)
            classes::Revoke_Class(known.Program_Identity);
}

} // namespace host
